#include "tests/model/FailingAllocations.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

constexpr long withoutLimit = -1;
thread_local long allocationsLeft = withoutLimit;

}  // namespace

void* operator new(std::size_t size) {
    if (allocationsLeft == 0) throw std::bad_alloc();
    if (allocationsLeft > 0) --allocationsLeft;
    if (void* memory = std::malloc(size)) return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace nuv::zero::test {

bool succeedsWith(long allowed, const std::function<void()>& call) {
    allocationsLeft = allowed;
    try {
        call();
    } catch (const std::bad_alloc&) {
        allocationsLeft = withoutLimit;
        return false;
    }
    allocationsLeft = withoutLimit;
    return true;
}

}  // namespace nuv::zero::test
