#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "xmi/ElementAddress.h"
#include "xmi/FileRoots.h"
#include "xmi/Findings.h"
#include "xmi/LoadOptions.h"
#include "xmi/LoadedMetamodel.h"
#include "xmi/LoadedModel.h"
#include "xmi/MetamodelSet.h"

namespace nuv::zero::xmi {

class ModelSetLoader;

/// Several files that are one model.
///
///     FileRoots roots;
///     roots.add("model", "projects/plant").add("units", "libraries/units.zip");
///     ModelSet set(std::move(roots));
///     set.load("plant.xmi");
///     for (const Finding& each : set.findings()) std::cerr << each.text() << '\n';
///
/// Loading a file loads what its references lead to, as far as they lead, each file once, however
/// it is spelled; then every reference is set, between files as within one. Lists keep the order of
/// their file, and elements may be contained across files; files may lead to each other in circles.
/// Metamodels are found alone, see `MetamodelSet`.
///
/// What cannot be set or understood is left out and becomes a finding; the set is usable all the
/// same. Whoever wants a model without such calls `requireComplete`. The file that is asked for is
/// another matter: when it cannot be read, `load` throws.
///
/// A reference that begins with the namespace of a metamodel leads into the metamodel's file, which
/// is then loaded as a model as well.
///
/// Each file's elements are those of a `LoadedModel`, which the set owns, so handles of elements
/// stay valid as those of any model do. An unchanging set may be read on several threads.
class ModelSet {
  public:
    /// What came of looking a reference up; see `explain`.
    struct Lookup {
        /// The rule by which it was looked up: `relative path`, a prefix, a namespace.
        std::string lookedUpBy;
        /// The places where the file was looked for, `root:path`.
        std::vector<std::string> tried;
        /// The file, as `root:path`; empty where it was not found.
        std::string file;
        /// Why there is no element, to be said of the reference; empty where there is one.
        std::string reason;
        ModelElement element;
    };

    /// A file root `built-in` is added, in which Ecore lies. Throws `ReadError` when a metamodel
    /// that is given cannot be read.
    explicit ModelSet(FileRoots roots, LoadOptions options = {});
    ModelSet(const ModelSet&) = delete;
    ModelSet& operator=(const ModelSet&) = delete;
    ~ModelSet();

    /// Loads a file of the first root and all that it leads to; only finds it when it is loaded.
    /// Throws `ReadError` when it is not there or cannot be read, and `std::bad_alloc`; the set is
    /// then as before. REQUIRES: there is a root.
    const LoadedModel& load(std::string_view path);
    /// The same for several files at once, of any roots: `path` in the first, or `root:path`.
    void load(const std::vector<std::string>& paths);
    /// Loads all files of a root that are models, and what they lead to. Metamodels are loaded as
    /// models only where there is nothing else. Throws as `load`, but for files that are no models:
    /// they are left out, those of an unknown namespace with a note.
    void loadFolder(std::string_view root);

    const MetamodelSet& metamodels() const noexcept;
    /// What all metamodels together say.
    const LoadedMetamodel& metamodel() const noexcept;
    const FileRoots& fileRoots() const noexcept;

    /// The files, in the order in which they were met.
    std::size_t fileCount() const noexcept;
    const FilePlace& place(std::size_t file) const noexcept;
    const LoadedModel& model(std::size_t file) const noexcept;
    /// The number of the file that holds an element; `fileCount` for an element of none.
    std::size_t fileOf(const ModelElement& element) const noexcept;

    /// All elements that nothing contains, in the order of the files.
    std::vector<ModelElement> rootElements() const;
    /// All elements, file by file, in the order in which they stand there.
    std::vector<ModelElement> elements() const;
    std::size_t elementCount() const noexcept;

    /// Empty for a null element and for one of no file of the set.
    ElementAddress address(const ModelElement& element) const;
    /// The element with that address, as `ElementAddress::text` writes it; null where there is
    /// none.
    ModelElement find(std::string_view address) const;
    ModelElement find(const ElementAddress& address) const;

    /// The element that contains another one, in whatever file; null where there is none.
    ModelElement container(const ModelElement& element) const;
    /// The elements that an element contains: those of its file in the order there, then others.
    std::vector<ModelElement> contents(const ModelElement& element) const;

    /// Those of metamodels first; then in the order of the files, and of each file, as they were
    /// loaded.
    const Findings& findings() const noexcept;
    /// Throws a `ReadError` of the first finding by which something is missing from the model.
    void requireComplete() const;

    /// Looks a reference up as if it stood in a file, and loads nothing.
    Lookup explain(const FilePlace& from, std::string_view reference) const;

  private:
    std::unique_ptr<ModelSetLoader> loader_;
};

}  // namespace nuv::zero::xmi
