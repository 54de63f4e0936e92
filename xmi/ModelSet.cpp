#include "xmi/ModelSet.h"

#include <algorithm>
#include <deque>
#include <iterator>
#include <map>
#include <unordered_map>
#include <utility>

#include "xmi/CrossFileContainment.h"
#include "xmi/Fragment.h"
#include "xmi/ModelSetFile.h"
#include "xmi/ModelSetLinker.h"
#include "xmi/ReferenceResolver.h"
#include "xmi/XmiBuilder.h"

namespace nuv::zero::xmi {
namespace {

using Kind = ModelSetFinding::Kind;

std::string_view fileOfReference(std::string_view reference) {
    return reference.substr(0, reference.find('#'));
}

std::string_view fragmentOf(std::string_view reference) {
    const std::size_t hash = reference.find('#');
    return hash == std::string_view::npos ? std::string_view() : reference.substr(hash + 1);
}

ModelElement elementIn(const LoadedModel& model, std::string_view fragment) {
    const ModelElement found = model.find(fragment);
    const bool mayBeEncoded = !found && fragment.find('%') != std::string_view::npos;
    return mayBeEncoded ? model.find(percentDecoded(fragment)) : found;
}

}  // namespace

/// Loads files, and knows them.
class ModelSet::Loader {
  public:
    Loader(const LoadedMetamodel& metamodel, FileRoots roots, const ReadOptions& options,
           const ModelSetLimits& limits)
        : metamodel_(metamodel), roots_(std::move(roots)), options_(options), limits_(limits) {}

    const LoadedModel& load(std::string_view path);
    const FileRoots& roots() const noexcept { return roots_; }
    const std::deque<ModelSetFile>& files() const noexcept { return files_; }
    const std::vector<ModelSetFinding>& findings() const noexcept { return findings_; }
    /// Null for an element of no file.
    const ModelSetFile* fileOf(const ModelElement& element) const;
    const ModelSetFile* fileAt(const FilePlace& place) const;

  private:
    static constexpr std::size_t noFile = static_cast<std::size_t>(-1);

    /// What came of looking for the file that a reference means.
    struct Lookup {
        std::size_t file = noFile;
        Kind kind = Kind::Missing;
        /// What is to be said of the file.
        std::string reason;
        std::vector<std::string> tried;
    };
    /// Where a finding stands, as long as nobody has counted lines.
    struct Spot {
        std::size_t file;
        std::size_t offset;
        std::size_t finding;
    };

    Lookup take(FileRoots::Lookup found);
    std::size_t read(const FilePlace& place, ByteSource& source);
    const Lookup& lookUp(const ModelSetFile& from, std::string_view reference);
    void follow(ModelSetFile& file);
    void followThrough(ModelSetFile& file);
    void linkFrom(std::size_t first);
    void report(const ModelSetFile& file, const OutgoingReference& reference, Kind kind,
                const std::string& reason, const std::vector<std::string>& tried = {});
    /// Puts the new findings in order, and says in which lines they stand.
    void placeFindings();
    void forgetFrom(std::size_t first, std::size_t firstFinding) noexcept;

    const LoadedMetamodel& metamodel_;
    FileRoots roots_;
    ReadOptions options_;
    ModelSetLimits limits_;
    std::size_t elements_ = 0;
    /// Files do not move when others are added.
    std::deque<ModelSetFile> files_;
    /// Also of the files that cannot be read.
    std::map<FilePlace, Lookup> byPlace_;
    /// By the folder that a reference leads from, and the reference without its fragment.
    std::map<std::string, Lookup, std::less<>> lookups_;
    /// Each file's elements have a storage of their own.
    std::unordered_map<const memory::Storage*, std::size_t> byStorage_;
    CrossFileContainment containment_;
    std::vector<ModelSetFinding> findings_;
    std::vector<Spot> spots_;
};

const LoadedModel& ModelSet::Loader::load(std::string_view path) {
    const std::size_t first = files_.size();
    const std::size_t firstFinding = findings_.size();
    try {
        const Lookup found = take(roots_.find(0, path, options_.limits.fileBytes));
        if (found.file == noFile) {
            throw ReadError(path, {}, found.reason);
        }
        // Following a file adds others at the end.
        for (std::size_t file = first; file < files_.size(); ++file) follow(files_[file]);
        linkFrom(first);
        placeFindings();
        return files_[found.file].model;
    } catch (...) {
        forgetFrom(first, firstFinding);
        throw;
    }
}

ModelSet::Loader::Lookup ModelSet::Loader::take(FileRoots::Lookup found) {
    Lookup lookup;
    lookup.tried = std::move(found.tried);
    switch (found.outcome) {
        case FileRoots::Outcome::Missing:
            lookup.reason = "is in none of the file roots";
            return lookup;
        case FileRoots::Outcome::Outside:
            lookup.kind = Kind::Outside;
            lookup.reason = "lies outside of its file root";
            return lookup;
        case FileRoots::Outcome::Ambiguous:
            lookup.kind = Kind::Ambiguous;
            lookup.reason = "may be " + roots_.textOf(found.places.front()) + " or " +
                            roots_.textOf(found.places.back());
            return lookup;
        case FileRoots::Outcome::Refused:
            lookup.kind = Kind::Unreadable;
            lookup.reason = std::move(found.reason);
            return lookup;
        case FileRoots::Outcome::Found:
            break;
    }
    const FilePlace& place = found.places.front();
    const auto known = byPlace_.find(place);
    if (known != byPlace_.end()) return known->second;
    try {
        lookup.file = read(place, *found.bytes);
    } catch (const ReadError& error) {
        lookup.kind = Kind::Unreadable;
        lookup.reason = std::string("cannot be read: ") + error.what();
    }
    byPlace_.emplace(place, lookup);
    return lookup;
}

std::size_t ModelSet::Loader::read(const FilePlace& place, ByteSource& source) {
    const std::string shown = roots_.textOf(place);
    if (files_.size() >= limits_.files) {
        throw ReadError(shown, {},
                        "the model has more than " + std::to_string(limits_.files) + " files");
    }
    std::vector<OutgoingReference> outgoing;
    LoadedModel model = XmiBuilder(metamodel_, shown, source, options_).build(&outgoing);
    if (model.elements().size() > limits_.elements - elements_) {
        throw ReadError(
            shown, {}, "the model has more than " + std::to_string(limits_.elements) + " elements");
    }
    const std::size_t number = files_.size();
    files_.push_back({place, shown, std::move(model), std::move(outgoing), {}});
    byStorage_.emplace(files_.back().model.roots().front()->storage(), number);
    elements_ += files_.back().model.elements().size();
    return number;
}

const ModelSet::Loader::Lookup& ModelSet::Loader::lookUp(const ModelSetFile& from,
                                                         std::string_view reference) {
    const std::string_view file = fileOfReference(reference);
    std::string key(file);
    if (!hasScheme(file)) {
        const std::size_t slash = from.place.path.rfind('/');
        const std::string folder =
            slash == std::string::npos ? std::string() : from.place.path.substr(0, slash);
        // A scheme does not begin with a digit.
        key = std::to_string(from.place.root) + ":" + folder + "/:" + key;
    }
    const auto known = lookups_.find(key);
    if (known != lookups_.end()) return known->second;
    Lookup found = take(roots_.find(from.place, file, options_.limits.fileBytes));
    return lookups_.emplace(std::move(key), std::move(found)).first->second;
}

void ModelSet::Loader::follow(ModelSetFile& file) {
    file.targets.resize(file.outgoing.size());
    for (std::size_t i = 0; i < file.outgoing.size(); ++i) {
        const OutgoingReference& reference = file.outgoing[i];
        if (reference.through != noNode) continue;
        const Lookup& found = lookUp(file, reference.text);
        if (found.file == noFile) {
            report(file, reference, found.kind, "leads to a file that " + found.reason,
                   found.tried);
            continue;
        }
        const ModelSetFile& other = files_[found.file];
        file.targets[i] = elementIn(other.model, fragmentOf(reference.text));
        if (!file.targets[i]) {
            report(file, reference, Kind::NoElement, "leads to nothing in " + other.shown);
        }
    }
    followThrough(file);
}

void ModelSet::Loader::followThrough(ModelSetFile& file) {
    std::unordered_map<Node, std::size_t> byNode;
    for (std::size_t i = 0; i < file.outgoing.size(); ++i) {
        if (file.outgoing[i].through == noNode) byNode.emplace(file.outgoing[i].node, i);
    }
    for (std::size_t i = 0; i < file.outgoing.size(); ++i) {
        const OutgoingReference& reference = file.outgoing[i];
        if (reference.through == noNode) continue;
        const auto found = byNode.find(reference.through);
        if (found != byNode.end()) file.targets[i] = file.targets[found->second];
        if (!file.targets[i]) {
            report(file, reference, Kind::NoElement,
                   "leads through a reference that leads to nothing");
        }
    }
}

void ModelSet::Loader::linkFrom(std::size_t first) {
    CrossFileContainment containment = containment_;
    ModelSetLinker linker(
        containment,
        [&](const ModelElement& element) -> const ModelSetFile& { return *fileOf(element); },
        [&](const ModelSetFile& file, const OutgoingReference& reference, Kind kind,
            const std::string& reason) { report(file, reference, kind, reason); });
    for (std::size_t file = first; file < files_.size(); ++file) linker.link(files_[file]);
    containment_ = std::move(containment);
}

void ModelSet::Loader::report(const ModelSetFile& file, const OutgoingReference& reference,
                              Kind kind, const std::string& reason,
                              const std::vector<std::string>& tried) {
    const std::string property = nameOf(meta::Property(reference.property));
    spots_.push_back({byPlace_.at(file.place).file, reference.offset, findings_.size()});
    findings_.push_back(
        {kind,
         file.shown,
         {},
         reference.text,
         property,
         reference.property->isComposite(),
         "the reference " + inQuotes(reference.text) + " of " + property + " " + reason,
         tried});
}

void ModelSet::Loader::placeFindings() {
    const auto before = [](const Spot& one, const Spot& other) {
        return std::pair(one.file, one.offset) < std::pair(other.file, other.offset);
    };
    std::stable_sort(spots_.begin(), spots_.end(), before);
    std::vector<ModelSetFinding> sorted;
    for (Spot& each : spots_) {
        sorted.push_back(std::move(findings_[each.finding]));
        each.finding = findings_.size() - spots_.size() + sorted.size() - 1;
    }
    std::move(sorted.begin(), sorted.end(),
              findings_.end() - static_cast<std::ptrdiff_t>(sorted.size()));
    for (auto begin = spots_.begin(); begin != spots_.end();) {
        const auto end = std::find_if(begin, spots_.end(),
                                      [&](const Spot& other) { return other.file != begin->file; });
        const FilePlace& place = files_[begin->file].place;
        const FileRoots::Lookup file =
            roots_.find(place.root, place.path, options_.limits.fileBytes);
        // Otherwise it has gone since it was read.
        if (file.outcome == FileRoots::Outcome::Found) {
            std::vector<std::size_t> offsets;
            std::transform(begin, end, std::back_inserter(offsets),
                           [](const Spot& each) { return each.offset; });
            try {
                const std::vector<Position> positions = positionsAt(*file.bytes, offsets);
                auto position = positions.begin();
                for (auto each = begin; each != end; ++each) {
                    findings_[each->finding].position = *position++;
                }
            } catch (const ReadError&) {
                // It cannot be read any more, and the findings name the file alone.
            }
        }
        begin = end;
    }
    spots_.clear();
}

void ModelSet::Loader::forgetFrom(std::size_t first, std::size_t firstFinding) noexcept {
    // What was not found is looked for again.
    const auto isForgotten = [&](const auto& each) { return each.second.file >= first; };
    std::erase_if(lookups_, isForgotten);
    std::erase_if(byPlace_, isForgotten);
    std::erase_if(byStorage_, [&](const auto& each) { return each.second >= first; });
    for (; files_.size() > first; files_.pop_back()) {
        elements_ -= files_.back().model.elements().size();
    }
    findings_.erase(findings_.begin() + static_cast<std::ptrdiff_t>(firstFinding), findings_.end());
    spots_.clear();
}

const ModelSetFile* ModelSet::Loader::fileOf(const ModelElement& element) const {
    if (!element) return nullptr;
    const auto found = byStorage_.find(element->storage());
    return found == byStorage_.end() ? nullptr : &files_[found->second];
}

const ModelSetFile* ModelSet::Loader::fileAt(const FilePlace& place) const {
    const auto found = byPlace_.find(place);
    const bool isThere = found != byPlace_.end() && found->second.file != noFile;
    return isThere ? &files_[found->second.file] : nullptr;
}

ModelSet::ModelSet(const LoadedMetamodel& metamodel, FileRoots roots, ReadOptions options,
                   ModelSetLimits limits)
    : loader_(std::make_unique<Loader>(metamodel, std::move(roots), options, limits)) {}

ModelSet::~ModelSet() = default;

const LoadedModel& ModelSet::load(std::string_view path) {
    return loader_->load(path);
}

std::size_t ModelSet::fileCount() const noexcept {
    return loader_->files().size();
}

const FilePlace& ModelSet::place(std::size_t file) const noexcept {
    return loader_->files()[file].place;
}

const LoadedModel& ModelSet::model(std::size_t file) const noexcept {
    return loader_->files()[file].model;
}

const FileRoots& ModelSet::roots() const noexcept {
    return loader_->roots();
}

const std::vector<ModelSetFinding>& ModelSet::findings() const noexcept {
    return loader_->findings();
}

std::optional<ElementIdentity> ModelSet::identity(const ModelElement& element) const {
    const ModelSetFile* const file = loader_->fileOf(element);
    if (file == nullptr) return std::nullopt;
    return ElementIdentity{roots().name(file->place.root), file->place.path,
                           file->model.identity(element)};
}

ModelElement ModelSet::find(std::string_view identity) const {
    const std::size_t colon = identity.find(':');
    const std::size_t hash = identity.find('#', colon);
    if (colon == std::string_view::npos || hash == std::string_view::npos) return {};
    for (std::size_t root = 0; root < roots().size(); ++root) {
        if (roots().name(root) != identity.substr(0, colon)) continue;
        const std::string path(identity.substr(colon + 1, hash - colon - 1));
        const ModelSetFile* const file = loader_->fileAt({root, path});
        return file == nullptr ? ModelElement() : file->model.find(identity.substr(hash + 1));
    }
    return {};
}

}  // namespace nuv::zero::xmi
