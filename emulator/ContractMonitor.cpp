#include "emulator/ContractMonitor.h"

#include "platform/Trace.h"

namespace Zavrel::Emulator {

bool ContractMonitor::RequestStarted(const Oid& oid) {
    unsigned int& count = m_outstanding[oid];
    ++count;
    return count == 1;
}

void ContractMonitor::RequestFinished(const Oid& oid) {
    auto found = m_outstanding.find(oid);
    if (found == m_outstanding.end()) {
        return;
    }
    if (--found->second == 0) {
        m_outstanding.erase(found);
    }
}

void ContractMonitor::Report(BreachKind kind, const std::string& text) {
    ++m_counts[static_cast<size_t>(kind)];
    m_texts.push_back(std::string(BreachKindName(kind)) + ": " + text);
    TRACE(1, "Stack emulator: contract breach: %s\n", m_texts.back().c_str());
}

void ContractMonitor::Clear() {
    m_given.clear();
    m_outstanding.clear();
    m_started.clear();
    m_i3Ready = false;
    m_texts.clear();
    for (size_t& count : m_counts) {
        count = 0;
    }
}

}  // namespace Zavrel::Emulator
