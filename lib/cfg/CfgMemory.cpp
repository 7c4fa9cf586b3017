#include "cfg/CfgMemory.h"

#if defined(__SANITIZE_ADDRESS__)
#define ZAVREL_CFG_MEMORY_GENERAL_HEAP 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZAVREL_CFG_MEMORY_GENERAL_HEAP 1
#endif
#endif

namespace Zavrel {

std::pmr::memory_resource* CfgMemory() {
#if defined(ZAVREL_CFG_MEMORY_GENERAL_HEAP)
    return std::pmr::new_delete_resource();
#else
    // Never destroyed: items may still be freed while the process ends.
    static std::pmr::memory_resource* const pool = new std::pmr::unsynchronized_pool_resource();
    return pool;
#endif
}

void* CfgMemoryAllocate(std::size_t size) {
    return CfgMemory()->allocate(size, alignof(std::max_align_t));
}

void* CfgMemoryAllocate(std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return CfgMemoryAllocate(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void CfgMemoryDeallocate(void* block, std::size_t size) noexcept {
    if (block != nullptr) {
        CfgMemory()->deallocate(block, size, alignof(std::max_align_t));
    }
}

}  // namespace Zavrel
