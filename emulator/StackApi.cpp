// The stack's C API (stackapi/stackapi.h), served by the process-wide Stack.
// Nothing throws across it: a failure inside is counted in nbb_os_failures
// and the call returns its failure value.
#include "stackapi/stackapi.h"
#include "emulator/Emulator.h"
#include "emulator/Stack.h"

using Zavrel::Emulator::Instance;
using Zavrel::Emulator::WalkTable;

namespace {

template <typename R, typename F>
R Guarded(R failure, F&& body) {
    try {
        Zavrel::Emulator::CpuAccount::Scope scope(Instance().Cpu(), true);
        return body();
    } catch (...) {
        ++nbb_os_failures;
        return failure;
    }
}

}  // namespace

extern "C" {

unsigned long nbb_os_failures = 0;

int smsi_init(char* components) {
    return Guarded(1, [&] { return Instance().Init(components); });
}

int nbb_scheduler(void) {
    return Guarded(0, [&] { return Instance().Run(); });
}

int nbb_get_ips_tracing(void) {
    return Instance().IpsTracing();
}

void nbb_set_ips_filter(char* filter, unsigned short filter_type) {
    Guarded(0, [&] {
        Instance().SetIpsFilter(filter, filter_type);
        return 0;
    });
}

void nbb_trips_control(int on) {
    Instance().TripsControl(on);
}

unsigned long sms_update_route(int, long row_status, long admin_status, long family,
                               const unsigned char* dest, unsigned long prefix_len,
                               const unsigned char* next_hop, long path_type,
                               unsigned long if_index, unsigned long instance,
                               unsigned long metric) {
    return Guarded(1ul, [&] {
        return Instance().UpdateRoute(row_status, admin_status, family, dest, prefix_len, next_hop,
                                      path_type, if_index, instance, metric);
    });
}

unsigned long sms_get_route_oid(unsigned long* oid, unsigned long instance, long family,
                                const unsigned char* dest, unsigned long prefix_len,
                                const unsigned char* next_hop, unsigned long if_index) {
    return Guarded(0ul, [&] {
        return Instance().GetRouteOid(oid, instance, family, dest, prefix_len, next_hop, if_index);
    });
}

unsigned long sms_act_interface(long row_status, unsigned long oper_status, unsigned long instance,
                                unsigned long if_index, const char* if_name, unsigned long reserved,
                                long flags, unsigned long extra) {
    return Guarded(1ul, [&] {
        return Instance().UpdateInterface(row_status, oper_status, instance, if_index, if_name,
                                          reserved, flags, extra);
    });
}

unsigned long sms_bld_amb_test_i3_ei(long row_status, unsigned long oper_status,
                                     unsigned long instance, unsigned long if_index,
                                     const char* if_name, unsigned long reserved, long flags,
                                     unsigned long extra) {
    return sms_act_interface(row_status, oper_status, instance, if_index, if_name, reserved, flags,
                             extra);
}

unsigned long sms_act_ipaddr(long row_status, unsigned long vlan_or_instance,
                             unsigned long addr_type, unsigned long if_index,
                             const unsigned char* address, unsigned long prefix_len) {
    return Guarded(1ul, [&] {
        return Instance().UpdateAddress(row_status, vlan_or_instance, addr_type, if_index, address,
                                        prefix_len);
    });
}

unsigned long sms_set_i3_ei_oid(unsigned long* oid, unsigned long instance,
                                unsigned long if_index) {
    return Guarded(0ul, [&] { return Instance().GetEiOid(oid, instance, if_index); });
}

unsigned long sms_set_i3_ea_oid(unsigned long* oid, unsigned long instance, unsigned long if_index,
                                const unsigned char* address, unsigned long addr_type) {
    return Guarded(
        0ul, [&] { return Instance().GetEaOid(oid, instance, if_index, address, addr_type); });
}

unsigned long sms_act_cipr_redist(long row_status, long admin_status, long source, long dest,
                                  unsigned long instance, unsigned long reserved) {
    return Guarded(1ul, [&] {
        return Instance().UpdateRedistribution(row_status, admin_status, source, dest, instance,
                                               reserved);
    });
}

unsigned long sms_bld_amb_test_cipr_redist(unsigned long instance, long row_status,
                                           long admin_status, long dest, long source,
                                           unsigned long reserved) {
    return sms_act_cipr_redist(row_status, admin_status, source, dest, instance, reserved);
}

unsigned long sms_set_cipr_redist_oid(unsigned long* oid, unsigned long instance, long source,
                                      long dest) {
    return Guarded(0ul, [&] { return Instance().GetRedistOid(oid, instance, source, dest); });
}

unsigned long sms_cipr_start(unsigned long instance, amb_cipr_rtm_entity* entity) {
    return Guarded(1ul, [&] { return Instance().StartInstance(instance, entity); });
}

unsigned long sms_cipr_action(unsigned long instance, unsigned long action) {
    return Guarded(1ul, [&] { return Instance().InstanceAction(instance, action); });
}

unsigned long sms_get_next_rtm_route(unsigned long instance, sms_walk_callback callback,
                                     void* context) {
    return Guarded(1ul, [&] {
        return Instance().StartWalk(WalkTable::RtmRoute, instance, callback, context);
    });
}

unsigned long sms_get_next_rtm_rib(unsigned long instance, sms_walk_callback callback,
                                   void* context) {
    return Guarded(
        1ul, [&] { return Instance().StartWalk(WalkTable::RtmRib, instance, callback, context); });
}

unsigned long sms_get_next_i3_ei(unsigned long instance, sms_walk_callback callback,
                                 void* context) {
    return Guarded(
        1ul, [&] { return Instance().StartWalk(WalkTable::I3Ei, instance, callback, context); });
}

unsigned long sms_get_next_i3_ea(unsigned long instance, sms_walk_callback callback,
                                 void* context) {
    return Guarded(
        1ul, [&] { return Instance().StartWalk(WalkTable::I3Ea, instance, callback, context); });
}

}  // extern "C"
