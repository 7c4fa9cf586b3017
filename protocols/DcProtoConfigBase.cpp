// DcProtoConfigBase: protocol configuration objects.
#include "protocols/DcProtoConfigBase.h"

namespace Zavrel {

DcProtoConfigBase::~DcProtoConfigBase() = default;

}  // namespace Zavrel
