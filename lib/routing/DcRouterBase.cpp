// DcRouterBase: the per-VLAN protocol router base.
#include "routing/DcRouterBase.h"

#include "config/AddressFormat.h"
#include "config/DCLConfigList.h"
#include "platform/AllocationFaults.h"
#include "routing/DcConfigLists.h"

namespace Zavrel {

DcIpInterface* DcRouterBase::m_ip_interface = nullptr;
DcSckInterface* DcRouterBase::m_sck_interface = nullptr;

DcRouterBase::DcRouterBase(const string& name, unsigned short vid, DcProtoConfigBase* proto)
    : m_proto(proto),
      m_interface(dynamic_cast<DcProtoInterfaceBase*>(proto)),
      m_name(name),
      m_vid(vid),
      m_status(DcProtoInterfaceBase::CONFIG_DISABLED) {
    m_display_id.Format("%s:%u", m_name.c_str(), static_cast<unsigned int>(vid));
    DcProtoInterfaceBase* iface = GetInterface();
    if (iface != nullptr && iface->GetRouter() == nullptr) {
        iface->Bind(this);
    }
}

DcRouterBase::~DcRouterBase() {
    delete m_proto;
    m_proto = nullptr;
    m_interface = nullptr;
    for (auto& entry : m_config_lists) {
        delete entry.second;
    }
    m_config_lists.clear();
}

void DcRouterBase::SetStatus(const string&, ConfigStatus status) {
    m_status = status;
}

DcConfigLists* DcRouterBase::CreateConfigLists(const string& name,
                                               DclConfigObject::OptionType type) {
    return NewOrNull<DcConfigLists>("DcConfigLists", name, type);
}

DcProtoInterfaceBase* DcRouterBase::GetInterface() const {
    return m_interface;
}

bool DcRouterBase::IsEnabled() {
    DcProtoInterfaceBase* iface = GetInterface();
    if (iface != nullptr) {
        return iface->IsEnabled();
    }
    return m_status != DcProtoInterfaceBase::CONFIG_DISABLED;
}

bool DcRouterBase::IsReady() {
    DcProtoInterfaceBase* iface = GetInterface();
    if (iface != nullptr) {
        return iface->IsReady();
    }
    return m_status == DcProtoInterfaceBase::CONFIG_READY;
}

bool DcRouterBase::IsEnabled(unsigned int ifIndex) {
    return m_interfaces.count(ifIndex) != 0;
}

bool DcRouterBase::IsReady(unsigned int ifIndex) {
    DcProtoInterfaceBase* iface = GetInterface();
    if (iface != nullptr) {
        return iface->IsReady(ifIndex);
    }
    auto it = m_interfaces.find(ifIndex);
    return it != m_interfaces.end() && it->second;
}

void DcRouterBase::SetInterfaceStatus(unsigned int ifIndex, IfStatus status) {
    if (status == DcProtoInterfaceBase::IF_REMOVED) {
        m_interfaces.erase(ifIndex);
    } else {
        m_interfaces[ifIndex] = status != DcProtoInterfaceBase::IF_DOWN;
    }
}

void DcRouterBase::ProcessInterfaceStatusChange(unsigned int ifIndex, unsigned int status) {
    DcProtoInterfaceBase* iface = GetInterface();
    if (iface == nullptr) {
        return;
    }
    iface->InterfaceStatusChange(ifIndex, status);
    for (auto& entry : m_config_lists) {
        for (DCLConfigList* list : entry.second->Lists()) {
            list->InterfaceStatusChange(ifIndex, status);
        }
    }
}

void DcRouterBase::ProcessIPAddressChange(unsigned int ifIndex, const Ip4Addr& addr) {
    DcProtoInterfaceBase* iface = GetInterface();
    if (iface != nullptr) {
        iface->AddressChange(ifIndex, addr);
    }
}

bool DcRouterBase::Reload(const OptionsNode& node, const string& source,
                          DclConfigObject::OptionType type) {
    return ReloadSection(node[m_name.c_str()], source, type);
}

bool DcRouterBase::ReloadSection(const OptionsNode& section, const string& source,
                                 DclConfigObject::OptionType type) {
    if (section.IsEmpty()) {
        DeleteOptions(source, type);
        return true;
    }
    if (m_proto == nullptr) {
        return true;
    }
    m_proto->ApplyOptions(section, source, type);
    DcProtoInterfaceBase* iface = GetInterface();
    if (iface == nullptr) {
        return true;
    }

    auto found = m_config_lists.find(source);
    if (iface->IsEnabled()) {
        DcConfigLists* bundle = found != m_config_lists.end() ? found->second : nullptr;
        if (bundle == nullptr) {
            bundle = CreateConfigLists(source, type);
            if (bundle == nullptr) {
                return true;
            }
            // A refused bundle is not kept; the next reload tries again.
            if (!CreateConfigList(*bundle)) {
                delete bundle;
                return true;
            }
            m_config_lists[source] = bundle;
        }
        for (DCLConfigList* list : bundle->Lists()) {
            list->Parse(section, source, type);
        }
    } else if (found != m_config_lists.end()) {
        DcConfigLists* bundle = found->second;
        bundle->DeleteOptions(source, type);
        delete bundle;
        m_config_lists.erase(found);
    }
    return true;
}

void DcRouterBase::DeleteOptions(const string& source, DclConfigObject::OptionType type) {
    if (m_proto != nullptr) {
        m_proto->DeleteOptions(source, type);
    }
    auto found = m_config_lists.find(source);
    if (found != m_config_lists.end()) {
        DcConfigLists* bundle = found->second;
        bundle->DeleteOptions(source, type);
        delete bundle;
        m_config_lists.erase(found);
    }
}

string DcRouterBase::FormatIpv4Addr(const void* addr) {
    char text[16];
    return string(Ip4AddrToStr(text, addr));
}

// The stack registers its sockets only after the application has given its
// socket registry; a missing registry makes these calls do nothing.
void DcRouterBase::SetSckDescriptor(int fd, int kind, int arg) {
    if (m_sck_interface != nullptr) {
        m_sck_interface->RegisterSocket(fd, kind, arg);
    }
}

void DcRouterBase::RemoveSckDescriptor(int fd, int arg) {
    if (m_sck_interface != nullptr) {
        m_sck_interface->UnregisterSocket(fd, arg);
    }
}

void DcRouterBase::ChangeWorkMask(int fd, int kind) {
    if (m_sck_interface != nullptr) {
        m_sck_interface->ChangeSocketMask(fd, kind);
    }
}

}  // namespace Zavrel
