// MibAction: one pending MIB row request. A concrete action knows how to
// issue itself to the stack; the Serializer decides when.
#ifndef ZAVREL_MIB_MIBACTION_H
#define ZAVREL_MIB_MIBACTION_H

namespace Zavrel {

class MibAction {
public:
    virtual ~MibAction();

    // Issues the action's single request. shared_context is true when the
    // request is made from within a stack callback, false when it is made
    // on the application side. Returns the stack call's status.
    virtual unsigned long IssueReq(bool shared_context) = 0;

    // Class name of the concrete action, for traces; static, never freed.
    const char* name;

protected:
    MibAction() : name(nullptr) {}
    explicit MibAction(const char* actionName) : name(actionName) {}
    MibAction(const MibAction&) = default;
    MibAction& operator=(const MibAction&) = default;
};

}  // namespace Zavrel

#endif
