#include "benchmarks/Clock.h"

#include <ctime>

namespace nuv::zero::benchmarks {
namespace {

double threadNanoseconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
}

}  // namespace

double nanosecondsOf(const std::function<void()>& work) {
    const double start = threadNanoseconds();
    work();
    return threadNanoseconds() - start;
}

}  // namespace nuv::zero::benchmarks
