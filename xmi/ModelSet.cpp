#include "xmi/ModelSet.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "model/memory/ModelAccess.h"
#include "xmi/ModelSetLoader.h"

namespace nuv::zero::xmi {
namespace {

/// The elements that a composite property holds.
std::vector<ModelElement> contentsIn(const ModelElement& element, const meta::Property& property) {
    const Value value = access::read(element, property);
    if (!property->isSingleValued()) return access::toElements(value);
    if (!access::isSet(value)) return {};
    return {access::toElement(value)};
}

bool isMetamodelFile(std::string_view path) {
    return path.ends_with(".ecore");
}

}  // namespace

ModelSet::ModelSet(FileRoots roots, LoadOptions options)
    : loader_(std::make_unique<ModelSetLoader>(std::move(roots), std::move(options))) {}

ModelSet::~ModelSet() = default;

const LoadedModel& ModelSet::load(std::string_view path) {
    return model(loader_->load({loader_->placeOf(0, path)}, true));
}

void ModelSet::load(const std::vector<std::string>& paths) {
    std::vector<FilePlace> places;
    for (const std::string& each : paths) {
        const std::size_t colon = each.find(':');
        const std::size_t root = fileRoots().rootNamed(std::string_view(each).substr(0, colon));
        const bool namesRoot = colon != std::string::npos && root != fileRoots().size();
        places.push_back(namesRoot
                             ? loader_->placeOf(root, std::string_view(each).substr(colon + 1))
                             : loader_->placeOf(0, each));
    }
    loader_->load(places, true);
}

void ModelSet::loadFolder(std::string_view root) {
    const std::size_t number = fileRoots().rootNamed(root);
    if (number == fileRoots().size()) throw ReadError(root, {}, "is no file root");
    std::vector<FilePlace> models;
    std::vector<FilePlace> metamodels;
    for (const std::string& path : fileRoots().files(number)) {
        (isMetamodelFile(path) ? metamodels : models).push_back(loader_->placeOf(number, path));
    }
    const std::size_t before = fileCount();
    loader_->load(models, false);
    if (fileCount() == before) loader_->load(metamodels, false);
}

const MetamodelSet& ModelSet::metamodels() const noexcept {
    return loader_->metamodels();
}

const LoadedMetamodel& ModelSet::metamodel() const noexcept {
    return loader_->metamodels().loaded();
}

const FileRoots& ModelSet::fileRoots() const noexcept {
    return loader_->roots();
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

std::size_t ModelSet::fileOf(const ModelElement& element) const noexcept {
    const std::size_t file = loader_->fileOf(element);
    return file == ModelSetLoader::none ? fileCount() : file;
}

std::vector<ModelElement> ModelSet::rootElements() const {
    std::vector<ModelElement> roots;
    for (const ModelSetFile& file : loader_->files()) {
        for (const ModelElement& each : file.model.roots()) {
            const bool isContained = static_cast<bool>(file.model.container(each)) ||
                                     static_cast<bool>(loader_->containment().containerOf(each));
            if (!isContained) roots.push_back(each);
        }
    }
    return roots;
}

std::vector<ModelElement> ModelSet::elements() const {
    std::vector<ModelElement> all;
    all.reserve(elementCount());
    for (const ModelSetFile& file : loader_->files()) {
        all.insert(all.end(), file.model.elements().begin(), file.model.elements().end());
    }
    return all;
}

std::size_t ModelSet::elementCount() const noexcept {
    return loader_->elementCount();
}

ElementAddress ModelSet::address(const ModelElement& element) const {
    const std::size_t file = loader_->fileOf(element);
    if (file == ModelSetLoader::none) return {};
    const std::string fragment = model(file).identity(element);
    if (fragment.empty()) return {};
    return {fileRoots().name(place(file).root), place(file).path, fragment};
}

ModelElement ModelSet::find(std::string_view address) const {
    const std::optional<ElementAddress> parsed = ElementAddress::of(address);
    return parsed ? find(*parsed) : ModelElement();
}

ModelElement ModelSet::find(const ElementAddress& address) const {
    const std::size_t root = fileRoots().rootNamed(address.root);
    const std::size_t file = loader_->fileAt({root, address.path});
    return file == ModelSetLoader::none ? ModelElement() : model(file).find(address.fragment);
}

ModelElement ModelSet::container(const ModelElement& element) const {
    const std::size_t file = loader_->fileOf(element);
    if (file == ModelSetLoader::none) return {};
    const ModelElement own = model(file).container(element);
    return own ? own : loader_->containment().containerOf(element);
}

std::vector<ModelElement> ModelSet::contents(const ModelElement& element) const {
    const std::size_t file = loader_->fileOf(element);
    if (file == ModelSetLoader::none) return {};
    std::vector<ModelElement> all = model(file).contents(element);
    if (!loader_->reachesOut(element)) return all;
    for (const meta::Property& each : element->getClass()->getAllClassProperties()) {
        if (!each->isComposite()) continue;
        for (const ModelElement& one : contentsIn(element, each)) {
            if (loader_->containment().containerOf(one) == element) all.push_back(one);
        }
    }
    return all;
}

const Findings& ModelSet::findings() const noexcept {
    return loader_->findings();
}

void ModelSet::requireComplete() const {
    for (const Finding& each : findings()) {
        if (each.isLoss()) throw ReadError(each.file, each.position, each.message);
    }
}

ModelSet::Lookup ModelSet::explain(const FilePlace& from, std::string_view reference) const {
    ModelSetLoader::Target target = loader_->explain(from, reference);
    Lookup lookup;
    lookup.lookedUpBy = std::move(target.lookup.lookedUpBy);
    lookup.tried = std::move(target.lookup.tried);
    if (target.lookup.place) lookup.file = fileRoots().textOf(*target.lookup.place);
    if (!target.element) lookup.reason = std::move(target.message);
    lookup.element = std::move(target.element);
    return lookup;
}

}  // namespace nuv::zero::xmi
