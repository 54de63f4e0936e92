#include "benchmarks/FileModel.h"

#include <expat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <unordered_set>

#include "benchmarks/Format.h"
#include "benchmarks/Measure.h"
#include "xmi/EcoreReader.h"
#include "xmi/XmiReader.h"

namespace nuv::zero::benchmarks {
namespace {

xmi::LoadedMetamodel readMetamodel(const ModelFile& file) {
    return xmi::EcoreReader().addFile(file.metamodelPath).read();
}

std::string bytesOf(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw std::runtime_error("cannot read " + path);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

/// The parse alone, with handlers that do nothing.
void parseByExpat(const std::string& bytes) {
    const std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> parser(
        XML_ParserCreateNS("ISO-8859-1", ' '), XML_ParserFree);
    XML_SetElementHandler(
        parser.get(), [](void*, const XML_Char*, const XML_Char**) {},
        [](void*, const XML_Char*) {});
    XML_SetCharacterDataHandler(parser.get(), [](void*, const XML_Char*, int) {});
    if (XML_Parse(parser.get(), bytes.data(), static_cast<int>(bytes.size()), XML_TRUE) == 0) {
        throw std::runtime_error("the XML library refuses the file");
    }
}

}  // namespace

std::unique_ptr<ModelFile> ModelFile::biggest() {
    const std::string folder = MODELING_NUV0_SAMPLE_MODELS;
    const std::string project = folder + "/modisco-java-kdm";
    ModelFile file{project + "/infra.browser.javaxmi",
                   project + "/org.eclipse.modisco.java/model/java.ecore"};
    if (!std::filesystem::exists(file.path) || !std::filesystem::exists(file.metamodelPath)) {
        return nullptr;
    }
    return std::make_unique<ModelFile>(std::move(file));
}

std::unique_ptr<Shape> readShape(const ModelFile& file) {
    const xmi::LoadedMetamodel metamodel = readMetamodel(file);
    const auto loaded =
        std::make_shared<xmi::LoadedModel>(xmi::XmiReader(metamodel).readFile(file.path));
    auto shape = std::make_unique<Shape>();
    shape->name = "file";
    shape->walks = 10;
    shape->roots = loaded->roots();
    shape->elements = loaded->elements();
    shape->owner = loaded;

    std::unordered_set<meta::Property> seen;
    for (const meta::Class& type : metamodel.metamodel().classes()) {
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

std::vector<Figure> measureReading(const ModelFile& file, std::size_t rounds) {
    const xmi::LoadedMetamodel metamodel = readMetamodel(file);
    const std::string bytes = bytesOf(file.path);
    const auto megabytes = static_cast<double>(bytes.size()) / 1e6;
    std::vector<double> reading;
    std::vector<double> parsing;
    std::vector<double> share;
    for (std::size_t round = 0; round < rounds; ++round) {
        settleHeap();
        parsing.push_back(nanosecondsOf([&] { parseByExpat(bytes); }));
        settleHeap();
        reading.push_back(
            nanosecondsOf([&] { xmi::XmiReader(metamodel).readText(file.path, bytes); }));
        share.push_back(reading.back() / parsing.back());
    }
    const auto speed = [&](const std::vector<double>& times) {
        return fixed(megabytes * 1e9 / spreadOf(times).median, 0) + " MB/s";
    };
    const std::string name = std::filesystem::path(file.path).filename().string();
    return {{"the XML library's parse alone, " + name + " (" + fixed(megabytes, 1) + " MB)",
             speed(parsing)},
            {"reading it into a model and destroying that",
             speed(reading) + ", " + fixed(spreadOf(share).median, 2) + " times the parse"}};
}

}  // namespace nuv::zero::benchmarks
