#include "cfg/CfgMemory.h"

#if defined(__SANITIZE_ADDRESS__)
#define ZAVREL_CFG_MEMORY_GENERAL_HEAP 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZAVREL_CFG_MEMORY_GENERAL_HEAP 1
#endif
#endif

namespace Zavrel {

namespace {

// Passes blocks through to another resource and counts the bytes out.
class CountingResource : public std::pmr::memory_resource {
public:
    explicit CountingResource(std::pmr::memory_resource* upstream) : m_upstream(upstream) {}
    std::size_t Bytes() const { return m_bytes; }

private:
    void* do_allocate(std::size_t bytes, std::size_t alignment) override {
        void* block = m_upstream->allocate(bytes, alignment);
        m_bytes += bytes;
        return block;
    }
    void do_deallocate(void* block, std::size_t bytes, std::size_t alignment) override {
        m_upstream->deallocate(block, bytes, alignment);
        m_bytes -= bytes;
    }
    bool do_is_equal(const std::pmr::memory_resource& other) const noexcept override {
        return this == &other;
    }

    std::pmr::memory_resource* m_upstream;
    std::size_t m_bytes = 0;
};

struct Resources {
    CountingResource* front;     // what the queued configuration uses
    CountingResource* upstream;  // what the pool takes from the heap
};

// Never destroyed: items may still be freed while the process ends.
const Resources& TheResources() {
    static const Resources resources = [] {
        Resources made;
#if defined(ZAVREL_CFG_MEMORY_GENERAL_HEAP)
        made.front = new CountingResource(std::pmr::new_delete_resource());
        made.upstream = made.front;
#else
        made.upstream = new CountingResource(std::pmr::new_delete_resource());
        made.front =
            new CountingResource(new std::pmr::unsynchronized_pool_resource(made.upstream));
#endif
        return made;
    }();
    return resources;
}

}  // namespace

std::pmr::memory_resource* CfgMemory() { return TheResources().front; }

CfgMemoryUse CfgMemoryUsage() {
    const Resources& resources = TheResources();
    return CfgMemoryUse{resources.front->Bytes(), resources.upstream->Bytes()};
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
