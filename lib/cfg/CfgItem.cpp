#include "cfg/CfgItem.h"

namespace Zavrel {

namespace {

const char* const kRowStatusNames[] = {
    "Active", "Not In Service", "Not Ready", "Create & Go", "Create & Wait", "Destroy",
};

const char* const kReasonNames[] = {
    "noError",
    "tooBig",
    "noSuchName",
    "badValue",
    "readOnly",
    "genErr",
    "noAccess",
    "wrongType",
    "wrongLength",
    "wrongEncoding",
    "wrongValue",
    "noCreation",
    "inconsistentValue",
    "resourceUnavailable",
    "commitFailed",
    "undoFailed",
    "authorizationError",
    "notWritable",
    "inconsistentName",
};

}  // namespace

CfgItem::CfgItem() : m_reason_code(0), m_action_state(ACTION_ITEM_NEW), m_retry_count(0) {}

CfgItem::~CfgItem() = default;

void CfgItem::SetInMib(bool /*inMib*/, unsigned int /*reason*/) {}

bool CfgItem::Replace(void* /*other*/) {
    return true;
}

bool CfgItem::RemoveOnNotReady() const {
    return false;
}

void CfgItem::SetActionState(ACTION_ITEM_STATE state) {
    m_action_state = state;
}

void CfgItem::SetReasonCode(unsigned long reason) {
    m_reason_code = static_cast<unsigned int>(reason);
}

bool CfgItem::IsInFlight(unsigned int /*a*/, unsigned int /*b*/) const {
    return false;
}

bool CfgItem::GetListReadyKey(unsigned long& /*key*/) const {
    return false;
}

const char* CfgItem::GetRowStatusStr(long rowStatus) {
    if (rowStatus >= 1 && rowStatus <= 6) {
        return kRowStatusNames[rowStatus - 1];
    }
    return "Unknown";
}

const char* CfgItem::GetReasonStr(long reason) {
    if (reason >= 0 && reason <= 18) {
        return kReasonNames[reason];
    }
    return "Unknown";
}

const char* CfgItem::GetActionStateStr(long state) {
    return state == ACTION_ITEM_ISSUED ? "Issued" : "New";
}

}  // namespace Zavrel
