// The stack emulator's control and introspection API, for tests and for the
// host application: the process-wide stack behind the C API, reset, fault
// injection, counters, contract breaches, table dumps, protocol routes and
// the status text of the application's "stack status" command.
#ifndef ZAVREL_EMULATOR_EMULATOR_H
#define ZAVREL_EMULATOR_EMULATOR_H

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "emulator/EmulatorTypes.h"
#include "emulator/Rib.h"
#include "emulator/Stack.h"

namespace Zavrel::Emulator {

// The stack that serves the C API (created on first use, lives as long as
// the process).
Stack& Instance();

// Back to the state before smsi_init (tables, counters, faults, breaches),
// without calling the library. For tests; never from inside a callback.
void Reset();

// ---- fault injection (row kinds: Route, Redistribution, Interface, Address;
// and Walk: a failed walk delivers at most one row, then ends with the
// result as its code)
void FailNext(RequestKind kind, unsigned int count, unsigned long result);
void SetAnswerDelay(RequestKind kind, unsigned int runs);
void SetFailureRate(RequestKind kind, double rate, unsigned long result, uint64_t seed);
void ClearFaults();
// Freezes the stack: requests are accepted but nothing is done until thawed.
void Freeze(bool frozen);

// Calls observer with every static-route request the stack answers (an
// empty function: nobody); Reset forgets it.
void ObserveRouteAnswers(std::function<void(const RouteAnswer&)> observer);

// ---- counters
uint64_t RequestCount(RequestKind kind);
uint64_t AnswerCount(unsigned long result);
uint64_t AnswerCount(RequestKind kind, unsigned long result);

// ---- contract breaches
size_t BreachCount();
size_t BreachCount(BreachKind kind);
std::vector<std::string> Breaches();

// ---- protocol routes, handed to an RTM instance on the next run as if a
// routing protocol had learnt them. False when an address does not parse or
// the source is Connected or Static.
bool AddProtocolRoute(unsigned long instance, RouteSource source, const std::string& destination,
                      unsigned long prefixLength, const std::string& nextHop, unsigned long ifIndex,
                      unsigned long metric);
bool WithdrawProtocolRoute(unsigned long instance, RouteSource source,
                           const std::string& destination, unsigned long prefixLength,
                           const std::string& nextHop, unsigned long ifIndex);

// ---- tables and status
// Every table under a heading line ("RTM instances:", "Static routes:",
// "Redistribution:", "RIB:", "Interfaces:", "Addresses:").
std::string DumpTables();
std::string StatusText();
// The same as JSON objects: DumpTables has one array member per table,
// StatusText one member per line (see docs/app.md for the shape).
Json::Value TablesJson();
Json::Value StatusJson();

}  // namespace Zavrel::Emulator

#endif
