// DCLConfigList: a list of configuration objects of one kind owned by a
// protocol router. On every reload it reconciles the running objects with the
// newly loaded ones: unchanged objects are left alone, objects whose key
// stays but whose settings changed are updated in place, new objects are
// appended and vanished objects are marked for destruction; then only the
// objects that need an action are committed, and those whose commit says
// they are gone are deleted.
#ifndef ZAVREL_CONFIG_DCLCONFIGLIST_H
#define ZAVREL_CONFIG_DCLCONFIGLIST_H

#include <list>
#include <set>

#include "config/DclConfigObject.h"
#include "platform/OptionsNode.h"
#include "platform/String.h"

namespace Zavrel {

class DcRouterBase;
class DcConsole;

// Selects objects for DisplayList; 0 means any.
struct DclConfigDisplayFilter {
    unsigned int id = 0;
    unsigned short vlan = 0;
};

// Function object for DCLConfigList::ForEach; false stops the walk.
class DclConfigListIteratorFunc {
public:
    virtual ~DclConfigListIteratorFunc() = default;
    virtual bool operator()(DclConfigObject* object) = 0;
};

class DCLConfigList {
public:
    // listName prefixes the debug dumps; optionKey names the member of an
    // option section that holds this list's records. Both are not owned.
    DCLConfigList(DcRouterBase& owner, const char* listName, const char* optionKey);
    // Deletes every object (without touching the stack).
    virtual ~DCLConfigList();

    DCLConfigList(const DCLConfigList&) = delete;
    DCLConfigList& operator=(const DCLConfigList&) = delete;

    // True when some object has this VLAN and id and its row is in the MIB.
    virtual bool CheckInMib(unsigned short vlan, unsigned int id) const;
    // An interface of the router changed state; each kind decides.
    virtual void InterfaceStatusChange(unsigned int ifIndex, unsigned int status) = 0;
    // Parses every non-empty record of the member optionKey of node.
    virtual bool ParseOptions(const OptionsNode& node, const string& name,
                              DclConfigObject::OptionType type);
    // An empty object of the list's kind.
    virtual DclConfigObject* NewObject(const OptionsNode& node, const string& name,
                                       DclConfigObject::OptionType type) = 0;
    // The object kept in the list, made from a parsed one.
    virtual DclConfigObject* CopyObject(DclConfigObject* parsed) = 0;
    // Commits every object that needs an action, in list order, and deletes
    // those whose commit reports them gone.
    virtual void CommitToMib();
    // Finds the running object matching parsed: 0 unchanged, 1 updated in
    // place, 2 none matches.
    virtual int FindNewObjectAndUpdate(DclConfigObject* parsed);
    // A new object filled from one record, or null when it is rejected.
    virtual DclConfigObject* ParseObjectFromOption(const OptionsNode& element, const string& name,
                                                   DclConfigObject::OptionType type);

    // Reconciles the list with a new configuration and commits the result.
    bool Parse(const OptionsNode& node, const string& name, DclConfigObject::OptionType type);
    bool ParseGroup(const OptionsNode& element, const string& name,
                    DclConfigObject::OptionType type);

    // Deletes every object without touching the stack.
    void Clear();
    // Deletes the objects of one VLAN without touching the stack (see the
    // scan rule in the source).
    void Clear(unsigned int vlan);
    // hold true: marks the VLAN's objects held. hold false: releases them and
    // commits each again, so their rows are pushed to the stack anew.
    void Clear(unsigned int vlan, bool hold);
    // Marks every object for destruction.
    void SetDestroy();
    // Destroys every object in the stack and deletes it.
    void DeleteOptions(const string& name, DclConfigObject::OptionType type);
    void DisplayList(DcConsole* console, const DclConfigDisplayFilter& filter) const;
    bool ForEach(DclConfigListIteratorFunc* func);

    const std::list<DclConfigObject*>& Objects() const { return objects; }
    const char* ListName() const { return listName; }
    const char* OptionKey() const { return optionKey; }

protected:
    DcRouterBase& router;
    std::list<DclConfigObject*> objects;
    std::set<DclConfigObject*> unmatched;
    const char* listName;
    const char* optionKey;
};

}  // namespace Zavrel

#endif
