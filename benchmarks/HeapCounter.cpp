#include "benchmarks/HeapCounter.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

namespace nuv::zero::benchmarks {
namespace {

struct Counter {
    bool counting = false;
    std::size_t allocations = 0;
    long long held = 0;
    long long peak = 0;
};
// Of the thread, so that counting costs no synchronisation and sees only its own walk.
// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables)
thread_local constinit Counter counter;

// NOLINTBEGIN(cppcoreguidelines-no-malloc): what `operator new` is made of
void* takeBlock(std::size_t size, std::size_t alignment) {
    size = std::max<std::size_t>(size, 1);
    void* block = alignment <= __STDCPP_DEFAULT_NEW_ALIGNMENT__
                      ? std::malloc(size)
                      : std::aligned_alloc(alignment, (size + alignment - 1) & ~(alignment - 1));
    if (block == nullptr) throw std::bad_alloc();
    if (counter.counting) {
        ++counter.allocations;
        counter.held += static_cast<long long>(malloc_usable_size(block));
        counter.peak = std::max(counter.peak, counter.held);
    }
    return block;
}

void giveBlock(void* block) noexcept {
    if (counter.counting && block != nullptr) {
        counter.held -= static_cast<long long>(malloc_usable_size(block));
    }
    std::free(block);
}
// NOLINTEND(cppcoreguidelines-no-malloc)

}  // namespace

void startCounting() {
    counter = {true, 0, 0, 0};
}

HeapUse stopCounting() {
    counter.counting = false;
    return {counter.allocations, static_cast<std::size_t>(counter.peak), counter.held};
}

void settleHeap(std::size_t freeBytes) {
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, 2'000'000'000);
    mallopt(M_TOP_PAD, 64 << 20);
    malloc_trim(freeBytes);
    // Through the counting operators, so that every block of the program comes the same way.
    void* block = ::operator new(freeBytes);
    std::memset(block, 1, freeBytes);
    // The compiler may not see that nobody reads the block.
    asm volatile("" : : "r"(block) : "memory");
    ::operator delete(block);
}

}  // namespace nuv::zero::benchmarks

void* operator new(std::size_t size) {
    return nuv::zero::benchmarks::takeBlock(size, 1);
}
void* operator new[](std::size_t size) {
    return nuv::zero::benchmarks::takeBlock(size, 1);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
    return nuv::zero::benchmarks::takeBlock(size, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
    return nuv::zero::benchmarks::takeBlock(size, static_cast<std::size_t>(alignment));
}
void operator delete(void* block) noexcept {
    nuv::zero::benchmarks::giveBlock(block);
}
void operator delete[](void* block) noexcept {
    nuv::zero::benchmarks::giveBlock(block);
}
void operator delete(void* block, std::size_t /*size*/) noexcept {
    nuv::zero::benchmarks::giveBlock(block);
}
void operator delete[](void* block, std::size_t /*size*/) noexcept {
    nuv::zero::benchmarks::giveBlock(block);
}
void operator delete(void* block, std::align_val_t /*alignment*/) noexcept {
    nuv::zero::benchmarks::giveBlock(block);
}
void operator delete[](void* block, std::align_val_t /*alignment*/) noexcept {
    nuv::zero::benchmarks::giveBlock(block);
}
void operator delete(void* block, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept {
    nuv::zero::benchmarks::giveBlock(block);
}
void operator delete[](void* block, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept {
    nuv::zero::benchmarks::giveBlock(block);
}
