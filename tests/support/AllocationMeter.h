#pragma once

/// Counts what the whole program allocates, and makes allocations fail on demand. Linked into
/// executables that replace the global allocation functions; one thread at a time.
namespace nuv::zero::test {

struct AllocationMeter {
    /// Allocations so far.
    static long total();
    /// Allocations that have not been freed.
    static long live();
    /// Bytes in these allocations, with what the allocator rounds them up to.
    static long bytes();
    /// The most of these bytes at any time since `restartPeak`.
    static long peakBytes();
    static void restartPeak();
    /// Makes one allocation fail: the next one for 1, the one after it for 2. Zero calls it off.
    static void failAt(long allocation);
    /// Whether the failure that was asked for last has happened.
    static bool hasFailed();

    /// Allocations of its scope neither fail nor count towards the one that does: those of a test's
    /// own callbacks and notes.
    class Exempt {
      public:
        Exempt();
        Exempt(const Exempt&) = delete;
        Exempt& operator=(const Exempt&) = delete;
        ~Exempt();

      private:
        bool before_;
    };
};

}  // namespace nuv::zero::test
