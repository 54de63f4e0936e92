#include "xmi/FileReading.h"

#include <algorithm>
#include <atomic>
#include <thread>

#include "xmi/XmiBuilder.h"

namespace nuv::zero::xmi {
namespace {

/// Files that are parsed at once have at least so many bytes together; below, threads cost more
/// than they save.
constexpr std::size_t worthThreads = 1'000'000;

}  // namespace

void FileReading::build(const LoadedMetamodel& metamodel, const ReadOptions& options) noexcept {
    if (isSkipped || error) return;
    try {
        XmiBuilder builder(metamodel, shown, *source, options);
        try {
            model = builder.build(&outgoing, &findings);
        } catch (const ReadError& thrown) {
            error = thrown;
        }
        unknownNamespaces = builder.unknownNamespaces();
    } catch (...) {
        failure = std::current_exception();
    }
}

void FileReading::reset(std::size_t findingLimit) {
    model.reset();
    error.reset();
    outgoing.clear();
    findings = Findings(findingLimit);
}

void buildAll(std::vector<FileReading>& readings, const LoadedMetamodel& metamodel,
              const ReadOptions& options, std::size_t threads) {
    std::size_t bytes = 0;
    for (const FileReading& each : readings) bytes += each.bytes;
    std::atomic<std::size_t> next = 0;
    const auto work = [&] {
        for (std::size_t at = next++; at < readings.size(); at = next++) {
            readings[at].build(metamodel, options);
        }
    };
    std::vector<std::thread> others;
    if (readings.size() > 1 && bytes >= worthThreads) {
        try {
            const std::size_t wanted = std::min(threads, readings.size());
            while (others.size() + 1 < wanted) others.emplace_back(work);
        } catch (const std::exception&) {
            // With fewer threads it takes longer, and that is all.
        }
    }
    work();
    for (std::thread& each : others) each.join();
}

}  // namespace nuv::zero::xmi
