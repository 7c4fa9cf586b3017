// Ip6RouteConfig: configured IPv6 static routes.
#include "rtm/Ip6RouteConfig.h"

#include <cstdint>

#include "config/OptionParsers.h"

namespace Zavrel {

Ip6RouteConfig::Ip6RouteConfig() : vlan(0), metric(1) {}

Ip6RouteConfig::Ip6RouteConfig(unsigned short vlan_, const Ip6Addr& network_,
                               const Ip6Prefix& prefix_, const Ip6Addr& gateway_,
                               unsigned char metric_)
    : vlan(vlan_), network(network_), prefix(prefix_), gateway(gateway_), metric(metric_) {}

Ip6RouteConfig::~Ip6RouteConfig() = default;

bool Ip6RouteConfig::operator==(const Ip6RouteConfig& other) const {
    return vlan == other.vlan && network == other.network &&
           prefix.Address() == other.prefix.Address() && prefix.Length() == other.prefix.Length() &&
           gateway == other.gateway && metric == other.metric && interface == other.interface;
}

bool Ip6RouteConfig::operator()(const Ip6RouteConfig& other) const {
    if (vlan != other.vlan || network != other.network ||
        prefix.Length() != other.prefix.Length() || prefix.Address() != other.prefix.Address() ||
        gateway != other.gateway) {
        return false;
    }
    return metric == ANY_METRIC || metric == other.metric;
}

bool Ip6RouteConfig::operator<(const Ip6RouteConfig& other) const {
    return Compare(*this, other);
}

namespace {

// Compares two addresses word by word from the first; 0 when equal,
// otherwise -1 or 1 by the first differing word.
int CompareWords(const Ip6Addr& a, const Ip6Addr& b) {
    for (int i = 0; i < 4; ++i) {
        const uint32_t wordA = a.Word(i);
        const uint32_t wordB = b.Word(i);
        if (wordA != wordB) {
            return wordA < wordB ? -1 : 1;
        }
    }
    return 0;
}

}  // namespace

bool Ip6RouteConfig::Compare(const Ip6RouteConfig& a, const Ip6RouteConfig& b) {
    // The stored prefix address is compared as it is, without masking.
    const int byPrefix = CompareWords(a.prefix.Address(), b.prefix.Address());
    if (a.prefix.Length() == b.prefix.Length() && byPrefix == 0) {
        const int byGateway = CompareWords(a.gateway, b.gateway);
        if (byGateway == 0) {
            return b.metric >= a.metric;
        }
        return byGateway < 0;
    }
    if (byPrefix != 0) {
        return byPrefix < 0;
    }
    return a.prefix.Length() < b.prefix.Length();
}

bool Ip6RouteConfig::ParseGroup(unsigned short vlan_, const OptionsNode& record) {
    if (record.IsEmpty()) {
        return false;
    }
    vlan = vlan_;
    interface = record.GetAsString("interface");
    const string networkText = record.GetAsString("network");
    if (!ParseIp6Address(network, networkText.c_str())) {
        return false;
    }
    // "prefix" holds the length; the address part comes from "network".
    const string prefixText = record.GetAsString("prefix");
    if (!ParseIp6Prefix(prefix, networkText.c_str(), prefixText.c_str())) {
        return false;
    }
    if (!ParseIp6Address(gateway, record.GetAsString("gateway").c_str())) {
        return false;
    }
    // An absent metric is the empty text, which reads as 0.
    return ParseMetric(&metric, record.GetAsString("metric").c_str());
}

}  // namespace Zavrel
