#pragma once

#include <cstddef>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "xmi/CrossFileContainment.h"
#include "xmi/FileReading.h"
#include "xmi/FileRoots.h"
#include "xmi/Findings.h"
#include "xmi/LoadOptions.h"
#include "xmi/MetamodelSet.h"
#include "xmi/ModelSetFile.h"
#include "xmi/ModelSetLinker.h"
#include "xmi/ReferencePlaces.h"

namespace nuv::zero::xmi {

/// Loads the files of a model set, and knows them.
class ModelSetLoader {
  public:
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    ModelSetLoader(FileRoots roots, LoadOptions options);

    /// Loads files and all that they lead to. Files that were only guessed to be models may also be
    /// none. Throws as `ModelSet::load` does; nothing has changed then but for metamodels. The
    /// answer is the number of the first one.
    std::size_t load(const std::vector<FilePlace>& places, bool mustBeModels);
    /// The place of a file that a user asks for. Throws `ReadError` where there is none.
    FilePlace placeOf(std::size_t root, std::string_view path) const;

    const FileRoots& roots() const noexcept { return roots_; }
    const MetamodelSet& metamodels() const noexcept { return metamodels_; }
    const std::deque<ModelSetFile>& files() const noexcept { return files_; }
    const Findings& findings() const noexcept { return findings_; }
    const CrossFileContainment& containment() const noexcept { return containment_; }
    std::size_t elementCount() const noexcept { return elements_; }
    /// `none` for an element of no file, and for a place of none.
    std::size_t fileOf(const ModelElement& element) const noexcept;
    std::size_t fileAt(const FilePlace& place) const noexcept;
    /// Whether an element contains some of another file.
    bool reachesOut(const ModelElement& element) const { return reachingOut_.contains(element); }
    /// What a reference means, as far as it is loaded.
    struct Target {
        ReferencePlaces::Lookup lookup;
        std::size_t file = none;
        ModelElement element;
        Finding::Reason reason = Finding::Reason::MissingFile;
        std::string message;
    };
    Target explain(const FilePlace& from, std::string_view reference) const;

  private:
    /// A file that is known, loaded or not.
    struct Entry {
        enum class State : std::uint8_t { Unloaded, Waiting, Loaded, Failed };
        FilePlace place;
        State state = State::Unloaded;
        /// Its number among the files.
        std::size_t file = none;
        /// Why it cannot be read.
        std::optional<ReadError> error;
    };
    /// What there was before something is loaded.
    struct Before {
        std::size_t files;
        std::size_t entries;
        std::size_t elements;
        std::size_t bytes;
    };

    std::size_t entryAt(const FilePlace& place);
    void wait(std::size_t entry);
    void readWaiting(bool mustBeModels);
    void readWave(const std::vector<std::size_t>& entries, bool mustBeModels);
    void open(FileReading& reading, bool mustBeModels);
    void provide(const FileReading& reading, const std::vector<std::string>& namespaces);
    void readAgain(FileReading& reading);
    void take(std::size_t number, FileReading& reading);

    /// What a reference leads to, with the fragment there.
    const ReferencePlaces::Lookup& lookUp(const FilePlace& from, std::string_view file);
    void follow(const ModelSetFile& file);
    void linkFrom(std::size_t first, CrossFileContainment& containment,
                  std::unordered_set<ModelElement>& reachingOut);
    void findTargets(ModelSetFile& file);
    void findThrough(ModelSetFile& file);
    Target targetOf(const ReferencePlaces::Lookup& lookup, std::string_view reference) const;
    void searchEverywhere(Target& target, std::string_view fragment) const;
    void report(ModelSetFile& file, const OutgoingReference& reference, Finding::Reason reason,
                const std::string& message, const ReferencePlaces::Lookup* lookup = nullptr,
                std::string other = {});
    /// All findings, with those of the files from the first one on, which have them no more then.
    Findings findingsFrom(std::size_t first);
    void placeLinkFindings(ModelSetFile& file);
    void forget(const Before& before) noexcept;

    FileRoots roots_;
    LoadOptions options_;
    ReadOptions readOptions_;
    MetamodelSet metamodels_;
    ReferencePlaces places_;

    /// Files do not move when others are added.
    std::deque<ModelSetFile> files_;
    std::deque<Entry> entries_;
    std::map<FilePlace, std::size_t> entryByPlace_;
    /// The entries that are to be read, in the order in which they were met.
    std::deque<std::size_t> waiting_;
    /// Each file's elements have a storage of their own.
    std::unordered_map<const memory::Storage*, std::size_t> byStorage_;
    CrossFileContainment containment_;
    std::unordered_set<ModelElement> reachingOut_;
    std::size_t elements_ = 0;
    std::size_t bytes_ = 0;
    Findings findings_;
    std::vector<Finding> ofMetamodels_;
};

}  // namespace nuv::zero::xmi
