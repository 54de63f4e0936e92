#pragma once

#include <compare>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "xmi/Folder.h"

namespace nuv::zero::xmi {

/// Where a file lies: in which root, and the way from there, without detours and links. One file
/// has one place, however it is spelled.
struct FilePlace {
    std::size_t root = 0;
    std::string path;

    friend auto operator<=>(const FilePlace&, const FilePlace&) = default;
};

/// The folders that the files of one model lie in, each with a name, and the prefixes by which
/// files refer into it.
///
///     FileRoots roots;
///     roots.add("model", "projects/plant");
///     roots.add("libraries", "eclipse/plugins", {"platform:/plugin/", "platform:/resource/"});
///     roots.find({0, "plant.xmi"}, "platform:/plugin/org.units/si.xmi");   //
///     eclipse/plugins/org.units/si.xmi
///
/// A reference that begins with a prefix leads from the root's folder; of several prefixes the
/// longest counts. A reference without a scheme leads from the folder of the file that it stands
/// in. Nothing else leads anywhere: absolute paths and paths that climb out of their root, by links
/// as well, are refused, and nothing is ever fetched.
///
/// Two files of one name are two files. Where roots lie in each other, a file belongs to the first
/// of those that hold it.
class FileRoots {
  public:
    enum class Outcome { Found, Missing, Outside, Ambiguous, Refused };

    /// What came of looking for a file.
    struct Finding {
        Outcome outcome = Outcome::Missing;
        /// Where the file is found, or the two places between which nothing decides.
        std::vector<FilePlace> places;
        /// The paths that were tried, each with the name of its root in front: `libraries:a/m.xmi`.
        std::vector<std::string> tried;
        /// The open file, where it is found.
        Folder::Opening file;
        /// Why the system refuses to open it.
        std::string reason;
    };

    /// Adds a root. Throws `ReadError` when there is no such folder, and `std::invalid_argument`
    /// when there is a root of that name.
    FileRoots& add(const std::string& name, const std::string& folder,
                   std::vector<std::string> prefixes = {});

    std::size_t size() const noexcept { return roots_.size(); }
    const std::string& name(std::size_t root) const noexcept { return roots_[root].name; }
    /// The place as people read it, `root:path`.
    std::string textOf(const FilePlace& place) const;

    /// Looks for the file that a reference in another file means; what follows a `#` is no part of
    /// it. Percent signs are decoded. Throws `std::bad_alloc` only.
    Finding find(const FilePlace& from, std::string_view reference) const;
    /// The same for a path from a root's folder, as a user gives it. REQUIRES: there is that root.
    Finding find(std::size_t root, std::string_view path) const;

  private:
    struct Root {
        std::string name;
        Folder folder;
        std::vector<std::string> prefixes;
    };

    /// Tries one path; says whether the search is over.
    void tryPath(Finding& finding, std::size_t root, std::string_view path) const;
    FilePlace placeOf(std::size_t root, const std::string& path) const;

    std::vector<Root> roots_;
};

/// Whether a reference begins with a scheme, as `platform:/plugin/...` and `http://...` do.
bool hasScheme(std::string_view reference);

}  // namespace nuv::zero::xmi
