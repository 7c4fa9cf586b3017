// Stack: construction, start-up and the acceptance of requests.
#include "emulator/Stack.h"

#include <cstring>
#include <sstream>

#include "platform/EventLoop.h"
#include "platform/SocketCallback.h"

namespace Zavrel::Emulator {

const char* const Stack::KNOWN_COMPONENTS[] = {"ripv2",  "ripng", "bgp", "ospf",
                                               "ospfv3", "igmp",  "pim", nullptr};

namespace {

bool IsKnownComponent(const std::string& name) {
    for (const char* const* known = Stack::KNOWN_COMPONENTS; *known != nullptr; ++known) {
        if (name == *known) {
            return true;
        }
    }
    return false;
}

std::string RouteText(unsigned long instance, long family, const unsigned char* destination,
                      unsigned long prefixLength, const unsigned char* nextHop,
                      unsigned long ifIndex) {
    const int addressFamily = family == 1 ? IpAddress::IPV4 : IpAddress::IPV6;
    std::ostringstream text;
    text << "instance " << instance << " " << IpAddress(addressFamily, destination).ToString()
         << "/" << prefixLength << " via " << IpAddress(addressFamily, nextHop).ToString()
         << " ifIndex " << ifIndex;
    return text.str();
}

}  // namespace

Stack::Stack() = default;

Stack::~Stack() {
    if (m_channel.IsOpen()) {
        UnregisterSocketHandler(m_channel.Fd());
    }
}

void Stack::Reset() {
    if (m_channel.IsOpen()) {
        UnregisterSocketHandler(m_channel.Fd());
        m_channel.Close();
    }
    m_started = false;
    m_components.clear();
    m_inRun = false;
    m_run = 0;
    m_startRun = 0;
    m_i3ReadyAfterRuns = 2;
    m_walkRowsPerRun = 0;
    m_routeObserver = nullptr;
    m_frozen = false;
    m_sequence = 0;
    m_queue.clear();
    m_walks.clear();
    m_walkIds = 0;
    m_management.clear();
    m_instances.clear();
    m_interfaces.Clear();
    m_fib->Forget();
    m_faults.Clear();
    m_monitor.Clear();
    for (size_t i = 0; i < REQUEST_KIND_COUNT; ++i) {
        m_requests[i] = 0;
        m_answers[i].clear();
    }
    m_walkRows = 0;
    m_oidQueries = 0;
    m_channelReads = 0;
    m_channelRegistered = false;
    m_channelMask = 0;
    m_closeChannel = false;
    m_channelEnabled = true;
    m_ipsTracing = false;
    m_ipsFilters.clear();
    m_account.Enable(false);
    m_account.Clear();
}

void Stack::SetFibSink(std::unique_ptr<FibSink> sink) {
    m_fib = sink ? std::move(sink) : std::make_unique<MemoryFib>();
}

uint64_t Stack::NowMs() const {
    return EventLoop::Current().NowMs();
}

int Stack::Init(const char* components) {
    if (components == nullptr) {
        return 1;
    }
    std::istringstream words(components);
    std::vector<std::string> names;
    for (std::string name; words >> name;) {
        if (!IsKnownComponent(name)) {
            return 1;
        }
        names.push_back(name);
    }
    for (const std::string& name : names) {
        bool present = false;
        for (const std::string& started : m_components) {
            present = present || started == name;
        }
        if (!present) {
            m_components.push_back(name);
        }
    }
    if (!m_started) {
        m_started = true;
        m_startRun = m_run;
        if (m_channelEnabled && !m_channel.Open()) {
            ++nbb_os_failures;
        }
    }
    AskForRun();
    return 0;
}

void Stack::AskForRun() {
    if (m_frozen) {
        return;
    }
    if (CallLibrary([] { return cIsNBaseRescheduled(); }) == 0) {
        CallLibrary([] { cRescheduleNBase(); });
    }
}

void Stack::CheckRow(RequestKind kind, const Oid& oid, const std::string& row) {
    const std::string what = std::string(RequestKindName(kind)) + " " + row;
    if (!m_monitor.IsI3Ready()) {
        m_monitor.Report(BreachKind::RequestBeforeI3Ready, what);
    }
    if (!m_monitor.WasGiven(oid)) {
        m_monitor.Report(BreachKind::OidMismatch,
                         what + " (its OID " + OidCodec::ToString(oid) + " was never asked for)");
    }
    if (!m_monitor.RequestStarted(oid)) {
        m_monitor.Report(BreachKind::OverlappingRequest,
                         what + " while another request on the row is outstanding");
    }
}

void Stack::Accept(Work work) {
    ++m_requests[static_cast<size_t>(work.kind)];
    work.fault = m_faults.Decide(work.kind);
    // Row requests fail with the result; a walk is cut short with it as the
    // code of its last answer; nothing else fails.
    if (!IsRowKind(work.kind) && work.kind != RequestKind::Walk) {
        work.fault.fail = false;
    }
    const uint64_t due = m_run + work.fault.runs;
    m_queue.emplace(std::make_pair(due, m_sequence++), std::move(work));
    AskForRun();
}

unsigned long Stack::GiveOid(const Oid& value, unsigned long* oid) {
    ++m_oidQueries;
    m_monitor.OidGiven(value);
    return OidCodec::Write(value, oid);
}

unsigned long Stack::UpdateRoute(long rowStatus, long adminStatus, long family,
                                 const unsigned char* destination, unsigned long prefixLength,
                                 const unsigned char* nextHop, long pathType, unsigned long ifIndex,
                                 unsigned long instance, unsigned long metric) {
    Work work;
    work.kind = RequestKind::Route;
    work.rowStatus = rowStatus;
    work.adminStatus = adminStatus;
    work.family = family;
    const size_t size = family == 1 ? 4 : 16;
    if (destination != nullptr) {
        std::memcpy(work.destination, destination, size);
    }
    if (nextHop != nullptr) {
        std::memcpy(work.nextHop, nextHop, size);
    }
    work.nullAddress = destination == nullptr || nextHop == nullptr;
    work.prefixLength = prefixLength;
    work.pathType = pathType;
    work.ifIndex = ifIndex;
    work.instance = instance;
    work.metric = metric;
    work.oid =
        OidCodec::Route(instance, family, work.destination, prefixLength, work.nextHop, ifIndex);
    const std::string row =
        RouteText(instance, family, work.destination, prefixLength, work.nextHop, ifIndex);
    CheckRow(RequestKind::Route, work.oid, row);
    if (!m_monitor.WasStarted(instance)) {
        m_monitor.Report(BreachKind::UnknownInstance, "route " + row);
    }
    Accept(std::move(work));
    return 0;
}

unsigned long Stack::GetRouteOid(unsigned long* oid, unsigned long instance, long family,
                                 const unsigned char* destination, unsigned long prefixLength,
                                 const unsigned char* nextHop, unsigned long ifIndex) {
    const Oid value =
        OidCodec::Route(instance, family, destination, prefixLength, nextHop, ifIndex);
    return GiveOid(value, oid);
}

unsigned long Stack::UpdateInterface(long rowStatus, unsigned long operStatus,
                                     unsigned long instance, unsigned long ifIndex,
                                     const char* ifName, unsigned long reserved, long flags,
                                     unsigned long extra) {
    Work work;
    work.kind = RequestKind::Interface;
    work.rowStatus = rowStatus;
    work.operStatus = operStatus;
    work.instance = instance;
    work.ifIndex = ifIndex;
    work.name = ifName != nullptr ? ifName : "";
    work.reserved = reserved;
    work.flags = flags;
    work.extra = extra;
    work.oid = OidCodec::Ei(instance, ifIndex);
    CheckRow(RequestKind::Interface, work.oid,
             "instance " + std::to_string(instance) + " ifIndex " + std::to_string(ifIndex));
    Accept(std::move(work));
    return 0;
}

unsigned long Stack::UpdateAddress(long rowStatus, unsigned long instance, unsigned long addrType,
                                   unsigned long ifIndex, const unsigned char* address,
                                   unsigned long prefixLength) {
    Work work;
    work.kind = RequestKind::Address;
    work.rowStatus = rowStatus;
    work.instance = instance;
    work.addrType = addrType;
    work.ifIndex = ifIndex;
    if (address != nullptr) {
        std::memcpy(work.destination, address, addrType == SMS_ADDR_TYPE_IPV4 ? 4 : 16);
    }
    work.nullAddress = address == nullptr;
    work.prefixLength = prefixLength;
    work.oid = OidCodec::Ea(instance, ifIndex, work.destination, addrType);
    const IpAddress value(addrType == SMS_ADDR_TYPE_IPV4 ? IpAddress::IPV4 : IpAddress::IPV6,
                          work.destination);
    CheckRow(RequestKind::Address, work.oid,
             "instance " + std::to_string(instance) + " ifIndex " + std::to_string(ifIndex) + " " +
                 value.ToString());
    Accept(std::move(work));
    return 0;
}

unsigned long Stack::GetEiOid(unsigned long* oid, unsigned long instance, unsigned long ifIndex) {
    const Oid value = OidCodec::Ei(instance, ifIndex);
    return GiveOid(value, oid);
}

unsigned long Stack::GetEaOid(unsigned long* oid, unsigned long instance, unsigned long ifIndex,
                              const unsigned char* address, unsigned long addrType) {
    const Oid value = OidCodec::Ea(instance, ifIndex, address, addrType);
    return GiveOid(value, oid);
}

unsigned long Stack::UpdateRedistribution(long rowStatus, long adminStatus, long source,
                                          long destination, unsigned long instance,
                                          unsigned long reserved) {
    Work work;
    work.kind = RequestKind::Redistribution;
    work.rowStatus = rowStatus;
    work.adminStatus = adminStatus;
    work.source = source;
    work.redistDestination = destination;
    work.instance = instance;
    work.reserved = reserved;
    work.oid = OidCodec::Redist(instance, source, destination);
    std::ostringstream row;
    row << "instance " << instance << " source 0x" << std::hex << source << " destination 0x"
        << destination;
    CheckRow(RequestKind::Redistribution, work.oid, row.str());
    Accept(std::move(work));
    return 0;
}

unsigned long Stack::GetRedistOid(unsigned long* oid, unsigned long instance, long source,
                                  long destination) {
    const Oid value = OidCodec::Redist(instance, source, destination);
    return GiveOid(value, oid);
}

unsigned long Stack::StartInstance(unsigned long instance, const amb_cipr_rtm_entity* entity) {
    Work work;
    work.kind = RequestKind::Instance;
    work.instance = instance;
    if (entity != nullptr) {
        work.entity = *entity;
    }
    work.entity.instance_index = instance;
    m_monitor.InstanceStarted(instance);
    Accept(std::move(work));
    return 0;
}

unsigned long Stack::InstanceAction(unsigned long instance, unsigned long action) {
    if (action != SMS_CIPR_ACTION_DELETE) {
        ++m_requests[static_cast<size_t>(RequestKind::Instance)];
        return 1;
    }
    Work work;
    work.kind = RequestKind::Instance;
    work.instance = instance;
    work.action = action;
    Accept(std::move(work));
    return 0;
}

unsigned long Stack::StartWalk(WalkTable table, unsigned long instance, sms_walk_callback callback,
                               void* context) {
    if (callback == nullptr) {
        ++m_requests[static_cast<size_t>(RequestKind::Walk)];
        return 1;
    }
    Work work;
    work.kind = RequestKind::Walk;
    work.table = table;
    work.instance = instance;
    work.callback = callback;
    work.context = context;
    Accept(std::move(work));
    return 0;
}

void Stack::SetIpsFilter(const char* filter, unsigned short filterType) {
    if (filter == nullptr) {
        m_ipsFilters.erase(filterType);
    } else {
        m_ipsFilters[filterType] = filter;
    }
}

std::string Stack::IpsFilter(unsigned short filterType) const {
    auto found = m_ipsFilters.find(filterType);
    return found == m_ipsFilters.end() ? std::string() : found->second;
}

void Stack::Freeze(bool frozen) {
    if (m_frozen == frozen) {
        return;
    }
    m_frozen = frozen;
    if (!frozen) {
        // The next run restores the channel's mask and does the queued work.
        AskForRun();
    }
}

void Stack::PostProtocolRoute(unsigned long instance, const ProtocolRoute& route, bool add) {
    ManagementWork work;
    work.instance = instance;
    work.route = route;
    work.add = add;
    m_management.push_back(work);
    if (m_channelRegistered && m_channel.Signal()) {
        return;
    }
    AskForRun();
}

void Stack::CloseManagementChannel() {
    m_closeChannel = true;
    AskForRun();
}

const RtmInstance* Stack::FindInstance(unsigned long id) const {
    auto found = m_instances.find(id);
    return found == m_instances.end() ? nullptr : found->second.get();
}

RtmInstance* Stack::Instance(unsigned long id) {
    auto found = m_instances.find(id);
    return found == m_instances.end() ? nullptr : found->second.get();
}

uint64_t Stack::AnswerCount(unsigned long result) const {
    uint64_t count = 0;
    for (size_t i = 0; i < REQUEST_KIND_COUNT; ++i) {
        auto found = m_answers[i].find(result);
        count += found == m_answers[i].end() ? 0 : found->second;
    }
    return count;
}

uint64_t Stack::AnswerCount(RequestKind kind, unsigned long result) const {
    const auto& answers = m_answers[static_cast<size_t>(kind)];
    auto found = answers.find(result);
    return found == answers.end() ? 0 : found->second;
}

std::map<unsigned long, uint64_t> Stack::Answers() const {
    std::map<unsigned long, uint64_t> all;
    for (size_t i = 0; i < REQUEST_KIND_COUNT; ++i) {
        for (const auto& answer : m_answers[i]) {
            all[answer.first] += answer.second;
        }
    }
    return all;
}

}  // namespace Zavrel::Emulator
