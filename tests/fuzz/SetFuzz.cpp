#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "model/memory/ModelAccess.h"
#include "xmi/Archive.h"
#include "xmi/ModelSet.h"
#include "xmi/TextFiles.h"

namespace {

using namespace nuv::zero;
using namespace nuv::zero::xmi;

constexpr std::string_view metamodelText = R"(<ecore:EPackage xmlns:xmi="http://www.omg.org/XMI"
  xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance"
  xmlns:ecore="http://www.eclipse.org/emf/2002/Ecore" name="p" nsURI="urn:p" nsPrefix="p">
  <eClassifiers xsi:type="ecore:EClass" name="Node">
    <eStructuralFeatures xsi:type="ecore:EAttribute" name="name" iD="true"
      eType="ecore:EDataType http://www.eclipse.org/emf/2002/Ecore#//EString"/>
    <eStructuralFeatures xsi:type="ecore:EReference" name="nodes" upperBound="-1"
      eType="#//Node" containment="true" eOpposite="#//Node/above"/>
    <eStructuralFeatures xsi:type="ecore:EReference" name="above" eType="#//Node"
      eOpposite="#//Node/nodes"/>
    <eStructuralFeatures xsi:type="ecore:EReference" name="core" eType="#//Node"
      containment="true"/>
    <eStructuralFeatures xsi:type="ecore:EReference" name="to" upperBound="-1" eType="#//Node"/>
    <eStructuralFeatures xsi:type="ecore:EReference" name="other" eType="#//Other"/>
  </eClassifiers>
  <eClassifiers xsi:type="ecore:EClass" name="Other"/>
</ecore:EPackage>)";

/// Small enough for every limit to be met by a small input.
LoadOptions fuzzOptions() {
    LoadOptions options;
    options.file.fileBytes = 4'000;
    options.file.depth = 40;
    options.file.elements = 200;
    options.file.names = 100;
    options.file.slots = 1'000;
    options.limits.files = 12;
    options.limits.elements = 300;
    options.limits.findings = 50;
    options.threads = 1;
    return options;
}

void require(bool holds, const char* promise, const std::string& detail) {
    if (holds) return;
    std::fprintf(stderr, "not kept: %s\n%s\n", promise, detail.c_str());
    std::abort();
}

void requireOneLine(const std::string& text) {
    require(!text.empty() && text.find('\n') == std::string::npos, "messages have one line", text);
    require(text.size() < 2'500, "messages are short", text);
}

/// What an input says: files of two roots, perhaps an archive as a third, and which is the model.
struct Input {
    std::shared_ptr<TextFiles> own = std::make_shared<TextFiles>("own");
    std::shared_ptr<TextFiles> library = std::make_shared<TextFiles>("library");
    /// Null unless it can be read.
    std::shared_ptr<const std::string> archive;
    std::string model;

    static std::shared_ptr<const Archive> opened(std::shared_ptr<const std::string> bytes) {
        ArchiveLimits limits;
        limits.files = 20;
        limits.inflatedBytes = 8'000;
        return std::make_shared<const Archive>(
            "zip", std::make_unique<TextSource>(std::move(bytes)), limits);
    }

    FileRoots roots() const {
        static const auto metamodels = [] {
            auto files = std::make_shared<TextFiles>("metamodels");
            files->add("p.ecore", std::string(metamodelText));
            return files;
        }();
        FileRoots roots;
        roots.add("model", own).add("lib", library, {"platform:/plugin/", "lib:"});
        roots.add("metamodels", metamodels);
        if (archive) roots.add("zip", opened(archive), {"platform:/plugin/", "zip:"});
        return roots;
    }
};

/// The path stands in the first line: `lib:a/m.xmi`. That of the archive is `zip:`.
void addPart(Input& input, std::string_view part) {
    const std::size_t end = part.find('\n');
    std::string path(part.substr(0, end));
    std::string bytes(end == std::string_view::npos ? std::string_view() : part.substr(end + 1));
    try {
        if (path == "zip:") {
            auto archive = std::make_shared<const std::string>(std::move(bytes));
            Input::opened(archive);
            input.archive = std::move(archive);
        } else if (path.starts_with("lib:")) {
            input.library->add(path.substr(4), std::move(bytes));
        } else {
            input.own->add(path, std::move(bytes));
            if (input.model.empty()) input.model = std::move(path);
        }
    } catch (const std::invalid_argument&) {
        // Another file has that path, or it is none.
    } catch (const ReadError& error) {
        requireOneLine(error.what());
    }
}

std::vector<ModelElement> targetsOf(const ModelElement& element, const meta::Property& property) {
    const Value value = access::read(element, property);
    if (!property->isSingleValued()) return access::toElements(value);
    if (!access::isSet(value)) return {};
    return {access::toElement(value)};
}

/// Everything that a set says of itself; and whether it is a model: each element is contained once
/// at most, and none in itself.
std::string textOf(const ModelSet& set) {
    std::string text;
    std::map<std::string, std::string> containers;
    for (const ModelElement& element : set.elements()) {
        const std::string address = set.address(element).text();
        require(set.find(address) == element, "an address leads to its element", address);
        text.append(address).append("\n");
        for (const meta::Property& property : element->getClass()->getAllClassProperties()) {
            if (!property->isAssociation()) continue;
            for (const ModelElement& target : targetsOf(element, property)) {
                const std::string other = set.address(target).text();
                text.append("  ").append(other).append("\n");
                if (!property->isComposite()) continue;
                require(containers.emplace(other, address).second, "an element is contained once",
                        other);
                require(set.container(target) == element, "containers contain", other);
            }
        }
    }
    for (const auto& [contained, container] : containers) {
        std::size_t steps = 0;
        for (auto above = containers.find(container); above != containers.end();
             above = containers.find(above->second)) {
            require(++steps <= containers.size(), "no element contains itself", contained);
        }
    }
    require(set.rootElements().size() + containers.size() == set.elementCount(),
            "roots are what nothing contains", text);
    for (const Finding& finding : set.findings()) {
        requireOneLine(finding.text());
        text.append(finding.text()).append("\n");
        for (const std::string& each : finding.tried) text.append("  ").append(each).append("\n");
    }
    return text;
}

/// Loads a file, and says why not if it cannot be.
std::string load(ModelSet& set, const std::string& path) {
    try {
        set.load(path);
        return {};
    } catch (const ReadError& error) {
        requireOneLine(error.what());
        return error.what();
    }
}

std::string read(const Input& input) {
    ModelSet set(input.roots(), fuzzOptions());
    const std::string error = load(set, input.model);
    const std::string text = textOf(set);
    require(error.empty() || text.empty(), "what cannot be loaded leaves no trace", error);
    if (error.empty()) {
        require(load(set, input.model).empty() && textOf(set) == text, "a file is loaded once",
                text);
    }
    // What stands in no reference comes later.
    for (const std::string& path : input.own->files(100)) {
        const auto before = std::pair(set.fileCount(), set.findings().size());
        const bool isLoaded = load(set, path).empty();
        require(isLoaded || std::pair(set.fileCount(), set.findings().size()) == before,
                "what cannot be loaded leaves no trace", path);
    }
    return error + text + textOf(set);
}

}  // namespace

/// Files with links between them. Any bytes give a set of files or one `ReadError`, the same each
/// time; whatever else leaves a set is a finding of the fuzzer.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Parts end with two bytes that no encoding has in a row.
    constexpr std::string_view separator = "\xFF\xFF";
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    Input input;
    for (std::size_t end = 0; end != std::string_view::npos;) {
        end = rest.find(separator);
        addPart(input, rest.substr(0, end));
        if (end != std::string_view::npos) rest.remove_prefix(end + separator.size());
    }
    if (input.model.empty()) return 0;
    const std::string first = read(input);
    require(read(input) == first, "a set is loaded alike each time", first);
    return 0;
}
