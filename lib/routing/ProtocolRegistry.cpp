// ProtocolRegistry: the table of what the protocol libraries provide.
#include "routing/ProtocolRegistry.h"

namespace Zavrel {

ProtocolRegistry::Entries& ProtocolRegistry::Table() {
    // Built on first use, so that registering from a static initializer of
    // another object is safe.
    static Entries table;
    return table;
}

void ProtocolRegistry::Register(const Entries& entries) {
    Table() = entries;
}

void ProtocolRegistry::Clear() {
    Table() = Entries();
}

const ProtocolRegistry::Entries& ProtocolRegistry::Get() {
    return Table();
}

ProtocolRegistry::RouterFactory ProtocolRegistry::Router(int type) {
    if (type < 0 || type >= TYPE_COUNT) {
        return nullptr;
    }
    return Table().routers[type];
}

DcProtoConfigBase* ProtocolRegistry::MakeProto(int type) {
    if (type < 0 || type >= TYPE_COUNT || Table().protos[type] == nullptr) {
        return nullptr;
    }
    return Table().protos[type]();
}

}  // namespace Zavrel
