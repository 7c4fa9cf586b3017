// DcRtmMgr: static routes and redistribution entries as configuration items,
// the free route functions of the application, and the handling of the
// stack's answers on those rows.
#include <new>

#include "cfg/CfgSched.h"
#include "cfg/RouteRedistributeItem.h"
#include "cfg/StaticRouteItem.h"
#include "config/AddressFormat.h"
#include "platform/AllocationFaults.h"
#include "platform/Trace.h"
#include "routing/DcRouterMgr.h"
#include "rtm/DcRtmMgr.h"
#include "stackapi/SmsConstants.h"

namespace Zavrel {

namespace {

CfgSched* Scheduler() {
    DcRouterMgr* manager = DcRouterMgr::GetInstance();
    return manager != nullptr ? &manager->GetCfgSched() : nullptr;
}

// The log lines of one kind of row for its three outcomes.
struct AnswerTexts {
    const char* done;
    const char* giveUp;
    const char* retry;
};

// The stack's answer on a static-route or redistribution row. Done: result 1,
// or "no such row" (6) for a destroy; the item is removed. A create or update
// is retried only on a temporary failure (5); a destroy is retried on every
// other failure. Anything else is given up: the item stays parked.
void ApplyAnswer(const CfgKey& key, CfgItem& reported, int rowStatus, unsigned int result,
                 const AnswerTexts& texts) {
    const bool destroy = rowStatus == static_cast<int>(Sms::ROW_DESTROY);
    if (result == Sms::RESULT_DONE || (destroy && result == Sms::RESULT_NO_ROW)) {
        TRACE(10, "%s", texts.done);
        if (CfgSched* scheduler = Scheduler()) {
            scheduler->Remove(key, &reported, result);
        }
        return;
    }
    const bool retry = destroy || result == Sms::RESULT_TEMPORARY;
    TRACE(10, "%s", retry ? texts.retry : texts.giveUp);
    if (CfgSched* scheduler = Scheduler()) {
        scheduler->Update(key, &reported, result, retry);
    }
}

}  // namespace

void DcRtmMgr::UpdateStaticRoute(unsigned long vlan, long family, const unsigned char* destination,
                                 long prefixLength, const unsigned char* nextHop,
                                 unsigned long ifIndex, unsigned long metric, long routeType,
                                 long rowStatus, long adminStatus) {
    StaticRouteItem* item = NewOrNull<StaticRouteItem>(
        "StaticRouteItem", vlan, family, rowStatus, adminStatus, destination, prefixLength, nextHop,
        ifIndex, metric, static_cast<unsigned long>(routeType), 0);
    if (item == nullptr) {
        TRACE(1, "%s::%s: Error in Allocating RouteItem\n", "DcRtmMgr", "UpdateStaticRoute");
        return;
    }
    CfgSched* scheduler = Scheduler();
    if (scheduler == nullptr) {
        delete item;
        return;
    }
    scheduler->Insert(CfgKey(static_cast<unsigned int>(vlan), CFG_KEY_STATIC_ROUTE), item);
}

void DcRtmMgr::UpdateStaticRoute(unsigned short vlan, const Ip4Addr& destination, int prefixLength,
                                 const Ip4Addr& nextHop, unsigned int ifIndex,
                                 unsigned short metric, int routeType, unsigned int rowStatus,
                                 unsigned int adminStatus) {
    UpdateStaticRoute(static_cast<unsigned long>(vlan), Sms::RECORD_IPV4, destination.Bytes(),
                      static_cast<long>(prefixLength), nextHop.Bytes(), ifIndex, metric,
                      static_cast<long>(routeType), static_cast<long>(rowStatus),
                      static_cast<long>(adminStatus));
}

void DcRtmMgr::UpdateStaticRoute(unsigned short vlan, const Ip6Addr& destination, int prefixLength,
                                 const Ip6Addr& nextHop, unsigned int ifIndex,
                                 unsigned short metric, int routeType, unsigned int rowStatus,
                                 unsigned int adminStatus) {
    UpdateStaticRoute(static_cast<unsigned long>(vlan), Sms::RECORD_IPV6, destination.Bytes(),
                      static_cast<long>(prefixLength), nextHop.Bytes(), ifIndex, metric,
                      static_cast<long>(routeType), static_cast<long>(rowStatus),
                      static_cast<long>(adminStatus));
}

void DcRtmMgr::Redistribute(unsigned int rowStatus, unsigned int adminStatus, unsigned int source,
                            unsigned int destination, unsigned short instance) {
    RouteRedistributeItem* item = NewOrNull<RouteRedistributeItem>(
        "RouteRedistributeItem", static_cast<long>(rowStatus), static_cast<long>(adminStatus),
        static_cast<long>(source), static_cast<long>(destination), 0, instance, 0);
    if (item == nullptr) {
        TRACE(1, "Error in allocating Redistribution Item\n");
        return;
    }
    CfgSched* scheduler = Scheduler();
    if (scheduler == nullptr) {
        delete item;
        return;
    }
    scheduler->Insert(CfgKey(instance, CFG_KEY_REDISTRIBUTION), item);
}

void DcRtmMgr::HandleRedistributionStatusChange(unsigned short instance, unsigned int source,
                                                unsigned int destination, bool enabled,
                                                bool wasEnabled) {
    if (enabled == wasEnabled) {
        return;
    }
    if (enabled) {
        Redistribute(Sms::ROW_ACTIVE, Sms::STATUS_UP, source, destination, instance);
    } else {
        Redistribute(Sms::ROW_DESTROY, Sms::STATUS_DOWN, source, destination, instance);
    }
}

void DcRtmMgr::UpdateRouteCallback(unsigned short vlan, int family,
                                   const unsigned char* destination, unsigned int prefixLength,
                                   const unsigned char* nextHop, unsigned int ifIndex, int metric,
                                   int routeType, int rowStatus, int adminStatus, unsigned long,
                                   unsigned int result) {
    const bool ipv4 = family == Sms::RECORD_IPV4;
    const string destinationText =
        ipv4 ? FormatIp4Addr(static_cast<const void*>(destination)) : FormatIp6Addr(destination);
    const string nextHopText =
        ipv4 ? FormatIp4Addr(static_cast<const void*>(nextHop)) : FormatIp6Addr(nextHop);
    TRACE(10, "Route Update Response from Metaswitch: vlan = %u, dest= %s/%u nexthop: %s\n",
          static_cast<unsigned int>(vlan), destinationText.c_str(), prefixLength,
          nextHopText.c_str());

    // Stands for the reported row; the scheduler finds its own item by OID.
    StaticRouteItem reported(vlan, family, rowStatus, adminStatus, destination, prefixLength,
                             nextHop, ifIndex, static_cast<unsigned long>(metric),
                             static_cast<unsigned long>(routeType), 0);
    static const AnswerTexts texts = {"Route Programmed Successfully\n",
                                      "Unable to set route. No retry!!!\n",
                                      "Route Not programmed!!! Retrying...\n"};
    ApplyAnswer(CfgKey(vlan, CFG_KEY_STATIC_ROUTE), reported, rowStatus, result, texts);
}

void DcRtmMgr::UpdateRedistributionCallback(unsigned short instance, unsigned int source,
                                            unsigned int destination, unsigned int adminStatus,
                                            unsigned int rowStatus, unsigned long extra,
                                            unsigned int result) {
    TRACE(10, "Redistribution Response from Metaswitch: vlan=%u src=%u dst=%u status=%u\n",
          static_cast<unsigned int>(instance), source, destination, rowStatus);
    RouteRedistributeItem reported(static_cast<long>(rowStatus), static_cast<long>(adminStatus),
                                   static_cast<long>(source), static_cast<long>(destination), 0,
                                   instance, extra);
    static const AnswerTexts texts = {"Redistribution Request Success\n",
                                      "Unable to set redistribution. No retry!!!\n",
                                      "Redistribution Request Not success!! Retrying...\n"};
    ApplyAnswer(CfgKey(instance, CFG_KEY_REDISTRIBUTION), reported, static_cast<int>(rowStatus),
                result, texts);
}

// ---- the application's static routes

bool AddRoute(unsigned short vlan, const Ip4Addr& destination, const Ip4Addr& netmask,
              const Ip4Addr& gateway, unsigned int ifIndex, unsigned int metric, long routeType,
              long adminStatus) {
    DcRtmMgr* rtm = DcRtmMgr::GetInstance();
    if (rtm == nullptr) {
        return false;
    }
    rtm->UpdateStaticRoute(vlan, destination, static_cast<int>(DcRouterMgr::bitcount(netmask)),
                           gateway, ifIndex, static_cast<unsigned short>(metric),
                           static_cast<int>(routeType), Sms::ROW_ACTIVE,
                           static_cast<unsigned int>(adminStatus));
    return true;
}

namespace {

bool SendIp4Route(unsigned short vlan, const Ip4Addr& destination, const Ip4Addr& netmask,
                  const Ip4Addr& gateway, unsigned int ifIndex, unsigned int rowStatus,
                  unsigned int adminStatus) {
    DcRtmMgr* rtm = DcRtmMgr::GetInstance();
    if (rtm == nullptr) {
        return false;
    }
    rtm->UpdateStaticRoute(vlan, destination, static_cast<int>(DcRouterMgr::bitcount(netmask)),
                           gateway, ifIndex, 0, 0, rowStatus, adminStatus);
    return true;
}

bool SendIp6Route(unsigned short vlan, const Ip6Addr& destination, const Ip6Prefix& prefix,
                  const Ip6Addr& gateway, unsigned int ifIndex, unsigned int rowStatus,
                  unsigned int adminStatus) {
    DcRtmMgr* rtm = DcRtmMgr::GetInstance();
    if (rtm == nullptr) {
        return false;
    }
    rtm->UpdateStaticRoute(vlan, destination, static_cast<int>(prefix.Length()), gateway, ifIndex,
                           0, 0, rowStatus, adminStatus);
    return true;
}

}  // namespace

bool RemoveRoute(unsigned short vlan, const Ip4Addr& destination, const Ip4Addr& netmask,
                 const Ip4Addr& gateway, unsigned int ifIndex) {
    return SendIp4Route(vlan, destination, netmask, gateway, ifIndex, Sms::ROW_DESTROY,
                        Sms::STATUS_DOWN);
}

bool EnableRoute(unsigned short vlan, const Ip4Addr& destination, const Ip4Addr& netmask,
                 const Ip4Addr& gateway, unsigned int ifIndex) {
    return SendIp4Route(vlan, destination, netmask, gateway, ifIndex, Sms::ROW_ACTIVE,
                        Sms::STATUS_UP);
}

bool DisableRoute(unsigned short vlan, const Ip4Addr& destination, const Ip4Addr& netmask,
                  const Ip4Addr& gateway, unsigned int ifIndex) {
    return SendIp4Route(vlan, destination, netmask, gateway, ifIndex, Sms::ROW_ACTIVE,
                        Sms::STATUS_DOWN);
}

// The destination of an added IPv6 route is the prefix's address; the other
// three functions take it from the address argument.
bool AddRoute(unsigned short vlan, const Ip6Addr&, const Ip6Prefix& prefix, const Ip6Addr& gateway,
              unsigned int ifIndex, unsigned int metric, long routeType, long adminStatus) {
    DcRtmMgr* rtm = DcRtmMgr::GetInstance();
    if (rtm == nullptr) {
        return false;
    }
    rtm->UpdateStaticRoute(vlan, prefix.Address(), static_cast<int>(prefix.Length()), gateway,
                           ifIndex, static_cast<unsigned short>(metric),
                           static_cast<int>(routeType), Sms::ROW_ACTIVE,
                           static_cast<unsigned int>(adminStatus));
    return true;
}

bool RemoveRoute(unsigned short vlan, const Ip6Addr& address, const Ip6Prefix& prefix,
                 const Ip6Addr& gateway, unsigned int ifIndex) {
    return SendIp6Route(vlan, address, prefix, gateway, ifIndex, Sms::ROW_DESTROY,
                        Sms::STATUS_DOWN);
}

bool EnableRoute(unsigned short vlan, const Ip6Addr& address, const Ip6Prefix& prefix,
                 const Ip6Addr& gateway, unsigned int ifIndex) {
    return SendIp6Route(vlan, address, prefix, gateway, ifIndex, Sms::ROW_ACTIVE, Sms::STATUS_UP);
}

bool DisableRoute(unsigned short vlan, const Ip6Addr& address, const Ip6Prefix& prefix,
                  const Ip6Addr& gateway, unsigned int ifIndex) {
    return SendIp6Route(vlan, address, prefix, gateway, ifIndex, Sms::ROW_ACTIVE, Sms::STATUS_DOWN);
}

}  // namespace Zavrel
