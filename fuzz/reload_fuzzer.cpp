// libFuzzer harness for configuration reloads: bytes -> Options -> the
// router manager's Reload under one source -> the same document again ->
// DeleteOptions, on the whole system (protocol routers, embedded stack,
// virtual clock). Besides the sanitizers' findings it stops when:
//  - a refused document has no error text, or changed what the library holds;
//  - the second reload of the unchanged document made a stack request (for
//    a document that lists every VLAN once: one that lists a VLAN twice
//    applies both entries in order on every reload, by design, so the VLAN's settings change twice
//    each time);
//  - after the delete the library still holds a VLAN of the source, or its
//    counters (VLANs, items, queued rows, interfaces, RTM settings) are not
//    back where they were before the first reload. The one exception is
//    the scheduler's items that wait for a table instance the delete took
//    away (a redistribution row to destroy): the scheduler stops at an item
//    whose instance is not ready and keeps it, by design, until the
//    instance is back; any other item left is a finding;
//  - the stack saw a breach of its contract.
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>

#include "cfg/CfgSched.h"
#include "common/FuzzCheck.h"
#include "emulator/Emulator.h"
#include "harness/RouterSystem.h"
#include "platform/CapturingConsole.h"
#include "platform/Options.h"
#include "platform/OptionsNode.h"

using Zavrel::RouterSystem;
using Zavrel::fuzz::Check;

namespace {

// Whether some VLAN id (its low 16 bits, as the reload reads it) has more
// than one entry in the document.
bool ListsAVlanTwice(const std::string& text) {
    Zavrel::Options options;
    if (!options.LoadFromText(text.data(), text.size())) {
        return false;
    }
    std::set<unsigned int> seen;
    for (const Zavrel::OptionsNode& entry : options["VLAN_CONFIGURATIONS"]) {
        unsigned int vid = 0;
        if (entry.GetLeafValue<unsigned int>(vid, "vid", 0u) &&
            !seen.insert(vid & 0xffffu).second) {
            return true;
        }
    }
    return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    RouterSystem system;
    Check(system.IsStarted(), "the system did not start");
    system.Run(500);
    const RouterSystem::Counters before = system.Count();
    const std::string text(reinterpret_cast<const char*>(data), size);
    const std::string source = "fuzz.json";
    std::string error;
    if (!system.Reload(text, source, error)) {
        Check(!error.empty(), "a refused document left no error text");
        Check(system.Count() == before,
              "a refused document changed the library: " + system.Count().ToString() + " (was " +
                  before.ToString() + ")");
        return 0;
    }
    system.Run(3000);
    const uint64_t requests = RouterSystem::StackRequests();
    Check(system.Reload(text, source, error), "the same document was refused the second time");
    system.Run(3000);
    Check(RouterSystem::StackRequests() == requests || ListsAVlanTwice(text),
          "the second reload of an unchanged document made " +
              std::to_string(RouterSystem::StackRequests() - requests) + " stack requests");
    system.Unload(source);
    system.Run(5000);
    Check(system.Manager().GetSourceVlans(Zavrel::string(source.c_str())).empty(),
          "VLANs of the source are left after its delete");
    RouterSystem::Counters after = system.Count();
    after.cfgItems -= after.waitingItems;
    after.waitingItems = 0;
    if (after != before) {
        Zavrel::CapturingConsole items;
        system.Manager().GetCfgSched().Print(&items);
        Zavrel::fuzz::Fail("after the delete the library holds " + system.Count().ToString() +
                           " (was " + before.ToString() + "); the scheduler's items:\n" +
                           items.All());
    }
    Check(Zavrel::Emulator::BreachCount() == 0, "contract breach");
    return 0;
}
