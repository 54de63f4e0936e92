#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "xmi/FileRoots.h"
#include "xmi/Finding.h"
#include "xmi/LoadedMetamodel.h"
#include "xmi/NamespaceAliases.h"
#include "xmi/ReadOptions.h"

namespace nuv::zero::xmi {

/// The metamodels that the files of a model ask for, loaded when they do.
///
///     MetamodelSet metamodels(roots);
///     if (metamodels.provide("http://plant.org", {}, {0, "plant.xmi"})) {
///         metamodels.loaded().findClass("http://plant.org", "Pump");
///     }
///
/// The metamodel of a namespace is the first of these:
///
/// 1. One that is there already, because it was given, or some other asked for it.
/// 2. That of the namespace which an added alias says.
/// 3. That in the file which a schema location leads to.
/// 4. One in a file of the roots that declares a package of the namespace, or whose elements are
///    written in it: the nearest to the file that asks. All `.ecore` files are looked through, and
///    profiles (`.uml`).
/// 5. Ecore itself, which needs no file.
/// 6. That of the namespace which a built-in alias says, or which stands in place of a location.
///
/// With a metamodel come those that it refers to. What a metamodel says of a file that is not there
/// is left open: such a type is any element, such a superclass none. That is a finding, as is a
/// file that cannot be read. Where two files define one namespace, the first counts.
///
/// The metamodel grows by what is asked for; classes that are there never change. Not to be used by
/// several threads at once while something is provided.
class MetamodelSet {
  public:
    /// Where a package stands: its file, and its fragment there.
    struct Definition {
        FilePlace place;
        std::string fragment;
    };

    /// REQUIRES: the roots outlive the set.
    explicit MetamodelSet(const FileRoots& roots, ReadOptions options = {},
                          NamespaceAliases aliases = {});
    MetamodelSet(const MetamodelSet&) = delete;
    MetamodelSet& operator=(const MetamodelSet&) = delete;
    ~MetamodelSet();

    /// Loads metamodels from files of the system, which may lie outside of the roots. A path in one
    /// of them that is not found in the roots means the given file whose path ends as it does.
    /// Throws `ReadError` when one cannot be read, and `std::bad_alloc`; the set is then as before.
    void give(const std::vector<std::string>& paths);

    /// Whether there is a metamodel of the namespace, after looking for one. The location is what a
    /// file says of it (`xsi:schemaLocation`), or empty; `from` is the file that asks. Throws
    /// `std::bad_alloc` only, and then is as before.
    bool provide(std::string_view nsUri, std::string_view location, const FilePlace& from);

    /// Grows as metamodels are provided, and stays where it is.
    const LoadedMetamodel& loaded() const noexcept;

    /// Where the package of a namespace is declared, by its own name or an alias. Nothing for one
    /// that is not loaded, and for a file outside of the roots. Ecore without a file has a place in
    /// the root named `builtInRoot`, or else behind the last one.
    std::optional<Definition> placeOf(std::string_view nsUri) const;

    /// What was found since the last call.
    std::vector<Finding> takeFindings();

  private:
    class Loader;
    std::unique_ptr<Loader> loader_;
};

}  // namespace nuv::zero::xmi
