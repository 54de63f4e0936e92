#include "xmi/ModelSetLoader.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "xmi/BuiltInEcore.h"
#include "xmi/Misfit.h"
#include "xmi/TextFiles.h"

namespace nuv::zero::xmi {
namespace {

using Reason = Finding::Reason;

/// So many files are read at once, on however many threads, so that the order in which metamodels
/// are asked for depends on the files alone.
constexpr std::size_t filesAhead = 8;

std::string_view fileOfReference(std::string_view reference) {
    return reference.substr(0, reference.find('#'));
}

std::string_view fragmentOf(std::string_view reference) {
    const std::size_t hash = reference.find('#');
    return hash == std::string_view::npos ? std::string_view() : reference.substr(hash + 1);
}

/// Whether a reference names a scheme and no file, as `plant:/#P1` does.
bool isSchemeAlone(std::string_view file) {
    if (!hasScheme(file)) return false;
    return file.find_first_not_of('/', file.find(':') + 1) == std::string_view::npos;
}

FileRoots withBuiltIn(FileRoots roots) {
    if (roots.rootNamed(builtInRoot) != roots.size()) return roots;
    const auto files = std::make_shared<TextFiles>(std::string(builtInRoot));
    files->add(builtInEcoreFile, builtInEcoreText());
    roots.add(std::string(builtInRoot), files);
    return roots;
}

ReadOptions readOptionsOf(const LoadOptions& options) {
    ReadOptions read;
    read.limits = options.file;
    return read;
}

}  // namespace

ModelSetLoader::ModelSetLoader(FileRoots roots, LoadOptions options)
    : roots_(withBuiltIn(std::move(roots))),
      options_(std::move(options)),
      readOptions_(readOptionsOf(options_)),
      metamodels_(roots_, readOptions_, options_.aliases),
      places_(roots_, metamodels_, options_.file.fileBytes),
      findings_(options_.limits.findings) {
    if (!options_.metamodels.empty()) metamodels_.give(options_.metamodels);
}

FilePlace ModelSetLoader::placeOf(std::size_t root, std::string_view path) const {
    FileRoots::Lookup found = roots_.find(root, path, options_.file.fileBytes);
    switch (found.outcome) {
        case FileRoots::Outcome::Found:
            return std::move(found.places.front());
        case FileRoots::Outcome::Outside:
            throw ReadError(path, {}, "lies outside of its file root");
        case FileRoots::Outcome::Refused:
            throw ReadError(path, {}, found.reason);
        case FileRoots::Outcome::Missing:
        case FileRoots::Outcome::Ambiguous:
            break;
    }
    throw ReadError(path, {}, "is in none of the file roots");
}

std::size_t ModelSetLoader::load(const std::vector<FilePlace>& places, bool mustBeModels) {
    const Before before{files_.size(), entries_.size(), elements_, bytes_};
    std::vector<std::size_t> asked;
    try {
        for (const FilePlace& each : places) {
            asked.push_back(entryAt(each));
            wait(asked.back());
        }
        readWaiting(mustBeModels);
        for (const std::size_t each : asked) {
            if (mustBeModels && entries_[each].error) throw ReadError(*entries_[each].error);
        }
        // What follows the links is kept when nothing can fail any more.
        CrossFileContainment containment = containment_;
        std::unordered_set<ModelElement> reachingOut = reachingOut_;
        linkFrom(before.files, containment, reachingOut);
        Findings findings = findingsFrom(before.files);
        containment_ = std::move(containment);
        reachingOut_ = std::move(reachingOut);
        findings_ = std::move(findings);
        ofMetamodels_.clear();
    } catch (...) {
        forget(before);
        throw;
    }
    return asked.empty() ? none : entries_[asked.front()].file;
}

std::size_t ModelSetLoader::entryAt(const FilePlace& place) {
    const auto known = entryByPlace_.find(place);
    if (known != entryByPlace_.end()) return known->second;
    entries_.push_back({place, Entry::State::Unloaded, none, std::nullopt});
    entryByPlace_.emplace(place, entries_.size() - 1);
    return entries_.size() - 1;
}

void ModelSetLoader::wait(std::size_t entry) {
    if (entries_[entry].state != Entry::State::Unloaded) return;
    waiting_.push_back(entry);
    entries_[entry].state = Entry::State::Waiting;
}

void ModelSetLoader::readWaiting(bool mustBeModels) {
    while (!waiting_.empty()) {
        const auto count =
            static_cast<std::ptrdiff_t>(std::min<std::size_t>(filesAhead, waiting_.size()));
        const std::vector<std::size_t> wave(waiting_.begin(), waiting_.begin() + count);
        const std::size_t first = files_.size();
        readWave(wave, mustBeModels);
        waiting_.erase(waiting_.begin(), waiting_.begin() + count);
        if (options_.extent == Extent::Given) continue;
        for (std::size_t file = first; file < files_.size(); ++file) follow(files_[file]);
    }
}

void ModelSetLoader::readWave(const std::vector<std::size_t>& entries, bool mustBeModels) {
    std::vector<FileReading> readings;
    for (const std::size_t each : entries) {
        FileReading reading(options_.limits.findings);
        reading.place = entries_[each].place;
        reading.shown = roots_.textOf(reading.place);
        open(reading, mustBeModels);
        readings.push_back(std::move(reading));
    }
    buildAll(readings, metamodels_.loaded(), readOptions_, options_.threads);
    for (std::size_t i = 0; i < readings.size(); ++i) take(entries[i], readings[i]);
}

void ModelSetLoader::open(FileReading& reading, bool mustBeModels) {
    FileRoots::Lookup found =
        roots_.find(reading.place.root, reading.place.path, options_.file.fileBytes);
    reading.source = std::move(found.bytes);
    try {
        if (reading.source == nullptr) {
            // It was there a moment ago.
            throw ReadError(reading.shown, {},
                            found.reason.empty() ? "is in none of the file roots" : found.reason);
        }
        reading.head = FileHead::of(*reading.source);
        reading.bytes = reading.source->size();
    } catch (const ReadError& error) {
        reading.error = error;
        reading.isSkipped = !mustBeModels;
        return;
    }
    provide(reading, reading.head.namespaces);
    const auto isKnown = [&](const std::string& nsUri) {
        return metamodels_.loaded().hasNamespace(nsUri);
    };
    const auto& namespaces = reading.head.namespaces;
    if (!mustBeModels && std::none_of(namespaces.begin(), namespaces.end(), isKnown)) {
        reading.isSkipped = true;
        // What declares no namespace is no model at all.
        if (namespaces.empty()) return;
        Finding note;
        note.reason = Reason::NotLoaded;
        note.weight = Finding::Weight::Note;
        note.file = reading.shown;
        note.message = "is of no metamodel that is found";
        ofMetamodels_.push_back(std::move(note));
    }
}

void ModelSetLoader::provide(const FileReading& reading,
                             const std::vector<std::string>& namespaces) {
    for (const std::string& each : namespaces) {
        metamodels_.provide(each, reading.head.locationOf(each), reading.place);
    }
    std::vector<Finding> found = metamodels_.takeFindings();
    std::move(found.begin(), found.end(), std::back_inserter(ofMetamodels_));
}

void ModelSetLoader::readAgain(FileReading& reading) {
    // Each round brings a namespace at least, or is the last one.
    while (!reading.unknownNamespaces.empty()) {
        provide(reading, reading.unknownNamespaces);
        const auto isNew = [&](const std::string& nsUri) {
            return metamodels_.loaded().hasNamespace(nsUri);
        };
        if (std::none_of(reading.unknownNamespaces.begin(), reading.unknownNamespaces.end(),
                         isNew)) {
            return;
        }
        reading.reset(options_.limits.findings);
        reading.build(metamodels_.loaded(), readOptions_);
        if (reading.failure) return;
    }
}

void ModelSetLoader::take(std::size_t number, FileReading& reading) {
    Entry& entry = entries_[number];
    entry.state = Entry::State::Unloaded;
    if (reading.isSkipped) return;
    if (!reading.failure) readAgain(reading);
    if (reading.failure) std::rethrow_exception(reading.failure);
    const auto refuse = [&](std::size_t limit, const char* what) {
        reading.error =
            ReadError(reading.shown, {}, "the model has more than " + std::to_string(limit) + what);
    };
    if (!reading.error) {
        const std::size_t elements = reading.model->elements().size();
        if (files_.size() >= options_.limits.files) {
            refuse(options_.limits.files, " files");
        } else if (reading.bytes > options_.limits.bytes - bytes_) {
            refuse(options_.limits.bytes, " bytes");
        } else if (elements > options_.limits.elements - elements_) {
            refuse(options_.limits.elements, " elements");
        }
    }
    if (reading.error) {
        entry.state = Entry::State::Failed;
        entry.error = std::move(reading.error);
        return;
    }
    const std::size_t file = files_.size();
    files_.push_back({std::move(reading.place),
                      std::move(reading.shown),
                      std::move(*reading.model),
                      std::move(reading.outgoing),
                      {},
                      std::move(reading.findings),
                      {}});
    const LoadedModel& model = files_.back().model;
    byStorage_.emplace(model.roots().front()->storage(), file);
    elements_ += model.elements().size();
    bytes_ += reading.bytes;
    entry.state = Entry::State::Loaded;
    entry.file = file;
    if (options_.onFile) options_.onFile(model.elements().size(), reading.bytes);
}

void ModelSetLoader::follow(const ModelSetFile& file) {
    for (const OutgoingReference& each : file.outgoing) {
        if (each.through != noNode) continue;
        const auto& place = places_.find(file.place, fileOfReference(each.text)).place;
        if (place) wait(entryAt(*place));
    }
    std::vector<Finding> found = metamodels_.takeFindings();
    std::move(found.begin(), found.end(), std::back_inserter(ofMetamodels_));
}

void ModelSetLoader::linkFrom(std::size_t first, CrossFileContainment& containment,
                              std::unordered_set<ModelElement>& reachingOut) {
    for (std::size_t file = first; file < files_.size(); ++file) findTargets(files_[file]);
    ModelSetLinker linker(
        containment,
        [&](const ModelElement& element) -> const ModelSetFile& { return files_[fileOf(element)]; },
        [&](ModelSetFile& file, const OutgoingReference& reference,
            ModelSetLinker::Trouble trouble) {
            report(file, reference, trouble.reason, trouble.message, nullptr,
                   std::move(trouble.other));
        });
    for (std::size_t file = first; file < files_.size(); ++file) {
        ModelSetFile& each = files_[file];
        linker.link(each);
        for (std::size_t i = 0; i < each.outgoing.size(); ++i) {
            if (!each.targets[i] || !each.outgoing[i].property->isComposite()) continue;
            const ModelElement& owner = each.model.elements()[each.outgoing[i].element];
            if (containment.containerOf(each.targets[i]) == owner) reachingOut.insert(owner);
        }
    }
}

void ModelSetLoader::findTargets(ModelSetFile& file) {
    file.targets.resize(file.outgoing.size());
    for (std::size_t i = 0; i < file.outgoing.size(); ++i) {
        const OutgoingReference& reference = file.outgoing[i];
        if (reference.through != noNode) continue;
        const ReferencePlaces::Lookup& lookup =
            places_.find(file.place, fileOfReference(reference.text));
        Target target = targetOf(lookup, reference.text);
        file.targets[i] = std::move(target.element);
        if (!file.targets[i]) report(file, reference, target.reason, target.message, &lookup);
    }
    findThrough(file);
}

void ModelSetLoader::findThrough(ModelSetFile& file) {
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
            report(file, reference, Reason::MissingElement,
                   "leads through a reference that leads to nothing");
        }
    }
}

ModelSetLoader::Target ModelSetLoader::targetOf(const ReferencePlaces::Lookup& lookup,
                                                std::string_view reference) const {
    Target target;
    target.reason = lookup.reason;
    if (!lookup.place) {
        target.message = "leads to a file that " + lookup.message;
        if (isSchemeAlone(fileOfReference(reference))) {
            searchEverywhere(target, fragmentOf(reference));
        }
        return target;
    }
    const std::string shown = roots_.textOf(*lookup.place);
    const auto known = entryByPlace_.find(*lookup.place);
    const Entry* const entry = known == entryByPlace_.end() ? nullptr : &entries_[known->second];
    if (entry != nullptr && entry->error) {
        target.reason = Reason::UnreadableFile;
        target.message =
            std::string("leads to a file that cannot be read: ") + entry->error->what();
        return target;
    }
    if (entry == nullptr || entry->file == none) {
        target.reason = Reason::NotLoaded;
        target.message = "leads to " + shown + ", which is not loaded";
        return target;
    }
    target.file = entry->file;
    LoadedModel::Found found = files_[entry->file].model.lookUp(
        ReferencePlaces::fragmentIn(lookup, fragmentOf(reference)));
    target.element = std::move(found.element);
    if (target.element) return target;
    target.reason = found.isAmbiguous ? Reason::AmbiguousElement : Reason::MissingElement;
    target.message =
        (found.isAmbiguous ? "means several elements of " : "leads to nothing in ") + shown;
    return target;
}

void ModelSetLoader::searchEverywhere(Target& target, std::string_view fragment) const {
    target.reason = Reason::MissingElement;
    target.message = "leads to nothing in any of the files";
    for (std::size_t file = 0; file < files_.size(); ++file) {
        LoadedModel::Found found = files_[file].model.lookUp(fragment);
        if (!found.element && !found.isAmbiguous) continue;
        if (found.isAmbiguous || target.element) {
            target.element = {};
            target.reason = Reason::AmbiguousElement;
            target.message = "means several elements";
            return;
        }
        target.element = std::move(found.element);
        target.file = file;
    }
}

void ModelSetLoader::report(ModelSetFile& file, const OutgoingReference& reference, Reason reason,
                            const std::string& message, const ReferencePlaces::Lookup* lookup,
                            std::string other) {
    const meta::Property property(reference.property);
    Finding finding;
    finding.reason = reason;
    finding.weight = reason == Reason::NotLoaded ? Finding::Weight::Note : weightOf(property);
    finding.file = file.shown;
    finding.element = file.model.identity(file.model.elements()[reference.element]);
    finding.property = nameOf(property);
    finding.reference = reference.text;
    finding.other = std::move(other);
    if (lookup != nullptr) {
        finding.lookedUpBy = lookup->lookedUpBy;
        finding.tried = lookup->tried;
    }
    finding.message =
        "the reference " + inQuotes(reference.text) + " of " + finding.property + " " + message;
    file.linkFindings.emplace_back(reference.offset, std::move(finding));
}

void ModelSetLoader::placeLinkFindings(ModelSetFile& file) {
    auto& found = file.linkFindings;
    std::stable_sort(found.begin(), found.end(),
                     [](const auto& one, const auto& other) { return one.first < other.first; });
    const FileRoots::Lookup there =
        roots_.find(file.place.root, file.place.path, options_.file.fileBytes);
    // Otherwise it has gone since it was read.
    if (there.bytes == nullptr) return;
    std::vector<std::size_t> offsets;
    for (const auto& each : found) offsets.push_back(each.first);
    try {
        const std::vector<Position> positions = positionsAt(*there.bytes, offsets);
        for (std::size_t i = 0; i < positions.size(); ++i) found[i].second.position = positions[i];
    } catch (const ReadError&) {
        // The same: the file alone has to do.
        return;
    }
}

Findings ModelSetLoader::findingsFrom(std::size_t first) {
    Findings all = findings_;
    for (const Finding& each : ofMetamodels_) all.add(each);
    const auto before = [](const Finding& one, const Finding& other) {
        return std::pair(one.position.line, one.position.column) <
               std::pair(other.position.line, other.position.column);
    };
    for (std::size_t number = first; number < files_.size(); ++number) {
        ModelSetFile& file = files_[number];
        if (!file.linkFindings.empty()) {
            placeLinkFindings(file);
            for (auto& each : file.linkFindings) file.findings.add(std::move(each.second));
            std::vector<Finding>& kept = file.findings.kept();
            std::stable_sort(kept.begin(), kept.end(), before);
        }
        all.add(std::move(file.findings));
        file.findings = Findings(0);
        // Swapped: an assignment would keep the room.
        decltype(file.linkFindings)().swap(file.linkFindings);
        decltype(file.targets)().swap(file.targets);
        decltype(file.outgoing)().swap(file.outgoing);
    }
    return all;
}

void ModelSetLoader::forget(const Before& before) noexcept {
    while (files_.size() > before.files) {
        byStorage_.erase(files_.back().model.roots().front()->storage());
        files_.pop_back();
    }
    std::erase_if(entryByPlace_, [&](const auto& each) { return each.second >= before.entries; });
    while (entries_.size() > before.entries) entries_.pop_back();
    for (Entry& each : entries_) {
        const bool isNew = each.file != none && each.file >= before.files;
        if (!isNew && each.state != Entry::State::Waiting) continue;
        each.state = Entry::State::Unloaded;
        each.file = none;
    }
    waiting_.clear();
    elements_ = before.elements;
    bytes_ = before.bytes;
}

std::size_t ModelSetLoader::fileOf(const ModelElement& element) const noexcept {
    if (!element) return none;
    const auto found = byStorage_.find(element->storage());
    return found == byStorage_.end() ? none : found->second;
}

std::size_t ModelSetLoader::fileAt(const FilePlace& place) const noexcept {
    const auto found = entryByPlace_.find(place);
    return found == entryByPlace_.end() ? none : entries_[found->second].file;
}

ModelSetLoader::Target ModelSetLoader::explain(const FilePlace& from,
                                               std::string_view reference) const {
    ReferencePlaces::Lookup lookup;
    const std::string_view file = fileOfReference(reference);
    if (file.empty()) {
        lookup.place = from;
        lookup.lookedUpBy = "same file";
    } else {
        lookup = places_.explain(from, file);
    }
    Target target = targetOf(lookup, reference);
    target.lookup = std::move(lookup);
    return target;
}

}  // namespace nuv::zero::xmi
