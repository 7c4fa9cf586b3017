// DcConfigLists: the configuration lists one options source gave a router.
// The bundle owns its lists; destroying it clears them without touching the
// stack, DeleteOptions destroys their rows in the stack.
#ifndef ZAVREL_ROUTING_DCCONFIGLISTS_H
#define ZAVREL_ROUTING_DCCONFIGLISTS_H

#include <vector>

#include "config/DclConfigObject.h"
#include "platform/String.h"

namespace Zavrel {

class DCLConfigList;

class DcConfigLists {
public:
    DcConfigLists(const string& name, DclConfigObject::OptionType type);
    virtual ~DcConfigLists();

    DcConfigLists(const DcConfigLists&) = delete;
    DcConfigLists& operator=(const DcConfigLists&) = delete;

    // Takes ownership of list (a null list is ignored).
    void Add(DCLConfigList* list);
    // DCLConfigList::DeleteOptions on each list in order.
    void DeleteOptions(const string& name, DclConfigObject::OptionType type);

    const std::vector<DCLConfigList*>& Lists() const { return m_lists; }
    const string& GetName() const { return m_name; }
    DclConfigObject::OptionType GetType() const { return m_type; }

private:
    std::vector<DCLConfigList*> m_lists;
    string m_name;
    DclConfigObject::OptionType m_type;
};

}  // namespace Zavrel

#endif
