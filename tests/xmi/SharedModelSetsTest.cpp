#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "traversal/Traversal.h"
#include "xmi/ModelSet.h"

/// Real models that nobody of this project wrote, in the folder of samples, each loaded by its path
/// alone. Where that folder is not, these tests are skipped. The counts are those of the folder's
/// own index: of the elements reached, and of the references that it calls dangling.
namespace nuv::zero::xmi::test {
namespace {

namespace fs = std::filesystem;

struct SharedSet {
    const char* name;
    /// The folder that is the first root, and the file there.
    const char* folder;
    std::vector<std::string> files;
    /// Further roots.
    std::vector<std::pair<std::string, std::string>> roots;
    /// In the first root, but for metamodels that are loaded as models as well.
    std::size_t elements;
    std::size_t losses;
};

void PrintTo(const SharedSet& set, std::ostream* out) {
    *out << set.name;
}

class SharedModelSets : public testing::TestWithParam<SharedSet> {
  protected:
    void SetUp() override {
        if (!fs::exists(SHARED_MODELS)) {
            GTEST_SKIP() << "needs the optional sample models, and " << SHARED_MODELS
                         << " is not there";
        }
    }
    static std::string inFolder(const std::string& path) {
        return std::string(SHARED_MODELS) + "/" + path;
    }
};

TEST_P(SharedModelSets, AreWhole) {
    const SharedSet& sample = GetParam();
    FileRoots roots;
    roots.add("model", inFolder(sample.folder));
    for (const auto& [name, folder] : sample.roots) roots.add(name, inFolder(folder));
    ModelSet set(std::move(roots));
    sample.files.empty() ? set.loadFolder("model") : set.load(sample.files);

    std::size_t elements = 0;
    for (std::size_t file = 0; file < set.fileCount(); ++file) {
        const FilePlace& place = set.place(file);
        const bool isCounted = place.root == 0 && !place.path.ends_with(".ecore");
        if (isCounted) elements += set.model(file).elements().size();
    }
    EXPECT_EQ(elements, sample.elements);
    std::size_t losses = 0;
    for (const Finding& each : set.findings()) {
        if (!each.isLoss()) continue;
        if (++losses > sample.losses) ADD_FAILURE() << each.text();
    }
    EXPECT_EQ(losses, sample.losses);

    // Everything is reached from what nothing contains.
    std::size_t reached = set.rootElements().size();
    const auto walk = traversal::Spec::compositionTraversal()->depthFirst(set.rootElements());
    for (const traversal::Link& link : traversal::links(walk)) {
        reached += link.getProperty() ? 1 : 0;
    }
    EXPECT_EQ(reached, set.elementCount());
}

using Roots = std::vector<std::pair<std::string, std::string>>;
const Roots none;
const Roots uml = {{"uml2", "uml2"}, {"emf", "emf"}};

SharedSet library(const char* name, const char* file, std::size_t elements) {
    return {name, "uml2/org.eclipse.uml2.uml.resources/libraries", {file}, uml, elements, 0};
}

SharedSet omg(const char* name, const char* file, std::size_t elements, std::size_t losses) {
    return {name, "uml2/org.eclipse.uml2/model", {file}, uml, elements, losses};
}

SharedSet generator(const char* name, const char* folder, const char* file, std::size_t elements,
                    std::size_t losses) {
    return {name, folder, {file}, uml, elements, losses};
}

INSTANTIATE_TEST_SUITE_P(
    Folder, SharedModelSets,
    testing::Values(
        SharedSet{"Railway", "trainbenchmark", {"railway-1.xmi"}, {}, 1311, 0},
        SharedSet{"Archi", "archi", {"Archisurance.archimate"}, {}, 1075, 0},
        SharedSet{"Social", "ttc2018-social", {"models/16/initial.xmi"}, {}, 15133, 0},
        SharedSet{"FirstChange", "ttc2018-social", {"models/1/change01.xmi"}, {}, 14 + 1275, 0},
        SharedSet{"SecondChange", "ttc2018-social", {"models/1/change02.xmi"}, {}, 14 + 1275, 2},
        SharedSet{"Java", "modisco-java-kdm", {"test001_java.xmi"}, {}, 1219, 0},
        SharedSet{"Kdm", "modisco-java-kdm", {"test001_kdm.xmi"}, {}, 2181, 0},
        SharedSet{"KdmOfManyRoots", "modisco-java-kdm", {"Bug_318638.kdm"}, {}, 3916, 0},
        SharedSet{"InFlight", "capella", {"In-Flight Entertainment System.capella"}, {}, 5474, 0},
        SharedSet{
            "Fragments", "capella", {"FragmentTestModel/sysmodel.capella"}, {}, 2110 + 504, 2},
        SharedSet{"OneFragment",
                  "capella/FragmentTestModel",
                  {"sysmodel.capella"},
                  {{"capella", "capella"}},
                  2110 + 504,
                  2},
        SharedSet{"SysmlLibraries", "sysmlv2", {}, {}, 31584, 0},
        SharedSet{"Ocl", "ocl", {"OCL-2.5.oclas"}, none, 2021, 0},
        library("EcoreTypes", "EcorePrimitiveTypes.library.uml", 51 + 22),
        library("JavaTypes", "JavaPrimitiveTypes.library.uml", 12 + 51 + 22),
        library("UmlTypes", "UMLPrimitiveTypes.library.uml", 22 + 51),
        library("XmlTypes", "XMLPrimitiveTypes.library.uml", 100 + 51 + 22),
        // Each refers to the other.
        SharedSet{"UmlInUml",
                  "uml2/org.eclipse.uml2.uml.resources/metamodels",
                  {"UML.metamodel.uml"},
                  uml,
                  8034 + 711,
                  0},
        omg("OmgTypes", "PrimitiveTypes.xmi", 13, 0), omg("OmgUml", "UML.xmi", 6757 + 13, 0),
        // Tags of a metamodel refer to elements of another that does not know it; what one file
        // extends is not there.
        omg("OmgStandard", "StandardProfile.xmi", 178 + 6757 + 13, 2),
        omg("OmgMof", "MOF.xmi", 220 + 13, 24 + 9),
        SharedSet{"OldUml",
                  "uml2/org.eclipse.uml2.examples.gettingstarted/models",
                  {"ExtendedPO2.uml"},
                  uml,
                  143,
                  0},
        // Generator models have fragments of their own.
        generator("GenModel", "emf/org.eclipse.emf.codegen.ecore/model", "GenModel.genmodel", 350,
                  1),
        generator("EcoreGenModel", "emf/org.eclipse.emf.ecore/model", "Ecore.genmodel", 223, 0),
        generator("Library", "emf/org.eclipse.emf.examples.library/model", "extlibrary.genmodel",
                  51, 8),
        generator("Xsd", "emf/org.eclipse.xsd/model", "XSD.genmodel", 365, 0),
        SharedSet{
            "Tasks", "amalthea", {"AMALTHEA_Democar_MappingExample_withTasks.amxmi"}, none, 754, 0},
        SharedSet{"SplitDemocar", "amalthea/democar.split", {}, {{"amalthea", "amalthea"}}, 565, 0},
        SharedSet{"ProcessOnly", "bpmn2", {"basic.bpmn2"}, none, 1, 0},
        SharedSet{"ProcessInXmi", "bpmn2", {"basic.bpmn2xmi"}, none, 1, 0},
        // It refers into a file that it imports, by the namespace of that.
        SharedSet{"ProcessesOfTwoFiles", "bpmn2", {"qname_prefixNs_normal.bpmn2"}, none, 4, 1},
        SharedSet{"Processes", "bpmn2", {"qname_prefixNs_noNs.bpmn2"}, none, 3, 0}),
    [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace
}  // namespace nuv::zero::xmi::test
