// The stack's C API as the recording double implements it: every function
// records its call line, runs the call hook set for it, and returns the
// scripted result.
#include <string>
#include <utility>
#include <vector>

#include "stackapi/stackapi.h"
#include "support/stackdouble/CallLine.h"
#include "support/stackdouble/RecordingStack.h"

using Zavrel::test::CallLine;
using Zavrel::test::RecordingStack;

unsigned long nbb_os_failures = 0;

namespace {

RecordingStack& Stack() {
    return RecordingStack::Instance();
}

// The line of a call, rendered only while the double records.
CallLine Line(const char* function) {
    return CallLine(function, Stack().IsRecording());
}

// Records the line, runs the call hook, and returns the scripted result
// (read after the hook, which may script it).
template <typename R>
R Finish(const char* function, const CallLine& line) {
    Stack().Record(line.Str());
    Stack().RunCallHook(function);
    return static_cast<R>(Stack().Result(function));
}

void FinishVoid(const char* function, const CallLine& line) {
    Stack().Record(line.Str());
    Stack().RunCallHook(function);
}

// OID builders: the buffer gets the deterministic OID (at most
// SMS_MAX_OID_LEN components) and the result is its length, unless a test
// scripted another result for the function.
unsigned long FinishOid(const char* function, const CallLine& line, unsigned long* buffer,
                        const std::vector<unsigned long>& oid) {
    Stack().Record(line.Str());
    size_t count = oid.size() < SMS_MAX_OID_LEN ? oid.size() : SMS_MAX_OID_LEN;
    if (buffer != nullptr) {
        for (size_t i = 0; i < count; ++i) {
            buffer[i] = oid[i];
        }
    }
    Stack().RunCallHook(function);
    if (Stack().HasResult(function)) {
        return static_cast<unsigned long>(Stack().Result(function));
    }
    return static_cast<unsigned long>(count);
}

unsigned long StartWalk(const char* function, const char* table, unsigned long instance,
                        sms_walk_callback callback, void* context) {
    Stack().Record(Line(function).Unsigned(instance).Str());
    Stack().AddWalk(RecordingStack::Walk{table, instance, callback, context});
    Stack().RunCallHook(function);
    return static_cast<unsigned long>(Stack().Result(function));
}

CallLine InterfaceLine(const char* function, long row_status, unsigned long oper_status,
                       unsigned long instance, unsigned long if_index, const char* if_name,
                       unsigned long reserved, long flags, unsigned long extra) {
    CallLine line = Line(function);
    line.Signed(row_status)
        .Unsigned(oper_status)
        .Unsigned(instance)
        .Unsigned(if_index)
        .Text(if_name)
        .Unsigned(reserved)
        .Signed(flags)
        .Unsigned(extra);
    return line;
}

}  // namespace

extern "C" {

// ---- N-BASE runtime

int smsi_init(char* components) {
    return Finish<int>("smsi_init", Line("smsi_init").Text(components));
}

int nbb_scheduler(void) {
    Stack().Record(Line("nbb_scheduler").Str());
    Stack().RunCallHook("nbb_scheduler");
    Stack().RunSchedulerHook();
    return Stack().NextSchedulerResult();
}

int nbb_get_ips_tracing(void) {
    Stack().Record(Line("nbb_get_ips_tracing").Str());
    Stack().RunCallHook("nbb_get_ips_tracing");
    if (Stack().HasResult("nbb_get_ips_tracing")) {
        return static_cast<int>(Stack().Result("nbb_get_ips_tracing"));
    }
    return Stack().ipsTracing;
}

void nbb_set_ips_filter(char* filter, unsigned short filter_type) {
    Stack().ipsFilters.push_back(std::string(filter != nullptr ? filter : "null") + "/" +
                                 std::to_string(filter_type));
    FinishVoid("nbb_set_ips_filter", Line("nbb_set_ips_filter").Text(filter).Unsigned(filter_type));
}

void nbb_trips_control(int on) {
    Stack().ipsTracing = on;
    FinishVoid("nbb_trips_control", Line("nbb_trips_control").Signed(on));
}

// ---- routes

unsigned long sms_update_route(int not_shared, long row_status, long admin_status, long family,
                               const unsigned char* dest, unsigned long prefix_len,
                               const unsigned char* next_hop, long path_type,
                               unsigned long if_index, unsigned long instance,
                               unsigned long metric) {
    return Finish<unsigned long>("sms_update_route", Line("sms_update_route")
                                                         .Signed(not_shared)
                                                         .Signed(row_status)
                                                         .Signed(admin_status)
                                                         .Signed(family)
                                                         .AddressByFamily(dest, family)
                                                         .Unsigned(prefix_len)
                                                         .AddressByFamily(next_hop, family)
                                                         .Signed(path_type)
                                                         .Unsigned(if_index)
                                                         .Unsigned(instance)
                                                         .Unsigned(metric));
}

unsigned long sms_get_route_oid(unsigned long* oid, unsigned long instance, long family,
                                const unsigned char* dest, unsigned long prefix_len,
                                const unsigned char* next_hop, unsigned long if_index) {
    return FinishOid(
        "sms_get_route_oid",
        Line("sms_get_route_oid")
            .Unsigned(instance)
            .Signed(family)
            .AddressByFamily(dest, family)
            .Unsigned(prefix_len)
            .AddressByFamily(next_hop, family)
            .Unsigned(if_index),
        oid, RecordingStack::RouteOid(instance, family, dest, prefix_len, next_hop, if_index));
}

// ---- interfaces and their addresses
unsigned long sms_act_interface(long row_status, unsigned long oper_status, unsigned long instance,
                                unsigned long if_index, const char* if_name, unsigned long reserved,
                                long flags, unsigned long extra) {
    return Finish<unsigned long>(
        "sms_act_interface", InterfaceLine("sms_act_interface", row_status, oper_status, instance,
                                           if_index, if_name, reserved, flags, extra));
}

unsigned long sms_bld_amb_test_i3_ei(long row_status, unsigned long oper_status,
                                     unsigned long instance, unsigned long if_index,
                                     const char* if_name, unsigned long reserved, long flags,
                                     unsigned long extra) {
    return Finish<unsigned long>(
        "sms_bld_amb_test_i3_ei",
        InterfaceLine("sms_bld_amb_test_i3_ei", row_status, oper_status, instance, if_index,
                      if_name, reserved, flags, extra));
}

unsigned long sms_act_ipaddr(long row_status, unsigned long vlan_or_instance,
                             unsigned long addr_type, unsigned long if_index,
                             const unsigned char* address, unsigned long prefix_len) {
    return Finish<unsigned long>("sms_act_ipaddr", Line("sms_act_ipaddr")
                                                       .Signed(row_status)
                                                       .Unsigned(vlan_or_instance)
                                                       .Unsigned(addr_type)
                                                       .Unsigned(if_index)
                                                       .AddressByType(address, addr_type)
                                                       .Unsigned(prefix_len));
}

unsigned long sms_set_i3_ei_oid(unsigned long* oid, unsigned long instance,
                                unsigned long if_index) {
    return FinishOid("sms_set_i3_ei_oid",
                     Line("sms_set_i3_ei_oid").Unsigned(instance).Unsigned(if_index), oid,
                     RecordingStack::EiOid(instance, if_index));
}

unsigned long sms_set_i3_ea_oid(unsigned long* oid, unsigned long instance, unsigned long if_index,
                                const unsigned char* address, unsigned long addr_type) {
    return FinishOid("sms_set_i3_ea_oid",
                     Line("sms_set_i3_ea_oid")
                         .Unsigned(instance)
                         .Unsigned(if_index)
                         .AddressByType(address, addr_type)
                         .Unsigned(addr_type),
                     oid, RecordingStack::EaOid(instance, if_index, address, addr_type));
}

// ---- redistribution

unsigned long sms_act_cipr_redist(long row_status, long admin_status, long source, long dest,
                                  unsigned long instance, unsigned long reserved) {
    return Finish<unsigned long>("sms_act_cipr_redist", Line("sms_act_cipr_redist")
                                                            .Signed(row_status)
                                                            .Signed(admin_status)
                                                            .Signed(source)
                                                            .Signed(dest)
                                                            .Unsigned(instance)
                                                            .Unsigned(reserved));
}

unsigned long sms_bld_amb_test_cipr_redist(unsigned long instance, long row_status,
                                           long admin_status, long dest, long source,
                                           unsigned long reserved) {
    return Finish<unsigned long>("sms_bld_amb_test_cipr_redist",
                                 Line("sms_bld_amb_test_cipr_redist")
                                     .Unsigned(instance)
                                     .Signed(row_status)
                                     .Signed(admin_status)
                                     .Signed(dest)
                                     .Signed(source)
                                     .Unsigned(reserved));
}

unsigned long sms_set_cipr_redist_oid(unsigned long* oid, unsigned long instance, long source,
                                      long dest) {
    return FinishOid("sms_set_cipr_redist_oid",
                     Line("sms_set_cipr_redist_oid").Unsigned(instance).Signed(source).Signed(dest),
                     oid, RecordingStack::RedistOid(instance, source, dest));
}

// ---- RTM instances

unsigned long sms_cipr_start(unsigned long instance, amb_cipr_rtm_entity* entity) {
    return Finish<unsigned long>("sms_cipr_start",
                                 Line("sms_cipr_start").Unsigned(instance).Entity(entity));
}

unsigned long sms_cipr_action(unsigned long instance, unsigned long action) {
    return Finish<unsigned long>("sms_cipr_action",
                                 Line("sms_cipr_action").Unsigned(instance).Unsigned(action));
}

// ---- table walks

unsigned long sms_get_next_rtm_route(unsigned long instance, sms_walk_callback callback,
                                     void* context) {
    return StartWalk("sms_get_next_rtm_route", "rtm_route", instance, callback, context);
}

unsigned long sms_get_next_rtm_rib(unsigned long instance, sms_walk_callback callback,
                                   void* context) {
    return StartWalk("sms_get_next_rtm_rib", "rtm_rib", instance, callback, context);
}

unsigned long sms_get_next_i3_ei(unsigned long instance, sms_walk_callback callback,
                                 void* context) {
    return StartWalk("sms_get_next_i3_ei", "i3_ei", instance, callback, context);
}

unsigned long sms_get_next_i3_ea(unsigned long instance, sms_walk_callback callback,
                                 void* context) {
    return StartWalk("sms_get_next_i3_ea", "i3_ea", instance, callback, context);
}

}  // extern "C"
