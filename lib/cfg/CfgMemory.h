// CfgMemory: the memory of queued configuration.
//
// The scheduler may hold a hundred thousand queued items (static routes and
// redistribution rows) with their index entries, all of a few sizes, made
// and freed in bursts. They come from a pool of their own rather than from
// the general heap: same-size blocks cost less there, and the long-lived
// per-VLAN objects (routers, their configuration lists) stay close together
// instead of being spread among the queued items, which keeps a reload's
// walk over them cheap.
//
// The pool is not synchronised: like the rest of the library it is used from
// the one thread that runs the event loop. It keeps the memory it has taken
// for reuse and lives as long as the process. Under AddressSanitizer the
// general heap is used instead, so that every block is still checked.
#ifndef ZAVREL_CFG_CFGMEMORY_H
#define ZAVREL_CFG_CFGMEMORY_H

#include <cstddef>
#include <memory_resource>
#include <new>

namespace Zavrel {

// The resource queued configuration is allocated from.
std::pmr::memory_resource* CfgMemory();

// What queued configuration costs: the bytes its blocks take, and the bytes
// the pool has taken from the general heap for them (equal when the general
// heap is used directly).
struct CfgMemoryUse {
    std::size_t inUse;
    std::size_t reserved;
};
CfgMemoryUse CfgMemoryUsage();

// Blocks of CfgMemory for class-specific operator new/delete; the nothrow
// form returns null when the memory is exhausted.
void* CfgMemoryAllocate(std::size_t size);
void* CfgMemoryAllocate(std::size_t size, const std::nothrow_t&) noexcept;
void CfgMemoryDeallocate(void* block, std::size_t size) noexcept;

}  // namespace Zavrel

#endif
