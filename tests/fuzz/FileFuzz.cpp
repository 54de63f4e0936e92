#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "model/memory/ModelAccess.h"
#include "xmi/EcoreReader.h"
#include "xmi/Findings.h"
#include "xmi/XmiBuilder.h"
#include "xmi/XmiReader.h"

namespace {

using namespace nuv::zero::xmi;

/// Small enough for every limit to be met by a small input.
ReadOptions fuzzOptions() {
    ReadOptions options;
    options.crossFile = CrossFile::LeaveOut;
    options.limits.fileBytes = 8'000;
    options.limits.depth = 40;
    options.limits.elements = 300;
    options.limits.names = 300;
    options.limits.classes = 40;
    options.limits.features = 40;
    options.limits.inheritedParts = 400;
    options.limits.qualifiedNames = 2'000;
    options.limits.slots = 2'000;
    return options;
}

void require(bool holds, const char* promise, const std::string& detail) {
    if (holds) return;
    std::fprintf(stderr, "not kept: %s\n%s\n", promise, detail.c_str());
    std::abort();
}

constexpr const char* metamodelName = "fuzz.ecore";
constexpr const char* modelName = "fuzz.xmi";
constexpr const char* otherMetamodelName = "fuzz.other.ecore";

struct Files {
    std::string_view metamodel;
    std::string_view model;
    std::optional<std::string_view> otherMetamodel;

    std::string_view named(std::string_view name) const {
        if (name == modelName) return model;
        return name == otherMetamodelName ? otherMetamodel.value_or("") : metamodel;
    }
};

/// One clear error: one short line that begins with the name of the file, and a place inside it.
std::string textOf(const ReadError& error, const Files& files) {
    const std::string text = error.what();
    require(text.starts_with(error.file() + ':'), "errors begin with the name of the file", text);
    require(text.find('\n') == std::string::npos, "errors have one line", text);
    require(text.size() < 1'100 && !error.reason().empty(), "errors are short", text);
    const std::string_view bytes = files.named(error.file());
    const auto lines =
        std::count_if(bytes.begin(), bytes.end(), [](char c) { return c == '\n' || c == '\r'; });
    require(error.position().line <= static_cast<std::size_t>(lines) + 1,
            "errors name a line of the file", text);
    return text + '\n';
}

/// Everything that a loaded model says of itself, read once.
std::string textOf(const LoadedModel& model) {
    std::string text;
    for (const auto& element : model.elements()) {
        const std::string identity = model.identity(element);
        text.append(identity).append("\n");
        require(model.find(identity) == element, "an identity leads to its element", identity);
        for (const auto& child : model.contents(element)) {
            text.append("  ").append(model.path(child)).append("\n");
        }
        for (const auto& property : element->getClass()->getAllClassProperties()) {
            text +=
                nuv::zero::access::isSet(nuv::zero::access::read(element, property)) ? '1' : '0';
        }
    }
    return text;
}

/// Whether a reader that has read one file refuses another.
bool refuses(EcoreReader& reader, std::string_view bytes) {
    try {
        reader.addText(otherMetamodelName, bytes);
        return false;
    } catch (const ReadError& error) {
        (void)textOf(error, Files{{}, {}, bytes});
        return true;
    }
}

/// Reads the model as far as it makes sense: there is one, with findings that are short, or one
/// error. What is read strictly is read so, too.
void readLeniently(const LoadedMetamodel& metamodel, const Files& files,
                   const std::optional<std::string>& strictly) {
    const std::string name = modelName;
    const ReadOptions options = fuzzOptions();
    TextSource source(files.model);
    Findings findings(20);
    std::string text;
    try {
        text = textOf(XmiBuilder(metamodel, name, source, options).build(nullptr, &findings));
    } catch (const ReadError& error) {
        (void)textOf(error, files);
        require(!strictly, "what is read strictly is read leniently", error.what());
        return;
    }
    for (const Finding& each : findings.kept()) {
        (void)textOf(ReadError(each.file, each.position, each.message), files);
    }
    require(findings.size() != 0 || !strictly || *strictly == text,
            "without findings both read the same", text);
}

/// What the readers say to the bytes: a model or one error. A file that is to be refused in between
/// has to leave no trace; there is nothing to say when it is not refused.
std::optional<std::string> read(const Files& files,
                                std::optional<std::string_view> refused = std::nullopt) {
    try {
        EcoreReader reader(fuzzOptions());
        reader.addText(metamodelName, files.metamodel);
        if (refused && !refuses(reader, *refused)) return std::nullopt;
        if (files.otherMetamodel) reader.addText(otherMetamodelName, *files.otherMetamodel);
        const LoadedMetamodel metamodel = reader.read();
        std::optional<std::string> model;
        std::string error;
        try {
            model = textOf(XmiReader(metamodel, fuzzOptions()).readText(modelName, files.model));
        } catch (const ReadError& thrown) {
            error = textOf(thrown, files);
        }
        readLeniently(metamodel, files, model);
        return model.value_or(error);
    } catch (const ReadError& error) {
        return textOf(error, files);
    }
}

/// Parts of an input end with two bytes that no encoding has in a row.
std::optional<std::string_view> nextPart(std::optional<std::string_view>& rest) {
    constexpr std::string_view separator = "\xFF\xFF";
    if (!rest) return std::nullopt;
    const std::size_t end = rest->find(separator);
    const std::string_view part = rest->substr(0, end);
    if (end == std::string_view::npos) {
        rest = std::nullopt;
    } else {
        rest = rest->substr(end + separator.size());
    }
    return part;
}

}  // namespace

/// A metamodel, a model and perhaps another metamodel; a single part is read as both. Any bytes
/// give a model or one `ReadError`, the same each time; whatever else leaves a reader is a finding.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::optional<std::string_view> rest(std::in_place, reinterpret_cast<const char*>(data), size);
    Files files;
    files.metamodel = *nextPart(rest);
    files.model = nextPart(rest).value_or(files.metamodel);
    files.otherMetamodel = nextPart(rest);
    const std::string first = *read(files);
    const auto again = read(files, files.model);
    require(!again || *again == first, "a refused file leaves no trace", first);
    if (!files.otherMetamodel) return 0;
    const Files alone{files.metamodel, files.model, std::nullopt};
    const auto afterRefusal = read(alone, files.otherMetamodel);
    require(!afterRefusal || afterRefusal == read(alone), "a refused file leaves no trace", first);
    return 0;
}
