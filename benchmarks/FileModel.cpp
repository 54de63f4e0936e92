#include "benchmarks/FileModel.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <unordered_set>

#include "xmi/EcoreReader.h"
#include "xmi/XmiReader.h"

namespace nuv::zero::benchmarks {
namespace {

std::unique_ptr<ModelFile> sampleFile(const std::string& path, const std::string& metamodelPath) {
    const std::string folder = MODELING_NUV0_SAMPLE_MODELS;
    ModelFile file{folder + "/" + path, folder + "/" + metamodelPath};
    if (!std::filesystem::exists(file.path) || !std::filesystem::exists(file.metamodelPath)) {
        return nullptr;
    }
    return std::make_unique<ModelFile>(std::move(file));
}

}  // namespace

std::unique_ptr<ModelFile> ModelFile::biggest() {
    return sampleFile("modisco-java-kdm/infra.browser.javaxmi",
                      "modisco-java-kdm/org.eclipse.modisco.java/model/java.ecore");
}

std::unique_ptr<ModelFile> ModelFile::withIds() {
    return sampleFile("ttc2018-social/models/16/initial.xmi",
                      "ttc2018-social/social_network.ecore");
}

xmi::LoadedMetamodel ModelFile::readMetamodel() const {
    return xmi::EcoreReader().addFile(metamodelPath).read();
}

std::unique_ptr<Shape> readShape(const ModelFile& file) {
    const xmi::LoadedMetamodel metamodel = file.readMetamodel();
    const auto loaded =
        std::make_shared<xmi::LoadedModel>(xmi::XmiReader(metamodel).readFile(file.path));
    auto shape = std::make_unique<Shape>();
    shape->name = "file";
    shape->walks = 10;
    shape->roots = loaded->roots();
    shape->elements = loaded->elements();
    shape->owner = loaded;

    std::unordered_set<meta::Property> seen;
    for (const meta::Class& type : metamodel.classes()) {
        for (const meta::Property& property : access::allProperties(type)) {
            if (!access::isAssociation(property) || access::isDerived(property)) continue;
            if (seen.insert(property).second) shape->followed.push_back(property);
        }
    }
    const meta::Class unused = shape->metamodel.addClass(u"Unused");
    for (std::size_t i = 0; i < std::min<std::size_t>(8, shape->followed.size()); ++i) {
        shape->idleRules.push_back({shape->followed[i], unused});
    }
    return shape;
}

}  // namespace nuv::zero::benchmarks
