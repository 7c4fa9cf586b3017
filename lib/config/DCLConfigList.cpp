// DCLConfigList: reconciliation of configuration object lists.
#include "config/DCLConfigList.h"

#include "routing/DcRouterBase.h"

namespace Zavrel {

DCLConfigList::DCLConfigList(DcRouterBase& owner, const char* listName_, const char* optionKey_)
    : router(owner), listName(listName_), optionKey(optionKey_) {}

DCLConfigList::~DCLConfigList() {
    unmatched.clear();
    for (DclConfigObject* object : objects) {
        delete object;
    }
    objects.clear();
}

bool DCLConfigList::CheckInMib(unsigned short vlan, unsigned int id) const {
    for (const DclConfigObject* object : objects) {
        if (object->vlan == vlan && object->id == id && object->inMib) {
            return true;
        }
    }
    return false;
}

bool DCLConfigList::Parse(const OptionsNode& node, const string& name,
                          DclConfigObject::OptionType type) {
    unmatched.clear();
    for (DclConfigObject* object : objects) {
        unmatched.insert(object);
        object->actionReq = false;
    }
    ParseOptions(node, name, type);
    // Whatever the new configuration no longer holds is destroyed, in the
    // set's (pointer) order.
    for (DclConfigObject* object : unmatched) {
        object->MarkDestroy();
        object->actionReq = true;
    }
    unmatched.clear();
    CommitToMib();
    return true;
}

bool DCLConfigList::ParseOptions(const OptionsNode& node, const string& name,
                                 DclConfigObject::OptionType type) {
    if (optionKey == nullptr) {
        return true;
    }
    OptionsNode section = node[optionKey];
    if (section.IsEmpty()) {
        return true;
    }
    const OptionsNodeIterator end = section.end();
    for (OptionsNodeIterator it = section.begin(); it != end; ++it) {
        if (!it->IsEmpty()) {
            ParseGroup(*it, name, type);
        }
    }
    return true;
}

bool DCLConfigList::ParseGroup(const OptionsNode& element, const string& name,
                               DclConfigObject::OptionType type) {
    DclConfigObject* parsed = ParseObjectFromOption(element, name, type);
    if (parsed == nullptr) {
        return true;
    }
    if (FindNewObjectAndUpdate(parsed) == DclConfigObject::COMPARE_DIFFERENT) {
        DclConfigObject* kept = CopyObject(parsed);
        if (kept != nullptr) {
            kept->name = parsed->name;
            kept->vlan = parsed->vlan;
            kept->optionType = parsed->optionType;
            objects.push_back(kept);
        }
    }
    delete parsed;
    return true;
}

DclConfigObject* DCLConfigList::ParseObjectFromOption(const OptionsNode& element,
                                                      const string& name,
                                                      DclConfigObject::OptionType type) {
    DclConfigObject* object = NewObject(element, name, type);
    if (object == nullptr) {
        return nullptr;
    }
    object->name = name;
    object->optionType = type;
    object->vlan = router.GetVlan();
    if (!object->ParseFromOption(element)) {
        delete object;
        return nullptr;
    }
    return object;
}

int DCLConfigList::FindNewObjectAndUpdate(DclConfigObject* parsed) {
    if (objects.empty()) {
        return DclConfigObject::COMPARE_DIFFERENT;
    }
    // The first match in list order wins; a later running object that would
    // match too stays unmatched and is destroyed.
    for (DclConfigObject* running : objects) {
        const int result = running->CompareWithNew(parsed);
        if (result == DclConfigObject::COMPARE_SAME) {
            unmatched.erase(running);
            return DclConfigObject::COMPARE_SAME;
        }
        if (result == DclConfigObject::COMPARE_CHANGED) {
            unmatched.erase(running);
            running->UpdateFromNew(parsed);
            running->actionReq = true;
            return DclConfigObject::COMPARE_CHANGED;
        }
    }
    return DclConfigObject::COMPARE_DIFFERENT;
}

void DCLConfigList::CommitToMib() {
    auto it = objects.begin();
    while (it != objects.end()) {
        DclConfigObject* object = *it;
        if (!object->actionReq) {
            ++it;
            continue;
        }
        object->DebugDump(listName);
        if (object->Commit()) {
            unmatched.erase(object);
            delete object;
            it = objects.erase(it);
        } else {
            ++it;
        }
    }
}

void DCLConfigList::Clear() {
    unmatched.clear();
    for (DclConfigObject* object : objects) {
        delete object;
    }
    objects.clear();
}

// Deletion scan over the VLAN's objects: after deleting an object the scan
// skips the one that followed it, so of two adjacent objects of the VLAN the
// second stays. When the deleted object was the last one, the scan goes on
// from the first object of the list (which is examined, not skipped). Each
// wrap needs a deletion, so the scan ends; it only ever steps onto objects
// that are still linked.
void DCLConfigList::Clear(unsigned int vlan) {
    auto it = objects.begin();
    while (it != objects.end()) {
        DclConfigObject* object = *it;
        if (object->vlan != vlan) {
            ++it;
            continue;
        }
        unmatched.erase(object);
        delete object;
        it = objects.erase(it);
        if (it == objects.end()) {
            it = objects.begin();
        } else {
            ++it;
        }
    }
}

void DCLConfigList::Clear(unsigned int vlan, bool hold) {
    for (DclConfigObject* object : objects) {
        if (object->vlan != vlan) {
            continue;
        }
        if (hold) {
            object->held = true;
            continue;
        }
        object->held = false;
        object->actionReq = true;
        object->DebugDump(listName);
        object->Commit();
    }
}

void DCLConfigList::SetDestroy() {
    for (DclConfigObject* object : objects) {
        object->MarkDestroy();
        object->actionReq = true;
    }
}

void DCLConfigList::DeleteOptions(const string&, DclConfigObject::OptionType) {
    SetDestroy();
    CommitToMib();
}

void DCLConfigList::DisplayList(DcConsole* console, const DclConfigDisplayFilter& filter) const {
    for (DclConfigObject* object : objects) {
        if ((filter.vlan == 0 || filter.vlan == object->vlan) &&
            (filter.id == 0 || filter.id == object->id)) {
            object->Display(console);
        }
    }
}

bool DCLConfigList::ForEach(DclConfigListIteratorFunc* func) {
    if (func == nullptr) {
        return false;
    }
    for (DclConfigObject* object : objects) {
        if (!(*func)(object)) {
            return false;
        }
    }
    return true;
}

}  // namespace Zavrel
