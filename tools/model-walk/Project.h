#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "CommandLine.h"
#include "model/Framework.h"
#include "xmi/Findings.h"
#include "xmi/LoadedMetamodel.h"

namespace model_walk {

/// What came of looking for the file and the element that a reference means.
struct Resolution {
    /// What the file was looked up by.
    std::string rule;
    /// The places where it was looked for.
    std::vector<std::string> tried;
    /// Where it is; empty where it was not found.
    std::string place;
    /// Why it was not found.
    std::string reason;
    /// Null where the file has no such element.
    nuv::zero::ModelElement element;
};

/// The model that the command line names, loaded: the only one that knows how that is done.
class Project {
  public:
    struct File {
        /// `root:path`.
        std::string place;
        std::size_t elements;
    };

    /// Throws `UsageError` for options that make no sense and `ReadError` when the model cannot be
    /// read. What is wrong inside of it becomes findings.
    explicit Project(const CommandLine& line);
    /// The same for the model file alone, in which everything has to be right; elements go by their
    /// fragments.
    struct Strict {};
    static constexpr Strict Strictly = {};
    Project(const CommandLine& line, Strict strictly);
    Project(const Project&) = delete;
    Project& operator=(const Project&) = delete;
    ~Project();

    const nuv::zero::xmi::LoadedMetamodel& metamodel() const noexcept;
    const std::vector<File>& files() const noexcept;
    /// Those that nothing contains.
    const std::vector<nuv::zero::ModelElement>& roots() const noexcept;
    /// File by file, in the order in which they stand there.
    const std::vector<nuv::zero::ModelElement>& elements() const noexcept;
    const nuv::zero::xmi::Findings& findings() const noexcept;
    /// References into other files that were left out on request.
    std::size_t leftOut() const noexcept;

    /// The element's address, escaped: what `element` takes. A file that was read by itself has
    /// none, and its elements go by their fragments.
    std::string address(const nuv::zero::ModelElement& element) const;
    /// The place of the file that an element stands in.
    std::string placeOf(const nuv::zero::ModelElement& element) const;
    /// The element with an address or, in the model's own file, a fragment; null where there is
    /// none.
    nuv::zero::ModelElement find(const std::string& address) const;
    /// The same; throws `UsageError` that names the nearest.
    nuv::zero::ModelElement element(const std::string& address) const;
    /// Null for roots.
    nuv::zero::ModelElement container(const nuv::zero::ModelElement& element) const;
    /// Looks a reference up as if it stood in a file; an empty one is the model's own.
    Resolution resolve(const std::string& file, const std::string& reference) const;

  private:
    class Loaded;
    class SingleFile;
    class Files;
    std::unique_ptr<Loaded> loaded_;
};

}  // namespace model_walk
