/*
 * The routing stack's C API, as the routing-management library sees it.
 *
 * Two directions meet here:
 *  - calls the library makes on the stack (smsi_init, nbb_*, sms_*): the stack
 *    implements them; the library only declares and calls them;
 *  - the c* entry points the stack calls back: the library implements them
 *    (unmangled, exported) and the stack calls them, always from inside its
 *    own scheduler run (nbb_scheduler) on the application's event thread.
 *
 * The stack is single-threaded and cooperative: it accepts requests at any
 * time but does its work, and makes its callbacks, only inside
 * nbb_scheduler(). The one exception is cRescheduleNBase(), which it may call
 * from inside any request to ask for an early run.
 *
 * Integers follow the stack's own widths: "unsigned long" is the stack's
 * 32-bit word on the embedded target (and 64 bits on a 64-bit host build);
 * OID components are unsigned long.
 */
#ifndef ZAVREL_STACKAPI_STACKAPI_H
#define ZAVREL_STACKAPI_STACKAPI_H

/*
 * Linking. The program links one library of each side (the routing-management
 * library and a stack), and each side's shared object leaves the other
 * side's functions to the program. Each side therefore sees the other
 * side's functions as weak references, so that its own object links with
 * every other reference resolved (-z defs) and nothing but this API is left
 * open. A file that implements the stack defines SMS_STACK_SIDE, and a file
 * that implements the c* entry points defines SMS_LIBRARY_SIDE, before it
 * includes this header, so that its definitions stay strong.
 */
#if defined(__GNUC__) && !defined(SMS_STACK_SIDE)
#define SMS_STACK_ENTRY __attribute__((weak))
#else
#define SMS_STACK_ENTRY
#endif
#if defined(__GNUC__) && !defined(SMS_LIBRARY_SIDE)
#define SMS_LIBRARY_ENTRY __attribute__((weak))
#else
#define SMS_LIBRARY_ENTRY
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ---------------------------------------------------------------------------
 * Constants
 * ------------------------------------------------------------------------- */

/* Longest OID the stack builds for any row, in components. */
#define SMS_MAX_OID_LEN 64

/* Response codes handed to a walk callback (sms_walk_callback). */
#define SMS_RC_ROW 1          /* one row follows in the row argument */
#define SMS_RC_GEN_ERROR 2    /* general error */
#define SMS_RC_WRONG_VALUE 3  /* a request value is wrong */
#define SMS_RC_INCONSISTENT 4 /* inconsistent value */
#define SMS_RC_RESOURCE 5     /* resource failure */
#define SMS_RC_NO_FAMILY 6    /* family is not found */
#define SMS_RC_END_OF_TABLE 7 /* the walk has reached the end of the table */
#define SMS_RC_AGENT_ERROR 8  /* agent error */
#define SMS_RC_INCOMPLETE 9   /* incomplete */
#define SMS_RC_PARTIAL 10     /* partial family ok */
#define SMS_RC_PASS_OVER 12   /* nothing to show for this step; the walk goes on */

/* Row status values (SNMP RowStatus). */
#define SMS_ROW_ACTIVE 1
#define SMS_ROW_NOT_IN_SERVICE 2
#define SMS_ROW_NOT_READY 3
#define SMS_ROW_CREATE_AND_GO 4
#define SMS_ROW_CREATE_AND_WAIT 5
#define SMS_ROW_DESTROY 6

/* Results reported for a row in cSetRouteState / cSetRedistState. */
#define SMS_RESULT_DONE 1        /* the row is as requested */
#define SMS_RESULT_WRONG_VALUE 3 /* a value of the request is wrong */
#define SMS_RESULT_TEMPORARY 5   /* not now (for example the RTM instance is not ready) */
#define SMS_RESULT_NO_ROW 6      /* a destroy found no such row */

/* Action code of sms_cipr_action that deletes an RTM instance. */
#define SMS_CIPR_ACTION_DELETE 2080

/* Address types of interface-address rows. */
#define SMS_ADDR_TYPE_IPV4 1
#define SMS_ADDR_TYPE_IPV6 2

/* Interface flag bits of amb_stubs_i3_ei.flags. */
#define SMS_IF_FLAG_MPLS_TUNNEL 0x01
#define SMS_IF_FLAG_LOOPBACK 0x02
#define SMS_IF_FLAG_P2P 0x04
#define SMS_IF_FLAG_BROADCAST 0x08
#define SMS_IF_FLAG_MULTICAST 0x10
#define SMS_IF_FLAG_UNNUMBERED 0x20

/* Socket event mask bits of cRegisterWorkWithEventloop / cChangeMask. */
#define SMS_SOCK_READ 0x1
#define SMS_SOCK_WRITE 0x2
#define SMS_SOCK_EXCEPT 0x4

/* ---------------------------------------------------------------------------
 * Row structures
 * ------------------------------------------------------------------------- */

/* Settings of one RTM instance (sms_cipr_start, cGetRtmConfig). */
typedef struct amb_cipr_rtm_entity {
    unsigned long instance_index; /* RTM instance id (VLAN, 0x8000 set for IPv6) */
    unsigned long row_status;     /* set to 1 when answering cGetRtmConfig */
    unsigned long admin_status;   /* set to 1 when answering cGetRtmConfig */
    unsigned long ospf_int_distance;
    unsigned long ospf_ext_distance;
    unsigned long ebgp_distance; /* first BGP distance field */
    unsigned long ibgp_distance; /* second BGP distance field */
    unsigned long rip_distance;
    unsigned long dead_rpm_timer; /* seconds */
    unsigned long addr_family;    /* 1 IPv4, 2 IPv6, 0 when not given */
} amb_cipr_rtm_entity;

/* One row of an RTM route table (sms_get_next_rtm_route). */
typedef struct amb_cipr_rtm_route {
    unsigned long instance;    /* RTM instance id */
    unsigned long addr_family; /* 1 IPv4, 2 IPv6 */
    unsigned char dest[16];    /* IPv4 uses the first 4 bytes */
    unsigned long dest_len;    /* prefix length */
    unsigned char next_hop[16];
    unsigned long if_index;
    unsigned long route_type; /* 1 other, 2 reject, 3 local, 4 remote */
    unsigned long proto;      /* IANA route protocol: 2 local, 3 static, 8 rip, 13 ospf, 14 bgp */
    unsigned long age;        /* seconds */
    unsigned long route_info;
    unsigned long next_hop_as;
    unsigned long metric1;
    unsigned long metric2;
    unsigned long metric3;
    unsigned long metric4;
    unsigned long metric5;
} amb_cipr_rtm_route;

/* One row of an RTM RIB (sms_get_next_rtm_rib): a route row plus two flags. */
typedef struct amb_cipr_rtm_rib {
    unsigned long instance;
    unsigned long addr_family;
    unsigned char dest[16];
    unsigned long dest_len;
    unsigned char next_hop[16];
    unsigned long if_index;
    unsigned long route_type;
    unsigned long proto;
    unsigned long age;
    unsigned long route_info;
    unsigned long next_hop_as;
    unsigned long metric1;
    unsigned long metric2;
    unsigned long metric3;
    unsigned long metric4;
    unsigned long metric5;
    unsigned long fib_route;  /* 1 when installed in the forwarding table */
    unsigned long unresolved; /* 1 when no interface resolves the next hop */
} amb_cipr_rtm_rib;

/* One row of the I3 interface table (sms_get_next_i3_ei). */
typedef struct amb_stubs_i3_ei {
    unsigned long instance;
    unsigned long if_index;
    char if_name[64];
    unsigned long oper_status; /* 1 up, 2 down */
    unsigned long mtu;
    unsigned long flags; /* SMS_IF_FLAG_* */
    unsigned long extra; /* passed through from the request */
} amb_stubs_i3_ei;

/* One row of the I3 interface-address table (sms_get_next_i3_ea). */
typedef struct amb_stubs_i3_ea {
    unsigned long instance;
    unsigned long if_index;
    unsigned long addr_type;   /* SMS_ADDR_TYPE_* */
    unsigned char address[16]; /* IPv4 uses the first 4 bytes */
    unsigned long prefix_len;
} amb_stubs_i3_ea;

/*
 * Walk callback. The stack calls it once per row (code SMS_RC_ROW with the
 * row), and once more at the end of the table (SMS_RC_END_OF_TABLE) or on an
 * error (another code, row null). SMS_RC_PASS_OVER may come at any time and
 * carries nothing. The stack stops the walk when the callback returns 0.
 * "first" is an opaque value of the stack, passed through.
 */
typedef unsigned char (*sms_walk_callback)(void* context, unsigned long first, unsigned long code,
                                           void* row);

/* ---------------------------------------------------------------------------
 * N-BASE runtime. Called by the library on the event thread.
 * ------------------------------------------------------------------------- */

/* Starts the named components (a blank-separated list, for example
 * "ripv2 ripng bgp ospf ospfv3 igmp pim"). Called once by DcScheduler::init.
 * Returns 0 on success, non-zero when a component is unknown. */
SMS_STACK_ENTRY int smsi_init(char* components);

/* Runs the stack's pending work once. Called from the scheduler timer.
 * Returns the milliseconds until the stack next needs to run, or a negative
 * value when nothing is pending. */
SMS_STACK_ENTRY int nbb_scheduler(void);

/* IPS tracing controls, called from the "ips" console command.
 * nbb_get_ips_tracing returns non-zero while IPS tracing is on. */
SMS_STACK_ENTRY int nbb_get_ips_tracing(void);
SMS_STACK_ENTRY void nbb_set_ips_filter(char* filter, unsigned short filter_type);
SMS_STACK_ENTRY void nbb_trips_control(int on);

/* Count of OS failures seen by the stack; the tracing controls reset it. */
extern SMS_STACK_ENTRY unsigned long nbb_os_failures;

/* ---------------------------------------------------------------------------
 * Management stubs. Called by the library (MIB actions, configuration items,
 * interface manager, RTM manager). A request is accepted at once and answered
 * later, from nbb_scheduler, through the c* entry points below.
 * ------------------------------------------------------------------------- */

/* Static route row. not_shared is 1 when issued from the application side
 * and 0 when issued from inside a stack callback. family 1 IPv4, other IPv6.
 * Answered with cSetRouteState and then cRunPendingAction. */
SMS_STACK_ENTRY unsigned long sms_update_route(int not_shared, long row_status, long admin_status,
                                               long family, const unsigned char* dest,
                                               unsigned long prefix_len,
                                               const unsigned char* next_hop, long path_type,
                                               unsigned long if_index, unsigned long instance,
                                               unsigned long metric);

/* OID of a static route row: fills oid (at least SMS_MAX_OID_LEN entries)
 * and returns the number of components. Pure: no request is made. */
SMS_STACK_ENTRY unsigned long sms_get_route_oid(unsigned long* oid, unsigned long instance,
                                                long family, const unsigned char* dest,
                                                unsigned long prefix_len,
                                                const unsigned char* next_hop,
                                                unsigned long if_index);

/* Interface row of the I3 interface table, from the application side
 * (sms_act_interface) or from inside a stack callback
 * (sms_bld_amb_test_i3_ei). Answered with cRunPendingAction. */
SMS_STACK_ENTRY unsigned long sms_act_interface(long row_status, unsigned long oper_status,
                                                unsigned long instance, unsigned long if_index,
                                                const char* if_name, unsigned long reserved,
                                                long flags, unsigned long extra);
SMS_STACK_ENTRY unsigned long sms_bld_amb_test_i3_ei(long row_status, unsigned long oper_status,
                                                     unsigned long instance, unsigned long if_index,
                                                     const char* if_name, unsigned long reserved,
                                                     long flags, unsigned long extra);

/* Interface-address row. vlan_or_instance is the VLAN for IPv4 rows and the
 * IPv6 RTM instance for IPv6 rows. Answered with cRunPendingAction. */
SMS_STACK_ENTRY unsigned long sms_act_ipaddr(long row_status, unsigned long vlan_or_instance,
                                             unsigned long addr_type, unsigned long if_index,
                                             const unsigned char* address,
                                             unsigned long prefix_len);

/* OIDs of interface and interface-address rows. */
SMS_STACK_ENTRY unsigned long sms_set_i3_ei_oid(unsigned long* oid, unsigned long instance,
                                                unsigned long if_index);
SMS_STACK_ENTRY unsigned long sms_set_i3_ea_oid(unsigned long* oid, unsigned long instance,
                                                unsigned long if_index,
                                                const unsigned char* address,
                                                unsigned long addr_type);

/* Redistribution row: routes of protocol source go into protocol dest of the
 * RTM instance. Note the different argument orders of the two calls.
 * Answered with cSetRedistState and then cRunPendingAction. */
SMS_STACK_ENTRY unsigned long sms_act_cipr_redist(long row_status, long admin_status, long source,
                                                  long dest, unsigned long instance,
                                                  unsigned long reserved);
SMS_STACK_ENTRY unsigned long sms_bld_amb_test_cipr_redist(unsigned long instance, long row_status,
                                                           long admin_status, long dest,
                                                           long source, unsigned long reserved);
SMS_STACK_ENTRY unsigned long sms_set_cipr_redist_oid(unsigned long* oid, unsigned long instance,
                                                      long source, long dest);

/* RTM instances. sms_cipr_start creates or updates an instance; the stack
 * then asks cGetRtmConfig for its settings and reports cSetRtmReady.
 * sms_cipr_action with SMS_CIPR_ACTION_DELETE deletes it with its routes. */
SMS_STACK_ENTRY unsigned long sms_cipr_start(unsigned long instance, amb_cipr_rtm_entity* entity);
SMS_STACK_ENTRY unsigned long sms_cipr_action(unsigned long instance, unsigned long action);

/* Table walks, from the given instance onward in table order; answered on
 * later scheduler runs through the callback. */
SMS_STACK_ENTRY unsigned long sms_get_next_rtm_route(unsigned long instance,
                                                     sms_walk_callback callback, void* context);
SMS_STACK_ENTRY unsigned long sms_get_next_rtm_rib(unsigned long instance,
                                                   sms_walk_callback callback, void* context);
SMS_STACK_ENTRY unsigned long sms_get_next_i3_ei(unsigned long instance, sms_walk_callback callback,
                                                 void* context);
SMS_STACK_ENTRY unsigned long sms_get_next_i3_ea(unsigned long instance, sms_walk_callback callback,
                                                 void* context);

/* ---------------------------------------------------------------------------
 * Entry points the library exports for the stack (unmangled).
 * ------------------------------------------------------------------------- */

/* Scheduling: ask for an early run (starts a 5 ms timer unless one is
 * pending); ask whether one is pending (0 or 1). */
SMS_LIBRARY_ENTRY void cRescheduleNBase(void);
SMS_LIBRARY_ENTRY int cIsNBaseRescheduled(void);

/* Sockets: the stack's descriptors are watched by the application's event
 * loop. mask holds SMS_SOCK_* bits. */
SMS_LIBRARY_ENTRY void cRegisterWorkWithEventloop(int fd, int arg, unsigned int mask);
SMS_LIBRARY_ENTRY void cUnregisterWorkWithEventloop(int fd, int arg);
SMS_LIBRARY_ENTRY void cChangeMask(int fd, unsigned int mask);

/* Instances: 1 when the id carries the IPv6 bit (0x8000); the protocol
 * instance of the id's VLAN for IPv6 / IPv4. */
SMS_LIBRARY_ENTRY int cIsIpv6Instance(unsigned long instance);
SMS_LIBRARY_ENTRY unsigned long cGetIp6Instance(unsigned long instance);
SMS_LIBRARY_ENTRY unsigned long cGetIp4Instance(unsigned long instance);

/* Outcome of a static route row request: the row's values as requested and
 * the result (SMS_RESULT_DONE, or a reason code). */
SMS_LIBRARY_ENTRY void cSetRouteState(unsigned long instance, int family, const unsigned char* dest,
                                      unsigned int prefix_len, const unsigned char* next_hop,
                                      unsigned int if_index, int metric, int route_type,
                                      int row_status, int admin_status, unsigned long spare,
                                      unsigned int result);

/* Outcome of a redistribution row request: a0 row status, a1 admin status,
 * a2 source, a3 destination, a4 unused, a5 instance, a6 extra value, a7 result. */
SMS_LIBRARY_ENTRY void cSetRedistState(unsigned long a0, unsigned long a1, unsigned long a2,
                                       unsigned long a3, unsigned long a4, unsigned long a5,
                                       unsigned long a6, unsigned long a7);

/* RTM instance readiness and settings. cGetRtmConfig fills the entity and
 * returns 1, or returns 2 when the instance is unknown. */
SMS_LIBRARY_ENTRY int cIsRtmReady(unsigned long instance);
SMS_LIBRARY_ENTRY void cSetRtmReady(unsigned long instance);
SMS_LIBRARY_ENTRY int cGetRtmConfig(unsigned long instance, amb_cipr_rtm_entity* entity);

/* IPv4 address of the instance's primary interface (cGetAddress) or of its
 * interface "eth0" (cGetVlanAddress), 4 bytes in network order. 1 when found,
 * 0 otherwise (the buffer is then untouched). */
SMS_LIBRARY_ENTRY int cGetAddress(unsigned long instance, unsigned char* address);
SMS_LIBRARY_ENTRY int cGetVlanAddress(unsigned long instance, unsigned char* address);

/* The interface tables are ready: queued requests may go. Called once. */
SMS_LIBRARY_ENTRY int cI3Ready(void);

/* The request on the row with this OID is finished; the next one may go. */
SMS_LIBRARY_ENTRY void cRunPendingAction(unsigned long* oid, unsigned long length);

#ifdef __cplusplus
}
#endif

#endif /* ZAVREL_STACKAPI_STACKAPI_H */
