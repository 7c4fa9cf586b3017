// SystemDriver: plays the application and the stack's bad days against a
// RouterSystem, one event at a time: static routes added, removed, enabled
// and disabled (kept in a RouteBook), interfaces coming, going and
// flapping, addresses changing, option documents of two sources reloaded
// (changed or unchanged) and unloaded, console table walks started, stack
// faults switched on and off (failed answers, late answers, walks cut
// short, a frozen stack), and the clock running. What happens next is drawn from a Choices source:
// a seeded sequence for the churn run, the fuzzer's bytes for the fuzzers.
//
// Settle() then lets the stack behave again and the clock run on, and
// Problems() says what the library lost, made up or left stuck.
#ifndef ZAVREL_TOOLS_SYSTEMDRIVER_H
#define ZAVREL_TOOLS_SYSTEMDRIVER_H

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "harness/Choices.h"
#include "harness/RouteBook.h"
#include "harness/RouterSystem.h"
#include "platform/CapturingConsole.h"

namespace Zavrel {

class SystemDriver {
public:
    // The kinds of events, in the order Pick chooses among them.
    enum Event {
        ADD_ROUTE,
        REMOVE_ROUTE,
        ENABLE_ROUTE,
        DISABLE_ROUTE,
        INTERFACE,
        ADDRESS,
        RELOAD,
        UNLOAD,
        WALK,
        STACK_FAULT,
        RUN_CLOCK,
        EVENT_COUNT
    };
    // Counts of what was done, by event kind.
    struct Tally {
        uint64_t events[EVENT_COUNT] = {};
        uint64_t refusedDocuments = 0;
    };

    struct Settings {
        // Whether STACK_FAULT events change the stack's faults (the churn
        // run sets a steady rate itself instead).
        bool stackFaults = true;
        // Whether events also name VLAN 99, which no document configures.
        // The scheduler keeps every request for a route of a VLAN without
        // a table instance until the instance is ready, so a run that
        // must stay flat for hours leaves it out.
        bool unconfiguredVlan = true;
    };
    SystemDriver(RouterSystem& system, Choices& choices, const Settings& settings);

    // One event drawn from the choices.
    void Step();
    // A given event, its parameters drawn from the choices.
    void Do(Event event);
    // Lets the stack behave (no faults, not frozen) and the clock run for
    // ms, long enough for every retry to be spent.
    void Settle(uint64_t ms = 20000);
    // What is wrong now: routes lost or made up (RouteBook::Check), items
    // New although they could be sent, rows still queued in the serializer,
    // walks that ended wrongly or not at all, and the stack's contract
    // breaches. Empty when nothing is.
    std::vector<std::string> Problems();
    // The console table walks: "rtm route", "rtm rib", "rtm6 route",
    // "rtm6 rib", "interfaces", "interfaces6".
    static constexpr unsigned int WALK_TABLE_COUNT = 6;
    static const char* const WALK_TABLES[WALK_TABLE_COUNT];
    // Starts the walk of table with the command's words, printing on
    // console (which must outlive the walk); false when the table is not
    // one of WALK_TABLES or the command did not start.
    static bool StartWalk(CapturingConsole& console, const std::string& table,
                          std::vector<std::string> words);
    // What is wrong with a console table walk that has started: empty when
    // it ended exactly once, after its end of table or an error.
    static std::string WalkProblem(const CapturingConsole& console, const std::string& walk);

    // Keeps a line per event in log from now on (null: none).
    void SetLog(std::vector<std::string>* log) { m_log = log; }

    const RouteBook& Book() const { return m_book; }
    const Tally& Counts() const { return m_tally; }
    // The option documents the driver reloads: source, then variant.
    static const char* const SOURCES[2];
    static std::string Document(unsigned int source, unsigned int variant);
    static constexpr unsigned int VARIANTS = 6;

private:
    using Route = RouteBook::Route;
    RouteBook::Route PickRoute();
    // One request of the application on a route drawn from the choices.
    void RouteRequest(const char* verb, bool (RouteBook::*request)(const Route&));
    unsigned short PickVlan();
    void Interface();
    void Address();
    void Reload();
    void Unload();
    void Walk();
    // Checks the walks that have ended and lets go of them.
    void CollectWalks();
    void StackFault();
    // The VLANs configured now; forgets the routes of those that went.
    void NoteVlans();
    void Note(const std::string& event);

    RouterSystem& m_system;
    Choices& m_choices;
    Settings m_settings;
    RouteBook m_book;
    Tally m_tally;
    std::set<unsigned short> m_vlans;
    std::vector<std::string>* m_log = nullptr;
    // Walks started and not yet seen to end, each with its console.
    struct RunningWalk {
        std::string name;
        std::unique_ptr<CapturingConsole> console;
    };
    std::vector<RunningWalk> m_walks;
    std::vector<std::string> m_walkProblems;
};

}  // namespace Zavrel

#endif
