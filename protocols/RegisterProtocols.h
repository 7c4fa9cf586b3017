// RegisterProtocols: enters the protocol routers, their protocol objects and
// their console handlers into the library's ProtocolRegistry. A program
// calls it once at start, before it first uses the router manager.
#ifndef ZAVREL_PROTOCOLS_REGISTERPROTOCOLS_H
#define ZAVREL_PROTOCOLS_REGISTERPROTOCOLS_H

namespace Zavrel {

void RegisterProtocols();

}  // namespace Zavrel

#endif
