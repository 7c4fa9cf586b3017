#include "mib/Serializer.h"

#include <strings.h>

#include <iterator>
#include <vector>

#include "platform/ConsoleCommand.h"
#include "platform/ConsoleSession.h"

namespace Zavrel {

namespace {

// Names used by the traces of Insert and Remove.
const char INSERT_SIGNATURE[] =
    "void Zavrel::Serializer::Insert(const Zavrel::MibOid&, Zavrel::MibAction*)";
const char REMOVE_SIGNATURE[] = "void Zavrel::Serializer::Remove(const Zavrel::MibOid&)";

const char USAGE[] = "Usage: serializer  pending_actions|debug <level>\n";
const char LEGEND[] = "\nPending Actions (Actions_Count=<No of actions>, MibOid=<oid>)";

}  // namespace

const char* const Serializer::CONSOLE_COMMAND = "serializer";
const char* const Serializer::CONSOLE_HELP = "Debug traces from serializer type in metaswitch";

Serializer::Serializer() : m_ready(false), m_registered(false) {
    RegisterConsoleCommand();
}

Serializer::~Serializer() {
    Reset();
    if (m_registered) {
        ConsoleCommand::Unregister(CONSOLE_COMMAND, this);
    }
}

void Serializer::Insert(const MibOid& oid, MibAction* action) {
    PendingMap::iterator entry = m_pending_actions.find(oid);
    if (entry == m_pending_actions.end()) {
        entry = m_pending_actions.emplace(oid, ActionList()).first;
        m_actions_queue.push_back(&entry->first);
        entry->second.queue_position = std::prev(m_actions_queue.end());
        if (m_trace_set.Any()) {
            member_TRACE(m_trace_set, 3, "%s, queued into m_actions_queue, oid=%s\n",
                         INSERT_SIGNATURE, oid.ToString().c_str());
            member_TRACE(m_trace_set, 3, "%s, m_actions_queue size=%zu\n", INSERT_SIGNATURE,
                         m_actions_queue.size());
            member_TRACE(m_trace_set, 3, "%s, m_pending_actions size=%zu\n", INSERT_SIGNATURE,
                         m_pending_actions.size());
        }
    }
    if (action == nullptr) {
        return;
    }
    ActionList& list = entry->second;
    bool wasEmpty = list.slots.empty();
    list.slots.emplace_back(action);
    member_TRACE(m_trace_set, 3, "%s, added to p_action_list, action=%s\n", INSERT_SIGNATURE,
                 action->name != nullptr ? action->name : "");
    member_TRACE(m_trace_set, 3, "%s, p_action_list size=%zu\n", INSERT_SIGNATURE,
                 list.slots.size());
    if (wasEmpty) {
        IssueHead(list, false);
    }
}

int Serializer::Send(const MibOid& oid) {
    PendingMap::iterator entry = m_pending_actions.find(oid);
    if (entry == m_pending_actions.end() || entry->second.slots.empty()) {
        return 0;
    }
    return IssueHead(entry->second, true);
}

void Serializer::RunPendingActions() {
    m_ready = true;
    // Issuing may re-enter the serializer (a request answered at once), so
    // walk a copy of the queue; an OID forgotten meanwhile is simply skipped.
    const std::vector<MibOid> order = ActionsQueue();
    for (const MibOid& oid : order) {
        Send(oid);
    }
}

int Serializer::RunPendingAction(unsigned long* components, unsigned long count) {
    MibOid oid(components, count);
    Remove(oid);
    return Send(oid);
}

void Serializer::Remove(const MibOid& oid) {
    PendingMap::iterator entry = m_pending_actions.find(oid);
    if (entry == m_pending_actions.end()) {
        return;
    }
    member_TRACE(m_trace_set, 5, "%s, m_pending_actions size=%zu\n", REMOVE_SIGNATURE,
                 m_pending_actions.size());
    ActionList& list = entry->second;
    if (!list.slots.empty()) {
        // An Outstanding head's action is already destroyed; a Waiting one
        // goes with its slot.
        list.slots.pop_front();
        member_TRACE(m_trace_set, 5, "%s, p_action_list size=%zu\n", REMOVE_SIGNATURE,
                     list.slots.size());
        if (!list.slots.empty()) {
            return;
        }
    }
    // oid may refer to the map's own key: take its text before erasing.
    string text;
    if (m_trace_set.Any()) {
        text = oid.ToString();
    }
    m_actions_queue.erase(list.queue_position);
    m_pending_actions.erase(entry);
    if (m_trace_set.Any()) {
        member_TRACE(m_trace_set, 3, "%s, removed from m_actions_queue, oid=%s\n", REMOVE_SIGNATURE,
                     text.c_str());
        member_TRACE(m_trace_set, 3, "%s, m_actions_queue size=%zu\n", REMOVE_SIGNATURE,
                     m_actions_queue.size());
    }
}

int Serializer::IssueMibRequest(MibAction* action, bool shared_context) {
    if (action == nullptr || !m_ready) {
        return 0;
    }
    action->IssueReq(shared_context);
    delete action;
    return 1;
}

int Serializer::IssueHead(ActionList& list, bool shared_context) {
    Slot& head = list.slots.front();
    if (head.state != Slot::WAITING || !m_ready) {
        return 0;
    }
    // The slot is Outstanding before the request goes out: the stack may
    // complete it from inside the call, which pops this slot (and may
    // forget the list).
    MibAction* action = head.action.release();
    head.state = Slot::OUTSTANDING;
    return IssueMibRequest(action, shared_context);
}

void Serializer::Reset() {
    // Waiting actions are destroyed with their slots, in the order their
    // OIDs were first queued.
    PendingMap pending;
    pending.swap(m_pending_actions);
    std::list<const MibOid*> queue;
    queue.swap(m_actions_queue);
    for (const MibOid* oid : queue) {
        pending.find(*oid)->second.slots.clear();
    }
}

size_t Serializer::PendingActionCount(const MibOid& oid) const {
    PendingMap::const_iterator entry = m_pending_actions.find(oid);
    return entry == m_pending_actions.end() ? 0 : entry->second.slots.size();
}

std::vector<MibOid> Serializer::ActionsQueue() const {
    std::vector<MibOid> oids;
    oids.reserve(m_actions_queue.size());
    for (const MibOid* oid : m_actions_queue) {
        oids.push_back(*oid);
    }
    return oids;
}

string Serializer::GetPendingActionsAsString() const {
    string text(LEGEND);
    for (const PendingMap::value_type& entry : m_pending_actions) {
        text.AppendFmt("\n(Actions_Count=%zu, MibOid=%s)", entry.second.slots.size(),
                       entry.first.ToString().c_str());
    }
    return text;
}

void Serializer::RegisterConsoleCommand() {
    m_registered = ConsoleCommand::Register(CONSOLE_ROLE_EVERYONE, &Serializer::ConCmdNode, this,
                                            CONSOLE_COMMAND, CONSOLE_HELP);
}

int Serializer::ConCmdNode(Serializer* serializer, ConsoleSession* session, int argc, char** argv) {
    if (serializer == nullptr || session == nullptr) {
        return 1;
    }
    if (argc >= 2 && argv[1] != nullptr) {
        if (strcasecmp(argv[1], "pending_actions") == 0) {
            session->Write(serializer->GetPendingActionsAsString());
            return 0;
        }
        if (strcasecmp(argv[1], "debug") == 0) {
            return HandleDebugCommand(session, argc - 2, argv + 2, serializer->m_trace_set,
                                      "trace_set");
        }
    }
    session->Write(USAGE);
    return 1;
}

}  // namespace Zavrel
