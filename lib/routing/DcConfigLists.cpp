// DcConfigLists: per-source bundles of configuration lists.
#include "routing/DcConfigLists.h"

#include "config/DCLConfigList.h"

namespace Zavrel {

DcConfigLists::DcConfigLists(const string& name, DclConfigObject::OptionType type)
    : m_name(name), m_type(type) {}

DcConfigLists::~DcConfigLists() {
    for (DCLConfigList* list : m_lists) {
        list->Clear();
        delete list;
    }
    m_lists.clear();
}

void DcConfigLists::Add(DCLConfigList* list) {
    if (list != nullptr) {
        m_lists.push_back(list);
    }
}

void DcConfigLists::DeleteOptions(const string& name, DclConfigObject::OptionType type) {
    for (DCLConfigList* list : m_lists) {
        list->DeleteOptions(name, type);
    }
}

}  // namespace Zavrel
