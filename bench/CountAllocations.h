// Counts the allocations of the program. Include it in one source file of a bench.
#pragma once

#include <atomic>
#include <cstdlib>
#include <new>

inline std::atomic<long> g_allocations{0};

void* operator new(std::size_t size) {
    ++g_allocations;
    if (void* block = std::malloc(size ? size : 1)) return block;
    throw std::bad_alloc();
}

void* operator new(std::size_t size, std::align_val_t alignment) {
    ++g_allocations;
    const auto a = static_cast<std::size_t>(alignment);
    if (void* block = std::aligned_alloc(a, (size + a - 1) / a * a)) return block;
    throw std::bad_alloc();
}

void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}
void operator delete(void* block, std::align_val_t) noexcept {
    std::free(block);
}
void operator delete(void* block, std::size_t, std::align_val_t) noexcept {
    std::free(block);
}
