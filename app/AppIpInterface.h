// AppIpInterface: the application's IP interface object that the library
// hands to its protocol routers. The routers of this application need
// nothing from it beyond its existence.
#ifndef ZAVREL_APP_APPIPINTERFACE_H
#define ZAVREL_APP_APPIPINTERFACE_H

#include "routing/DcRouterBase.h"

namespace Zavrel {

class AppIpInterface : public DcIpInterface {
public:
    AppIpInterface();
    ~AppIpInterface() override;
};

}  // namespace Zavrel

#endif
