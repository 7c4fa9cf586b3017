// DcProtoConfigBase: the protocol configuration object a router hands its
// options section to. The router base calls exactly these two operations on
// every protocol object; DcProtoInterfaceBase adds the router-facing state.
#ifndef ZAVREL_ROUTING_DCPROTOCONFIGBASE_H
#define ZAVREL_ROUTING_DCPROTOCONFIGBASE_H

#include "config/DclConfigObject.h"
#include "platform/OptionsNode.h"
#include "platform/String.h"

namespace Zavrel {

class DcProtoConfigBase {
public:
    DcProtoConfigBase() = default;
    virtual ~DcProtoConfigBase();

    DcProtoConfigBase(const DcProtoConfigBase&) = delete;
    DcProtoConfigBase& operator=(const DcProtoConfigBase&) = delete;

    // Applies the router's own section of a VLAN entry, delivered by the
    // options source named source.
    virtual void ApplyOptions(const OptionsNode& section, const string& source,
                              DclConfigObject::OptionType type) = 0;
    // Forgets everything the options source named source configured.
    virtual void DeleteOptions(const string& source, DclConfigObject::OptionType type) = 0;
};

}  // namespace Zavrel

#endif
