// RouteBook: the application's IPv4 static routes, as it last asked for
// each of them (add, enable, disable, remove), and the check that nothing
// it asked for was lost or made up once the system is quiet.
//
// What the stack ends with is what the configuration scheduler sends last
// for the route: items already sent go first, then the New ones in list
// order, and an item that replaces an equal held one is linked in a place
// before the held one's predecessor (by design), which can put it ahead of
// a later request for the same route. So the wish recorded for a request
// is the one of the route's last New item in the scheduler's list right
// after the request.
//
// A route is kept when the stack holds it as last asked (present with the
// admin status asked for, or absent after a remove), or when the
// configuration scheduler still holds an item for it that says why it is
// not so: an item sent and refused with a reason code; one waiting for its
// routing table instance; or one sent whose answer went to an earlier item
// of the same row. (The scheduler hands a row's answer to the first held
// item of the row; when a failure has sent that one back to New, it takes
// no answer, so a later request done by the stack leaves its own item
// Issued for good and the earlier request goes out again after it: the
// stack ends with the earlier request, and the later item stays parked.) Routes of a VLAN whose
// configuration went away are no longer promised (the stack drops the instance with its rows); they
// may stay absent or come back with the VLAN.
#ifndef ZAVREL_TOOLS_ROUTEBOOK_H
#define ZAVREL_TOOLS_ROUTEBOOK_H

#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "platform/Ip4Addr.h"

namespace Zavrel {

class DcRouterMgr;
class StaticRouteItem;

class RouteBook {
public:
    struct Route {
        unsigned short vlan = 0;
        Ip4Addr destination;
        unsigned int prefixLength = 0;
        Ip4Addr gateway;
        unsigned int ifIndex = 0;
        bool operator<(const Route& other) const;
        // "5 172.16.0.0/16 via 10.0.0.254 ifIndex 0"
        std::string ToString() const;
    };

    // Each asks the library (AddRoute, EnableRoute, DisableRoute,
    // RemoveRoute) and records the wish when the library took the request.
    bool Add(const Route& route, unsigned int metric);
    bool Enable(const Route& route);
    bool Disable(const Route& route);
    bool Remove(const Route& route);
    // The VLAN's configuration went away: its routes are no longer promised.
    void ForgetVlan(unsigned short vlan);

    // Routes wanted in the stack (added or enabled or disabled, not removed,
    // on a VLAN still configured).
    size_t Wanted() const;
    // One line per route lost or made up; empty when none.
    std::vector<std::string> Check(DcRouterMgr& manager) const;

private:
    enum class Wish { Up, Down, Absent };
    struct Entry {
        Wish wish = Wish::Absent;
        bool promised = true;
    };
    static Ip4Addr Netmask(unsigned int prefixLength);
    static bool Matches(const StaticRouteItem& item, const Route& route);
    void Record(const Route& route, Wish wish);
    // EnableRoute, DisableRoute or RemoveRoute for IPv4; records the wish
    // when the library took the request.
    using RouteCall = bool (*)(unsigned short, const Ip4Addr&, const Ip4Addr&, const Ip4Addr&,
                               unsigned int);
    bool Ask(RouteCall call, const Route& route, Wish wish);

    std::map<Route, Entry> m_routes;
};

}  // namespace Zavrel

#endif
