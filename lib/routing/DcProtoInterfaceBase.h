// DcProtoInterfaceBase: the protocol object of a per-VLAN router. It reads the
// router's section of a VLAN entry, knows whether the protocol is enabled and
// ready, follows the router's interfaces and their addresses, and keeps the
// redistribution profile, turning every change of what is redistributed into
// redistribution requests of the RTM manager.
//
// Options: every source that configures the router leaves its own layer
// (its "enabled" leaf and its "REDISTRIBUTION" section, when present); the
// effective settings are the layers applied over each other, oldest first.
// Deleting a source's options removes its layer.
//
// Readiness is evaluated lazily: the protocol is ready (status 2) while it
// is enabled and the RTM instance of its family has been reported ready.
#ifndef ZAVREL_ROUTING_DCPROTOINTERFACEBASE_H
#define ZAVREL_ROUTING_DCPROTOINTERFACEBASE_H

#include <map>
#include <vector>

#include "platform/Ip4Addr.h"
#include "routing/DcProtoConfigBase.h"
#include "routing/RedistributionProfile.h"

namespace Zavrel {

class DcRouterBase;

class DcProtoInterfaceBase : public DcProtoConfigBase {
public:
    enum ConfigStatus { CONFIG_DISABLED = 0, CONFIG_ENABLED = 1, CONFIG_READY = 2 };
    // Interface states: removed (forgotten), down, up (any other value).
    enum IfStatus { IF_REMOVED = 0, IF_DOWN = 1, IF_UP = 2 };

    // Own route protocol of a protocol that takes no redistribution.
    static constexpr unsigned int PROTO_NONE = 0;

    // afi: 0 for IPv4, 41 for IPv6: the family whose RTM instance makes the
    // protocol ready and receives its redistribution. protocol: its own route
    // protocol code, or PROTO_NONE when it takes no redistribution (no
    // "REDISTRIBUTION" section is read then). dualStack: redistribution goes
    // into both RTM instances of the VLAN (IPv4 first).
    DcProtoInterfaceBase(int afi, unsigned int protocol, bool dualStack = false);
    ~DcProtoInterfaceBase() override;

    void ApplyOptions(const OptionsNode& section, const string& source,
                      DclConfigObject::OptionType type) override;
    void DeleteOptions(const string& source, DclConfigObject::OptionType type) override;

    virtual bool IsEnabled() const;
    // 0 disabled, 1 enabled, 2 ready.
    virtual ConfigStatus GetStatus() const;
    virtual bool IsReady() const;
    // Ready, and the interface is known and up.
    virtual bool IsReady(unsigned int ifIndex) const;
    // status: 0 forgets the interface, 1 marks it down, anything else up.
    // The router's interface map follows.
    virtual void InterfaceStatusChange(unsigned int ifIndex, unsigned int status);
    virtual void AddressChange(unsigned int ifIndex, const Ip4Addr& address);

    // The router the object belongs to (set once, by the router base).
    void Bind(DcRouterBase* router) { m_router = router; }
    DcRouterBase* GetRouter() const { return m_router; }
    unsigned short GetVlan() const;
    int GetAfi() const { return m_afi; }
    unsigned int GetProtocol() const { return m_protocol; }
    bool IsDualStack() const { return m_dualStack; }
    // The RTM instance of the protocol's family in its VLAN.
    unsigned short GetRtmInstance() const;
    // The effective redistribution profile.
    const RedistributionProfile& GetProfile() const { return m_profile; }
    // Interface state; IF_REMOVED for an unknown interface.
    IfStatus GetInterfaceStatus(unsigned int ifIndex) const;
    const std::map<unsigned int, IfStatus>& GetInterfaces() const { return m_interfaces; }
    const std::map<unsigned int, Ip4Addr>& GetAddresses() const { return m_addresses; }

    static const char* StatusName(ConfigStatus status);
    static const char* IfStatusName(IfStatus status);
    // "static", "connected", "rip", "ospf", "bgp"; "unknown" otherwise.
    static const char* ProtocolName(unsigned int protocol);

private:
    struct Layer {
        string source;
        int enabled;  // -1 when the section does not say
        bool hasProfile;
        RedistributionProfile profile;
    };

    void Recompute();
    void NotifyRedistribution(bool wasEnabled, const RedistributionProfile& was) const;

    int m_afi;
    unsigned int m_protocol;
    bool m_dualStack;
    DcRouterBase* m_router;
    std::vector<Layer> m_layers;  // least recently applied first
    bool m_enabled;
    RedistributionProfile m_profile;
    std::map<unsigned int, IfStatus> m_interfaces;
    std::map<unsigned int, Ip4Addr> m_addresses;
};

}  // namespace Zavrel

#endif
