// Registers the protocol routers while the program starts, so that every
// test and benchmark finds them before it first uses the router manager.
#include "protocols/RegisterProtocols.h"

namespace {

struct RegisterProtocolsAtStart {
    RegisterProtocolsAtStart() { Zavrel::RegisterProtocols(); }
};

const RegisterProtocolsAtStart registered;

}  // namespace
