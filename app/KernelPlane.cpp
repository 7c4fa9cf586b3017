#include "app/KernelPlane.h"

#include <json/json.h>

#include <cstdio>
#include <memory>
#include <utility>

#include "emulator/Emulator.h"
#include "emulator/KernelFib.h"
#include "platform/EventLoop.h"
#include "platform/Options.h"

namespace Zavrel {

namespace {

std::string Hex(uint32_t value) {
    char text[16];
    std::snprintf(text, sizeof(text), "0x%x", value);
    return text;
}

}  // namespace

KernelPlane::KernelPlane(CommandRunner run, Reporter report)
    : m_run(std::move(run)), m_report(std::move(report)), m_links(*this), m_retry(*this) {}

KernelPlane::~KernelPlane() {
    if (m_started) {
        EventLoop::Current().UnwatchFd(m_links.Fd());
        EventLoop::Current().UnwatchFd(m_fib->NotificationFd());
    }
}

bool KernelPlane::Start(std::string& error) {
    auto fib = std::make_unique<Emulator::KernelFib>([] { return EventLoop::Current().NowMs(); });
    if (!fib->Open(error) || !m_links.Open(error) || !m_rules.Open(error)) {
        return false;
    }
    m_fib = fib.get();
    Emulator::Instance().SetFibSink(std::move(fib));
    EventLoop& loop = EventLoop::Current();
    loop.WatchFd(m_links.Fd(), EventLoop::READABLE, [this](int, int) { Poll(); });
    loop.WatchFd(m_fib->NotificationFd(), EventLoop::READABLE, [this](int, int) { Poll(); });
    m_started = true;
    return true;
}

void KernelPlane::Poll() {
    m_links.OnReadable();
    m_fib->OnNotification();
    ArmRetry(m_fib->RetryDue());
}

void KernelPlane::Retry() {
    ArmRetry(m_fib->RetryDue());
}

void KernelPlane::ArmRetry(long delayMs) {
    if (delayMs < 0) {
        m_retry.Stop();
    } else {
        m_retry.Start(static_cast<unsigned int>(delayMs == 0 ? 1 : delayMs));
    }
}

bool KernelPlane::Attach(unsigned short vlan, const std::string& name, std::string& error) {
    if (!m_started) {
        error = "the kernel link is off (start with --kernel)";
        return false;
    }
    return m_rules.Add(name, vlan, error) && m_links.Attach(vlan, name, error);
}

bool KernelPlane::Detach(unsigned short vlan, const std::string& name, std::string& error) {
    if (!m_started) {
        error = "the kernel link is off (start with --kernel)";
        return false;
    }
    return m_links.Detach(vlan, name, error) && m_rules.Remove(name, vlan, error);
}

bool KernelPlane::LoadBindings(const std::string& path, std::string& error) {
    Options options;
    if (!options.LoadFromFile(path.c_str())) {
        error = options.Error().c_str();
        return false;
    }
    const Json::Value* root = options.Root().Value();
    const Json::Value& list = (*root)["attach"];
    if (!root->isObject() || !list.isArray()) {
        error = path + ": expected {\"attach\": [{\"vlan\": <vlan>, \"interface\": <name>}, ...]}";
        return false;
    }
    for (Json::ArrayIndex i = 0; i < list.size(); ++i) {
        const Json::Value& entry = list[i];
        const std::string where = path + ": attach[" + std::to_string(i) + "]: ";
        if (!entry.isObject() || !entry["vlan"].isUInt() || !entry["interface"].isString() ||
            entry["vlan"].asUInt() < 1 || entry["vlan"].asUInt() > 4094 ||
            entry["interface"].asString().empty()) {
            error = where + "needs \"vlan\" (1 to 4094) and \"interface\" (a name)";
            return false;
        }
        if (!Attach(static_cast<unsigned short>(entry["vlan"].asUInt()),
                    entry["interface"].asString(), error)) {
            error = where + error;
            return false;
        }
    }
    return true;
}

void KernelPlane::Settled() {
    if (!m_started) {
        return;
    }
    m_fib->ReleaseAdopted();
    m_rules.ReleaseAdopted();
}

void KernelPlane::Stop() {
    if (!m_started) {
        return;
    }
    std::string error;
    const auto bindings = m_links.Bindings();
    for (const auto& binding : bindings) {
        m_rules.Remove(binding.first, binding.second, error);
    }
    m_rules.ReleaseAdopted();
    m_fib->RemoveAll();
}

void KernelPlane::Run(const std::string& line) {
    std::string error;
    if (!m_run(line, error)) {
        m_report("kernel: " + line + ": " + error);
    }
}

void KernelPlane::LinkAdded(unsigned short vlan, const KernelLink& link) {
    Run("interface add " + std::to_string(vlan) + " " + std::to_string(link.ifIndex) + " " +
        link.name + " flags " + Hex(link.flags) + (link.up ? " up" : " down"));
}

void KernelPlane::LinkChanged(unsigned short vlan, const KernelLink& before,
                              const KernelLink& after) {
    if (before.flags != after.flags && before.up == after.up) {
        LinkAdded(vlan, after);
        return;
    }
    if (before.up != after.up) {
        Run(std::string("interface ") + (after.up ? "up " : "down ") + std::to_string(vlan) + " " +
            std::to_string(after.ifIndex) + " " + after.name);
    }
}

void KernelPlane::LinkGone(unsigned short vlan, const KernelLink& link) {
    Run("interface remove " + std::to_string(vlan) + " " + std::to_string(link.ifIndex) + " " +
        link.name);
}

void KernelPlane::AddressAdded(unsigned short vlan, const KernelAddress& address) {
    Run("address add " + std::to_string(vlan) + " " + std::to_string(address.ifIndex) + " " +
        address.address + "/" + std::to_string(address.prefixLength));
}

void KernelPlane::AddressRemoved(unsigned short vlan, const KernelAddress& address) {
    Run("address del " + std::to_string(vlan) + " " + std::to_string(address.ifIndex) + " " +
        address.address + "/" + std::to_string(address.prefixLength));
}

}  // namespace Zavrel
