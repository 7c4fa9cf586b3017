// Ip4RouteConfig: one configured IPv4 static route of a VLAN, read from an
// option record, with full equality, a matching predicate whose metric 255
// means "any metric", and the ordering used to keep routes sorted.
#ifndef ZAVREL_RTM_IP4ROUTECONFIG_H
#define ZAVREL_RTM_IP4ROUTECONFIG_H

#include "platform/Ip4Addr.h"
#include "platform/OptionsNode.h"
#include "platform/String.h"

namespace Zavrel {

class Ip4RouteConfig {
public:
    // Metric of a search pattern that matches any metric.
    static constexpr unsigned char ANY_METRIC = 255;

    Ip4RouteConfig();
    Ip4RouteConfig(const Ip4RouteConfig& other) = default;
    Ip4RouteConfig(unsigned short vlan, const Ip4Addr& network, const Ip4Addr& netmask,
                   const Ip4Addr& gateway, unsigned char metric);
    virtual ~Ip4RouteConfig();

    // Copies every field, interface included.
    virtual Ip4RouteConfig& operator=(const Ip4RouteConfig& other) = default;
    // Every field equal, the interface name included.
    virtual bool operator==(const Ip4RouteConfig& other) const;
    // Matching: VLAN, network, netmask and gateway equal, and the metrics
    // equal unless this record's metric is ANY_METRIC. The interface name
    // is not compared.
    virtual bool operator()(const Ip4RouteConfig& other) const;
    virtual bool operator<(const Ip4RouteConfig& other) const;

    // Orders by masked network, then gateway, then metric; true when a comes
    // before b. Equal routes with equal metrics order both ways.
    static bool Compare(const Ip4RouteConfig& a, const Ip4RouteConfig& b);

    // Fills the record from one option record ("interface", "network",
    // "netmask", "gateway", "metric"). An absent "metric" reads as 0.
    bool ParseGroup(unsigned short vlan, const OptionsNode& record);

    unsigned short vlan;
    string interface;
    Ip4Addr network;
    Ip4Addr netmask;
    Ip4Addr gateway;
    unsigned char metric;
};

}  // namespace Zavrel

#endif
