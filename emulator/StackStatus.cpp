// Stack: table dumps and the status text, for tests and for the
// application's "stack status" command.
#include <cstdarg>
#include <cstdio>
#include <string>

#include "emulator/Stack.h"
#include "platform/EventLoop.h"

namespace Zavrel::Emulator {

namespace {

std::string Line(const char* format, ...) __attribute__((format(printf, 1, 2)));

std::string Line(const char* format, ...) {
    char buffer[512];
    va_list args;
    va_start(args, format);
    std::vsnprintf(buffer, sizeof(buffer), format, args);
    va_end(args);
    return buffer;
}

const char* AdminText(long adminStatus) {
    return adminStatus == 1 ? "up" : "down";
}

}  // namespace

std::string Stack::DumpInstances() const {
    std::string text;
    for (const auto& entry : m_instances) {
        const RtmInstance& instance = *entry.second;
        const amb_cipr_rtm_entity& settings = instance.Settings();
        text += Line(
            "instance %lu %s %s dead %lu ospf-int %lu ospf-ext %lu rip %lu ebgp %lu "
            "ibgp %lu static %zu redistribution %zu rib %zu fib %zu\n",
            instance.Id(), instance.Family() == IpAddress::IPV4 ? "IPv4" : "IPv6",
            RtmStateName(instance.State()), settings.dead_rpm_timer, settings.ospf_int_distance,
            settings.ospf_ext_distance, settings.rip_distance, settings.ebgp_distance,
            settings.ibgp_distance, instance.StaticRoutes().size(),
            instance.Redistributions().size(), instance.GetRib().Size(),
            instance.GetRib().FibCount());
    }
    return text;
}

std::string Stack::DumpStaticRoutes() const {
    std::string text;
    for (const auto& entry : m_instances) {
        for (const auto& route : entry.second->StaticRoutes()) {
            const StaticRoute& row = route.second;
            text += Line("%lu %s/%lu via %s ifIndex %lu admin %s metric %lu\n", entry.first,
                         row.destination.ToString().c_str(), row.prefixLength,
                         row.nextHop.ToString().c_str(), row.ifIndex, AdminText(row.adminStatus),
                         row.metric);
        }
    }
    return text;
}

std::string Stack::DumpRedistribution() const {
    std::string text;
    for (const auto& entry : m_instances) {
        for (const auto& redist : entry.second->Redistributions()) {
            const RedistributionRow& row = redist.second;
            text += Line("%lu source 0x%lx destination 0x%lx admin %s\n", entry.first,
                         static_cast<unsigned long>(row.source),
                         static_cast<unsigned long>(row.destination), AdminText(row.adminStatus));
        }
    }
    return text;
}

std::string Stack::DumpRib() const {
    std::string text;
    for (const auto& entry : m_instances) {
        for (const auto& rib : entry.second->GetRib().Entries()) {
            const RibEntry& row = rib.second;
            const std::string forwarding =
                row.fib ? m_fib->Describe(FibKeyOf(entry.first, row)) : std::string();
            text +=
                Line("%c %lu %s/%lu via %s ifIndex %lu %s distance %lu metric %lu age %lu%s%s%s\n",
                     row.fib ? '>' : ' ', entry.first, row.destination.ToString().c_str(),
                     row.prefixLength, row.nextHop.ToString().c_str(), row.ifIndex,
                     RouteSourceName(row.source), row.distance, row.metric, AgeOf(row.sinceMs),
                     row.unresolved ? " unresolved" : "", forwarding.empty() ? "" : " ",
                     forwarding.c_str());
        }
    }
    return text;
}

std::string Stack::DumpInterfaces() const {
    std::string text;
    for (const auto& entry : m_interfaces.Interfaces()) {
        const InterfaceRow& row = entry.second;
        text += Line("%lu %lu %s %s mtu %lu flags 0x%lx extra %lu\n", row.instance, row.ifIndex,
                     row.name.c_str(), row.operStatus == 1 ? "up" : "down", row.mtu, row.flags,
                     row.extra);
    }
    return text;
}

std::string Stack::DumpAddresses() const {
    std::string text;
    for (const auto& entry : m_interfaces.Addresses()) {
        const AddressRow& row = entry.second;
        text += Line("%lu %lu %s/%lu\n", row.instance, row.ifIndex, row.address.ToString().c_str(),
                     row.prefixLength);
    }
    return text;
}

std::string Stack::StatusText() const {
    std::string text;
    if (!m_started) {
        return "Stack emulator: not started\n";
    }
    std::string components;
    for (const std::string& name : m_components) {
        components += components.empty() ? name : " " + name;
    }
    text += Line("Stack emulator: %s (components: %s)\n", m_frozen ? "frozen" : "running",
                 components.c_str());
    text += Line("Interface tables: %s\n", m_monitor.IsI3Ready() ? "ready" : "starting");
    text += Line("Runs: %llu, queued requests: %zu, walks in progress: %zu\n",
                 static_cast<unsigned long long>(m_run), m_queue.size(), m_walks.size());
    size_t ready = 0;
    size_t statics = 0;
    size_t redist = 0;
    size_t rib = 0;
    size_t fib = 0;
    for (const auto& entry : m_instances) {
        ready += entry.second->IsReady() ? 1 : 0;
        statics += entry.second->StaticRoutes().size();
        redist += entry.second->Redistributions().size();
        rib += entry.second->GetRib().Size();
        fib += entry.second->GetRib().FibCount();
    }
    text += Line("RTM instances: %zu (%zu ready)\n", m_instances.size(), ready);
    text +=
        Line("Static routes: %zu, redistribution rows: %zu, RIB entries: %zu, FIB entries: %zu\n",
             statics, redist, rib, fib);
    text += Line("Interfaces: %zu, addresses: %zu\n", m_interfaces.Interfaces().size(),
                 m_interfaces.Addresses().size());
    std::string requests;
    for (size_t i = 0; i < REQUEST_KIND_COUNT; ++i) {
        requests +=
            Line("%s%s %llu", i == 0 ? "" : ", ", RequestKindName(static_cast<RequestKind>(i)),
                 static_cast<unsigned long long>(m_requests[i]));
    }
    text += "Requests: " + requests + "\n";
    std::string answers;
    for (const auto& answer : Answers()) {
        answers += Line("%sresult %lu: %llu", answers.empty() ? "" : ", ", answer.first,
                        static_cast<unsigned long long>(answer.second));
    }
    text += "Answers: " + (answers.empty() ? std::string("none") : answers) + "\n";
    text += Line("Contract breaches: %zu\n", m_monitor.Count());
    for (const std::string& breach : m_monitor.Texts()) {
        text += "  " + breach + "\n";
    }
    const std::string faults = m_faults.Describe();
    text += "Faults: " + (faults == "none" ? faults + "\n" : "\n" + faults);
    if (m_channelRegistered) {
        text += Line("Management channel: descriptor %d, mask %u\n", m_channel.Fd(), m_channelMask);
    } else {
        text += Line("Management channel: %s\n", m_channel.IsOpen() ? "not registered" : "closed");
    }
    text += m_fib->StatusText();
    return text;
}

}  // namespace Zavrel::Emulator
