#pragma once

#include <string>
#include <utility>
#include <vector>

#include "xmi/ByteSource.h"
#include "xmi/ReadOptions.h"

namespace nuv::zero::xmi {

/// What the first tag of a model file says of metamodels.
struct FilePreamble {
    /// The namespaces that are declared there, in order, but for those of XMI and XML themselves.
    /// Whoever writes model files declares what is used.
    std::vector<std::string> namespaces;
    /// Namespaces and where their metamodels are (`xsi:schemaLocation`).
    std::vector<std::pair<std::string, std::string>> locations;

    /// What is said of the place of a namespace's metamodel; empty where nothing is.
    std::string_view locationOf(std::string_view nsUri) const noexcept;

    /// Reads the source up to that tag. Throws `ReadError` when it is not well-formed up to there.
    static FilePreamble of(const std::string& file, ByteSource& source, const ReadLimits& limits);
};

}  // namespace nuv::zero::xmi
