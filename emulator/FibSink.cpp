#include "emulator/FibSink.h"

namespace Zavrel::Emulator {

namespace {
constexpr unsigned long IPV6_INSTANCE_BIT = 0x8000;
}

unsigned long FibTableOf(unsigned long instance) {
    return instance & ~IPV6_INSTANCE_BIT;
}

FibKey FibKeyOf(unsigned long instance, const RibEntry& entry) {
    FibKey key;
    key.table = FibTableOf(instance);
    key.destination = entry.destination.Masked(entry.prefixLength);
    key.prefixLength = entry.prefixLength;
    return key;
}

FibRoute FibRouteOf(const RibEntry& entry) {
    FibRoute route;
    route.nextHop = entry.nextHop;
    route.ifIndex = entry.ifIndex;
    route.source = entry.source;
    return route;
}

FibSink::~FibSink() = default;

void FibSink::Set(const FibKey& key, const FibRoute* route) {
    if (route == nullptr) {
        m_pending[key].reset();
    } else {
        m_pending[key] = *route;
    }
}

void FibSink::Commit() {
    std::vector<Change> changes;
    for (auto& pending : m_pending) {
        auto committed = m_committed.find(pending.first);
        const bool had = committed != m_committed.end();
        if (!had && !pending.second) {
            continue;
        }
        if (had && pending.second && committed->second == *pending.second) {
            continue;
        }
        Change change;
        change.key = pending.first;
        if (had) {
            change.before = committed->second;
        }
        change.after = pending.second;
        if (pending.second) {
            m_committed[pending.first] = *pending.second;
        } else {
            m_committed.erase(committed);
        }
        changes.push_back(std::move(change));
    }
    m_pending.clear();
    if (!changes.empty()) {
        Apply(changes);
    }
    OnCommitted();
}

void FibSink::Forget() {
    m_pending.clear();
    m_committed.clear();
}

const FibRoute* FibSink::Find(const FibKey& key) const {
    auto found = m_committed.find(key);
    return found == m_committed.end() ? nullptr : &found->second;
}

std::string FibSink::Describe(const FibKey&) const {
    return "";
}

std::string FibSink::StatusText() const {
    return "";
}

void FibSink::StatusJson(Json::Value&) const {}

void FibSink::InterfacesChanged() {}

void FibSink::OnCommitted() {}

void MemoryFib::Apply(const std::vector<Change>&) {}

}  // namespace Zavrel::Emulator
