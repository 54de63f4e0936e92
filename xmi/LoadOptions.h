#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "xmi/NamespaceAliases.h"
#include "xmi/ReadOptions.h"

namespace nuv::zero::xmi {

/// Which files a model set loads.
enum class Extent : std::uint8_t {
    /// Those that are asked for, and all that references lead to from there.
    Reached,
    /// Those that are asked for. References into others are left out, and noted.
    Given,
};

/// The limits of a whole set, beside those of each file.
struct ModelSetLimits {
    std::size_t files = 100'000;
    /// Of all files.
    std::size_t bytes = std::size_t{1} << 36U;
    /// Elements of the model, in all files.
    std::size_t elements = limits::elements;
    /// Findings that are kept; more are counted.
    std::size_t findings = 10'000;
};

/// How a model set is loaded.
struct LoadOptions {
    Extent extent = Extent::Reached;
    /// Metamodels in files that may lie anywhere; see `MetamodelSet::give`.
    std::vector<std::string> metamodels = {};
    /// Namespaces that mean others.
    NamespaceAliases aliases = {};
    /// Files are parsed on so many threads, while `load` runs, where several wait that are large
    /// enough for it. The model does not depend on it.
    unsigned threads = 2;
    /// The limits of each file.
    ReadLimits file = {};
    ModelSetLimits limits = {};
    /// Called when a file was read, in the order of the files, by the thread that loads: to show
    /// how far it has come. What it throws ends `load` as a failure does.
    std::function<void(std::size_t elements, std::size_t bytes)> onFile = {};
};

}  // namespace nuv::zero::xmi
