// OspfAreaConfig: the areas of an OSPF router, read from the "AREAS" list of
// its section ({"area": 0, "stub": 0, "interfaces": [100, 101]}) and
// reconciled on every reload: committing an area creates or updates it in the
// router (with its interface attachments), destroying it removes it.
#ifndef ZAVREL_PROTOCOLS_OSPFAREACONFIG_H
#define ZAVREL_PROTOCOLS_OSPFAREACONFIG_H

#include <set>

#include "config/DCLConfigList.h"
#include "config/DclConfigObject.h"

namespace Zavrel {

class OspfAreaConfig : public DclConfigObject {
public:
    explicit OspfAreaConfig(DcRouterBase& owner);
    explicit OspfAreaConfig(const OspfAreaConfig* other);
    ~OspfAreaConfig() override;

    int CompareWithNew(DclConfigObject* newer) override;
    void UpdateFromNew(DclConfigObject* newer) override;
    unsigned short GetRowStatus() override;
    void MarkDestroy() override;
    void Display(DcConsole* console) override;
    bool Commit() override;
    bool ParseFromOption(const OptionsNode& node) override;

    bool stub;
    std::set<unsigned int> interfaces;
    bool destroy;
};

class OspfAreaConfigList : public DCLConfigList {
public:
    explicit OspfAreaConfigList(DcRouterBase& owner);
    ~OspfAreaConfigList() override;

    // Areas keep their interface attachments whatever the interface state.
    void InterfaceStatusChange(unsigned int ifIndex, unsigned int status) override;
    DclConfigObject* NewObject(const OptionsNode& node, const string& name,
                               DclConfigObject::OptionType type) override;
    DclConfigObject* CopyObject(DclConfigObject* parsed) override;
};

}  // namespace Zavrel

#endif
