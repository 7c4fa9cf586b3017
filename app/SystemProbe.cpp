#include "app/SystemProbe.h"

#include "cfg/CfgItem.h"
#include "cfg/CfgSched.h"
#include "mib/Serializer.h"
#include "routing/DcRouterMgr.h"
#include "rtm/DcRtmMgr.h"

namespace Zavrel {

SystemProbe::SystemProbe(StackControl& stack) : m_stack(stack) {}

bool SystemProbe::SerializerEmpty() {
    DcRouterMgr* manager = DcRouterMgr::GetInstance();
    if (manager == nullptr) {
        return true;
    }
    // The listing has one "(Actions_Count=..." line per object with actions
    // after its legend.
    const string pending = manager->GetSerializer().GetPendingActionsAsString();
    return pending.str().find("\n(Actions_Count=") == std::string::npos;
}

QuietProbe::State SystemProbe::SchedulerState() {
    DcRouterMgr* manager = DcRouterMgr::GetInstance();
    if (manager == nullptr) {
        return QUIET;
    }
    CfgSched& scheduler = manager->GetCfgSched();
    const size_t buckets = scheduler.BucketCount();
    size_t found = 0;
    // Buckets are keyed by a VLAN or RTM instance number with the kind of
    // item; a tick walks each bucket in order and stops at the first item
    // whose RTM instance is not ready.
    for (unsigned int id = 0; id <= 0xFFFF && found < buckets; ++id) {
        for (unsigned int kind :
             {DcRtmMgr::CFG_KEY_STATIC_ROUTE, DcRtmMgr::CFG_KEY_REDISTRIBUTION}) {
            const CfgKey key(id, kind);
            if (!scheduler.HasBucket(key)) {
                continue;
            }
            ++found;
            for (CfgItem* item : scheduler.Items(key)) {
                if (!item->CfgListReady()) {
                    break;
                }
                if (item->IsIssued()) {
                    continue;
                }
                if (item->CfgItemReady() || item->RemoveOnNotReady()) {
                    return BUSY;
                }
            }
        }
    }
    return found == buckets ? QUIET : PROBABLY_QUIET;
}

QuietProbe::State SystemProbe::Check() {
    if (!m_stack.IsIdle() || !SerializerEmpty()) {
        return BUSY;
    }
    return SchedulerState();
}

std::string SystemProbe::ProgressText() {
    return m_stack.ProgressText();
}

}  // namespace Zavrel
