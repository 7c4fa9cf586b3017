#include "stack/DcScheduler.h"

#include <cstring>

#include "platform/Callback.h"
#include "platform/Trace.h"
#include "stackapi/stackapi.h"

namespace Zavrel {

namespace {

// The stack components brought up at start; the list is fixed.
const char STACK_COMPONENTS[] = "ripv2 ripng bgp ospf ospfv3 igmp pim";

}  // namespace

DcScheduler::DcScheduler()
    : m_rescheduled(false),
      m_timer("DcScheduler", new MemberCallback2<DcScheduler, unsigned int, void*>(
                                 this, &DcScheduler::OnTimeout)) {
    TRACE(10, "Creating DC Scheduler\n");
}

DcScheduler::~DcScheduler() {
    TRACE(10, "Deleting DC Scheduler\n");
}

int DcScheduler::init() {
    TRACE(10, "Starting Metaswitch\n");
    // smsi_init takes a writable buffer; hand it a copy of the fixed list.
    char components[sizeof(STACK_COMPONENTS)];
    std::memcpy(components, STACK_COMPONENTS, sizeof(STACK_COMPONENTS));
    return smsi_init(components);
}

void DcScheduler::StartTimer(unsigned int ms) {
    TRACE(10, "Starting Scheduler Timer for %d ms\n", static_cast<int>(ms));
    m_timer.Start(ms);
}

void DcScheduler::OnTimeout(unsigned int, void*) {
    TRACE(10, "Scheduling Timer Expired!!! Scheduling Metaswitch\n");
    m_rescheduled = false;
    int next = nbb_scheduler();
    if (m_rescheduled) {
        // The stack asked for an early run while it ran; that request has
        // already armed the short timer, which must not be replaced.
        TRACE(10,
              "No starting next scheduler timer !!! since Metaswitch restarted it for some "
              "action\n");
        return;
    }
    unsigned int delay;
    if (next < 0) {
        delay = IDLE_INTERVAL_MS;
    } else if (static_cast<unsigned int>(next) < MIN_INTERVAL_MS) {
        delay = MIN_INTERVAL_MS;
    } else {
        delay = static_cast<unsigned int>(next);
    }
    StartTimer(delay);
}

void DcScheduler::SchedNBase() {
    TRACE(10, "Scheduling Metaswitch\n");
    nbb_scheduler();
}

void DcScheduler::RescheduleNBase() {
    TRACE(10, "Rescheduling Metaswitch\n");
    if (m_rescheduled) {
        return;
    }
    m_rescheduled = true;
    StartTimer(EARLY_RUN_MS);
}

}  // namespace Zavrel
