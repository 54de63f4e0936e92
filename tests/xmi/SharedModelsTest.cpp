#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "traversal/Traversal.h"
#include "xmi/EcoreReader.h"
#include "xmi/XmiReader.h"

/// Real metamodels and models that nobody of this project wrote, in the folder of samples. Where
/// that is not, these tests are skipped.
namespace nuv::zero::xmi::test {
namespace {

using traversal::Algo;
using traversal::Link;
using traversal::links;
using traversal::Spec;

struct SharedModel {
    const char* name;
    std::vector<std::string> metamodels;
    std::string model;
    /// References that are no containments, as the folder's own index counts them; -1 where it
    /// counts others as well.
    int references = -1;
};

void PrintTo(const SharedModel& model, std::ostream* out) {
    *out << model.model;
}

const std::string ecoreMetamodel = "emf/org.eclipse.emf.ecore/model/Ecore.ecore";
const std::string javaMetamodel = "modisco-java-kdm/org.eclipse.modisco.java/model/java.ecore";
const std::string kdmMetamodel = "modisco-java-kdm/org.eclipse.modisco.omg.kdm/model/kdm.ecore";

const std::vector<std::string> processMetamodels = {"bpmn2/BPMN20.ecore", "bpmn2/BPMNDI.ecore",
                                                    "bpmn2/DC.ecore", "bpmn2/DI.ecore"};

std::string inFolder(const std::string& file) {
    return std::string(SHARED_MODELS) + "/" + file;
}

/// How many objects an independent script finds in the file.
std::string independentCount(const SharedModel& model) {
    std::string command = std::string(PYTHON) + " " + COUNT_OBJECTS;
    for (const std::string& each : model.metamodels) command += " '" + inFolder(each) + "'";
    command += " '" + inFolder(model.model) + "'";
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    std::array<char, 64> line{};
    if (!pipe || std::fgets(line.data(), line.size(), pipe.get()) == nullptr) return "no count";
    return std::string(line.data(), std::string(line.data()).find('\n'));
}

class CountingObserver final : public traversal::TraversalProcessor {
  public:
    void onEnterElement(const ModelElement& /*element*/) override { ++entered; }
    std::size_t entered = 0;
};

/// Pseudo-links do not count: an input has none when the walk has reached it before.
struct Walked {
    std::size_t elements = 0;
    std::size_t links = 0;
    bool operator==(const Walked&) const = default;
};

void PrintTo(const Walked& walked, std::ostream* out) {
    *out << walked.elements << " elements, " << walked.links << " links";
}

template <class Builder>
Walked walk(const std::shared_ptr<Builder>& builder, const LoadedModel& model, Algo order) {
    CountingObserver observer;
    const auto result = builder->run(model.roots(), order);
    traversal::ResultSetup(result).observe(&observer);
    Walked walked;
    for (const Link& link : links(result)) walked.links += link.getProperty() ? 1 : 0;
    walked.elements = observer.entered;
    return walked;
}

class SharedModels : public testing::TestWithParam<SharedModel> {
  protected:
    void SetUp() override {
        if (!std::filesystem::exists(inFolder(GetParam().model))) {
            GTEST_SKIP() << "needs the optional sample models, and " << inFolder(GetParam().model)
                         << " is not there";
        }
    }

    static LoadedModel load() {
        EcoreReader reader;
        for (const std::string& each : GetParam().metamodels) reader.addFile(inFolder(each));
        return XmiReader(reader.read()).readFile(inFolder(GetParam().model));
    }
};

constexpr std::array orders = {Algo::DepthFirstPreOrder, Algo::DepthFirstPostOrder,
                               Algo::BreadthFirst};

/// Naming everything makes the additive kind follow what the subtractive one follows.
std::shared_ptr<traversal::AdditiveTraversalImpl> traverseEverything(const LoadedModel& model) {
    auto builder = Spec::additiveTraversal();
    std::unordered_set<meta::Class> known;
    for (const ModelElement& element : model.elements()) {
        if (!known.insert(element->getClass()).second) continue;
        for (const meta::Property& each : element->getClass()->getAllClassProperties()) {
            if (!each->isAssociation() || each->isDerived()) continue;
            builder->traverse(each, traversal::ResultPolicy::Report);
        }
    }
    return builder;
}

// One test, since reading a big model takes longer than walking it.
TEST_P(SharedModels, EveryKindAndOrderReachesEveryObjectOfTheFile) {
    const LoadedModel model = load();
    const std::size_t objects = model.elements().size();
    if (std::string(PYTHON).empty()) {
        std::cout << "python3 is not there to count the objects independently\n";
    } else {
        EXPECT_EQ(std::to_string(objects), independentCount(GetParam()));
    }

    const Walked contained{objects, objects - model.roots().size()};
    Walked all = walk(Spec::subtractiveTraversal(), model, Algo::DepthFirstPreOrder);
    EXPECT_EQ(all.elements, objects);
    if (GetParam().references >= 0) {
        all.links = contained.links + static_cast<std::size_t>(GetParam().references);
    }
    const auto everything = traverseEverything(model);
    for (const Algo order : orders) {
        EXPECT_EQ(walk(Spec::compositionTraversal(), model, order), contained);
        EXPECT_EQ(walk(Spec::subtractiveTraversal(), model, order), all);
        EXPECT_EQ(walk(everything, model, order), all);
    }
}

TEST_P(SharedModels, IdentitiesAreUniqueAndFindTheirElements) {
    const LoadedModel model = load();
    for (const ModelElement& element : model.elements()) {
        ASSERT_EQ(model.find(model.identity(element)), element) << model.identity(element);
        ASSERT_EQ(model.find(model.path(element)), element) << model.path(element);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Folder, SharedModels,
    testing::Values(
        SharedModel{
            "Railway", {"trainbenchmark/railway.ecore"}, "trainbenchmark/railway-1.xmi", 1148},
        SharedModel{"Java", {javaMetamodel}, "modisco-java-kdm/test001_java.xmi", 1409},
        SharedModel{"Kdm", {kdmMetamodel}, "modisco-java-kdm/test001_kdm.xmi", 1059},
        SharedModel{"KdmOfManyRoots", {kdmMetamodel}, "modisco-java-kdm/Bug_318638.kdm", 955},
        SharedModel{"BigJava", {javaMetamodel}, "modisco-java-kdm/infra.browser.javaxmi", 69965},
        SharedModel{"Ecore", {ecoreMetamodel}, ecoreMetamodel},
        SharedModel{"Uml", {ecoreMetamodel}, "uml2/org.eclipse.uml2.uml/model/UML.ecore"},
        SharedModel{"Social",
                    {"ttc2018-social/social_network.ecore"},
                    "ttc2018-social/models/16/initial.xmi",
                    32428},
        SharedModel{"Archi",
                    {"archi/com.archimatetool.model/model/archimate.ecore",
                     "archi/com.archimatetool.canvas/model/canvas.ecore"},
                    "archi/Archisurance.archimate",
                    1382},
        SharedModel{"PlainProcess", processMetamodels,
                    "bpmn2/extensibility/SimpleExtensions.bpmn2"},
        SharedModel{"PlainDefinitions", processMetamodels, "bpmn2/basic.bpmn2"},
        SharedModel{"PlainNames", processMetamodels, "bpmn2/qname_prefixNs_noNs.bpmn2"},
        SharedModel{"PlainReferenced", processMetamodels, "bpmn2/qname_prefixNs_referenced.bpmn2"},
        SharedModel{"XmiDefinitions", processMetamodels, "bpmn2/basic.bpmn2xmi"},
        SharedModel{"NamesAndClasses",
                    {ecoreMetamodel, "amalthea/amalthea.ecore"},
                    "amalthea/AMALTHEA_Democar_MappingExample_withTasks.amxmi",
                    482}),
    [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace
}  // namespace nuv::zero::xmi::test
