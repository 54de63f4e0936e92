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

    // What metamodels are loaded for, as models, is counted by itself.
    std::size_t elements = 0;
    for (std::size_t file = 0; file < set.fileCount(); ++file) {
        const std::string& path = set.place(file).path;
        const bool isAsked =
            std::find(sample.files.begin(), sample.files.end(), path) != sample.files.end();
        if (isAsked || !path.ends_with(".ecore")) elements += set.model(file).elements().size();
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

const std::vector<std::pair<std::string, std::string>> uml = {{"uml2", "uml2"}, {"emf", "emf"}};
const std::string libraries = "uml2/org.eclipse.uml2.uml.resources/libraries";
const std::string metamodels = "uml2/org.eclipse.uml2.uml.resources/metamodels";

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
        SharedSet{"Ocl", "ocl", {"OCL-2.5.oclas"}, {}, 2021, 0}),
    [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace
}  // namespace nuv::zero::xmi::test
