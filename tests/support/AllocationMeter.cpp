#include "tests/support/AllocationMeter.h"

#include <malloc.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

long totalCount = 0;
long liveCount = 0;
long liveBytes = 0;
long mostBytes = 0;
long untilFailure = 0;
bool failed = false;
bool exempt = false;

/// What the block takes, whatever was asked for.
long bytesOf(void* memory) noexcept {
    return static_cast<long>(malloc_usable_size(memory));
}

void* allocate(std::size_t size, std::size_t alignment) noexcept {
    if (!exempt && untilFailure > 0 && --untilFailure == 0) {
        failed = true;
        return nullptr;
    }
    const std::size_t asked = std::max<std::size_t>(size, 1);
    void* memory =
        alignment <= alignof(std::max_align_t)
            ? std::malloc(asked)
            : std::aligned_alloc(alignment, (asked + alignment - 1) / alignment * alignment);
    if (memory != nullptr) {
        ++totalCount;
        ++liveCount;
        liveBytes += bytesOf(memory);
        mostBytes = std::max(mostBytes, liveBytes);
    }
    return memory;
}

void* allocateOrThrow(std::size_t size, std::size_t alignment) {
    void* memory = allocate(size, alignment);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}

void release(void* memory) noexcept {
    if (memory == nullptr) return;
    --liveCount;
    liveBytes -= bytesOf(memory);
    std::free(memory);
}

}  // namespace

namespace nuv::zero::test {

long AllocationMeter::total() {
    return totalCount;
}
long AllocationMeter::live() {
    return liveCount;
}
long AllocationMeter::bytes() {
    return liveBytes;
}
long AllocationMeter::peakBytes() {
    return mostBytes;
}
void AllocationMeter::restartPeak() {
    mostBytes = liveBytes;
}
void AllocationMeter::failAt(long allocation) {
    untilFailure = allocation;
    if (allocation > 0) failed = false;
}
bool AllocationMeter::hasFailed() {
    return failed;
}

AllocationMeter::Exempt::Exempt() : before_(exempt) {
    exempt = true;
}
AllocationMeter::Exempt::~Exempt() {
    exempt = before_;
}

}  // namespace nuv::zero::test

// All forms, so that none is left to another allocator.
void* operator new(std::size_t size) {
    return allocateOrThrow(size, 1);
}
void* operator new[](std::size_t size) {
    return allocateOrThrow(size, 1);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
    return allocateOrThrow(size, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
    return allocateOrThrow(size, static_cast<std::size_t>(alignment));
}
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return allocate(size, 1);
}
void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return allocate(size, 1);
}
void* operator new(std::size_t size, std::align_val_t alignment,
                   const std::nothrow_t& /*tag*/) noexcept {
    return allocate(size, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment,
                     const std::nothrow_t& /*tag*/) noexcept {
    return allocate(size, static_cast<std::size_t>(alignment));
}
void operator delete(void* memory) noexcept {
    release(memory);
}
void operator delete[](void* memory) noexcept {
    release(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
    release(memory);
}
void operator delete[](void* memory, std::size_t /*size*/) noexcept {
    release(memory);
}
void operator delete(void* memory, std::align_val_t /*alignment*/) noexcept {
    release(memory);
}
void operator delete[](void* memory, std::align_val_t /*alignment*/) noexcept {
    release(memory);
}
void operator delete(void* memory, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept {
    release(memory);
}
void operator delete[](void* memory, std::size_t /*size*/,
                       std::align_val_t /*alignment*/) noexcept {
    release(memory);
}
void operator delete(void* memory, const std::nothrow_t& /*tag*/) noexcept {
    release(memory);
}
void operator delete[](void* memory, const std::nothrow_t& /*tag*/) noexcept {
    release(memory);
}
void operator delete(void* memory, std::align_val_t /*alignment*/,
                     const std::nothrow_t& /*tag*/) noexcept {
    release(memory);
}
void operator delete[](void* memory, std::align_val_t /*alignment*/,
                       const std::nothrow_t& /*tag*/) noexcept {
    release(memory);
}
