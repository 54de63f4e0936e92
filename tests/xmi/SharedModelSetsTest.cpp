#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "traversal/Traversal.h"
#include "xmi/EcoreReader.h"
#include "xmi/ModelSet.h"

/// Real models that span files and that nobody of this project wrote, in the folder of samples.
/// Where that is not, these tests are skipped. The counts are those of the folder's own index.
namespace nuv::zero::xmi::test {
namespace {

namespace fs = std::filesystem;

class SharedModelSets : public testing::Test {
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
    /// The files below a folder whose names end so, sorted.
    static std::vector<std::string> filesBelow(const std::string& folder,
                                               const std::vector<std::string>& endings) {
        std::vector<std::string> files;
        for (const auto& each : fs::recursive_directory_iterator(inFolder(folder))) {
            const bool isWanted = std::any_of(
                endings.begin(), endings.end(),
                [&](const std::string& ending) { return each.path().extension() == ending; });
            if (isWanted) files.push_back(each.path().string());
        }
        std::sort(files.begin(), files.end());
        return files;
    }
    static LoadedMetamodel metamodelOf(const std::vector<std::string>& files) {
        ReadOptions options;
        options.crossFile = CrossFile::LeaveOut;
        EcoreReader reader(options);
        for (const std::string& each : files) reader.addFile(each);
        return reader.read();
    }
    static std::size_t elementsOf(const ModelSet& set) {
        std::size_t count = 0;
        for (std::size_t file = 0; file < set.fileCount(); ++file) {
            count += set.model(file).elements().size();
        }
        return count;
    }
};

TEST_F(SharedModelSets, AModelInFragmentsIsOneModel) {
    const LoadedMetamodel metamodel = metamodelOf(filesBelow("capella", {".ecore"}));
    FileRoots roots;
    roots.add("model", inFolder("capella/FragmentTestModel"));
    ModelSet set(metamodel, std::move(roots));
    const LoadedModel& main = set.load("sysmodel.capella");
    EXPECT_EQ(set.fileCount(), 5U);
    EXPECT_EQ(elementsOf(set), 2110U + 504U);
    // Everything is contained in the roots of the first file.
    std::size_t contained = main.roots().size();
    const auto walk = traversal::Spec::compositionTraversal()->depthFirst(main.roots());
    for (const traversal::Link& link : traversal::links(walk)) {
        contained += link.getProperty() ? 1 : 0;
    }
    EXPECT_EQ(contained, elementsOf(set));
    ASSERT_EQ(set.findings().size(), 2U);
    for (const ModelSetFinding& each : set.findings()) {
        EXPECT_EQ(each.kind, ModelSetFinding::Kind::NoElement) << each.text();
    }
}

TEST_F(SharedModelSets, LibrariesThatReferToEachOtherAreClosed) {
    const LoadedMetamodel metamodel = metamodelOf({inFolder("sysmlv2/SysML.ecore")});
    // The folder beside the metamodel, whatever its name.
    std::string folder;
    for (const fs::directory_entry& each : fs::directory_iterator(inFolder("sysmlv2"))) {
        if (each.is_directory()) folder = "sysmlv2/" + each.path().filename().string();
    }
    FileRoots roots;
    roots.add("library", inFolder(folder));
    ModelSet set(metamodel, std::move(roots));
    for (const std::string& each : filesBelow(folder, {".kermlx", ".sysmlx"})) {
        set.load(fs::path(each).lexically_relative(inFolder(folder)).string());
    }
    EXPECT_EQ(set.fileCount(), 57U);
    EXPECT_EQ(elementsOf(set), 25011U + 6573U);
    EXPECT_TRUE(set.findings().empty()) << set.findings().front().text();
}

}  // namespace
}  // namespace nuv::zero::xmi::test
