// Small value types shared by the stack emulator: request kinds, row
// results, contract breach kinds and the row status values it understands.
#ifndef ZAVREL_EMULATOR_EMULATORTYPES_H
#define ZAVREL_EMULATOR_EMULATORTYPES_H

#include <cstddef>
#include <string>

#include "stackapi/SmsConstants.h"

namespace Zavrel::Emulator {

// The kinds of request the stack accepts. The first four are MIB row
// requests (answered per row); Instance covers sms_cipr_start and
// sms_cipr_action; Walk the four table walks.
enum class RequestKind { Route = 0, Redistribution, Interface, Address, Instance, Walk };
constexpr size_t REQUEST_KIND_COUNT = 6;
// "route", "redistribution", "interface", "address", "instance", "walk".
const char* RequestKindName(RequestKind kind);
// True for the four MIB row kinds.
bool IsRowKind(RequestKind kind);

// Results the stack gives a row request (passed to cSetRouteState and
// cSetRedistState; interface and address rows are only counted), and the
// row status values it acts on.
using Sms::RESULT_DONE;
using Sms::RESULT_NO_ROW;
using Sms::RESULT_TEMPORARY;
using Sms::RESULT_WRONG_VALUE;
using Sms::ROW_ACTIVE;
using Sms::ROW_CREATE_AND_GO;
using Sms::ROW_DESTROY;

// One static-route request the stack has answered, as a program that
// follows the stack's work sees it: the row as asked and the result.
struct RouteAnswer {
    unsigned long instance = 0;
    std::string destination;  // the address in text
    unsigned long prefixLength = 0;
    std::string nextHop;
    unsigned long ifIndex = 0;
    long rowStatus = 0;
    long adminStatus = 0;
    unsigned long result = 0;
};

// Breaches of the library's side of the contract, counted by the stack.
enum class BreachKind {
    OverlappingRequest = 0,  // a second request on a row while one is outstanding
    RequestBeforeI3Ready,    // a row request before cI3Ready was called
    UnknownInstance,         // a route for an RTM instance never started
    OidMismatch,             // a row request whose OID the library never asked for
};
constexpr size_t BREACH_KIND_COUNT = 4;
const char* BreachKindName(BreachKind kind);

// Tables that can be walked.
enum class WalkTable { RtmRoute = 0, RtmRib, I3Ei, I3Ea };
// "rtm_route", "rtm_rib", "i3_ei", "i3_ea".
const char* WalkTableName(WalkTable table);

// IPv6 marker bit of RTM and protocol instance ids.
constexpr unsigned long IP6_INSTANCE_BIT = 0x8000;

}  // namespace Zavrel::Emulator

#endif
