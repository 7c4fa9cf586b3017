// Ip6RouteConfig: one configured IPv6 static route of a VLAN, read from an
// option record, with full equality, a matching predicate whose metric 255
// means "any metric", and the ordering used to keep routes sorted.
#ifndef ZAVREL_RTM_IP6ROUTECONFIG_H
#define ZAVREL_RTM_IP6ROUTECONFIG_H

#include "platform/Ip6Addr.h"
#include "platform/Ip6Prefix.h"
#include "platform/OptionsNode.h"
#include "platform/String.h"

namespace Zavrel {

class Ip6RouteConfig {
public:
    // Metric of a search pattern that matches any metric.
    static constexpr unsigned char ANY_METRIC = 255;

    Ip6RouteConfig();
    Ip6RouteConfig(const Ip6RouteConfig& other) = default;
    Ip6RouteConfig(unsigned short vlan, const Ip6Addr& network, const Ip6Prefix& prefix,
                   const Ip6Addr& gateway, unsigned char metric);
    virtual ~Ip6RouteConfig();

    // Copies every field, interface included.
    virtual Ip6RouteConfig& operator=(const Ip6RouteConfig& other) = default;
    // Every field equal, the interface name included.
    virtual bool operator==(const Ip6RouteConfig& other) const;
    // Matching: VLAN, network, prefix (length and address) and gateway
    // equal, and the metrics equal unless this record's metric is
    // ANY_METRIC. The interface name is not compared.
    virtual bool operator()(const Ip6RouteConfig& other) const;
    virtual bool operator<(const Ip6RouteConfig& other) const;

    // Orders by prefix address (unmasked) and length, then gateway, then
    // metric; true when a comes before b.
    static bool Compare(const Ip6RouteConfig& a, const Ip6RouteConfig& b);

    // Fills the record from one option record ("interface", "network",
    // "prefix" (the length), "gateway", "metric"). An absent "metric" reads
    // as 0.
    bool ParseGroup(unsigned short vlan, const OptionsNode& record);

    unsigned short vlan;
    string interface;
    Ip6Addr network;
    Ip6Prefix prefix;
    Ip6Addr gateway;
    unsigned char metric;
};

}  // namespace Zavrel

#endif
