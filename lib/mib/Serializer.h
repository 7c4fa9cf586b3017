// Serializer: keeps at most one MIB request per row outstanding in the stack.
// Actions are queued per MibOid; the head of an OID's queue is issued when
// the stack is ready and the previous request on that OID has completed.
#ifndef ZAVREL_MIB_SERIALIZER_H
#define ZAVREL_MIB_SERIALIZER_H

#include <cstddef>
#include <list>
#include <map>
#include <memory>
#include <vector>

#include "mib/MibAction.h"
#include "mib/MibOid.h"
#include "platform/MemberSet.h"
#include "platform/String.h"

namespace Zavrel {

class ConsoleSession;

class Serializer {
public:
    static const char* const CONSOLE_COMMAND;
    static const char* const CONSOLE_HELP;

    Serializer();
    ~Serializer();
    Serializer(const Serializer&) = delete;
    Serializer& operator=(const Serializer&) = delete;

    // Takes ownership of action and queues it on oid; issues it at once when
    // it is the only one on that OID and the stack is ready. A null action
    // only creates the OID's (empty) entry.
    void Insert(const MibOid& oid, MibAction* action);
    // Issues the head of the OID's queue from a stack callback. 1 when
    // issued, 0 otherwise.
    int Send(const MibOid& oid);
    // The stack is ready: issues the head of every OID, in order of first
    // insertion.
    void RunPendingActions();
    // Completion of the outstanding request on the OID given as components:
    // drops it and issues the next one. Returns Send's result.
    int RunPendingAction(unsigned long* components, unsigned long count);
    // Drops the head of the OID's queue, and the OID when nothing remains.
    void Remove(const MibOid& oid);
    // Issues and destroys action: 1, or 0 (action kept) when action is null
    // or the stack is not ready yet.
    int IssueMibRequest(MibAction* action, bool shared_context);
    // Forgets every OID; actions not yet issued are destroyed.
    void Reset();

    // Console listing: a legend, then one "(Actions_Count=..., MibOid=...)"
    // line per OID in OID order.
    string GetPendingActionsAsString() const;

    void RegisterConsoleCommand();
    static int ConCmdNode(Serializer* serializer, ConsoleSession* session, int argc, char** argv);

    bool IsReady() const { return m_ready; }
    MemberSet& TraceSet() { return m_trace_set; }
    // Number of OIDs with an entry, and of slots queued on one OID (the
    // outstanding head included; 0 when the OID has no entry).
    size_t PendingOidCount() const { return m_pending_actions.size(); }
    size_t PendingActionCount(const MibOid& oid) const;
    // OIDs in the order their entries were created.
    std::vector<MibOid> ActionsQueue() const;

private:
    // One request queued on an OID. A slot is Waiting from Insert until it
    // is issued: it owns its action. Issuing destroys the action and makes
    // the slot Outstanding: it stays at the head of its OID's list as the
    // mark of the request the stack has not completed, until the completion
    // pops it. Only a Waiting head is ever issued, so a slot is issued once.
    struct Slot {
        enum State { WAITING, OUTSTANDING };
        explicit Slot(MibAction* waiting) : action(waiting), state(WAITING) {}
        std::unique_ptr<MibAction> action;  // set while Waiting
        State state;
    };
    // Per-OID FIFO of slots. The entry also remembers where its OID sits in
    // m_actions_queue, so that forgetting an OID does not scan the queue.
    struct ActionList {
        std::list<Slot> slots;
        std::list<const MibOid*>::iterator queue_position;
    };
    // In OID order, as the console lists them.
    using PendingMap = std::map<MibOid, ActionList>;

    // Issues the head of list if it is Waiting.
    int IssueHead(ActionList& list, bool shared_context);

    PendingMap m_pending_actions;
    // The OIDs of m_pending_actions (its keys) in the order their entries
    // were created.
    std::list<const MibOid*> m_actions_queue;
    bool m_ready;
    MemberSet m_trace_set;
    bool m_registered;
};

}  // namespace Zavrel

#endif
