// The engine's allocator and the registration of its blocks.
#pragma once

#include <cstddef>
#include <utility>

#include "engine/Api.h"
#include "engine/text/Containers.h"

/// Process-wide allocator of the plug-in's heap objects. Safe from any thread.
class ENGINE_API jAllocator {
public:
    static jAllocator* get();

    /// A block of `size` bytes, aligned for every contract type (32 bytes); never null (std::bad_alloc when out of
    /// memory).
    void* localAlloc(std::size_t size);
    /// Frees a block; null is allowed.
    void localFree(void* block);

    std::size_t getBlockCount() const;  ///< allocated blocks
};

/// One registered block.
struct MemInfo {
    const void* block = nullptr;
    int kind = 0;
    jString source;  ///< source tag, such as "src\kit\UdpDataKit"
    int line = 0;
    jString function;  ///< qualified function name
    std::size_t size = 0;
};

/// Registers a block under its source tag, line and function. A block registered twice keeps the later entry.
ENGINE_API void memAddInfo(const void* block, int kind, const char* source, int line, const char* function,
                           std::size_t size);
/// Removes the registration of a block; an unknown block is ignored.
ENGINE_API void memRemoveInfo(const void* block);
/// All registered blocks, in order of registration.
ENGINE_API jVector<MemInfo> memGetInfos();

/// Place of a construction in the sources: source tag and function; the line is the caller's.
struct MemTag {
    const char* source;
    const char* function;
    int line = __builtin_LINE();
};

/// Allocates, registers and constructs a T. The caller owns it and destroys it with jDelete.
template <class T, class... Args>
T* jNew(const MemTag& tag, Args&&... args) {
    void* block = jAllocator::get()->localAlloc(sizeof(T));
    memAddInfo(block, 0, tag.source, tag.line, tag.function, sizeof(T));
    try {
        return new (block) T(std::forward<Args>(args)...);
    } catch (...) {
        memRemoveInfo(block);
        jAllocator::get()->localFree(block);
        throw;
    }
}

/// Destroys an object made by jNew and removes its registration; null is allowed. The type of `object` must be the
/// constructed type, or its first base with a virtual destructor.
template <class T>
void jDelete(T* object) {
    if (!object) return;
    void* block = const_cast<void*>(static_cast<const void*>(object));
    object->~T();
    memRemoveInfo(block);
    jAllocator::get()->localFree(block);
}

/// Deleter for smart pointers to objects made by jNew.
struct jDeleter {
    template <class T>
    void operator()(T* object) const {
        jDelete(object);
    }
};

/// Allocator for standard containers and control blocks: registers its blocks under the tag.
template <class T>
struct jTagAllocator {
    using value_type = T;

    explicit jTagAllocator(const MemTag& t) : tag(t) {}
    template <class U>
    jTagAllocator(const jTagAllocator<U>& other) : tag(other.tag) {}

    T* allocate(std::size_t n) {
        void* const block = jAllocator::get()->localAlloc(n * sizeof(T));
        memAddInfo(block, 0, tag.source, tag.line, tag.function, n * sizeof(T));
        return static_cast<T*>(block);
    }
    void deallocate(T* block, std::size_t) {
        memRemoveInfo(block);
        jAllocator::get()->localFree(block);
    }
    template <class U>
    bool operator==(const jTagAllocator<U>&) const {
        return true;
    }

    MemTag tag;
};
