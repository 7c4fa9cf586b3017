#include "emulator/EmulatorTypes.h"

namespace Zavrel::Emulator {

const char* RequestKindName(RequestKind kind) {
    switch (kind) {
        case RequestKind::Route:
            return "route";
        case RequestKind::Redistribution:
            return "redistribution";
        case RequestKind::Interface:
            return "interface";
        case RequestKind::Address:
            return "address";
        case RequestKind::Instance:
            return "instance";
        case RequestKind::Walk:
            return "walk";
    }
    return "unknown";
}

bool IsRowKind(RequestKind kind) {
    return kind == RequestKind::Route || kind == RequestKind::Redistribution ||
           kind == RequestKind::Interface || kind == RequestKind::Address;
}

const char* BreachKindName(BreachKind kind) {
    switch (kind) {
        case BreachKind::OverlappingRequest:
            return "overlapping request";
        case BreachKind::RequestBeforeI3Ready:
            return "request before interface tables ready";
        case BreachKind::UnknownInstance:
            return "route for an instance never started";
        case BreachKind::OidMismatch:
            return "row without its OID";
    }
    return "unknown";
}

const char* WalkTableName(WalkTable table) {
    switch (table) {
        case WalkTable::RtmRoute:
            return "rtm_route";
        case WalkTable::RtmRib:
            return "rtm_rib";
        case WalkTable::I3Ei:
            return "i3_ei";
        case WalkTable::I3Ea:
            return "i3_ea";
    }
    return "unknown";
}

}  // namespace Zavrel::Emulator
