#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "xmi/FileRoots.h"

namespace nuv::zero::xmi {

/// Which files of the roots seem to define the metamodel of a namespace.
///
/// Metamodels (`.ecore`) and profiles (`.uml`) are gone through once, when something is asked for
/// the first time, and not parsed: whoever reads a file finds out whether it is one.
class NamespaceIndex {
  public:
    /// At most so many files, and bytes in all, are gone through; what is behind is not found.
    struct Limits {
        std::size_t files = 10'000;
        std::size_t bytes = std::size_t{1} << 30U;
    };

    /// REQUIRES: the roots outlive the index.
    explicit NamespaceIndex(const FileRoots& roots) : NamespaceIndex(roots, Limits()) {}
    NamespaceIndex(const FileRoots& roots, Limits limits) : roots_(roots), limits_(limits) {}

    /// The files, those that lie nearest to one that asks first: in its own root before others, and
    /// there by how many folders they share. Those that declare a package of that namespace come
    /// before those whose elements only are written in it.
    std::vector<FilePlace> filesWith(std::string_view nsUri, const FilePlace& from);

  private:
    using Places = std::map<std::string, std::vector<FilePlace>, std::less<>>;
    struct Found {
        Places packages;
        Places forms;
    };

    Found scan() const;
    static void scanFile(Found& all, const FilePlace& place, std::string_view text);

    const FileRoots& roots_;
    Limits limits_;
    std::optional<Found> found_;
};

}  // namespace nuv::zero::xmi
