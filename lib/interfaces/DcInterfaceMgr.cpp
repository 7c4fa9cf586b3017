#include "interfaces/DcInterfaceMgr.h"

#include <new>

#include "mib/IPv4AddressAction.h"
#include "mib/IPv6AddressAction.h"
#include "mib/InterfaceAction.h"
#include "mib/MibOid.h"
#include "mib/Serializer.h"
#include "platform/AllocationFaults.h"
#include "platform/Trace.h"
#include "routing/DcRouterMgr.h"
#include "rtm/DcRtmMgr.h"
#include "stackapi/SmsConstants.h"
#include "stackapi/stackapi.h"

namespace Zavrel {

namespace {

// The IPv6 interface row is never announced as unnumbered.
const unsigned int UNNUMBERED_FLAG = 0x20;

const unsigned int IP6_MAX_PREFIX = 128;

const char UNKNOWN_IF_NAME[] = "lo";

unsigned short StackInstance(unsigned short vlan, int family) {
    DcRtmMgr* rtm = DcRtmMgr::GetInstance();
    if (rtm == nullptr) {
        return vlan;
    }
    return static_cast<unsigned short>(rtm->GetDclProtocolInstanceIdFromVlan(vlan, family) &
                                       0xFFFFu);
}

// Hands an action to the router manager's serializer, which owns it from
// then on.
void Queue(unsigned long* oid, unsigned long length, MibAction* action) {
    DcRouterMgr* mgr = DcRouterMgr::GetInstance();
    if (mgr == nullptr) {
        delete action;
        return;
    }
    mgr->GetSerializer().Insert(MibOid(oid, length), action);
}

// Queues an address row request on the VLAN's stack instance of the family;
// nothing is queued when the action could not be made.
void QueueAddressRow(MibAction* action, unsigned short vlan, int family, unsigned int ifIndex,
                     const unsigned char* address, unsigned long addrType) {
    if (action == nullptr) {
        return;
    }
    unsigned long oid[SMS_MAX_OID_LEN];
    unsigned long length =
        sms_set_i3_ea_oid(oid, StackInstance(vlan, family), ifIndex, address, addrType);
    Queue(oid, length, action);
}

// The prefix of an address: the first min(length, 128) bits, the rest
// cleared.
Ip6Prefix MakePrefix(const Ip6Addr& address, unsigned int length) {
    if (length > IP6_MAX_PREFIX) {
        length = IP6_MAX_PREFIX;
    }
    Ip6Addr masked = address;
    unsigned int fullWords = length / 32;
    for (unsigned int word = 0; word < 4; ++word) {
        uint32_t mask = 0;
        if (word < fullWords) {
            mask = 0xFFFFFFFFu;
        } else if (word == fullWords) {
            mask = Ip6Prefix::MASK32[length % 32];
        }
        masked.SetWord(static_cast<int>(word), address.Word(static_cast<int>(word)) & mask);
    }
    return Ip6Prefix(masked, length);
}

}  // namespace

// ---- IpInterface

bool IpInterface::Key::NameCompare(const Key& a, const Key& b) {
    if (a.vlan != b.vlan) {
        return a.vlan < b.vlan;
    }
    return a.ifIndex < b.ifIndex;
}

size_t IpInterface::Ip6PrefixHash::operator()(const Ip6Prefix& prefix) const {
    return prefix.Address().Word(0);
}

IpInterface::IpInterface(unsigned short vlan, unsigned int ifIndex, const char* name, IntfType type,
                         unsigned int operStatus)
    : m_vlan(vlan), m_ifIndex(ifIndex), m_name(name), m_type(type), m_oper_status(operStatus) {}

void IpInterface::SetAddress(const Ip4Addr& address, const Ip4Addr& mask) {
    m_address = address;
    m_mask = mask;
}

// ---- DcInterfaceMgr

DcInterfaceMgr* DcInterfaceMgr::m_instance = nullptr;

DcInterfaceMgr* DcInterfaceMgr::GetInstance() {
    if (m_instance == nullptr) {
        // The constructor is private: the fault hook is asked here.
        m_instance = AllocationFaults::ShouldFail("DcInterfaceMgr") ? nullptr
                                                                    : new (std::nothrow)
                                                                          DcInterfaceMgr();
        if (m_instance == nullptr) {
            TRACE(0, "%s::%s: Error in allocating DcInterfaceMgr\n", "DcInterfaceMgr",
                  "GetInstance");
        }
    }
    return m_instance;
}

DcInterfaceMgr::DcInterfaceMgr()
    : m_default_interface(0), m_interfaces(&IpInterface::Key::NameCompare) {}

bool DcInterfaceMgr::DestroyInstance() {
    if (m_instance == nullptr) {
        return false;
    }
    delete m_instance;
    m_instance = nullptr;
    return true;
}

IpInterface* DcInterfaceMgr::Find(unsigned short vlan, unsigned int ifIndex) {
    InterfaceMap::iterator it = m_interfaces.find(IpInterface::Key{vlan, ifIndex});
    return it == m_interfaces.end() ? nullptr : &it->second;
}

const IpInterface* DcInterfaceMgr::FindInterface(unsigned short vlan, unsigned int ifIndex) const {
    InterfaceMap::const_iterator it = m_interfaces.find(IpInterface::Key{vlan, ifIndex});
    return it == m_interfaces.end() ? nullptr : &it->second;
}

void DcInterfaceMgr::SetInterfaceStatus(unsigned short vlan, unsigned int ifIndex, const char* name,
                                        unsigned int rowStatus, unsigned int operStatus,
                                        unsigned int reserved, unsigned int interfaceFlags,
                                        unsigned int interfaceExtra) {
    // The name is copied into the requests; a missing one goes as empty.
    if (name == nullptr) {
        name = "";
    }
    unsigned short ip4Instance = StackInstance(vlan, Sms::AFI_IPV4);
    unsigned short ip6Instance = StackInstance(vlan, Sms::AFI_IPV6);

    InterfaceAction* ip4Action = NewOrNull<InterfaceAction>(
        "InterfaceAction", static_cast<long>(rowStatus), operStatus, ip4Instance, ifIndex, name,
        reserved, static_cast<long>(interfaceFlags), interfaceExtra);
    InterfaceAction* ip6Action = NewOrNull<InterfaceAction>(
        "InterfaceAction", static_cast<long>(rowStatus), operStatus, ip6Instance, ifIndex, name,
        reserved, static_cast<long>(interfaceFlags & ~UNNUMBERED_FLAG), interfaceExtra);
    if (ip4Action == nullptr || ip6Action == nullptr) {
        TRACE(1, "Error in Allocating InterfaceAction\n");
        delete ip4Action;
        delete ip6Action;
        return;
    }

    unsigned long oid[SMS_MAX_OID_LEN];
    unsigned long length = sms_set_i3_ei_oid(oid, ip4Instance, ifIndex);
    Queue(oid, length, ip4Action);
    length = sms_set_i3_ei_oid(oid, ip6Instance, ifIndex);
    Queue(oid, length, ip6Action);
}

void DcInterfaceMgr::AddInterface(unsigned short vlan, unsigned int ifIndex, const char* name,
                                  IntfType type, unsigned int interfaceFlags,
                                  unsigned int interfaceExtra, unsigned int operStatus) {
    SetInterfaceStatus(vlan, ifIndex, name, Sms::ROW_CREATE_AND_GO, operStatus, 0, interfaceFlags,
                       interfaceExtra);
    if (name == nullptr) {
        name = "";
    }
    IpInterface* record = Find(vlan, ifIndex);
    if (record == nullptr) {
        // A new interface; its name now stands for this ifIndex, whatever
        // VLAN the name was used in before.
        std::pair<InterfaceMap::iterator, bool> inserted = m_interfaces.insert(std::make_pair(
            IpInterface::Key{vlan, ifIndex}, IpInterface(vlan, ifIndex, name, type, operStatus)));
        record = &inserted.first->second;
        m_names[string(name)] = ifIndex;
    }
    // A known interface keeps its name, type and addresses.
    record->SetOperStatus(operStatus);
}

void DcInterfaceMgr::RemoveInterface(unsigned short vlan, unsigned int ifIndex, const char* name) {
    SetInterfaceStatus(vlan, ifIndex, name, Sms::ROW_DESTROY, Sms::STATUS_DOWN, 0, 0, 0);
    InterfaceMap::iterator it = m_interfaces.find(IpInterface::Key{vlan, ifIndex});
    if (it == m_interfaces.end()) {
        return;
    }
    // The stored name goes from the name table even when it now stands for
    // an interface of another VLAN.
    m_names.erase(it->second.GetName());
    m_interfaces.erase(it);
}

void DcInterfaceMgr::SetInterfaceUp(unsigned short vlan, unsigned int ifIndex, const char* name) {
    // The row is re-sent with flags and extra 0, not those given at creation.
    SetInterfaceStatus(vlan, ifIndex, name, Sms::ROW_ACTIVE, Sms::STATUS_UP, 0, 0, 0);
    IpInterface* record = Find(vlan, ifIndex);
    if (record != nullptr) {
        record->SetOperStatus(Sms::STATUS_UP);
    }
}

void DcInterfaceMgr::SetInterfaceDown(unsigned short vlan, unsigned int ifIndex, const char* name) {
    SetInterfaceStatus(vlan, ifIndex, name, Sms::ROW_ACTIVE, Sms::STATUS_DOWN, 0, 0, 0);
    IpInterface* record = Find(vlan, ifIndex);
    if (record != nullptr) {
        record->SetOperStatus(Sms::STATUS_DOWN);
    }
}

void DcInterfaceMgr::UpdateIpAddress(unsigned short vlan, unsigned int ifIndex,
                                     const Ip4Addr& address, const Ip4Addr& mask,
                                     unsigned int rowStatus) {
    QueueAddressRow(NewOrNull<IPv4AddressAction>("IPv4AddressAction", static_cast<long>(rowStatus),
                                                 vlan, ifIndex, address, mask),
                    vlan, Sms::AFI_IPV4, ifIndex, address.Bytes(), Sms::ADDR_TYPE_IPV4);
}

void DcInterfaceMgr::AddIpAddress(unsigned short vlan, unsigned int ifIndex, const Ip4Addr& address,
                                  const Ip4Addr& mask) {
    UpdateIpAddress(vlan, ifIndex, address, mask, Sms::ROW_ACTIVE);
    IpInterface* record = Find(vlan, ifIndex);
    if (record != nullptr) {
        record->SetAddress(address, mask);
    }
}

void DcInterfaceMgr::DeleteIpAddress(unsigned short vlan, unsigned int ifIndex,
                                     const Ip4Addr& address, const Ip4Addr& mask) {
    UpdateIpAddress(vlan, ifIndex, address, mask, Sms::ROW_DESTROY);
    IpInterface* record = Find(vlan, ifIndex);
    if (record != nullptr) {
        // Cleared whether or not the address given was the recorded one.
        record->SetAddress(Ip4Addr(), Ip4Addr());
    }
}

void DcInterfaceMgr::ChangeIpAddress(unsigned short vlan, unsigned int ifIndex,
                                     const Ip4Addr& address, const Ip4Addr& mask) {
    IpInterface* record = Find(vlan, ifIndex);
    if (record == nullptr) {
        return;
    }
    const Ip4Addr oldAddress = record->GetAddress();
    const Ip4Addr oldMask = record->GetMask();
    const Ip4Addr newAddress = address;
    const Ip4Addr newMask = mask;
    UpdateIpAddress(vlan, ifIndex, oldAddress, oldMask, Sms::ROW_DESTROY);
    UpdateIpAddress(vlan, ifIndex, newAddress, newMask, Sms::ROW_ACTIVE);
    record->SetAddress(newAddress, newMask);
    DcRouterMgr* mgr = DcRouterMgr::GetInstance();
    if (mgr != nullptr) {
        mgr->ProcessIPAddressChange(vlan, ifIndex, newAddress);
    }
}

void DcInterfaceMgr::UpdateIpAddress(unsigned short vlan, unsigned int ifIndex,
                                     const Ip6Addr& address, unsigned int prefixLength,
                                     unsigned int rowStatus) {
    QueueAddressRow(NewOrNull<IPv6AddressAction>("IPv6AddressAction", static_cast<long>(rowStatus),
                                                 vlan, ifIndex, address, prefixLength),
                    vlan, Sms::AFI_IPV6, ifIndex, address.Bytes(), Sms::ADDR_TYPE_IPV6);
}

void DcInterfaceMgr::AddIpAddress(unsigned short vlan, unsigned int ifIndex, const Ip6Addr& address,
                                  unsigned int prefixLength) {
    UpdateIpAddress(vlan, ifIndex, address, prefixLength, Sms::ROW_ACTIVE);
    IpInterface* record = Find(vlan, ifIndex);
    if (record != nullptr) {
        record->AddIp6Prefix(MakePrefix(address, prefixLength));
    }
}

void DcInterfaceMgr::DeleteIpAddress(unsigned short vlan, unsigned int ifIndex,
                                     const Ip6Addr& address, unsigned int prefixLength) {
    UpdateIpAddress(vlan, ifIndex, address, prefixLength, Sms::ROW_DESTROY);
    IpInterface* record = Find(vlan, ifIndex);
    if (record != nullptr) {
        // The full address with length 128 is erased, not the prefix that
        // AddIpAddress stored: a shorter prefix stays in the set.
        record->RemoveIp6Prefix(Ip6Prefix(address, IP6_MAX_PREFIX));
    }
}

void DcInterfaceMgr::SetPrimaryInterface(unsigned short vlan, const char* name) {
    if (name == nullptr || name[0] == '\0') {
        return;
    }
    m_primary[vlan] = string(name);
}

const char* DcInterfaceMgr::GetPrimaryInterface(unsigned short vlan) const {
    std::map<unsigned short, string>::const_iterator it = m_primary.find(vlan);
    if (it == m_primary.end()) {
        return nullptr;
    }
    return it->second.c_str();
}

int DcInterfaceMgr::GetIfIndex(const char* name, unsigned int& ifIndex) {
    if (name == nullptr) {
        return 0;
    }
    std::map<string, unsigned int>::const_iterator it = m_names.find(string(name));
    if (it == m_names.end()) {
        return 0;
    }
    ifIndex = it->second;
    return 1;
}

int DcInterfaceMgr::GetIfIpAddr(unsigned short vlan, unsigned int ifIndex, Ip4Addr& address,
                                Ip4Addr& mask) {
    const IpInterface* record = Find(vlan, ifIndex);
    if (record == nullptr) {
        return 0;
    }
    address = record->GetAddress();
    mask = record->GetMask();
    return 1;
}

int DcInterfaceMgr::GetIfIpAddr(unsigned short vlan, const char* name, Ip4Addr& address) {
    unsigned int ifIndex = 0;
    if (!GetIfIndex(name, ifIndex)) {
        return 0;
    }
    // The name's ifIndex is looked up in the VLAN given.
    Ip4Addr mask;
    return GetIfIpAddr(vlan, ifIndex, address, mask);
}

const char* DcInterfaceMgr::GetIfName(unsigned short vlan, unsigned int ifIndex) {
    const IpInterface* record = Find(vlan, ifIndex);
    if (record == nullptr) {
        return UNKNOWN_IF_NAME;
    }
    return record->GetName().c_str();
}

DcInterfaceMgr::IntfType DcInterfaceMgr::GetIfType(const char* name) {
    if (name == nullptr || name[0] == '\0') {
        return INTF_TYPE_UNKNOWN;
    }
    unsigned int ifIndex = 0;
    if (!GetIfIndex(name, ifIndex)) {
        return INTF_TYPE_UNKNOWN;
    }
    // Types are looked up in VLAN 1 only.
    const IpInterface* record = Find(1, ifIndex);
    if (record == nullptr) {
        return INTF_TYPE_UNKNOWN;
    }
    return record->GetType();
}

}  // namespace Zavrel
