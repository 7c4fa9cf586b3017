// libFuzzer harness for the stack's answers and the application's events:
// the bytes choose a schedule of events (static routes added, removed,
// enabled and disabled; interfaces and addresses changing; option
// documents of two sources reloaded and unloaded; stack faults: failed
// answers with any result, answers late by several runs, a frozen stack;
// the clock running) played on the whole system on the virtual clock.
// Then the stack behaves again, the clock runs on, and the harness stops
// when a route the application still wants is neither in the stack as
// asked nor held with its reason, a route is in the stack that nobody
// asked for, an item could be sent but never was, a row is still queued, or
// the stack saw a breach of its contract (two requests outstanding for one
// row among them).
#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "common/FuzzCheck.h"
#include "harness/RouterSystem.h"
#include "harness/SystemDriver.h"

namespace {

// The fuzzer's bytes as choices; zeros once they are used up.
class ByteChoices : public Zavrel::Choices {
public:
    explicit ByteChoices(FuzzedDataProvider& bytes) : m_bytes(bytes) {}
    uint32_t Pick(uint32_t count) override {
        return m_bytes.ConsumeIntegralInRange<uint32_t>(0, count - 1);
    }

private:
    FuzzedDataProvider& m_bytes;
};

// Events of one input at most: long enough for any interleaving that
// matters, short enough for thousands of inputs a second.
constexpr unsigned int kMaxEvents = 400;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Zavrel::RouterSystem system;
    Zavrel::fuzz::Check(system.IsStarted(), "the system did not start");
    system.Run(500);
    FuzzedDataProvider bytes(data, size);
    ByteChoices choices(bytes);
    Zavrel::SystemDriver driver(system, choices, Zavrel::SystemDriver::Settings());
    std::vector<std::string> events;
    driver.SetLog(&events);
    for (unsigned int i = 0; i < kMaxEvents && bytes.remaining_bytes() > 0; ++i) {
        driver.Step();
    }
    driver.Settle();
    std::vector<std::string> problems = driver.Problems();
    if (!problems.empty()) {
        problems.push_back("the events:");
        problems.insert(problems.end(), events.begin(), events.end());
    }
    Zavrel::fuzz::CheckNone(problems, "after the stack behaved again:");
    return 0;
}
