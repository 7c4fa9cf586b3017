// EmulatorFixture: the base of the stack emulator's tests. The emulator runs
// against the library-side double (LibrarySide), which records every c*
// call; the test drives the scheduler runs itself and moves the virtual
// clock of TestEnv.
#ifndef ZAVREL_TESTS_EMULATOR_EMULATORFIXTURE_H
#define ZAVREL_TESTS_EMULATOR_EMULATORFIXTURE_H

#include <arpa/inet.h>

#include <array>
#include <string>
#include <vector>

#include "emulator/Emulator.h"
#include "emulator/Stack.h"
#include "stackapi/stackapi.h"
#include "support/doubleside/LibrarySide.h"
#include "support/testsupport/TestEnv.h"

namespace Zavrel::test {

class EmulatorFixture : public TestEnv {
protected:
    using Bytes = std::array<unsigned char, 16>;

    void SetUp() override {
        TestEnv::SetUp();
        Emulator::Reset();
        Side().Reset();
    }
    void TearDown() override {
        // Every callback but the request for a run came from inside a run.
        EXPECT_EQ(std::vector<std::string>(), Side().callsOutsideRun);
        Emulator::Reset();
        // The double's hooks may hold the test's objects.
        Side().Reset();
        TestEnv::TearDown();
    }

    static LibrarySide& Side() { return LibrarySide::Instance(); }
    static Emulator::Stack& Stack() { return Emulator::Instance(); }

    // "10.0.0.1" or "2001:db8::1" as row bytes.
    static Bytes Addr(const char* text) {
        Bytes bytes{};
        if (inet_pton(AF_INET, text, bytes.data()) != 1) {
            inet_pton(AF_INET6, text, bytes.data());
        }
        return bytes;
    }

    static int Init(const char* components = "ripv2 ripng bgp ospf ospfv3 igmp pim") {
        std::string buffer = components;
        return smsi_init(&buffer[0]);
    }

    // smsi_init and the runs that bring the interface tables up; forgets
    // the calls made so far.
    static void StartStack() {
        ASSERT_EQ(0, Init());
        Side().RunScheduler();
        Side().RunScheduler();
        ASSERT_TRUE(Stack().IsI3Ready());
        Side().ClearCalls();
    }

    // Starts an RTM instance and lets the stack fetch its settings.
    static void StartInstance(unsigned long id) {
        amb_cipr_rtm_entity entity{};
        entity.instance_index = id;
        sms_cipr_start(id, &entity);
        Side().RunScheduler();
    }

    static std::string EiOid(unsigned long instance, unsigned long ifIndex) {
        unsigned long oid[SMS_MAX_OID_LEN];
        const unsigned long length = sms_set_i3_ei_oid(oid, instance, ifIndex);
        return LibrarySide::OidText(oid, length);
    }
    static std::string EaOid(unsigned long instance, unsigned long ifIndex, const char* address) {
        unsigned long oid[SMS_MAX_OID_LEN];
        const Bytes bytes = Addr(address);
        const unsigned long type = std::string(address).find(':') == std::string::npos ? 1 : 2;
        const unsigned long length = sms_set_i3_ea_oid(oid, instance, ifIndex, bytes.data(), type);
        return LibrarySide::OidText(oid, length);
    }
    static std::string RouteOid(unsigned long instance, const char* destination,
                                unsigned long prefixLength, const char* nextHop,
                                unsigned long ifIndex) {
        unsigned long oid[SMS_MAX_OID_LEN];
        const long family = std::string(destination).find(':') == std::string::npos ? 1 : 2;
        const Bytes dest = Addr(destination);
        const Bytes hop = Addr(nextHop);
        const unsigned long length = sms_get_route_oid(oid, instance, family, dest.data(),
                                                       prefixLength, hop.data(), ifIndex);
        return LibrarySide::OidText(oid, length);
    }
    static std::string RedistOid(unsigned long instance, long source, long destination) {
        unsigned long oid[SMS_MAX_OID_LEN];
        const unsigned long length = sms_set_cipr_redist_oid(oid, instance, source, destination);
        return LibrarySide::OidText(oid, length);
    }

    // Row requests as the library makes them: the OID first, then the request.
    static void Interface(long rowStatus, unsigned long instance, unsigned long ifIndex,
                          const char* name, unsigned long operStatus = 1, long flags = 0x18) {
        EiOid(instance, ifIndex);
        sms_act_interface(rowStatus, operStatus, instance, ifIndex, name, 0, flags, 0);
    }
    static void Address(long rowStatus, unsigned long instance, unsigned long ifIndex,
                        const char* address, unsigned long prefixLength) {
        EaOid(instance, ifIndex, address);
        const Bytes bytes = Addr(address);
        const unsigned long type = std::string(address).find(':') == std::string::npos ? 1 : 2;
        sms_act_ipaddr(rowStatus, instance, type, ifIndex, bytes.data(), prefixLength);
    }
    static void Route(long rowStatus, long adminStatus, unsigned long instance,
                      const char* destination, unsigned long prefixLength, const char* nextHop,
                      unsigned long ifIndex = 0, unsigned long metric = 1) {
        RouteOid(instance, destination, prefixLength, nextHop, ifIndex);
        const long family = std::string(destination).find(':') == std::string::npos ? 1 : 2;
        const Bytes dest = Addr(destination);
        const Bytes hop = Addr(nextHop);
        sms_update_route(1, rowStatus, adminStatus, family, dest.data(), prefixLength, hop.data(),
                         0x30000, ifIndex, instance, metric);
    }
    static void Redist(long rowStatus, long adminStatus, long source, long destination,
                       unsigned long instance, unsigned long extra = 0) {
        RedistOid(instance, source, destination);
        sms_act_cipr_redist(rowStatus, adminStatus, source, destination, instance, extra);
    }

    // An up interface with one address in a started, ready instance.
    static void Network(unsigned long instance, unsigned long ifIndex, const char* name,
                        const char* address, unsigned long prefixLength) {
        Interface(4, instance, ifIndex, name);
        Address(1, instance, ifIndex, address, prefixLength);
        Side().RunScheduler();
    }

    // Walks a table from the instance onward over the next run; returns
    // the lines the callback got ("<code>" or "<code> <row>").
    static std::vector<std::string> Walk(const char* table, unsigned long instance) {
        LibrarySide::WalkProbe probe(table);
        const std::string name = table;
        if (name == "rtm_route") {
            sms_get_next_rtm_route(instance, &LibrarySide::WalkCallback, &probe);
        } else if (name == "rtm_rib") {
            sms_get_next_rtm_rib(instance, &LibrarySide::WalkCallback, &probe);
        } else if (name == "i3_ei") {
            sms_get_next_i3_ei(instance, &LibrarySide::WalkCallback, &probe);
        } else {
            sms_get_next_i3_ea(instance, &LibrarySide::WalkCallback, &probe);
        }
        Side().RunScheduler();
        return probe.lines;
    }
};

}  // namespace Zavrel::test

#endif
