// DcRouterConsole: the protocol routers' console output.
#include "protocols/DcRouterConsole.h"

#include "platform/DcConsole.h"
#include "protocols/DcMulticastRouter.h"
#include "routing/DcOspfRouterBase.h"
#include "routing/DcRouterMgr.h"
#include "rtm/DcRtmMgr.h"

namespace Zavrel {

namespace {

void PrintRedistribution(DcConsole* console, const DcProtoInterfaceBase& iface) {
    console->Print("Redistribute:");
    bool any = false;
    for (unsigned int source : RedistributionProfile::SOURCES) {
        if (source != iface.GetProtocol() && iface.GetProfile().Allows(source)) {
            console->Print(" %s", DcProtoInterfaceBase::ProtocolName(source));
            any = true;
        }
    }
    console->Print("%s\n", any ? "" : " none");
}

void PrintInterfaces(DcConsole* console, const DcProtoInterfaceBase& iface) {
    if (iface.GetInterfaces().empty()) {
        console->Print("No interfaces\n");
        return;
    }
    console->Print("%-10s %-6s %s\n", "Interface", "State", "Address");
    for (const auto& entry : iface.GetInterfaces()) {
        auto address = iface.GetAddresses().find(entry.first);
        console->Print(
            "%-10u %-6s %s\n", entry.first, DcProtoInterfaceBase::IfStatusName(entry.second),
            address != iface.GetAddresses().end() ? address->second.ToString().c_str() : "-");
    }
}

void PrintAreas(DcConsole* console, const DcOspfRouterBase& ospf) {
    console->Print("Areas: %u%s\n", ospf.GetAreaCount(),
                   ospf.IsAreaBorderRouter() ? " (area border router)" : "");
    for (unsigned int id : ospf.GetAreaIds()) {
        const OspfAreaCB* area = ospf.GetArea(id);
        console->Print("Area %u%s Interfaces:", id, area->stub ? " (stub)" : "");
        for (unsigned int ifIndex : area->interfaces) {
            console->Print(" %u", ifIndex);
        }
        console->Print("\n");
    }
}

void PrintMulticast(DcConsole* console, const DcMulticastRouter& router) {
    if (router.GetMulticastInterfaces().empty()) {
        console->Print("No multicast interfaces\n");
    } else {
        console->Print("%-10s %-6s %s\n", "Interface", "State", "Querier");
        for (const auto& entry : router.GetMulticastInterfaces()) {
            auto known = router.GetInterfaces().find(entry.first);
            const char* state = known == router.GetInterfaces().end() ? "-"
                                : known->second                       ? "Up"
                                                                      : "Down";
            console->Print("%-10u %-6s %s\n", entry.first, state, entry.second ? "yes" : "no");
        }
    }
    if (router.GetGroups().empty()) {
        console->Print("No groups\n");
        return;
    }
    console->Print("%-40s %s\n", "Group", "Interface");
    for (const DcMulticastRouter::Group& group : router.GetGroups()) {
        console->Print("%-40s %u\n",
                       DcMulticastRouter::FormatGroup(router.GetProtocol(), group.first).c_str(),
                       group.second);
    }
}

}  // namespace

void DcRouterConsole::Show(DcConsole* console, int argc, char** argv, const char* usage, int type,
                           const char* label, int afi) {
    if (console == nullptr) {
        return;
    }
    if (argc > 1 || argv == nullptr) {
        console->Print("Usage: %s\n", usage);
        console->EndOfCommand();
        return;
    }
    const unsigned short vlan = console->CurrentVlan();
    DcRouterMgr* manager = DcRouterMgr::GetInstance();
    DcRouterBase* router =
        manager != nullptr
            ? manager->GetDcRouterByVID(vlan, static_cast<DcRouterMgr::ProtocolType>(type))
            : nullptr;
    if (router == nullptr) {
        console->Print("No %s router in VLAN %u\n", label, static_cast<unsigned int>(vlan));
    } else {
        PrintRouter(console, router, label, afi);
    }
    console->EndOfCommand();
}

void DcRouterConsole::PrintRouter(DcConsole* console, DcRouterBase* router, const char* label,
                                  int afi) {
    const unsigned int vlan = router->GetVlan();
    const DcProtoInterfaceBase* iface = router->GetInterface();
    console->Print("%s in VLAN %u: %s\n", label, vlan,
                   DcProtoInterfaceBase::StatusName(iface != nullptr ? iface->GetStatus()
                                                                     : router->GetStatus()));
    DcRtmMgr* rtm = DcRtmMgr::GetInstance();
    if (rtm != nullptr) {
        const unsigned short instance =
            rtm->GetDclProtocolInstanceIdFromVlan(router->GetVlan(), afi);
        console->Print("RTM instance %u: %s\n", static_cast<unsigned int>(instance),
                       rtm->IsRtmReady(instance) ? "ready" : "not ready");
    }
    if (iface == nullptr) {
        return;
    }
    if (iface->GetProtocol() != DcProtoInterfaceBase::PROTO_NONE) {
        PrintRedistribution(console, *iface);
    }
    PrintInterfaces(console, *iface);
    if (const auto* ospf = dynamic_cast<const DcOspfRouterBase*>(router)) {
        PrintAreas(console, *ospf);
    }
    if (const auto* multicast = dynamic_cast<const DcMulticastRouter*>(router)) {
        PrintMulticast(console, *multicast);
    }
}

}  // namespace Zavrel
