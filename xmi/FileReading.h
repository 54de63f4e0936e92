#pragma once

#include <cstddef>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "xmi/ByteSource.h"
#include "xmi/FileHead.h"
#include "xmi/FileRoots.h"
#include "xmi/Findings.h"
#include "xmi/LoadedMetamodel.h"
#include "xmi/LoadedModel.h"
#include "xmi/OutgoingReference.h"
#include "xmi/ReadError.h"
#include "xmi/ReadOptions.h"

namespace nuv::zero::xmi {

/// One file of a model set while it is read, and what comes of it.
struct FileReading {
    explicit FileReading(std::size_t findingLimit) : findings(findingLimit) {}

    FilePlace place;
    std::string shown;
    std::unique_ptr<ByteSource> source;
    std::size_t bytes = 0;
    FileHead head;
    /// It is no model after all.
    bool isSkipped = false;

    /// Nothing when there is an error or a failure.
    std::optional<LoadedModel> model;
    std::vector<OutgoingReference> outgoing;
    Findings findings;
    std::vector<std::string> unknownNamespaces;
    std::optional<ReadError> error;
    /// What else was thrown, such as `std::bad_alloc`.
    std::exception_ptr failure;

    /// Parses the file and builds its model, unless it is skipped or there is an error.
    void build(const LoadedMetamodel& metamodel, const ReadOptions& options) noexcept;
    /// Makes as if it had not been built.
    void reset(std::size_t findingLimit);
};

/// Builds several, on so many threads where that pays. REQUIRES: nobody changes the metamodel.
void buildAll(std::vector<FileReading>& readings, const LoadedMetamodel& metamodel,
              const ReadOptions& options, std::size_t threads);

}  // namespace nuv::zero::xmi
