#include "xmi/ReferencePlaces.h"

#include <utility>

#include "xmi/BuiltInEcore.h"
#include "xmi/EcoreDataTypes.h"

namespace nuv::zero::xmi {
namespace {

std::string_view folderOf(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? std::string_view() : path.substr(0, slash);
}

}  // namespace

const ReferencePlaces::Lookup& ReferencePlaces::find(const FilePlace& from, std::string_view file) {
    if (last_ != nullptr && lastFile_ == file && lastFrom_ == from) return *last_;
    // No path holds the character between them.
    std::string key = std::to_string(from.root) + ":";
    key.append(folderOf(from.path)).append(1, '\0').append(file);
    auto known = known_.find(key);
    if (known == known_.end()) {
        known = known_.emplace(std::move(key), lookUp(from, file, &metamodels_)).first;
    }
    last_ = nullptr;
    lastFile_ = file;
    lastFrom_ = from;
    last_ = &known->second;
    return *last_;
}

ReferencePlaces::Lookup ReferencePlaces::explain(const FilePlace& from,
                                                 std::string_view file) const {
    return lookUp(from, file, nullptr);
}

ReferencePlaces::Lookup ReferencePlaces::lookUp(const FilePlace& from, std::string_view file,
                                                MetamodelSet* metamodels) const {
    FileRoots::Lookup found = roots_.find(from, file, fileBytes_);
    Lookup lookup;
    lookup.lookedUpBy = std::move(found.lookedUpBy);
    lookup.tried = std::move(found.tried);
    // Nobody has put anything there.
    std::erase_if(lookup.tried, [](const std::string& each) {
        return each.starts_with(std::string(builtInRoot) + ":");
    });
    switch (found.outcome) {
        case FileRoots::Outcome::Found:
            lookup.place = std::move(found.places.front());
            return lookup;
        case FileRoots::Outcome::Missing:
            lookup.message = "is in none of the file roots";
            break;
        case FileRoots::Outcome::Outside:
            lookup.reason = Finding::Reason::OutsideRoots;
            lookup.message = "lies outside of its file root";
            break;
        case FileRoots::Outcome::Ambiguous:
            lookup.reason = Finding::Reason::AmbiguousFile;
            lookup.message = "may be " + roots_.textOf(found.places.front()) + " or " +
                             roots_.textOf(found.places.back());
            return lookup;
        case FileRoots::Outcome::Refused:
            lookup.reason = Finding::Reason::UnreadableFile;
            lookup.message = std::move(found.reason);
            return lookup;
    }
    // Another machine had its Ecore there; any will do.
    const std::string_view nsUri = meansEcore(file) ? ecoreNamespace : file;
    if (lookUpNamespace(lookup, nsUri)) return lookup;
    const bool mayBeNamespace = hasScheme(file) || nsUri == ecoreNamespace;
    if (metamodels != nullptr && mayBeNamespace && metamodels->provide(nsUri, {}, from)) {
        lookUpNamespace(lookup, nsUri);
    }
    return lookup;
}

bool ReferencePlaces::lookUpNamespace(Lookup& lookup, std::string_view nsUri) const {
    std::optional<MetamodelSet::Definition> package = metamodels_.placeOf(nsUri);
    if (!package || package->place.root >= roots_.size()) return false;
    const bool isBuiltIn = roots_.name(package->place.root) == builtInRoot;
    lookup.lookedUpBy = isBuiltIn ? "built in" : "namespace";
    lookup.place = std::move(package->place);
    if (package->fragment != "/") lookup.base = std::move(package->fragment);
    lookup.message.clear();
    return true;
}

std::string ReferencePlaces::fragmentIn(const Lookup& lookup, std::string_view fragment) {
    if (lookup.base.empty() || !fragment.starts_with('/')) return std::string(fragment);
    // `//Class` leads from the package, which is not the root of its file.
    return lookup.base + std::string(fragment.substr(1));
}

}  // namespace nuv::zero::xmi
