#include "Project.h"

#include <optional>
#include <utility>

#include "Loading.h"
#include "Names.h"
#include "UsageError.h"
#include "xmi/EcoreReader.h"
#include "xmi/EscapedText.h"
#include "xmi/ModelSet.h"
#include "xmi/XmiReader.h"

namespace model_walk {

namespace xmi = nuv::zero::xmi;
using nuv::zero::ModelElement;

/// What holds the elements, and what is asked of it again and again.
class Project::Loaded {
  public:
    virtual ~Loaded() = default;
    virtual const xmi::LoadedMetamodel& metamodel() const = 0;
    virtual const xmi::LoadedModel& ownModel() const = 0;
    /// Empty where there is only one file, which is read by itself.
    virtual const xmi::ModelSet* set() const = 0;

    std::vector<File> files;
    std::vector<ModelElement> roots;
    std::vector<ModelElement> elements;
    std::size_t leftOut = 0;
};

namespace {

/// One file, in which everything has to be right.
xmi::LoadedMetamodel strictMetamodel(const CommandLine& line, const xmi::ReadOptions& options) {
    xmi::EcoreReader reader(options);
    for (const std::string& file : line.values(Option::Metamodel)) reader.addFile(file);
    return reader.read();
}

xmi::ReadOptions strictOptions(const CommandLine& line) {
    xmi::ReadOptions options;
    if (line.has(Option::SkipCrossFile)) options.crossFile = xmi::CrossFile::LeaveOut;
    return options;
}

}  // namespace

class Project::SingleFile final : public Project::Loaded {
  public:
    explicit SingleFile(const CommandLine& line)
        : metamodel_(strictMetamodel(line, strictOptions(line))),
          model_(
              xmi::XmiReader(metamodel_, strictOptions(line)).readFile(line.operands().front())) {
        files = {{line.operands().front(), model_.elements().size()}};
        roots = model_.roots();
        elements = model_.elements();
        leftOut = model_.leftOut();
    }

    const xmi::LoadedMetamodel& metamodel() const override { return metamodel_; }
    const xmi::LoadedModel& ownModel() const override { return model_; }
    const xmi::ModelSet* set() const override { return nullptr; }

  private:
    xmi::LoadedMetamodel metamodel_;
    xmi::LoadedModel model_;
};

class Project::Files final : public Project::Loaded {
  public:
    Files(const CommandLine& line, Progress& progress)
        : Files(line, modelPlaceOf(line), progress) {}

    const xmi::LoadedMetamodel& metamodel() const override { return set_.metamodel(); }
    const xmi::LoadedModel& ownModel() const override { return set_.model(0); }
    const xmi::ModelSet* set() const override { return &set_; }

  private:
    Files(const CommandLine& line, ModelPlace place, Progress& progress)
        : set_(std::move(place.roots), loadOptionsOf(line, progress)) {
        std::vector<std::string> paths;
        if (!place.path.empty()) paths.push_back(place.path);
        for (const std::string& each : line.values(Option::Model)) {
            paths.push_back(pathInModel(set_.fileRoots(), each));
        }
        if (!paths.empty()) set_.load(paths);
        const bool isFolder = place.path.empty() || line.value(Option::Load) == "folder";
        if (isFolder) set_.loadFolder("model");
        if (set_.fileCount() == 0) failForWantOfModels(line.operands().front());
        for (std::size_t i = 0; i < set_.fileCount(); ++i) {
            files.push_back(
                {set_.fileRoots().textOf(set_.place(i)), set_.model(i).elements().size()});
        }
        roots = set_.rootElements();
        elements = set_.elements();
        for (const auto& [where, count] : set_.findings().counts()) {
            if (where.first == xmi::Finding::Reason::NotLoaded) leftOut += count;
        }
    }

    [[noreturn]] void failForWantOfModels(const std::string& folder) const {
        const xmi::Findings& findings = set_.findings();
        if (findings.kept().empty()) throw UsageError("there is no model in '" + folder + "'");
        throw UsageError("nothing in '" + folder +
                         "' can be read as a model: " + findings.kept().front().text());
    }

    xmi::ModelSet set_;
};

Project::Project(const CommandLine& line) {
    if (line.operands().empty()) {
        throw UsageError("the model is missing; see model-walk help " +
                         std::string(line.entry().name));
    }
    Progress progress(line);
    loaded_ = std::make_unique<Files>(line, progress);
}

Project::Project(const CommandLine& line, Strict /*strictly*/)
    : loaded_(std::make_unique<SingleFile>(line)) {}

Project::~Project() = default;

const xmi::LoadedMetamodel& Project::metamodel() const noexcept {
    return loaded_->metamodel();
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

const xmi::Findings& Project::findings() const noexcept {
    static const xmi::Findings none(0);
    return loaded_->set() == nullptr ? none : loaded_->set()->findings();
}

std::size_t Project::leftOut() const noexcept {
    return loaded_->leftOut;
}

std::string Project::address(const ModelElement& element) const {
    const xmi::ModelSet* const set = loaded_->set();
    return set == nullptr ? xmi::escaped(loaded_->ownModel().identity(element))
                          : set->address(element).text();
}

std::string Project::placeOf(const ModelElement& element) const {
    const std::string whole = address(element);
    return whole.substr(0, whole.find('#'));
}

ModelElement Project::find(const std::string& address) const {
    const std::size_t hash = address.find('#');
    if (const xmi::ModelSet* const set = loaded_->set()) {
        ModelElement found = set->find(address);
        if (!found && hash != std::string::npos) found = set->find("model:" + address);
        if (found) return found;
    }
    const std::string fragment = hash == 0 ? address.substr(1) : address;
    const ModelElement found = loaded_->ownModel().find(xmi::unescaped(fragment));
    return found ? found : loaded_->ownModel().find(fragment);
}

ModelElement Project::element(const std::string& address) const {
    ModelElement found = find(address);
    if (found) return found;
    const std::string fragment = address.substr(address.find('#') + 1);
    throw UsageError("there is no element '" + address + "' in the model" +
                     nearest(fragment, nearbyFragments(loaded_->ownModel(), fragment)));
}

ModelElement Project::container(const ModelElement& element) const {
    const xmi::ModelSet* const set = loaded_->set();
    return set == nullptr ? loaded_->ownModel().container(element) : set->container(element);
}

Resolution Project::resolve(const std::string& file, const std::string& reference) const {
    const xmi::ModelSet& set = *loaded_->set();
    xmi::FilePlace from = set.place(0);
    if (!file.empty()) {
        const std::string path = pathInModel(set.fileRoots(), file);
        for (std::size_t i = 0; i < set.fileCount(); ++i) {
            const std::string place = set.fileRoots().textOf(set.place(i));
            if (place == path || place == "model:" + path) from = set.place(i);
        }
    }
    const xmi::ModelSet::Lookup found = set.explain(from, reference);
    return {found.lookedUpBy, found.tried, found.file, found.reason, found.element};
}

}  // namespace model_walk
