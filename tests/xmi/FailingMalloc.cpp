#include "tests/xmi/FailingMalloc.h"

#include <cerrno>
#include <cstddef>
#include <cstdlib>

#include "tests/support/SmallStack.h"

#if defined(__GLIBC__) && !MODELING_NUV0_SANITIZED
#define MODELING_NUV0_REPLACES_MALLOC 1
#else
#define MODELING_NUV0_REPLACES_MALLOC 0
#endif

namespace {

long untilRefusal = 0;
bool refused = false;
long liveBlocks = 0;

}  // namespace

#if MODELING_NUV0_REPLACES_MALLOC
namespace {

bool failsNow() noexcept {
    if (untilRefusal == 0 || --untilRefusal != 0) return false;
    refused = true;
    errno = ENOMEM;
    return true;
}

}  // namespace

// NOLINTBEGIN(bugprone-reserved-identifier): what the C library calls its own
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* memory);

void* malloc(std::size_t size) noexcept {
    if (failsNow()) return nullptr;
    void* memory = __libc_malloc(size);
    if (memory != nullptr) ++liveBlocks;
    return memory;
}
void* calloc(std::size_t count, std::size_t size) noexcept {
    if (failsNow()) return nullptr;
    void* memory = __libc_calloc(count, size);
    if (memory != nullptr) ++liveBlocks;
    return memory;
}
void* realloc(void* old, std::size_t size) noexcept {
    if (size != 0 && failsNow()) return nullptr;
    void* memory = __libc_realloc(old, size);
    if (old == nullptr && memory != nullptr) ++liveBlocks;
    if (old != nullptr && size == 0) --liveBlocks;
    return memory;
}
// Some C++ libraries place exceptions so. Counted, as these are given back by free; never refused,
// because then there would be nothing to throw.
int posix_memalign(void** memory, std::size_t alignment, std::size_t size) noexcept {
    *memory = __libc_memalign(alignment, size);
    if (*memory == nullptr) return ENOMEM;
    ++liveBlocks;
    return 0;
}
void free(void* memory) noexcept {
    if (memory != nullptr) --liveBlocks;
    __libc_free(memory);
}
}
// NOLINTEND(bugprone-reserved-identifier)
#endif

namespace nuv::zero::test {

bool FailingMalloc::isInstalled() {
    return MODELING_NUV0_REPLACES_MALLOC != 0;
}
void FailingMalloc::failAt(long allocation) {
    untilRefusal = allocation;
    if (allocation > 0) refused = false;
}
bool FailingMalloc::hasFailed() {
    return refused;
}
long FailingMalloc::live() {
    return liveBlocks;
}

}  // namespace nuv::zero::test
