// A long seeded sequence of requests of every kind, made the way the library
// makes them (one outstanding request per row): every request is ended
// exactly once, no breach is counted, and the RIBs keep their invariants.
#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <set>

#include "tests/emulator/EmulatorFixture.h"

namespace Zavrel::test {
namespace {

class RandomSequenceTest : public EmulatorFixture {
protected:
    uint64_t m_state = 12345;
    unsigned int Next(unsigned int bound) {
        m_state = m_state * 6364136223846793005ull + 1442695040888963407ull;
        return static_cast<unsigned int>((m_state >> 33) % bound);
    }
};

TEST_F(RandomSequenceTest, EveryRequestIsEndedOnceAndTheRibsStayConsistent) {
    StartStack();
    for (unsigned long vlan = 1; vlan <= 4; ++vlan) {
        StartInstance(vlan);
    }
    Emulator::SetAnswerDelay(Emulator::RequestKind::Route, 2);
    Emulator::SetFailureRate(Emulator::RequestKind::Address, 0.1, 5, 99);
    std::map<std::string, int> outstanding;  // row OID text -> requests not yet ended
    Side().OnCall("cRunPendingAction", [&outstanding] {
        const std::string& call = Side().Calls().back();
        const std::string oid = call.substr(18, call.size() - 19);
        --outstanding[oid];
    });
    size_t requests = 0;
    char text[64];
    for (int step = 0; step < 2000; ++step) {
        const unsigned long vlan = 1 + Next(4);
        const unsigned long ifIndex = 100 + Next(3);
        std::string oid;
        switch (Next(4)) {
            case 0:
                oid = EiOid(vlan, ifIndex);
                if (outstanding[oid] == 0) {
                    const long rowStatus = Next(3) == 0 ? 6 : (Next(2) == 0 ? 4 : 1);
                    Interface(rowStatus, vlan, ifIndex, "eth", 1 + Next(2));
                    ++outstanding[oid];
                    ++requests;
                }
                break;
            case 1:
                std::snprintf(text, sizeof(text), "10.%lu.%lu.1", vlan, ifIndex);
                oid = EaOid(vlan, ifIndex, text);
                if (outstanding[oid] == 0) {
                    Address(Next(4) == 0 ? 6 : 1, vlan, ifIndex, text, 24);
                    ++outstanding[oid];
                    ++requests;
                }
                break;
            default:
                std::snprintf(text, sizeof(text), "172.%u.0.0", Next(8));
                {
                    char hop[32];
                    std::snprintf(hop, sizeof(hop), "10.%lu.%u.254", vlan, 100 + Next(4));
                    oid = RouteOid(vlan, text, 16, hop, 0);
                    if (outstanding[oid] == 0) {
                        Route(Next(3) == 0 ? 6 : 1, 1 + Next(2), vlan, text, 16, hop, 0, Next(5));
                        ++outstanding[oid];
                        ++requests;
                    }
                }
                break;
        }
        if (Next(3) == 0) {
            Side().RunScheduler();
        }
    }
    Side().RunUntilIdle();

    EXPECT_EQ(requests, Side().Calls("cRunPendingAction").size());
    for (const auto& row : outstanding) {
        EXPECT_EQ(0, row.second) << row.first;
    }
    EXPECT_EQ(0u, Emulator::BreachCount());
    EXPECT_EQ(0u, Stack().QueuedRequests());

    Stack().RefreshRibs();
    size_t fib = 0;
    size_t unresolved = 0;
    for (const auto& entry : Stack().Instances()) {
        fib += entry.second->GetRib().FibCount();
        std::map<std::pair<std::string, unsigned long>, int> installed;
        for (const auto& rib : entry.second->GetRib().Entries()) {
            const Emulator::RibEntry& route = rib.second;
            unresolved += route.unresolved ? 1 : 0;
            if (route.fib) {
                EXPECT_FALSE(route.unresolved);
                ++installed[{route.destination.ToString(), route.prefixLength}];
            }
        }
        for (const auto& destination : installed) {
            EXPECT_EQ(1, destination.second) << destination.first.first;
        }
        EXPECT_EQ(installed.size(), entry.second->GetRib().FibCount());
    }
    // The sequence reached every kind of outcome.
    EXPECT_GT(requests, 1000u);
    EXPECT_GT(fib, 0u);
    EXPECT_GT(unresolved, 0u);
    EXPECT_GT(Emulator::AnswerCount(Emulator::RESULT_NO_ROW), 0u);
    EXPECT_GT(Emulator::AnswerCount(Emulator::RequestKind::Address, 5), 0u);
}

}  // namespace
}  // namespace Zavrel::test
