#pragma once

#include <compare>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "xmi/FileRoots.h"
#include "xmi/LoadedMetamodel.h"
#include "xmi/LoadedModel.h"
#include "xmi/ModelSetFinding.h"
#include "xmi/ReadOptions.h"

namespace nuv::zero::xmi {

/// What identifies an element among several files.
struct ElementIdentity {
    /// The name of the file root, and the way from there.
    std::string root;
    std::string path;
    /// The element's identity in its file, see `LoadedModel`.
    std::string fragment;

    /// `root:path#fragment`.
    std::string text() const { return root + ":" + path + "#" + fragment; }
    friend auto operator<=>(const ElementIdentity&, const ElementIdentity&) = default;
};

/// The limits of a whole set, beside those of each file.
struct ModelSetLimits {
    std::size_t files = 100'000;
    /// Elements of the model, in all files.
    std::size_t elements = limits::elements;
};

/// Several files that are one model.
///
///     FileRoots roots;
///     roots.add("model", "projects/plant").add("units", "plugins", {"platform:/plugin/"});
///     ModelSet set(metamodel, std::move(roots));
///     const LoadedModel& plant = set.load("plant.xmi");
///     for (const ModelSetFinding& each : set.findings()) std::cerr << each.text() << '\n';
///
/// Loading a file loads what its references lead to, as far as they lead, each file once, however
/// it is spelled; then every reference is set, between files as within one. Lists keep the order of
/// their file, and elements may be contained across files; files may lead to each other in circles.
///
/// A reference that cannot be set is left out and becomes a finding; the set is usable all the
/// same. Whoever wants a model without such looks at `findings`. The file that is asked for is
/// another matter: when it cannot be read, `load` throws.
///
/// Each file's elements are those of a `LoadedModel`, which the set owns, so handles of elements
/// stay valid as those of any model do. An unchanging set may be read on several threads.
class ModelSet {
  public:
    /// REQUIRES: the metamodel outlives the set.
    ModelSet(const LoadedMetamodel& metamodel, FileRoots roots, ReadOptions options = {},
             ModelSetLimits limits = {});
    ModelSet(const ModelSet&) = delete;
    ModelSet& operator=(const ModelSet&) = delete;
    ~ModelSet();

    /// Loads a file of the first root and all that it leads to; only finds it when it is loaded.
    /// Throws `ReadError` when it is not there or cannot be read, and `std::bad_alloc`; the set is
    /// then as before. REQUIRES: there is a root.
    const LoadedModel& load(std::string_view path);

    /// The files, in the order in which they were met.
    std::size_t fileCount() const noexcept;
    const FilePlace& place(std::size_t file) const noexcept;
    const LoadedModel& model(std::size_t file) const noexcept;
    const FileRoots& roots() const noexcept;

    /// In the order of the files, and of each file, as they were loaded.
    const std::vector<ModelSetFinding>& findings() const noexcept;

    /// Nothing for a null element and for one of no file of the set.
    std::optional<ElementIdentity> identity(const ModelElement& element) const;
    /// The element with that identity, `root:path#fragment`; null where there is none.
    ModelElement find(std::string_view identity) const;

  private:
    class Loader;
    std::unique_ptr<Loader> loader_;
};

}  // namespace nuv::zero::xmi
