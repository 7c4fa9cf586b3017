#include "app/AppIpInterface.h"

namespace Zavrel {

AppIpInterface::AppIpInterface() = default;
AppIpInterface::~AppIpInterface() = default;

}  // namespace Zavrel
