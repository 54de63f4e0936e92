#include "tests/model/FailingAllocations.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

constexpr long withoutLimit = -1;
thread_local long allocationsLeft = withoutLimit;
thread_local bool failsOnce = false;
thread_local long live = 0;

}  // namespace

void* operator new(std::size_t size) {
    if (allocationsLeft == 0) {
        if (failsOnce) allocationsLeft = withoutLimit;
        throw std::bad_alloc();
    }
    if (allocationsLeft > 0) --allocationsLeft;
    if (void* memory = std::malloc(size)) {
        ++live;
        return memory;
    }
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    if (memory == nullptr) return;
    --live;
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}

namespace {

bool succeeds(long allowed, bool once, const std::function<void()>& call) {
    allocationsLeft = allowed;
    failsOnce = once;
    try {
        call();
    } catch (const std::bad_alloc&) {
        allocationsLeft = withoutLimit;
        return false;
    }
    allocationsLeft = withoutLimit;
    return true;
}

}  // namespace

namespace nuv::zero::test {

bool succeedsWith(long allowed, const std::function<void()>& call) {
    return succeeds(allowed, false, call);
}
bool succeedsWithout(long allowed, const std::function<void()>& call) {
    return succeeds(allowed, true, call);
}
long liveAllocations() {
    return live;
}

}  // namespace nuv::zero::test
