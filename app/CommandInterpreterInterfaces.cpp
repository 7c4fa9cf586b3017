// Interfaces, addresses and network membership.
#include "app/CommandInterpreter.h"
#include "app/KernelPlane.h"
#include "interfaces/DcInterfaceMgr.h"
#include "routing/DcRouterMgr.h"

namespace Zavrel {

namespace {

// Oper status values of interface rows.
constexpr unsigned int OPER_UP = 1;
constexpr unsigned int OPER_DOWN = 2;
// Interface states the routers follow: forgotten, down, up.
constexpr unsigned short ROUTER_IF_REMOVED = 0;
constexpr unsigned short ROUTER_IF_DOWN = 1;
constexpr unsigned short ROUTER_IF_UP = 2;

// Router status changes go only to VLANs the router manager has created: a
// change for any other VLAN would leave an empty record behind in it.
bool VlanExists(DcRouterMgr* manager, unsigned short vlan) {
    return manager != nullptr && manager->GetDcRouterByVID(vlan, DcRouterMgr::BGP) != nullptr;
}

}  // namespace

CommandInterpreter::Result CommandInterpreter::Interface(const Args& args) {
    if (args.Count() < 2) {
        return Result::Fail("interface: missing sub-command " + SubCommandsOf("interface"));
    }
    const std::string& verb = args[1];
    if (Words::Is(verb, "add")) {
        return InterfaceAdd(args);
    }
    if (Words::Is(verb, "attach") || Words::Is(verb, "detach")) {
        return InterfaceAttach(args);
    }
    DcInterfaceMgr* interfaces = DcInterfaceMgr::GetInstance();
    if (interfaces == nullptr) {
        return Result::Fail("interface: no interface manager");
    }
    std::string error;
    unsigned short vlan = 0;
    if (Words::Is(verb, "primary")) {
        if (!ReadVlan(args, 2, vlan, error)) {
            return Result::Fail("interface primary: " + error);
        }
        if (args.Count() < 4) {
            return Result::Fail("interface primary: missing <name>");
        }
        if (args.Count() > 4) {
            return Result::Fail("interface primary: unexpected '" + args[4] + "'");
        }
        interfaces->SetPrimaryInterface(vlan, args[3].c_str());
        return Result::Ok();
    }
    const bool up = Words::Is(verb, "up");
    const bool down = Words::Is(verb, "down");
    const bool remove = Words::Is(verb, "remove");
    if (!up && !down && !remove) {
        return Result::Fail("interface: unknown sub-command '" + verb + "' " +
                            SubCommandsOf("interface"));
    }
    const std::string prefix = "interface " + verb + ": ";
    unsigned int ifIndex = 0;
    if (!ReadVlan(args, 2, vlan, error) || !ReadUnsigned(args, 3, "ifindex", ifIndex, error)) {
        return Result::Fail(prefix + error);
    }
    if (args.Count() < 5) {
        return Result::Fail(prefix + "missing <name>");
    }
    if (args.Count() > 5) {
        return Result::Fail(prefix + "unexpected '" + args[5] + "'");
    }
    const char* name = args[4].c_str();
    DcRouterMgr* manager = DcRouterMgr::GetInstance();
    unsigned short routerStatus;
    if (remove) {
        interfaces->RemoveInterface(vlan, ifIndex, name);
        m_interfaceNames.erase(std::make_pair(vlan, ifIndex));
        routerStatus = ROUTER_IF_REMOVED;
    } else if (up) {
        interfaces->SetInterfaceUp(vlan, ifIndex, name);
        routerStatus = ROUTER_IF_UP;
    } else {
        interfaces->SetInterfaceDown(vlan, ifIndex, name);
        routerStatus = ROUTER_IF_DOWN;
    }
    if (VlanExists(manager, vlan)) {
        manager->ProcessInterfaceStatusChange(vlan, ifIndex, routerStatus);
    }
    return Result::Ok();
}

CommandInterpreter::Result CommandInterpreter::InterfaceAttach(const Args& args) {
    const bool attach = Words::Is(args[1], "attach");
    const std::string prefix = "interface " + args[1] + ": ";
    std::string error;
    unsigned short vlan = 0;
    if (!ReadVlan(args, 2, vlan, error)) {
        return Result::Fail(prefix + error);
    }
    if (args.Count() < 4) {
        return Result::Fail(prefix + "missing <ifname>");
    }
    if (args.Count() > 4) {
        return Result::Fail(prefix + "unexpected '" + args[4] + "'");
    }
    if (m_kernel == nullptr) {
        return Result::Fail(prefix + "the kernel link is off (start with --kernel)");
    }
    const bool done =
        attach ? m_kernel->Attach(vlan, args[3], error) : m_kernel->Detach(vlan, args[3], error);
    if (!done) {
        return Result::Fail(prefix + error);
    }
    return Result::Ok();
}

CommandInterpreter::Result CommandInterpreter::InterfaceAdd(const Args& args) {
    std::string error;
    unsigned short vlan = 0;
    unsigned int ifIndex = 0;
    if (!ReadVlan(args, 2, vlan, error) || !ReadUnsigned(args, 3, "ifindex", ifIndex, error)) {
        return Result::Fail("interface add: " + error);
    }
    if (args.Count() < 5) {
        return Result::Fail("interface add: missing <name>");
    }
    unsigned int type = 0;
    unsigned int flags = 0;
    unsigned int extra = 0;
    unsigned int oper = OPER_UP;
    bool seenType = false, seenFlags = false, seenExtra = false, seenState = false;
    for (size_t i = 5; i < args.Count(); ++i) {
        const std::string& word = args[i];
        if (Words::Is(word, "up") || Words::Is(word, "down")) {
            if (seenState) {
                return Result::Fail("interface add: up/down given twice");
            }
            seenState = true;
            oper = Words::Is(word, "up") ? OPER_UP : OPER_DOWN;
            continue;
        }
        unsigned int* target = nullptr;
        bool* seen = nullptr;
        if (Words::Is(word, "type")) {
            target = &type;
            seen = &seenType;
        } else if (Words::Is(word, "flags")) {
            target = &flags;
            seen = &seenFlags;
        } else if (Words::Is(word, "extra")) {
            target = &extra;
            seen = &seenExtra;
        } else {
            return Result::Fail("interface add: unexpected '" + word + "'; " +
                                UsageOf("interface", "add"));
        }
        if (*seen) {
            return Result::Fail("interface add: '" + word + "' given twice");
        }
        *seen = true;
        if (!ReadUnsigned(args, i + 1, word.c_str(), *target, error)) {
            return Result::Fail("interface add: " + error);
        }
        ++i;
    }
    DcInterfaceMgr* interfaces = DcInterfaceMgr::GetInstance();
    if (interfaces == nullptr) {
        return Result::Fail("interface add: no interface manager");
    }
    interfaces->AddInterface(vlan, ifIndex, args[4].c_str(),
                             static_cast<DcInterfaceMgr::IntfType>(type), flags, extra, oper);
    m_interfaceNames[std::make_pair(vlan, ifIndex)] = args[4];
    DcRouterMgr* manager = DcRouterMgr::GetInstance();
    if (VlanExists(manager, vlan)) {
        manager->ProcessInterfaceStatusChange(vlan, ifIndex,
                                              oper == OPER_UP ? ROUTER_IF_UP : ROUTER_IF_DOWN);
    }
    return Result::Ok();
}

CommandInterpreter::Result CommandInterpreter::Address(const Args& args) {
    if (args.Count() < 2) {
        return Result::Fail("address: missing sub-command " + SubCommandsOf("address"));
    }
    const std::string& verb = args[1];
    const bool add = Words::Is(verb, "add");
    const bool del = Words::Is(verb, "del") || Words::Is(verb, "delete");
    const bool change = Words::Is(verb, "change");
    if (!add && !del && !change) {
        return Result::Fail("address: unknown sub-command '" + verb + "' " +
                            SubCommandsOf("address"));
    }
    const std::string prefix = "address " + verb + ": ";
    std::string error;
    unsigned short vlan = 0;
    unsigned int ifIndex = 0;
    if (!ReadVlan(args, 2, vlan, error) || !ReadUnsigned(args, 3, "ifindex", ifIndex, error)) {
        return Result::Fail(prefix + error);
    }
    if (args.Count() < 5) {
        return Result::Fail(prefix + "missing <address>/<length>");
    }
    if (args.Count() > 5) {
        return Result::Fail(prefix + "unexpected '" + args[5] + "'");
    }
    AppPrefix address;
    if (!Words::ParsePrefix(args[4], address)) {
        return Result::Fail(prefix + "bad address '" + args[4] + "' (<address>/<length>)");
    }
    if (address.ipv6 && change) {
        return Result::Fail(prefix + "only IPv4 addresses can be changed; use del and add");
    }
    DcInterfaceMgr* interfaces = DcInterfaceMgr::GetInstance();
    if (interfaces == nullptr) {
        return Result::Fail(prefix + "no interface manager");
    }
    if (address.ipv6) {
        if (add) {
            interfaces->AddIpAddress(vlan, ifIndex, address.ip6, address.length);
        } else {
            interfaces->DeleteIpAddress(vlan, ifIndex, address.ip6, address.length);
        }
        return Result::Ok();
    }
    const Ip4Addr mask = Words::Netmask(address.length);
    DcRouterMgr* manager = DcRouterMgr::GetInstance();
    if (add) {
        interfaces->AddIpAddress(vlan, ifIndex, address.ip4, mask);
    } else if (del) {
        interfaces->DeleteIpAddress(vlan, ifIndex, address.ip4, mask);
    } else {
        // The interface manager tells the routers itself.
        interfaces->ChangeIpAddress(vlan, ifIndex, address.ip4, mask);
        return Result::Ok();
    }
    if (VlanExists(manager, vlan)) {
        manager->ProcessIPAddressChange(vlan, ifIndex, add ? address.ip4 : Ip4Addr());
    }
    return Result::Ok();
}

CommandInterpreter::Result CommandInterpreter::Join(const Args& args) {
    std::string error;
    unsigned short vlan = 0;
    unsigned int ifIndex = 0;
    if (!ReadVlan(args, 1, vlan, error) || !ReadUnsigned(args, 2, "ifindex", ifIndex, error)) {
        return Result::Fail("join: " + error + "; " + UsageOf("join"));
    }
    bool flag = false;
    if (args.Count() > 3) {
        const std::string& word = args[3];
        unsigned int number = 0;
        if (Words::Is(word, "true") || Words::Is(word, "on") || Words::Is(word, "yes")) {
            flag = true;
        } else if (Words::Is(word, "false") || Words::Is(word, "off") || Words::Is(word, "no")) {
            flag = false;
        } else if (Words::ParseUnsigned(word, number) && number <= 1) {
            flag = number == 1;
        } else {
            return Result::Fail("join: bad flag '" + word + "' (0, 1, true or false)");
        }
    }
    if (args.Count() > 4) {
        return Result::Fail("join: unexpected '" + args[4] + "'");
    }
    DcRouterMgr* manager = DcRouterMgr::GetInstance();
    if (manager == nullptr) {
        return Result::Fail("join: no router manager");
    }
    manager->JoinNetwork(vlan, ifIndex, flag);
    return Result::Ok();
}

CommandInterpreter::Result CommandInterpreter::Leave(const Args& args) {
    std::string error;
    unsigned short vlan = 0;
    unsigned int ifIndex = 0;
    if (!ReadVlan(args, 1, vlan, error) || !ReadUnsigned(args, 2, "ifindex", ifIndex, error)) {
        return Result::Fail("leave: " + error + "; " + UsageOf("leave"));
    }
    if (args.Count() > 3) {
        return Result::Fail("leave: unexpected '" + args[3] + "'");
    }
    DcRouterMgr* manager = DcRouterMgr::GetInstance();
    if (manager == nullptr) {
        return Result::Fail("leave: no router manager");
    }
    manager->LeaveNetwork(vlan, ifIndex);
    return Result::Ok();
}

}  // namespace Zavrel
