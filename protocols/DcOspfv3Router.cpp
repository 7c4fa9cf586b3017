// DcOspfv3Router: OSPFv3 router.
#include "protocols/DcOspfv3Router.h"

#include <new>

#include "protocols/Ospfv3Interface.h"

namespace Zavrel {

DcOspfv3Router::DcOspfv3Router(unsigned short vid)
    : DcOspfRouter("OSPFV3", vid, new (std::nothrow) Ospfv3Interface(), 3) {}

DcOspfv3Router::~DcOspfv3Router() = default;

}  // namespace Zavrel
