#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "xmi/ByteSource.h"

namespace nuv::zero::xmi {

/// What the first tag of an XML file says of the metamodels that the file needs: enough to look for
/// them before the file is read.
///
///     const FileHead head = FileHead::of(source);
///     for (const std::string& each : head.namespaces) {
///         metamodels.provide(each, head.locationOf(each), place);
///     }
struct FileHead {
    /// The namespaces that are declared there, in the order of the file, but for those of XML, of
    /// XMI and of XML Schema's instances.
    std::vector<std::string> namespaces;
    /// Namespaces and where their definitions are said to lie (`xsi:schemaLocation`).
    std::vector<std::pair<std::string, std::string>> locations;

    /// Empty for a namespace of which nothing is said; the first, where there are several.
    std::string_view locationOf(std::string_view nsUri) const noexcept;

    /// Reads a file up to its first tag. What is wrong with it up to there is not told: whoever
    /// reads the file will hear of it. Throws what the source throws, and `std::bad_alloc`.
    static FileHead of(ByteSource& source);
};

}  // namespace nuv::zero::xmi
