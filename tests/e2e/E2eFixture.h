// E2eFixture: the library started as the application starts it, against the
// stack emulator, on the virtual clock. The stack's descriptor is watched by
// the test loop and served through DcRouterMgr::SocketCallback. Every test
// ends by checking that the library kept the stack's contract. The managers
// and the emulator start afresh for every test and are reset after it.
#ifndef ZAVREL_TESTS_E2E_E2EFIXTURE_H
#define ZAVREL_TESTS_E2E_E2EFIXTURE_H

#include <string>
#include <vector>

#include "emulator/Emulator.h"
#include "platform/Options.h"
#include "routing/DcRouterBase.h"
#include "routing/DcRouterMgr.h"
#include "support/testsupport/EmulatedStackEnv.h"

namespace Zavrel::test {

// The application's socket registry over the test loop's descriptor watches.
class LoopSockets : public DcSckInterface {
public:
    explicit LoopSockets(VirtualEventLoop& loop) : m_loop(loop) {}
    void RegisterSocket(int fd, int kind, int) override {
        m_loop.WatchFd(fd, Events(kind), [](int ready, int events) {
            DcRouterMgr::GetInstance()->SocketCallback(ready, events);
        });
        calls.push_back("register " + std::to_string(fd) + " " + std::to_string(kind));
    }
    void UnregisterSocket(int fd, int) override {
        m_loop.UnwatchFd(fd);
        calls.push_back("unregister " + std::to_string(fd));
    }
    void ChangeSocketMask(int fd, int kind) override {
        m_loop.ChangeFd(fd, Events(kind));
        calls.push_back("mask " + std::to_string(fd) + " " + std::to_string(kind));
    }
    std::vector<std::string> calls;

private:
    static int Events(int kind) {
        return kind == 1 ? EventLoop::READABLE : kind == 2 ? EventLoop::WRITABLE : 0;
    }
    VirtualEventLoop& m_loop;
};

class E2eFixture : public EmulatedStackEnv {
protected:
    class AppInterface : public DcIpInterface {};

    void SetUp() override {
        EmulatedStackEnv::SetUp();
        mgr = DcRouterMgr::GetInstance();
        ASSERT_NE(mgr, nullptr);
        mgr->SckInterfaceInitialize(&sockets);
        ASSERT_EQ(mgr->Initialize(5, &ip), 0);
    }

    void TearDown() override {
        EXPECT_EQ(Emulator::BreachCount(), 0u) << ::testing::PrintToString(Emulator::Breaches());
        EmulatedStackEnv::TearDown();
    }

    // Configuration of the VLANs as the application delivers it.
    void Reload(const std::string& json, const char* source = "vlans.json") {
        Options options;
        ASSERT_TRUE(options.LoadFromText(string(json))) << options.Error().c_str();
        ASSERT_TRUE(mgr->Reload(options, source, DclConfigObject::OPTION_TYPE_VLAN));
    }

    // Lets the library and the stack run for a while on the virtual clock.
    void Run(uint64_t ms = 1000) { loop.Advance(ms); }

    // One console command through a handler of the IPv4 table, run to its end.
    std::string Ip4Command(const char* name, std::vector<std::string> words) {
        CapturingConsole out(5);
        std::vector<char*> argv;
        for (auto& w : words) {
            argv.push_back(&w[0]);
        }
        auto it = mgr->GetIp4ConCmdHandlers().find(string(name));
        EXPECT_NE(it, mgr->GetIp4ConCmdHandlers().end());
        if (it == mgr->GetIp4ConCmdHandlers().end()) {
            return "";
        }
        it->second.Run(nullptr, &out, static_cast<int>(argv.size()), argv.data());
        Run(500);
        return out.All();
    }

    // A console table command (rtm route, rtm rib, interface display) run
    // to its end; everything it printed, errors included.
    template <typename Command, typename... Args>
    std::string RunCommand(std::vector<std::string> words, Args... args) {
        CapturingConsole out(5);
        std::vector<char*> argv;
        for (auto& w : words) {
            argv.push_back(&w[0]);
        }
        argv.push_back(nullptr);
        Command* command = new Command(&out, args...);
        if (!command->Parse(static_cast<int>(words.size()), argv.data())) {
            delete command;
        }
        Run(500);
        return out.All();
    }

    // One table of the emulator's dump, without its heading.
    static std::string Table(const std::string& heading) {
        const std::string dump = Emulator::DumpTables();
        size_t start = dump.find(heading + "\n");
        if (start == std::string::npos) {
            return "<no table " + heading + ">";
        }
        start += heading.size() + 1;
        size_t end = start;
        while (end < dump.size()) {
            size_t next = dump.find('\n', end);
            if (next == std::string::npos) {
                return dump.substr(start);
            }
            const std::string line = dump.substr(end, next - end);
            if (!line.empty() && line.back() == ':' && line.find(' ') == std::string::npos) {
                break;
            }
            if (line == "RTM instances:" || line == "Static routes:") {
                break;
            }
            end = next + 1;
        }
        return dump.substr(start, end - start);
    }

    AppInterface ip;
    LoopSockets sockets{loop};
    DcRouterMgr* mgr = nullptr;
};

}  // namespace Zavrel::test

#endif
