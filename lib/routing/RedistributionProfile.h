// RedistributionProfile: which route sources a protocol takes into its own
// routes. All five sources are on by default; a "REDISTRIBUTION" section of
// the options switches single sources.
#ifndef ZAVREL_ROUTING_REDISTRIBUTIONPROFILE_H
#define ZAVREL_ROUTING_REDISTRIBUTIONPROFILE_H

#include "platform/OptionsNode.h"
#include "stackapi/SmsConstants.h"

namespace Zavrel {

class RedistributionProfile {
public:
    // Route protocol codes of the stack's redistribution rows: the IANA
    // route protocol numbers shifted left by 16.
    static constexpr unsigned int PROTO_CONNECTED = Sms::RedistProtocol(Sms::PROTO_LOCAL);
    static constexpr unsigned int PROTO_STATIC = Sms::RedistProtocol(Sms::PROTO_STATIC);
    static constexpr unsigned int PROTO_RIP = Sms::RedistProtocol(Sms::PROTO_RIP);
    static constexpr unsigned int PROTO_OSPF = Sms::RedistProtocol(Sms::PROTO_OSPF);
    static constexpr unsigned int PROTO_BGP = Sms::RedistProtocol(Sms::PROTO_BGP);
    // The sources, in the order of the profile's flags.
    static constexpr unsigned int SOURCE_COUNT = 5;
    static const unsigned int SOURCES[SOURCE_COUNT];

    RedistributionProfile();
    // Note the argument order: static, connected, bgp, ospf, rip.
    RedistributionProfile(bool staticRoutes, bool connected, bool bgp, bool ospf, bool rip);
    RedistributionProfile(const RedistributionProfile& other) = default;

    RedistributionProfile& operator=(const RedistributionProfile& other);
    bool operator==(const RedistributionProfile& other) const;
    bool operator!=(const RedistributionProfile& other) const { return !(*this == other); }

    // Every source on.
    void Reset();
    // Reads the "REDISTRIBUTION" child of node: false (flags unchanged) when
    // it is missing or empty; otherwise each boolean leaf present among
    // "static", "connected", "bgp", "rip", "ospf" sets its flag.
    bool ParseOption(const OptionsNode& node);
    // The same read on the "REDISTRIBUTION" section itself, for a caller
    // that has looked it up already.
    bool ParseSection(const OptionsNode& section);

    // The flag of a source given by its protocol code; false for other codes.
    bool Allows(unsigned int sourceProtocol) const;

    bool staticRoutes;
    bool connected;
    bool rip;
    bool ospf;
    bool bgp;
};

}  // namespace Zavrel

#endif
