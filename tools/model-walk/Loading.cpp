#include "Loading.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <memory>
#include <utility>

#include "UsageError.h"
#include "xmi/Archive.h"
#include "xmi/ByteSource.h"
#include "xmi/ReadError.h"
#include "xmi/RootsFile.h"
#include "xmi/TextFiles.h"

namespace model_walk {

namespace fs = std::filesystem;
namespace xmi = nuv::zero::xmi;

namespace {

constexpr const char* ownRoot = "model";

/// What stands in front of the sign and behind it.
std::pair<std::string, std::string> atSign(Option option, const std::string& text,
                                           std::size_t sign) {
    if (sign == std::string::npos || sign == 0 || sign + 1 == text.size()) {
        throw UsageError("'" + text + "' behind " + std::string(table::nameOf(option)) +
                         " is not of the form " + std::string(table::entryOf(option).value));
    }
    return {text.substr(0, sign), text.substr(sign + 1)};
}

/// `a.zip[b/m.xmi]` names a file in an archive.
std::pair<std::string, std::string> atBrackets(const std::string& model) {
    const std::size_t open = model.rfind('[');
    const bool hasBrackets = open != std::string::npos && model.ends_with(']') && open > 0;
    std::error_code ignored;
    if (!hasBrackets || fs::exists(model, ignored)) return {model, {}};
    return {model.substr(0, open), model.substr(open + 1, model.size() - open - 2)};
}

std::shared_ptr<const xmi::FileTree> standardInput(const std::string& name) {
    auto texts = std::make_shared<xmi::TextFiles>("standard input");
    texts->add(name, std::string(std::istreambuf_iterator<char>(std::cin), {}));
    return texts;
}

bool isArchiveFile(const std::string& path) {
    std::error_code ignored;
    if (!fs::is_regular_file(path, ignored)) return false;
    xmi::FileSource source(path, xmi::limits::fileBytes);
    return xmi::isArchive(source);
}

/// Adds the model's own root, and says where the model is in it.
std::string addOwnRoot(xmi::FileRoots& roots, const std::string& model) {
    if (model == "-") {
        roots.add(ownRoot, standardInput(model));
        return model;
    }
    std::error_code ignored;
    if (fs::is_directory(model, ignored)) {
        roots.add(ownRoot, model);
        return {};
    }
    const auto [file, inside] = atBrackets(model);
    if (!inside.empty() || isArchiveFile(file)) {
        auto archive = std::make_shared<xmi::Archive>(file);
        const std::string path = inside.empty() ? archive->onlyModel() : inside;
        roots.add(ownRoot, std::move(archive));
        return path;
    }
    if (!fs::exists(model, ignored)) {
        throw xmi::ReadError(model, {}, "cannot be opened: there is no such file");
    }
    const fs::path path(model);
    const fs::path folder = path.parent_path();
    roots.add(ownRoot, folder.empty() ? "." : folder.string());
    return path.filename().string();
}

std::size_t numberIn(const std::string& text, const std::string& number) {
    std::size_t value = 0;
    const char* const end = number.data() + number.size();
    const auto [stop, error] = std::from_chars(number.data(), end, value);
    if (error != std::errc() || stop != end) {
        throw UsageError("the limit in '" + text + "' is no number");
    }
    return value;
}

void addLimit(xmi::LoadOptions& options, const std::string& text) {
    const auto [name, number] = atSign(Option::Limit, text, text.find('='));
    const std::size_t value = numberIn(text, number);
    if (name == "bytes") {
        options.limits.bytes = value;
        options.file.fileBytes = std::min(options.file.fileBytes, value);
    } else if (name == "elements") {
        options.limits.elements = value;
        options.file.elements = std::min(options.file.elements, value);
    } else if (name == "files") {
        options.limits.files = value;
    } else if (name == "findings") {
        options.limits.findings = value;
    } else if (name == "depth") {
        options.file.depth = value;
    } else if (name == "names") {
        options.file.names = value;
    } else {
        throw UsageError("there is no limit '" + name +
                         "'; there are bytes, depth, elements, names, files, findings");
    }
}

}  // namespace

ModelPlace modelPlaceOf(const CommandLine& line) {
    ModelPlace place;
    std::string given;
    std::vector<std::pair<std::string, std::string>> others;
    for (const std::string& each : line.values(Option::Root)) {
        auto root = atSign(Option::Root, each, each.find('='));
        if (root.first == ownRoot) {
            given = root.second;
        } else {
            others.push_back(std::move(root));
        }
    }
    const std::string& model = line.operands().front();
    if (given.empty()) {
        place.path = addOwnRoot(place.roots, model);
    } else {
        place.roots.add(ownRoot, given);
        place.path = pathInModel(place.roots, model);
    }
    for (const auto& [name, path] : others) place.roots.add(name, path);
    for (const std::string& each : line.values(Option::Roots)) {
        xmi::RootsFile(each).addTo(place.roots);
    }
    for (const std::string& each : line.values(Option::Prefix)) {
        // A prefix may hold the sign, a name may not.
        const auto [prefix, target] = atSign(Option::Prefix, each, each.rfind('='));
        const std::size_t slash = std::min(target.find('/'), target.size());
        place.roots.addPrefix(prefix, target.substr(0, slash),
                              target.substr(std::min(slash + 1, target.size())));
    }
    return place;
}

std::string pathInModel(const xmi::FileRoots& roots, const std::string& path) {
    const std::size_t colon = path.find(':');
    if (colon != std::string::npos && roots.rootNamed(path.substr(0, colon)) < roots.size()) {
        return path;
    }
    std::error_code ignored;
    const fs::path folder = roots.tree(0).location();
    const bool isThere = fs::exists(folder / path, ignored);
    if (isThere || !fs::exists(path, ignored)) return path;
    const fs::path relative = fs::relative(path, folder, ignored);
    return relative.empty() ? path : relative.string();
}

xmi::LoadOptions loadOptionsOf(const CommandLine& line, Progress& progress) {
    xmi::LoadOptions options;
    options.onFile = [&progress](std::size_t elements, std::size_t bytes) {
        progress.onFile(elements, bytes);
    };
    const bool isAlone = line.has(Option::SkipCrossFile) || line.value(Option::Load) == "given";
    if (isAlone) options.extent = xmi::Extent::Given;
    options.metamodels = line.values(Option::Metamodel);
    for (const std::string& each : line.values(Option::Namespace)) {
        const auto [nsUri, meant] = atSign(Option::Namespace, each, each.find('='));
        options.aliases.add(nsUri, meant);
    }
    for (const std::string& each : line.values(Option::Limit)) addLimit(options, each);
    if (const auto threads = line.number(Option::Threads)) {
        options.threads = static_cast<unsigned>(std::clamp<std::size_t>(*threads, 1, 64));
    }
    return options;
}

}  // namespace model_walk
