// DcRouterBase: what every per-VLAN protocol router shares: a name (the key
// of its section in a VLAN entry), the VLAN id, a status, its protocol object,
// the interfaces it runs on, and per options source a bundle of
// configuration lists. A reload either parses the router's section into its
// lists or drops everything that came from that source; interface and
// address events go to the protocol object and the lists.
//
// Also declared here: the two interfaces the application supplies, the IP
// interface handed to the routers and the socket registry through which the
// stack's descriptors are watched by the application's event loop.
#ifndef ZAVREL_ROUTING_DCROUTERBASE_H
#define ZAVREL_ROUTING_DCROUTERBASE_H

#include <map>

#include "config/DclConfigObject.h"
#include "platform/Ip4Addr.h"
#include "platform/OptionsNode.h"
#include "platform/String.h"
#include "routing/DcProtoConfigBase.h"
#include "routing/DcProtoInterfaceBase.h"

namespace Zavrel {

class DcConfigLists;

// Supplied by the application and handed to the routers.
class DcIpInterface {
public:
    virtual ~DcIpInterface() = 0;
};

inline DcIpInterface::~DcIpInterface() = default;

// Supplied by the application: its event loop's socket registry.
class DcSckInterface {
public:
    virtual ~DcSckInterface() = default;
    // Watch fd for the event kind (1 read, 2 write, 3 exception...).
    virtual void RegisterSocket(int fd, int kind, int arg) = 0;
    virtual void UnregisterSocket(int fd, int arg) = 0;
    virtual void ChangeSocketMask(int fd, int kind) = 0;
};

class DcRouterBase {
public:
    using ConfigStatus = DcProtoInterfaceBase::ConfigStatus;
    using IfStatus = DcProtoInterfaceBase::IfStatus;

    // Takes ownership of proto (may be null). A protocol object that is an
    // interface object and not yet bound is bound to this router.
    DcRouterBase(const string& name, unsigned short vid, DcProtoConfigBase* proto);
    // Deletes the protocol object, then every bundle.
    virtual ~DcRouterBase();

    DcRouterBase(const DcRouterBase&) = delete;
    DcRouterBase& operator=(const DcRouterBase&) = delete;

    // Stores the status (the text is not used).
    virtual void SetStatus(const string& text, ConfigStatus status);
    // A new, empty bundle for an options source.
    virtual DcConfigLists* CreateConfigLists(const string& name, DclConfigObject::OptionType type);
    // Adds the router's configuration lists to a new bundle; false refuses
    // the bundle.
    virtual bool CreateConfigList(DcConfigLists& lists) = 0;

    void SetStatus(ConfigStatus status) { m_status = status; }
    ConfigStatus GetStatus() const { return m_status; }

    // The protocol object's answers when it is an interface object;
    // otherwise the status (non-zero / 2).
    bool IsEnabled();
    bool IsReady();
    // The interface is in the router's interface map.
    bool IsEnabled(unsigned int ifIndex);
    // The protocol object's answer, or the map's flag (false when absent).
    bool IsReady(unsigned int ifIndex);
    // 0 removes the interface, 1 marks it not ready, anything else ready.
    void SetInterfaceStatus(unsigned int ifIndex, IfStatus status);

    void ProcessInterfaceStatusChange(unsigned int ifIndex, unsigned int status);
    void ProcessIPAddressChange(unsigned int ifIndex, const Ip4Addr& addr);

    // Applies the router's section of a VLAN entry delivered by source.
    bool Reload(const OptionsNode& node, const string& source, DclConfigObject::OptionType type);
    // The same with the section already looked up in the entry (the member
    // named after the router).
    bool ReloadSection(const OptionsNode& section, const string& source,
                       DclConfigObject::OptionType type);
    // Drops everything source configured.
    void DeleteOptions(const string& source, DclConfigObject::OptionType type);

    DcProtoInterfaceBase* GetInterface() const;
    DcProtoConfigBase* GetProto() const { return m_proto; }
    unsigned short GetVlan() const { return m_vid; }
    const string& GetName() const { return m_name; }
    const string& GetDisplayId() const { return m_display_id; }
    const std::map<unsigned int, bool>& GetInterfaces() const { return m_interfaces; }
    const std::map<string, DcConfigLists*>& GetConfigLists() const { return m_config_lists; }

    static string FormatIpv4Addr(const void* addr);

    // The application's objects, shared by all routers.
    static void Initialize(DcIpInterface* ip) { m_ip_interface = ip; }
    static void SocketInitialize(DcSckInterface* sck) { m_sck_interface = sck; }
    static DcIpInterface* GetIpInterface() { return m_ip_interface; }
    static DcSckInterface* GetSckInterface() { return m_sck_interface; }
    static void SetSckDescriptor(int fd, int kind, int arg);
    static void RemoveSckDescriptor(int fd, int arg);
    static void ChangeWorkMask(int fd, int kind);

    static DcIpInterface* m_ip_interface;
    static DcSckInterface* m_sck_interface;

private:
    std::map<string, DcConfigLists*> m_config_lists;
    DcProtoConfigBase* m_proto;
    // m_proto as the interface base when it is one (looked up once: the
    // protocol object is the router's for life).
    DcProtoInterfaceBase* m_interface;
    std::map<unsigned int, bool> m_interfaces;
    string m_name;
    string m_display_id;
    unsigned short m_vid;
    ConfigStatus m_status;
};

}  // namespace Zavrel

#endif
