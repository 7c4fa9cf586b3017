// Stack: the tables and the status as JSON values, member for member what
// the table dumps and the status text print (StackStatus.cpp).
#include <json/value.h>

#include "emulator/Stack.h"

namespace Zavrel::Emulator {

namespace {

// Counts and row values are unsigned long (32 bits on some targets) or
// uint64_t; JSON carries both as unsigned 64-bit numbers.
Json::Value Count(uint64_t value) {
    return Json::Value(static_cast<Json::UInt64>(value));
}

const char* AdminName(long adminStatus) {
    return adminStatus == 1 ? "up" : "down";
}

}  // namespace

Json::Value Stack::TablesJson() const {
    Json::Value tables(Json::objectValue);
    Json::Value instances(Json::arrayValue);
    Json::Value statics(Json::arrayValue);
    Json::Value redistribution(Json::arrayValue);
    Json::Value rib(Json::arrayValue);
    for (const auto& entry : m_instances) {
        const RtmInstance& instance = *entry.second;
        const amb_cipr_rtm_entity& settings = instance.Settings();
        Json::Value row(Json::objectValue);
        row["instance"] = Count(instance.Id());
        row["family"] = instance.Family() == IpAddress::IPV4 ? "IPv4" : "IPv6";
        row["state"] = RtmStateName(instance.State());
        row["deadTimer"] = Count(settings.dead_rpm_timer);
        row["distances"]["ospfInternal"] = Count(settings.ospf_int_distance);
        row["distances"]["ospfExternal"] = Count(settings.ospf_ext_distance);
        row["distances"]["rip"] = Count(settings.rip_distance);
        row["distances"]["ebgp"] = Count(settings.ebgp_distance);
        row["distances"]["ibgp"] = Count(settings.ibgp_distance);
        row["staticRoutes"] = Count(instance.StaticRoutes().size());
        row["redistributionRows"] = Count(instance.Redistributions().size());
        row["ribEntries"] = Count(instance.GetRib().Size());
        row["fibEntries"] = Count(instance.GetRib().FibCount());
        instances.append(row);
        for (const auto& route : instance.StaticRoutes()) {
            const StaticRoute& r = route.second;
            Json::Value item(Json::objectValue);
            item["instance"] = Count(entry.first);
            item["destination"] = r.destination.ToString();
            item["prefixLength"] = Count(r.prefixLength);
            item["nextHop"] = r.nextHop.ToString();
            item["ifIndex"] = Count(r.ifIndex);
            item["admin"] = AdminName(r.adminStatus);
            item["metric"] = Count(r.metric);
            statics.append(item);
        }
        for (const auto& redist : instance.Redistributions()) {
            const RedistributionRow& r = redist.second;
            Json::Value item(Json::objectValue);
            item["instance"] = Count(entry.first);
            item["source"] = Count(r.source);
            item["destination"] = Count(r.destination);
            item["admin"] = AdminName(r.adminStatus);
            redistribution.append(item);
        }
        for (const auto& route : instance.GetRib().Entries()) {
            const RibEntry& r = route.second;
            Json::Value item(Json::objectValue);
            item["fib"] = r.fib;
            item["instance"] = Count(entry.first);
            item["destination"] = r.destination.ToString();
            item["prefixLength"] = Count(r.prefixLength);
            item["nextHop"] = r.nextHop.ToString();
            item["ifIndex"] = Count(r.ifIndex);
            item["source"] = RouteSourceName(r.source);
            item["distance"] = Count(r.distance);
            item["metric"] = Count(r.metric);
            item["age"] = Count(AgeOf(r.sinceMs));
            item["unresolved"] = r.unresolved;
            if (r.fib) {
                const std::string forwarding = m_fib->Describe(FibKeyOf(entry.first, r));
                if (!forwarding.empty()) {
                    item["forwarding"] = forwarding;
                }
            }
            rib.append(item);
        }
    }
    Json::Value interfaces(Json::arrayValue);
    for (const auto& entry : m_interfaces.Interfaces()) {
        const InterfaceRow& r = entry.second;
        Json::Value item(Json::objectValue);
        item["instance"] = Count(r.instance);
        item["ifIndex"] = Count(r.ifIndex);
        item["name"] = r.name;
        item["oper"] = r.operStatus == 1 ? "up" : "down";
        item["mtu"] = Count(r.mtu);
        item["flags"] = Count(r.flags);
        item["extra"] = Count(r.extra);
        interfaces.append(item);
    }
    Json::Value addresses(Json::arrayValue);
    for (const auto& entry : m_interfaces.Addresses()) {
        const AddressRow& r = entry.second;
        Json::Value item(Json::objectValue);
        item["instance"] = Count(r.instance);
        item["ifIndex"] = Count(r.ifIndex);
        item["address"] = r.address.ToString();
        item["prefixLength"] = Count(r.prefixLength);
        addresses.append(item);
    }
    tables["rtmInstances"] = instances;
    tables["staticRoutes"] = statics;
    tables["redistribution"] = redistribution;
    tables["rib"] = rib;
    tables["interfaces"] = interfaces;
    tables["addresses"] = addresses;
    return tables;
}

Json::Value Stack::StatusJson() const {
    Json::Value status(Json::objectValue);
    status["started"] = m_started;
    if (!m_started) {
        return status;
    }
    status["state"] = m_frozen ? "frozen" : "running";
    Json::Value components(Json::arrayValue);
    for (const std::string& name : m_components) {
        components.append(name);
    }
    status["components"] = components;
    status["interfaceTables"] = m_monitor.IsI3Ready() ? "ready" : "starting";
    status["runs"] = Count(m_run);
    status["queuedRequests"] = Count(m_queue.size());
    status["walksInProgress"] = Count(m_walks.size());
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
    status["rtmInstances"]["count"] = Count(m_instances.size());
    status["rtmInstances"]["ready"] = Count(ready);
    status["staticRoutes"] = Count(statics);
    status["redistributionRows"] = Count(redist);
    status["ribEntries"] = Count(rib);
    status["fibEntries"] = Count(fib);
    status["interfaces"] = Count(m_interfaces.Interfaces().size());
    status["addresses"] = Count(m_interfaces.Addresses().size());
    Json::Value requests(Json::objectValue);
    for (size_t i = 0; i < REQUEST_KIND_COUNT; ++i) {
        requests[RequestKindName(static_cast<RequestKind>(i))] = Count(m_requests[i]);
    }
    status["requests"] = requests;
    Json::Value answers(Json::arrayValue);
    for (const auto& answer : Answers()) {
        Json::Value item(Json::objectValue);
        item["result"] = Count(answer.first);
        item["count"] = Count(answer.second);
        answers.append(item);
    }
    status["answers"] = answers;
    Json::Value breaches(Json::arrayValue);
    for (const std::string& breach : m_monitor.Texts()) {
        breaches.append(breach);
    }
    status["contractBreaches"] = breaches;
    status["faults"] = m_faults.ToJson();
    Json::Value channel(Json::objectValue);
    if (m_channelRegistered) {
        channel["state"] = "registered";
        channel["descriptor"] = m_channel.Fd();
        channel["mask"] = m_channelMask;
    } else {
        channel["state"] = m_channel.IsOpen() ? "not registered" : "closed";
    }
    status["managementChannel"] = channel;
    m_fib->StatusJson(status);
    return status;
}

}  // namespace Zavrel::Emulator
