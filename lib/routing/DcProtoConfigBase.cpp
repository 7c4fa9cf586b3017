// DcProtoConfigBase: protocol configuration objects.
#include "routing/DcProtoConfigBase.h"

namespace Zavrel {

DcProtoConfigBase::~DcProtoConfigBase() = default;

}  // namespace Zavrel
