// FibValues: forwarding-table keys and routes written briefly in tests.
#ifndef ZAVREL_TESTS_EMULATOR_FIBVALUES_H
#define ZAVREL_TESTS_EMULATOR_FIBVALUES_H

#include "emulator/FibSink.h"

namespace Zavrel::test {

// Destination of a table: Key(10, "192.0.2.0", 24).
inline Emulator::FibKey Key(unsigned long table, const char* destination,
                            unsigned long prefixLength) {
    Emulator::FibKey key;
    key.table = table;
    key.destination.Parse(destination);
    key.prefixLength = prefixLength;
    return key;
}

// A route: Via("10.0.0.1", 3) or Via("0.0.0.0", 3, RouteSource::Connected).
inline Emulator::FibRoute Via(const char* nextHop, unsigned long ifIndex,
                              Emulator::RouteSource source = Emulator::RouteSource::Static) {
    Emulator::FibRoute route;
    route.nextHop.Parse(nextHop);
    route.ifIndex = ifIndex;
    route.source = source;
    return route;
}

}  // namespace Zavrel::test

#endif
