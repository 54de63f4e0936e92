#include "Project.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <map>
#include <optional>
#include <unordered_map>
#include <utility>

#include "EscapedText.h"
#include "Names.h"
#include "Progress.h"
#include "UsageError.h"
#include "traversal/Traversal.h"
#include "xmi/EcoreReader.h"
#include "xmi/ModelSet.h"
#include "xmi/XmiReader.h"

namespace model_walk {

namespace xmi = nuv::zero::xmi;
using nuv::zero::ModelElement;

namespace {

xmi::LoadedMetamodel metamodelOf(const CommandLine& line, const xmi::ReadOptions& options) {
    if (!line.has(Option::Metamodel)) {
        throw UsageError("a metamodel is needed: name it by --metamodel");
    }
    xmi::EcoreReader reader(options);
    for (const std::string& file : line.values(Option::Metamodel)) reader.addFile(file);
    return reader.read();
}

std::pair<std::string, std::string> atEquals(Option option, const std::string& text,
                                             std::size_t equals) {
    if (equals == std::string::npos || equals == 0 || equals + 1 == text.size()) {
        throw UsageError("'" + text + "' behind " + std::string(table::nameOf(option)) +
                         " is not of the form " + std::string(table::entryOf(option).value));
    }
    return {text.substr(0, equals), text.substr(equals + 1)};
}

xmi::FileRoots rootsOf(const CommandLine& line, const std::string& ownFolder) {
    std::map<std::string, std::vector<std::string>> prefixes;
    for (const std::string& each : line.values(Option::Prefix)) {
        // A prefix may hold the sign, a name may not.
        const auto [prefix, name] = atEquals(Option::Prefix, each, each.rfind('='));
        prefixes[name].push_back(prefix);
    }
    xmi::FileRoots roots;
    const auto add = [&](const std::string& name, const std::string& folder) {
        std::vector<std::string> all = prefixes[name];
        for (const char* const before :
             {"platform:/plugin/", "platform:/resource/", "pathmap://"}) {
            all.push_back(before + name + "/");
        }
        roots.add(name, folder, all);
    };
    add("model", ownFolder);
    for (const std::string& each : line.values(Option::Root)) {
        const auto [name, folder] = atEquals(Option::Root, each, each.find('='));
        add(name, folder);
    }
    return roots;
}

/// A place as it stands in addresses: escaped, and without the sign that ends it there.
std::string textOf(const std::string& root, const std::string& path) {
    std::string text = escaped(path);
    for (std::size_t hash = text.find('#'); hash != std::string::npos; hash = text.find('#')) {
        text.replace(hash, 1, "\\u{23}");
    }
    return root + ":" + text;
}

xmi::Finding findingOf(const xmi::ModelSetFinding& found) {
    using Kind = xmi::ModelSetFinding::Kind;
    using Reason = xmi::Finding::Reason;
    const std::map<Kind, Reason> reasons = {{Kind::Missing, Reason::MissingFile},
                                            {Kind::Outside, Reason::OutsideRoots},
                                            {Kind::Ambiguous, Reason::AmbiguousFile},
                                            {Kind::Unreadable, Reason::UnreadableFile},
                                            {Kind::NoElement, Reason::MissingElement},
                                            {Kind::NoFit, Reason::NoFit},
                                            {Kind::ContainedTwice, Reason::ContainedTwice},
                                            {Kind::ContainedInItself, Reason::ContainedInItself}};
    xmi::Finding finding;
    finding.reason = reasons.at(found.kind);
    finding.weight =
        found.isContainment ? xmi::Finding::Weight::ContentsLost : xmi::Finding::Weight::LinkLost;
    finding.file = found.file;
    finding.position = found.position;
    finding.property = found.property;
    finding.reference = found.reference;
    finding.tried = found.tried;
    finding.message = found.reason;
    return finding;
}

}  // namespace

class Project::Loaded {
  public:
    Loaded(const CommandLine& line, bool isStrict);

    const xmi::LoadedModel& ownModel() const { return single ? *single : set->model(0); }
    std::string identityOf(const ModelElement& element) const;
    /// The element of a file by its place and fragment, both escaped; null where there is none.
    ModelElement elementIn(const std::string& place, const std::string& fragment) const;

    xmi::ReadOptions options;
    xmi::LoadedMetamodel metamodel;
    /// One of the two.
    std::optional<xmi::LoadedModel> single;
    std::optional<xmi::ModelSet> set;

    std::vector<File> files;
    std::vector<ModelElement> roots;
    std::vector<ModelElement> elements;
    std::vector<xmi::Finding> findings;
    /// What contains roots of files.
    std::unordered_map<ModelElement, ModelElement> containers;

  private:
    void loadSingle(const std::string& file);
    void loadSet(const CommandLine& line);
    void add(const std::string& place, const xmi::LoadedModel& model);
    void findContainers();
};

namespace {

xmi::ReadOptions readOptionsOf(const CommandLine& line) {
    xmi::ReadOptions options;
    if (line.has(Option::SkipCrossFile)) options.crossFile = xmi::CrossFile::LeaveOut;
    return options;
}

}  // namespace

Project::Loaded::Loaded(const CommandLine& line, bool isStrict)
    : options(readOptionsOf(line)), metamodel(metamodelOf(line, options)) {
    const bool isAlone =
        isStrict || line.has(Option::SkipCrossFile) || line.value(Option::Load) == "given";
    const std::string& file = line.operands().front();
    if (isAlone || file == "-") {
        loadSingle(file);
    } else {
        loadSet(line);
    }
}

void Project::Loaded::loadSingle(const std::string& file) {
    const xmi::XmiReader reader(metamodel, options);
    if (file == "-") {
        const std::string bytes{std::istreambuf_iterator<char>(std::cin), {}};
        single = reader.readText("standard input", bytes);
    } else {
        single = reader.readFile(file);
    }
    add(file, *single);
}

void Project::Loaded::loadSet(const CommandLine& line) {
    const std::filesystem::path file(line.operands().front());
    const std::filesystem::path folder = file.parent_path();
    set.emplace(metamodel, rootsOf(line, folder.empty() ? "." : folder.string()), options);
    set->load(file.filename().string());
    for (const std::string& each : line.values(Option::Model)) set->load(each);
    for (std::size_t i = 0; i < set->fileCount(); ++i) {
        add(set->roots().textOf(set->place(i)), set->model(i));
    }
    for (const xmi::ModelSetFinding& each : set->findings()) findings.push_back(findingOf(each));
    if (files.size() > 1) findContainers();
}

void Project::Loaded::add(const std::string& place, const xmi::LoadedModel& model) {
    files.push_back({place, model.elements().size()});
    elements.insert(elements.end(), model.elements().begin(), model.elements().end());
    roots.insert(roots.end(), model.roots().begin(), model.roots().end());
}

void Project::Loaded::findContainers() {
    namespace walks = nuv::zero::traversal;
    std::unordered_map<ModelElement, ModelElement> found;
    for (const ModelElement& each : roots) found.emplace(each, ModelElement());
    const auto all = walks::Spec::compositionTraversal()->depthFirst(elements);
    walks::ResultSetup(all)
        .descend([](const walks::Link& /*link*/) { return false; })
        .filter([&](const walks::Link& link) {
            return link.getProperty() && found.contains(link.getTarget());
        });
    for (const walks::Link& link : walks::links(all)) found[link.getTarget()] = link.getSource();
    containers = std::move(found);
    std::erase_if(roots, [&](const ModelElement& each) { return !!containers.at(each); });
}

std::string Project::Loaded::identityOf(const ModelElement& element) const {
    if (single) return single->identity(element);
    const auto identity = set->identity(element);
    return identity ? identity->fragment : std::string();
}

ModelElement Project::Loaded::elementIn(const std::string& place,
                                        const std::string& fragment) const {
    for (std::size_t i = 0; i < set->fileCount(); ++i) {
        if (textOf(set->roots().name(set->place(i).root), set->place(i).path) == place) {
            return set->model(i).find(unescaped(fragment));
        }
    }
    return {};
}

Project::Project(const CommandLine& line) {
    if (line.operands().empty()) {
        throw UsageError("the model is missing; see model-walk help " +
                         std::string(line.entry().name));
    }
    const Progress progress(line);
    loaded_ = std::make_unique<Loaded>(line, false);
}

Project::Project(const CommandLine& line, Strict /*strictly*/)
    : loaded_(std::make_unique<Loaded>(line, true)) {}

Project::~Project() = default;

const xmi::LoadedMetamodel& Project::metamodel() const noexcept {
    return loaded_->metamodel;
}

const std::vector<Project::File>& Project::files() const noexcept {
    return loaded_->files;
}

const std::vector<ModelElement>& Project::roots() const noexcept {
    return loaded_->roots;
}

const std::vector<ModelElement>& Project::elements() const noexcept {
    return loaded_->elements;
}

const std::vector<xmi::Finding>& Project::findings() const noexcept {
    return loaded_->findings;
}

std::size_t Project::leftOut() const noexcept {
    return loaded_->single ? loaded_->single->leftOut() : 0;
}

std::string Project::address(const ModelElement& element) const {
    if (loaded_->single) return escaped(loaded_->single->identity(element));
    const std::string place = placeOf(element);
    return place.empty() ? std::string() : place + "#" + escaped(loaded_->identityOf(element));
}

std::string Project::placeOf(const ModelElement& element) const {
    if (loaded_->single) return loaded_->files.front().place;
    const auto identity = loaded_->set->identity(element);
    if (!identity) return {};
    return textOf(identity->root, identity->path);
}

ModelElement Project::find(const std::string& address) const {
    const std::size_t colon = address.find(':');
    const std::size_t hash = address.find('#', colon == std::string::npos ? 0 : colon);
    if (loaded_->set && colon != std::string::npos && hash != std::string::npos) {
        const ModelElement found =
            loaded_->elementIn(address.substr(0, hash), address.substr(hash + 1));
        if (found) return found;
    }
    const std::string fragment = address.starts_with('#') ? address.substr(1) : address;
    const xmi::LoadedModel& own = loaded_->ownModel();
    const ModelElement found = own.find(unescaped(fragment));
    return found ? found : own.find(fragment);
}

ModelElement Project::element(const std::string& address) const {
    ModelElement found = find(address);
    if (found) return found;
    const std::string fragment = address.starts_with('#') ? address.substr(1) : address;
    throw UsageError("there is no element '" + address + "' in the model" +
                     nearest(fragment, nearbyFragments(loaded_->ownModel(), fragment)));
}

ModelElement Project::container(const ModelElement& element) const {
    const auto known = loaded_->containers.find(element);
    if (known != loaded_->containers.end()) return known->second;
    if (loaded_->single) return loaded_->single->container(element);
    for (std::size_t i = 0; i < loaded_->set->fileCount(); ++i) {
        const ModelElement found = loaded_->set->model(i).container(element);
        if (found) return found;
    }
    return {};
}

Resolution Project::resolve(const std::string& file, const std::string& reference) const {
    if (!loaded_->set) throw UsageError("a file that is read by itself resolves no references");
    const xmi::FileRoots& roots = loaded_->set->roots();
    const std::string& from = file.empty() ? loaded_->files.front().place : file;
    xmi::FilePlace place{0, from};
    for (std::size_t root = 0; root < roots.size(); ++root) {
        const std::string start = roots.name(root) + ":";
        if (from.starts_with(start)) place = {root, from.substr(start.size())};
    }
    const std::size_t hash = reference.find('#');
    const std::string fragment =
        hash == std::string::npos ? std::string() : reference.substr(hash + 1);

    Resolution resolution;
    resolution.rule = hash == 0 ? "same file" : xmi::hasScheme(reference) ? "prefix" : "relative";
    xmi::FileRoots::Finding found =
        hash == 0 ? roots.find(place.root, place.path) : roots.find(place, reference);
    resolution.tried = std::move(found.tried);
    if (found.outcome != xmi::FileRoots::Outcome::Found) {
        resolution.reason = found.reason.empty() ? "is in none of the file roots" : found.reason;
        return resolution;
    }
    resolution.place = roots.textOf(found.places.front());
    resolution.element = loaded_->set->find(resolution.place + "#" + fragment);
    return resolution;
}

}  // namespace model_walk
