#pragma once

#include <compare>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "xmi/ByteSource.h"
#include "xmi/FileTree.h"
#include "xmi/ReadOptions.h"

namespace nuv::zero::xmi {

class FolderIndex;

/// Where a file lies: in which root, and the way from there, without detours and links. One file
/// has one place, however it is spelled.
struct FilePlace {
    std::size_t root = 0;
    std::string path;

    friend auto operator<=>(const FilePlace&, const FilePlace&) = default;
};

/// The file trees that the files of one model lie in, each with a name, and the prefixes by which
/// files refer into it.
///
///     FileRoots roots;
///     roots.add("model", "projects/plant");
///     roots.add("libraries", "plugins", {"platform:/plugin/", "platform:/resource/"});
///     roots.add("units", "units.zip").addPrefix("http://units.org/si", "units", "model/si.xmi");
///     const FileRoots::Lookup units = roots.find({0, "plant.xmi"},
///     "platform:/plugin/units/si.xmi");
///     // units.places.front() is units:si.xmi, units.lookedUpBy "root name 'units'"
///
/// A reference is looked up by the first of these rules by which its file is found:
///
/// 1. It begins with a prefix, and leads from where that leads to. Of several prefixes the longest
///    counts. A root's own name is a prefix as well: `platform:/plugin/NAME/`,
///    `platform:/resource/NAME/` and `pathmap://NAME/` lead into the root of that name.
/// 2. It has no scheme, and leads from the folder of the file that it stands in. A path that climbs
///    out of its root goes on in another root that encloses it, and nowhere else.
/// 3. `platform:/plugin/P/...` and `platform:/resource/P/...` lead into a folder named P, wherever
///    it is in a root, or around one as far as the file lies in the root. The nearest to a root's
///    own folder counts; so that it is found, each root is gone through once, when first needed.
/// 4. It begins with a built-in prefix, which means another reference.
///
/// Where one rule leads to two files, none of them is taken. Nothing else leads anywhere: absolute
/// paths and paths that climb out of all roots, by links as well, are refused, and nothing is ever
/// fetched.
///
/// Two files of one name are two files. Where folders lie in each other, a file belongs to the
/// first root that holds it.
///
/// A copy opens files in the same trees. May be used by several threads at once while nothing is
/// added.
class FileRoots {
  public:
    enum class Outcome { Found, Missing, Outside, Ambiguous, Refused };

    /// What came of looking for a file.
    struct Lookup {
        Outcome outcome = Outcome::Missing;
        /// Where the file is found, or the two places between which nothing decides.
        std::vector<FilePlace> places;
        /// What it was looked up by: the rule by which it was found, otherwise the first one that
        /// applied. Empty when none did.
        std::string lookedUpBy;
        /// The paths that were tried, each with the name of its root in front: `libraries:a/m.xmi`.
        /// `**` stands for any folders.
        std::vector<std::string> tried;
        /// The bytes of the file, where it is found; inflated, when gzip has compressed them. What
        /// is wrong inside a compressed file is told by `ReadError` when they are read.
        std::unique_ptr<ByteSource> bytes;
        /// Why it is refused, to be said of the file: `is no file`.
        std::string reason;
    };

    /// Adds a root: a folder, or an archive. Throws `ReadError` when there is no such thing, and
    /// `std::invalid_argument` when there is a root of that name, or a prefix is empty, or the name
    /// is empty or has a colon, `#`, slash, blank or control character. The roots are then as
    /// before.
    FileRoots& add(const std::string& name, const std::string& path,
                   std::vector<std::string> prefixes = {});
    /// The same for any other file tree. REQUIRES: it is not null.
    FileRoots& add(const std::string& name, std::shared_ptr<const FileTree> tree,
                   std::vector<std::string> prefixes = {});
    /// Lets a prefix lead to a folder of a root, or to a file, which the prefix alone then means.
    /// Throws `std::invalid_argument` when there is no root of that name, or the prefix is empty.
    FileRoots& addPrefix(std::string prefix, std::string_view name, std::string path = {});

    std::size_t size() const noexcept { return roots_.size(); }
    const std::string& name(std::size_t root) const noexcept { return roots_[root].name; }
    const FileTree& tree(std::size_t root) const noexcept { return *roots_[root].tree; }
    /// The number of the root of that name; `size` when there is none.
    std::size_t rootNamed(std::string_view name) const noexcept;
    /// The place as people read it, `root:path`.
    std::string textOf(const FilePlace& place) const;

    /// The paths of all files of a root, in the order of their bytes, as they were when something
    /// was looked for in the whole root for the first time. Throws `ReadError` when there are more
    /// than 100 000 files and folders, and `std::bad_alloc`. REQUIRES: there is that root.
    const std::vector<std::string>& files(std::size_t root) const;

    /// Looks for the file that a reference in another file means; what follows a `#` is no part of
    /// it. Percent signs are decoded. A file of more bytes than the limit is refused. Throws
    /// `std::bad_alloc` only.
    Lookup find(const FilePlace& from, std::string_view reference,
                std::size_t limit = limits::fileBytes) const;
    /// The same for a path from a root's folder, as a user gives it. REQUIRES: there is that root.
    Lookup find(std::size_t root, std::string_view path,
                std::size_t limit = limits::fileBytes) const;

  private:
    class Search;
    struct Prefix {
        std::string text;
        /// Where it leads to.
        std::string path;
    };
    struct Root {
        std::string name;
        std::shared_ptr<const FileTree> tree;
        std::shared_ptr<FolderIndex> index;
        std::vector<Prefix> prefixes;
    };

    FilePlace placeOf(std::size_t root, const std::string& path) const;

    std::vector<Root> roots_;
};

/// Whether a reference begins with a scheme, as `platform:/plugin/...` and `http://...` do.
bool hasScheme(std::string_view reference);

}  // namespace nuv::zero::xmi
