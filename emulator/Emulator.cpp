#include "emulator/Emulator.h"

#include <json/value.h>

namespace Zavrel::Emulator {

Stack& Instance() {
    static Stack* stack = new Stack();  // never destroyed: callbacks may come late
    return *stack;
}

void Reset() {
    Instance().Reset();
}

void FailNext(RequestKind kind, unsigned int count, unsigned long result) {
    Instance().Faults().FailNext(kind, count, result);
}

void SetAnswerDelay(RequestKind kind, unsigned int runs) {
    Instance().Faults().SetAnswerDelay(kind, runs);
}

void SetFailureRate(RequestKind kind, double rate, unsigned long result, uint64_t seed) {
    Instance().Faults().SetFailureRate(kind, rate, result, seed);
}

void ClearFaults() {
    Instance().Faults().Clear();
}

void ObserveRouteAnswers(std::function<void(const RouteAnswer&)> observer) {
    Instance().SetRouteObserver(std::move(observer));
}

void Freeze(bool frozen) {
    Instance().Freeze(frozen);
}

uint64_t RequestCount(RequestKind kind) {
    return Instance().RequestCount(kind);
}

uint64_t AnswerCount(unsigned long result) {
    return Instance().AnswerCount(result);
}

uint64_t AnswerCount(RequestKind kind, unsigned long result) {
    return Instance().AnswerCount(kind, result);
}

size_t BreachCount() {
    return Instance().Monitor().Count();
}

size_t BreachCount(BreachKind kind) {
    return Instance().Monitor().Count(kind);
}

std::vector<std::string> Breaches() {
    return Instance().Monitor().Texts();
}

namespace {

bool MakeProtocolRoute(RouteSource source, const std::string& destination,
                       unsigned long prefixLength, const std::string& nextHop,
                       unsigned long ifIndex, unsigned long metric, ProtocolRoute& route) {
    if (source == RouteSource::Connected || source == RouteSource::Static) {
        return false;
    }
    route.source = source;
    if (!route.destination.Parse(destination) || !route.nextHop.Parse(nextHop) ||
        route.destination.Family() != route.nextHop.Family() ||
        prefixLength > route.destination.MaxPrefixLength()) {
        return false;
    }
    route.prefixLength = prefixLength;
    route.ifIndex = ifIndex;
    route.metric = metric;
    return true;
}

}  // namespace

bool AddProtocolRoute(unsigned long instance, RouteSource source, const std::string& destination,
                      unsigned long prefixLength, const std::string& nextHop, unsigned long ifIndex,
                      unsigned long metric) {
    ProtocolRoute route;
    if (!MakeProtocolRoute(source, destination, prefixLength, nextHop, ifIndex, metric, route)) {
        return false;
    }
    Instance().PostProtocolRoute(instance, route, true);
    return true;
}

bool WithdrawProtocolRoute(unsigned long instance, RouteSource source,
                           const std::string& destination, unsigned long prefixLength,
                           const std::string& nextHop, unsigned long ifIndex) {
    ProtocolRoute route;
    if (!MakeProtocolRoute(source, destination, prefixLength, nextHop, ifIndex, 0, route)) {
        return false;
    }
    Instance().PostProtocolRoute(instance, route, false);
    return true;
}

std::string DumpTables() {
    Stack& stack = Instance();
    stack.RefreshRibs();
    return "RTM instances:\n" + stack.DumpInstances() + "Static routes:\n" +
           stack.DumpStaticRoutes() + "Redistribution:\n" + stack.DumpRedistribution() + "RIB:\n" +
           stack.DumpRib() + "Interfaces:\n" + stack.DumpInterfaces() + "Addresses:\n" +
           stack.DumpAddresses();
}

std::string StatusText() {
    return Instance().StatusText();
}

Json::Value TablesJson() {
    Stack& stack = Instance();
    stack.RefreshRibs();
    return stack.TablesJson();
}

Json::Value StatusJson() {
    return Instance().StatusJson();
}

}  // namespace Zavrel::Emulator
