// RouteBook: the application's IPv4 static routes, as it last asked for
// each of them (add, enable, disable, remove), the stack's answers on them,
// and the check that nothing it asked for was lost or made up once the
// system is quiet.
//
// A route is kept when
//  - the stack holds it as last asked (present with the admin status asked
//    for, or absent after a remove); or
//  - the stack answered the last request after it was made, and did no
//    request the application never made for the route since. The answer
//    may be a refusal: an item refused without a retry is destroyed when
//    the stack confirms a later request of the same row, by design. And the
//    stack may end with an earlier request: the configuration scheduler can
//    send an earlier request of the same route again after the last one,
//    by design. An item that replaces an equal held one is linked in before
//    the held one's predecessor, which can put it ahead of a later request;
//    and a failure sends an item back to New where it stands, ahead of or
//    behind requests made since; or
//  - the scheduler still holds an item for it that says why it is not so:
//    one refused with a reason code, or one waiting for its routing table
//    instance.
// Routes of a VLAN whose configuration went away are no longer promised
// (the stack drops the instance with its rows); they may stay absent or
// come back with the VLAN.
//
// A book follows the stack's answers from its construction to its end
// (Emulator::ObserveRouteAnswers), so one book at a time, made after the
// system it watches.
#ifndef ZAVREL_TOOLS_ROUTEBOOK_H
#define ZAVREL_TOOLS_ROUTEBOOK_H

#include <map>
#include <string>
#include <vector>

#include "emulator/EmulatorTypes.h"
#include "platform/Ip4Addr.h"

namespace Zavrel {

class DcRouterMgr;

class RouteBook {
public:
    struct Route {
        unsigned short vlan = 0;
        Ip4Addr destination;
        unsigned int prefixLength = 0;
        Ip4Addr gateway;
        unsigned int ifIndex = 0;
        // "5 172.16.0.0/16 via 10.0.0.254 ifIndex 0"
        std::string ToString() const;
    };

    RouteBook();
    ~RouteBook();
    RouteBook(const RouteBook&) = delete;
    RouteBook& operator=(const RouteBook&) = delete;

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
        unsigned short vlan = 0;
        Wish wish = Wish::Absent;
        bool promised = true;
        bool answered = false;   // the stack answered the last request since it was made
        unsigned int asked = 0;  // every wish ever asked for the route, as Bit()s
    };
    static unsigned int Bit(Wish wish) { return 1u << static_cast<unsigned int>(wish); }
    static Ip4Addr Netmask(unsigned int prefixLength);
    void Record(const Route& route, Wish wish);
    void Answered(const Emulator::RouteAnswer& answer);
    // EnableRoute, DisableRoute or RemoveRoute for IPv4; records the wish
    // when the library took the request.
    using RouteCall = bool (*)(unsigned short, const Ip4Addr&, const Ip4Addr&, const Ip4Addr&,
                               unsigned int);
    bool Ask(RouteCall call, const Route& route, Wish wish);

    // By Route::ToString, which is also how the stack's rows are named.
    std::map<std::string, Entry> m_routes;
};

}  // namespace Zavrel

#endif
