#include "app/StackControl.h"

#include <json/value.h>
#include <json/writer.h>

#include "emulator/Emulator.h"

namespace Zavrel {

namespace {

Emulator::RequestKind KindOf(StackControl::RequestKind kind) {
    switch (kind) {
        case StackControl::ROUTE:
            return Emulator::RequestKind::Route;
        case StackControl::REDIST:
            return Emulator::RequestKind::Redistribution;
        case StackControl::INTERFACE:
            return Emulator::RequestKind::Interface;
        case StackControl::ADDRESS:
            break;
    }
    return Emulator::RequestKind::Address;
}

Emulator::RouteSource SourceOf(StackControl::Protocol protocol) {
    switch (protocol) {
        case StackControl::RIP:
            return Emulator::RouteSource::Rip;
        case StackControl::OSPF:
            return Emulator::RouteSource::OspfInternal;
        case StackControl::OSPF_EXTERNAL:
            return Emulator::RouteSource::OspfExternal;
        case StackControl::EBGP:
            return Emulator::RouteSource::Ebgp;
        case StackControl::IBGP:
            break;
    }
    return Emulator::RouteSource::Ibgp;
}

unsigned long InstanceOf(unsigned short vlan, bool ipv6) {
    return ipv6 ? (vlan | Emulator::IP6_INSTANCE_BIT) : vlan;
}

}  // namespace

StackControl::StackControl() = default;
StackControl::~StackControl() = default;

void StackControl::Fail(unsigned int count, RequestKind kind, unsigned int code) {
    Emulator::FailNext(KindOf(kind), count, code);
}

void StackControl::Delay(unsigned int runs) {
    Emulator::Instance().Faults().SetAnswerDelay(runs);
}

void StackControl::PrintStatus(DcConsole& console) {
    const std::string text = Emulator::StatusText();
    console.Print("%s", text.c_str());
}

void StackControl::PrintTables(DcConsole& console) {
    const std::string text = Emulator::DumpTables();
    console.Print("%s", text.c_str());
}

namespace {

std::string Document(const Json::Value& value) {
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "  ";
    return Json::writeString(builder, value);
}

}  // namespace

std::string StackControl::StatusJson(size_t descriptors, unsigned long callbacks) {
    Json::Value document(Json::objectValue);
    document["version"] = JSON_VERSION;
    document["stack"] = Emulator::StatusJson();
    document["eventLoop"]["stackDescriptors"] = static_cast<Json::UInt64>(descriptors);
    document["eventLoop"]["readyCallbacks"] = static_cast<Json::UInt64>(callbacks);
    return Document(document);
}

std::string StackControl::TablesJson() {
    Json::Value document(Json::objectValue);
    document["version"] = JSON_VERSION;
    document["tables"] = Emulator::TablesJson();
    return Document(document);
}

bool StackControl::Learn(unsigned short vlan, bool ipv6, Protocol protocol,
                         const std::string& destination, unsigned int prefixLength,
                         const std::string& nextHop, unsigned int ifIndex, unsigned int metric) {
    return Emulator::AddProtocolRoute(InstanceOf(vlan, ipv6), SourceOf(protocol), destination,
                                      prefixLength, nextHop, ifIndex, metric);
}

bool StackControl::Withdraw(unsigned short vlan, bool ipv6, Protocol protocol,
                            const std::string& destination, unsigned int prefixLength,
                            const std::string& nextHop, unsigned int ifIndex) {
    return Emulator::WithdrawProtocolRoute(InstanceOf(vlan, ipv6), SourceOf(protocol), destination,
                                           prefixLength, nextHop, ifIndex);
}

bool StackControl::IsIdle() {
    const Emulator::Stack& stack = Emulator::Instance();
    if (stack.IsStarted() && !stack.IsI3Ready()) {
        return false;
    }
    return stack.QueuedRequests() == 0 && stack.ActiveWalks() == 0 &&
           stack.PendingManagementWork() == 0;
}

unsigned long StackControl::Breaches() {
    return static_cast<unsigned long>(Emulator::BreachCount());
}

std::string StackControl::ProgressText() {
    const Emulator::Stack& stack = Emulator::Instance();
    const uint64_t routes = stack.RequestCount(Emulator::RequestKind::Route);
    const uint64_t done = stack.AnswerCount(Emulator::RequestKind::Route, Emulator::RESULT_DONE);
    return "route requests " + std::to_string(routes) + ", done " + std::to_string(done) +
           ", queued in the stack " + std::to_string(stack.QueuedRequests());
}

}  // namespace Zavrel
