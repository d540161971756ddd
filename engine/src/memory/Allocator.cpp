// Heap blocks and their registration.
#include "engine/memory/Allocator.h"

#include <atomic>
#include <mutex>
#include <new>
#include <unordered_map>

namespace {

constexpr std::align_val_t ALIGNMENT{32};

std::atomic<std::size_t> g_blocks{0};

struct Books {
    std::mutex mutex;
    unsigned long long next = 0;
    std::unordered_map<const void*, std::pair<unsigned long long, MemInfo>> entries;
};

/// Never destroyed: blocks may be freed while static objects of a plug-in are destroyed.
Books& books() {
    static Books* const instance = new Books;
    return *instance;
}

}  // namespace

jAllocator* jAllocator::get() {
    static jAllocator instance;
    return &instance;
}

void* jAllocator::localAlloc(std::size_t size) {
    void* const block = ::operator new(size, ALIGNMENT);
    ++g_blocks;
    return block;
}

void jAllocator::localFree(void* block) {
    if (!block) return;
    --g_blocks;
    ::operator delete(block, ALIGNMENT);
}

std::size_t jAllocator::getBlockCount() const {
    return g_blocks;
}

void memAddInfo(const void* block, int kind, const char* source, int line, const char* function, std::size_t size) {
    Books& b = books();
    const std::lock_guard lock(b.mutex);
    b.entries[block] = {b.next++, MemInfo{block, kind, source, line, function, size}};
}

void memRemoveInfo(const void* block) {
    Books& b = books();
    const std::lock_guard lock(b.mutex);
    b.entries.erase(block);
}

jVector<MemInfo> memGetInfos() {
    Books& b = books();
    const std::lock_guard lock(b.mutex);
    std::map<unsigned long long, const MemInfo*> ordered;
    for (const auto& [block, entry] : b.entries) ordered[entry.first] = &entry.second;
    jVector<MemInfo> infos;
    for (const auto& [order, info] : ordered) infos.append(*info);
    return infos;
}
