#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "xmi/EcoreReader.h"
#include "xmi/XmiReader.h"

namespace {

using namespace nuv::zero::xmi;

/// Small enough that no input takes long, large enough that every limit can be met.
ReadOptions fuzzOptions() {
    ReadOptions options;
    options.crossFile = CrossFile::LeaveOut;
    options.limits.fileBytes = std::size_t{1} << 16U;
    options.limits.depth = 200;
    options.limits.elements = 2'000;
    options.limits.classes = 200;
    options.limits.inheritedParts = 20'000;
    options.limits.slots = 200'000;
    return options;
}

std::optional<LoadedMetamodel> readMetamodel(std::string_view bytes) {
    try {
        return EcoreReader(fuzzOptions()).addText("fuzz.ecore", bytes).read();
    } catch (const ReadError&) {
        return std::nullopt;
    }
}

void readModel(const LoadedMetamodel& metamodel, std::string_view bytes) {
    try {
        (void)XmiReader(metamodel, fuzzOptions()).readText("fuzz.xmi", bytes);
    } catch (const ReadError&) {
        // One clear error is a good answer too.
    }
}

}  // namespace

/// A metamodel, a zero byte, a model; without a zero byte the whole is read as both. Any bytes give
/// a model or one `ReadError`; whatever else leaves a reader is a finding.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::size_t end = input.find('\0');
    const bool both = end != std::string_view::npos;
    const std::string_view metamodelBytes = input.substr(0, end);
    const std::string_view modelBytes = both ? input.substr(end + 1) : input;
    if (const auto metamodel = readMetamodel(metamodelBytes)) readModel(*metamodel, modelBytes);
    return 0;
}
