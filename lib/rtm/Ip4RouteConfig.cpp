// Ip4RouteConfig: configured IPv4 static routes.
#include "rtm/Ip4RouteConfig.h"

#include <cstdint>

#include "config/OptionParsers.h"

namespace Zavrel {

Ip4RouteConfig::Ip4RouteConfig() : vlan(0), metric(1) {}

Ip4RouteConfig::Ip4RouteConfig(unsigned short vlan_, const Ip4Addr& network_,
                               const Ip4Addr& netmask_, const Ip4Addr& gateway_,
                               unsigned char metric_)
    : vlan(vlan_), network(network_), netmask(netmask_), gateway(gateway_), metric(metric_) {}

Ip4RouteConfig::~Ip4RouteConfig() = default;

bool Ip4RouteConfig::operator==(const Ip4RouteConfig& other) const {
    return vlan == other.vlan && network == other.network && netmask == other.netmask &&
           gateway == other.gateway && metric == other.metric && interface == other.interface;
}

bool Ip4RouteConfig::operator()(const Ip4RouteConfig& other) const {
    if (vlan != other.vlan || network != other.network || netmask != other.netmask ||
        gateway != other.gateway) {
        return false;
    }
    return metric == ANY_METRIC || metric == other.metric;
}

bool Ip4RouteConfig::operator<(const Ip4RouteConfig& other) const {
    return Compare(*this, other);
}

namespace {

uint32_t MaskedNetwork(const Ip4RouteConfig& route) {
    unsigned char bytes[4];
    for (int i = 0; i < 4; ++i) {
        bytes[i] = static_cast<unsigned char>(route.network.Bytes()[i] & route.netmask.Bytes()[i]);
    }
    return Ip4Addr(bytes).HostOrder();
}

}  // namespace

bool Ip4RouteConfig::Compare(const Ip4RouteConfig& a, const Ip4RouteConfig& b) {
    // The mask takes part only through the masking: a /8 and a /16 of the
    // same base order by gateway and metric.
    const uint32_t networkA = MaskedNetwork(a);
    const uint32_t networkB = MaskedNetwork(b);
    if (networkA != networkB) {
        return networkA < networkB;
    }
    if (a.gateway != b.gateway) {
        return a.gateway.HostOrder() < b.gateway.HostOrder();
    }
    return b.metric >= a.metric;
}

bool Ip4RouteConfig::ParseGroup(unsigned short vlan_, const OptionsNode& record) {
    if (record.IsEmpty()) {
        return false;
    }
    vlan = vlan_;
    interface = record.GetAsString("interface");
    if (!ParseAddress(network, record.GetAsString("network").c_str())) {
        return false;
    }
    if (!ParseAddress(netmask, record.GetAsString("netmask").c_str())) {
        return false;
    }
    if (!ParseAddress(gateway, record.GetAsString("gateway").c_str())) {
        return false;
    }
    // An absent metric is the empty text, which reads as 0.
    return ParseMetric(&metric, record.GetAsString("metric").c_str());
}

}  // namespace Zavrel
