#pragma once

namespace nuv::zero::test {

/// Makes the C allocation functions fail on demand: the XML parser allocates by these. Linked into
/// an executable that replaces them; one thread at a time.
struct FailingMalloc {
    /// False where the C library or a sanitizer does not let them be replaced.
    static bool isInstalled();
    /// Makes one allocation fail: the next one for 1, the one after it for 2. Zero calls it off.
    static void failAt(long allocation);
    /// Whether the failure that was asked for last has happened.
    static bool hasFailed();
    /// Blocks that have not been freed.
    static long live();
};

}  // namespace nuv::zero::test
