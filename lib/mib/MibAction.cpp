#include "mib/MibAction.h"

namespace Zavrel {

MibAction::~MibAction() = default;

}  // namespace Zavrel
