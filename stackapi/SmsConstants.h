// SmsConstants: the numbers of the stack API as typed constants, declared
// once and used by the library, the embedded stack and the application.
//
// Three families of family numbers meet at this API, and they differ:
//  - the stack's address family (AFI_*): 0 IPv4, 41 IPv6, as passed to the
//    stack's requests, its walks and DcRtmMgr::GetDclProtocolInstanceIdFromVlan;
//  - the family stored in route and address records (RECORD_*): 1 IPv4
//    (4-byte addresses), any other value IPv6 (16-byte addresses; 2 written);
//  - the address type of address rows (ADDR_TYPE_*): 1 IPv4, 2 IPv6.
#ifndef ZAVREL_STACKAPI_SMSCONSTANTS_H
#define ZAVREL_STACKAPI_SMSCONSTANTS_H

#include "stackapi/stackapi.h"

namespace Zavrel::Sms {

// Row status of a MIB row (the RowStatus of SNMP), as the stack's requests
// carry it.
constexpr long ROW_ACTIVE = SMS_ROW_ACTIVE;
constexpr long ROW_NOT_IN_SERVICE = SMS_ROW_NOT_IN_SERVICE;
constexpr long ROW_NOT_READY = SMS_ROW_NOT_READY;
constexpr long ROW_CREATE_AND_GO = SMS_ROW_CREATE_AND_GO;
constexpr long ROW_CREATE_AND_WAIT = SMS_ROW_CREATE_AND_WAIT;
constexpr long ROW_DESTROY = SMS_ROW_DESTROY;

// Administrative and operational status: 1 up, 2 down.
constexpr long STATUS_UP = 1;
constexpr long STATUS_DOWN = 2;

// Results the stack reports for a row (cSetRouteState, cSetRedistState);
// every other value is a reason code.
constexpr unsigned int RESULT_DONE = SMS_RESULT_DONE;
constexpr unsigned int RESULT_WRONG_VALUE = SMS_RESULT_WRONG_VALUE;
constexpr unsigned int RESULT_TEMPORARY = SMS_RESULT_TEMPORARY;
constexpr unsigned int RESULT_NO_ROW = SMS_RESULT_NO_ROW;

// The stack's address families.
constexpr int AFI_IPV4 = 0;
constexpr int AFI_IPV6 = 41;

// Families of route and address records.
constexpr long RECORD_IPV4 = 1;
constexpr long RECORD_IPV6 = 2;

// Address types of address rows.
constexpr unsigned long ADDR_TYPE_IPV4 = SMS_ADDR_TYPE_IPV4;
constexpr unsigned long ADDR_TYPE_IPV6 = SMS_ADDR_TYPE_IPV6;

// Route protocol codes of the stack's tables (the IANA numbering of IP route
// protocols).
constexpr long PROTO_LOCAL = 2;
constexpr long PROTO_STATIC = 3;
constexpr long PROTO_RIP = 8;
constexpr long PROTO_OSPF = 13;
constexpr long PROTO_BGP = 14;

// A protocol code as the stack's redistribution rows carry it: in the
// upper half of the word.
constexpr unsigned int RedistProtocol(long code) {
    return static_cast<unsigned int>(code) << 16;
}

}  // namespace Zavrel::Sms

#endif
