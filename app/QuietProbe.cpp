#include "app/QuietProbe.h"

namespace Zavrel {

QuietProbe::~QuietProbe() = default;

}  // namespace Zavrel
