#include "app/SystemProbe.h"

#include "mib/Serializer.h"
#include "routing/DcRouterMgr.h"

namespace Zavrel {

SystemProbe::SystemProbe(StackControl& stack) : m_stack(stack) {}

bool SystemProbe::SerializerEmpty()
{
    DcRouterMgr* manager = DcRouterMgr::GetInstance();
    if (manager == nullptr) {
        return true;
    }
    // The listing has one "(Actions_Count=..." line per object with actions
    // after its legend.
    const string pending = manager->GetSerializer().GetPendingActionsAsString();
    return pending.str().find("\n(Actions_Count=") == std::string::npos;
}

bool SystemProbe::IsQuiet()
{
    return m_stack.IsIdle() && SerializerEmpty();
}

std::string SystemProbe::ProgressText()
{
    return m_stack.ProgressText();
}

}  // namespace Zavrel
