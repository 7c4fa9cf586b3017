// Stack: the scheduler run, where queued requests are carried out and
// answered through the library's c* entry points.
#include "emulator/Stack.h"

#include "platform/EventLoop.h"
#include "platform/SocketCallback.h"

namespace Zavrel::Emulator {

namespace {

// Clears the in-run flag however the run ends.
class RunGuard {
public:
    explicit RunGuard(bool& flag) : m_flag(flag) { m_flag = true; }
    ~RunGuard() { m_flag = false; }
    RunGuard(const RunGuard&) = delete;
    RunGuard& operator=(const RunGuard&) = delete;

private:
    bool& m_flag;
};

// A route or redistribution row request names a row status the stack knows,
// and an admin status it knows unless the row is being destroyed.
bool KnownStatuses(long rowStatus, long adminStatus) {
    const bool knownRowStatus =
        rowStatus == ROW_ACTIVE || rowStatus == ROW_CREATE_AND_GO || rowStatus == ROW_DESTROY;
    const bool knownAdmin = rowStatus == ROW_DESTROY || adminStatus == 1 || adminStatus == 2;
    return knownRowStatus && knownAdmin;
}

}  // namespace

int Stack::Run() {
    if (m_inRun) {
        return 0;
    }
    RunGuard guard(m_inRun);
    ++m_run;
    if (!m_started) {
        return -1;
    }
    // Work posted on the channel is accepted by the run in any case, so the
    // descriptor is read empty here too.
    m_channel.Drain();
    UpdateChannel();
    if (m_frozen) {
        return -1;
    }
    StartupStep();
    ApplyManagementWork();
    ProcessDue();
    RefreshRibs();
    ProcessWalks();
    return HasPendingWork() ? 0 : -1;
}

void Stack::StartupStep() {
    if (m_run - m_startRun == 1 && m_channel.IsOpen() && !m_channelRegistered) {
        RegisterSocketHandler(m_channel.Fd(), &Stack::OnChannelEvent, this);
        m_channelRegistered = true;
        m_channelMask = SMS_SOCK_READ;
        CallLibrary(
            [this] { cRegisterWorkWithEventloop(m_channel.Fd(), CHANNEL_ARG, SMS_SOCK_READ); });
    }
    if (!m_monitor.IsI3Ready() && m_run - m_startRun >= m_i3ReadyAfterRuns) {
        m_monitor.SetI3Ready();
        CallLibrary([] { return cI3Ready(); });
    }
}

void Stack::UpdateChannel() {
    if (m_closeChannel) {
        m_closeChannel = false;
        if (m_channelRegistered) {
            const int fd = m_channel.Fd();
            m_channelRegistered = false;
            m_channelMask = 0;
            UnregisterSocketHandler(fd);
            CallLibrary([fd] { cUnregisterWorkWithEventloop(fd, CHANNEL_ARG); });
        }
        m_channel.Close();
        return;
    }
    if (!m_channelRegistered) {
        return;
    }
    const unsigned int wanted = m_frozen ? 0u : static_cast<unsigned int>(SMS_SOCK_READ);
    if (wanted != m_channelMask) {
        m_channelMask = wanted;
        CallLibrary([this, wanted] { cChangeMask(m_channel.Fd(), wanted); });
    }
}

void Stack::OnChannelEvent(int, int, void* context) {
    if (context != nullptr) {
        Stack* stack = static_cast<Stack*>(context);
        TimeAccount::Scope scope(stack->m_account, true);
        stack->OnChannelReadable();
    }
}

void Stack::OnChannelReadable() {
    ++m_channelReads;
    const uint64_t signals = m_channel.Drain();
    if (signals > 0 || !m_management.empty()) {
        AskForRun();
    }
}

void Stack::ApplyManagementWork() {
    std::vector<ManagementWork> work;
    work.swap(m_management);
    for (ManagementWork& item : work) {
        RtmInstance* instance = Instance(item.instance);
        if (instance == nullptr) {
            continue;
        }
        item.route.sinceMs = NowMs();
        if (item.add) {
            instance->AddProtocolRoute(item.route);
        } else {
            instance->RemoveProtocolRoute(item.route);
        }
    }
}

void Stack::ProcessDue() {
    while (!m_queue.empty() && m_queue.begin()->first.first <= m_run) {
        Work work = std::move(m_queue.begin()->second);
        m_queue.erase(m_queue.begin());
        Process(work);
    }
}

void Stack::Process(Work& work) {
    switch (work.kind) {
        case RequestKind::Route:
            ProcessRoute(work);
            break;
        case RequestKind::Redistribution:
            ProcessRedistribution(work);
            break;
        case RequestKind::Interface:
            ProcessInterface(work);
            break;
        case RequestKind::Address:
            ProcessAddress(work);
            break;
        case RequestKind::Instance:
            ProcessInstance(work);
            break;
        case RequestKind::Walk: {
            Walk walk;
            walk.id = ++m_walkIds;
            walk.table = work.table;
            walk.callback = work.callback;
            walk.context = work.context;
            walk.instance = work.instance;
            walk.cutCode = work.fault.fail ? work.fault.result : 0;
            m_walks.push_back(walk);
            break;
        }
    }
}

void Stack::FinishRow(const Work& work, unsigned long result) {
    ++m_answers[static_cast<size_t>(work.kind)][result];
    // The row is free before the library hears of it: it may issue the next
    // request on the row from inside cRunPendingAction.
    m_monitor.RequestFinished(work.oid);
    unsigned long oid[SMS_MAX_OID_LEN];
    const unsigned long length = OidCodec::Write(work.oid, oid);
    CallLibrary([&] { cRunPendingAction(oid, length); });
}

void Stack::ProcessRoute(Work& work) {
    unsigned long result = work.fault.result;
    if (!work.fault.fail) {
        const bool ipv4 = work.family == 1;
        const bool ipv6Instance = (work.instance & IP6_INSTANCE_BIT) != 0;
        RtmInstance* instance = Instance(work.instance);
        if (work.nullAddress || work.prefixLength > (ipv4 ? 32u : 128u) ||
            !KnownStatuses(work.rowStatus, work.adminStatus) || ipv4 == ipv6Instance) {
            result = RESULT_WRONG_VALUE;
        } else if (instance == nullptr || !instance->IsReady()) {
            result = RESULT_TEMPORARY;
        } else {
            const int family = ipv4 ? IpAddress::IPV4 : IpAddress::IPV6;
            result = instance->ApplyStaticRoute(work.rowStatus, work.adminStatus,
                                                IpAddress(family, work.destination),
                                                work.prefixLength, IpAddress(family, work.nextHop),
                                                work.ifIndex, work.metric, work.pathType, NowMs());
        }
    }
    if (m_routeObserver) {
        const int family = work.family == 1 ? IpAddress::IPV4 : IpAddress::IPV6;
        RouteAnswer answer;
        answer.instance = work.instance;
        answer.destination = IpAddress(family, work.destination).ToString();
        answer.prefixLength = work.prefixLength;
        answer.nextHop = IpAddress(family, work.nextHop).ToString();
        answer.ifIndex = work.ifIndex;
        answer.rowStatus = work.rowStatus;
        answer.adminStatus = work.adminStatus;
        answer.result = result;
        m_routeObserver(answer);
    }
    CallLibrary([&] {
        cSetRouteState(work.instance, static_cast<int>(work.family), work.destination,
                       static_cast<unsigned int>(work.prefixLength), work.nextHop,
                       static_cast<unsigned int>(work.ifIndex), static_cast<int>(work.metric),
                       static_cast<int>(work.pathType), static_cast<int>(work.rowStatus),
                       static_cast<int>(work.adminStatus), 0, static_cast<unsigned int>(result));
    });
    FinishRow(work, result);
}

void Stack::ProcessRedistribution(Work& work) {
    unsigned long result = work.fault.result;
    if (!work.fault.fail) {
        RtmInstance* instance = Instance(work.instance);
        if (!KnownStatuses(work.rowStatus, work.adminStatus)) {
            result = RESULT_WRONG_VALUE;
        } else if (instance == nullptr || !instance->IsReady()) {
            result = RESULT_TEMPORARY;
        } else {
            result = instance->ApplyRedistribution(work.rowStatus, work.adminStatus, work.source,
                                                   work.redistDestination, work.reserved);
        }
    }
    CallLibrary([&] {
        cSetRedistState(static_cast<unsigned long>(work.rowStatus),
                        static_cast<unsigned long>(work.adminStatus),
                        static_cast<unsigned long>(work.source),
                        static_cast<unsigned long>(work.redistDestination), 0, work.instance,
                        work.reserved, result);
    });
    FinishRow(work, result);
}

void Stack::ProcessInterface(Work& work) {
    unsigned long result = work.fault.result;
    if (!work.fault.fail) {
        result = m_interfaces.ApplyInterface(work.rowStatus, work.operStatus, work.instance,
                                             work.ifIndex, work.name.c_str(), work.reserved,
                                             work.flags, work.extra, NowMs());
        if (result == RESULT_DONE) {
            MarkInterfacesChanged(work.instance);
        }
    }
    FinishRow(work, result);
}

void Stack::ProcessAddress(Work& work) {
    unsigned long result = work.fault.result;
    if (!work.fault.fail) {
        result = m_interfaces.ApplyAddress(
            work.rowStatus, work.instance, work.addrType, work.ifIndex,
            work.nullAddress ? nullptr : work.destination, work.prefixLength, NowMs());
        if (result == RESULT_DONE) {
            MarkInterfacesChanged(work.instance);
        }
    }
    FinishRow(work, result);
}

void Stack::ProcessInstance(Work& work) {
    if (work.action != 0) {
        auto gone = m_instances.find(work.instance);
        if (gone != m_instances.end()) {
            gone->second->WithdrawAll(*m_fib);
            m_instances.erase(gone);
        }
        return;
    }
    auto found = m_instances.find(work.instance);
    if (found == m_instances.end()) {
        found =
            m_instances
                .emplace(work.instance, std::make_unique<RtmInstance>(work.instance, work.entity))
                .first;
    } else {
        found->second->SetRequested(work.entity);
    }
    RtmInstance* instance = found->second.get();
    amb_cipr_rtm_entity answer = {};
    if (CallLibrary([&] { return cGetRtmConfig(work.instance, &answer); }) == 1) {
        instance->ApplySettings(answer);
        instance->SetState(RtmState::Ready);
        CallLibrary([&] { cSetRtmReady(work.instance); });
    } else if (!instance->IsReady()) {
        instance->SetState(RtmState::Unknown);
    }
}

void Stack::MarkInterfacesChanged(unsigned long instance) {
    RtmInstance* rtm = Instance(instance);
    if (rtm != nullptr) {
        rtm->MarkAllDirty();
    }
    m_fib->InterfacesChanged();
}

void Stack::RefreshRibs() {
    for (auto& entry : m_instances) {
        if (entry.second->IsDirty()) {
            entry.second->Refresh(m_interfaces.Connected(entry.first), *m_fib);
        }
    }
    m_fib->Commit();
}

bool Stack::HasPendingWork() const {
    return !m_queue.empty() || !m_walks.empty() || !m_management.empty() ||
           !m_monitor.IsI3Ready() || m_closeChannel;
}

}  // namespace Zavrel::Emulator
