#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/xmi/FolderTree.h"
#include "tests/xmi/ReaderFixture.h"
#include "xmi/ModelSet.h"
#include "xmi/TextFiles.h"

/// Sets of files that nobody makes by accident.
namespace nuv::zero::xmi::test {
namespace {

class HostileSets : public testing::Test {
  protected:
    std::unique_ptr<ModelSet> load(std::shared_ptr<const FileTree> tree, const std::string& path,
                                   std::size_t files = 200'000) const {
        FileRoots roots;
        roots.add("model", std::move(tree)).add("metamodels", metamodels_);
        LoadOptions options;
        options.limits.files = files;
        auto set = std::make_unique<ModelSet>(std::move(roots), options);
        set->load(path);
        return set;
    }

    static std::size_t elementsOf(const ModelSet& set) {
        std::size_t count = 0;
        for (std::size_t file = 0; file < set.fileCount(); ++file) {
            count += set.model(file).elements().size();
        }
        return count;
    }

    static std::shared_ptr<TextFiles> metamodels() {
        auto files = std::make_shared<TextFiles>("metamodels");
        files->add("p.ecore",
                   package(eClass("Node", attribute("name") + reference("nodes", "Node", contents) +
                                              reference("core", "Node", containment) +
                                              reference("to", "Node", many))));
        return files;
    }

    std::shared_ptr<const FileTree> metamodels_ = metamodels();
};

std::string name(int number) {
    return "f" + std::to_string(number) + ".xmi";
}

TEST_F(HostileSets, ACircleOfAThousandFilesIsLoaded) {
    constexpr int count = 1'000;
    auto files = std::make_shared<TextFiles>("texts");
    for (int i = 0; i < count; ++i) {
        const std::string next = name((i + 1) % count);
        files->add(name(i), root("Node", "to='" + next + "#/'", "<core href='" + next + "#/'/>"));
    }
    const auto set = load(files, name(0));
    EXPECT_EQ(set->fileCount(), 1'000U);
    EXPECT_EQ(elementsOf(*set), 1'000U);
    ASSERT_EQ(set->findings().size(), 1U) << "the last one would contain itself";
    EXPECT_EQ(set->findings().kept().front().file, "model:" + name(count - 1));
}

TEST_F(HostileSets, AHundredThousandTinyFilesAreLoadedOrBounded) {
    constexpr int count = 100'000;
    auto files = std::make_shared<TextFiles>("texts");
    std::string references;
    for (int i = 0; i < count; ++i) {
        references += name(i) + "#/ ";
        files->add(name(i), "<p:Node xmlns:p='urn:p'/>");
    }
    files->add("all.xmi", root("Node", "to='" + references + "'"));
    const auto set = load(files, "all.xmi");
    EXPECT_EQ(set->fileCount(), 100'001U);
    EXPECT_TRUE(set->findings().empty());
    const auto bounded = load(files, "all.xmi", 1'000);
    EXPECT_EQ(bounded->fileCount(), 1'000U);
    EXPECT_EQ(bounded->findings().size(), 99'001U);
    EXPECT_TRUE(
        bounded->findings().kept().front().text().ends_with("the model has more than 1000 files"));
}

/// Each file refers to the next one many times, and each time by another spelling.
TEST_F(HostileSets, ManyReferencesToOneFileReadItOnce) {
    constexpr int count = 20;
    constexpr std::size_t references = 300;
    auto files = std::make_shared<TextFiles>("texts");
    for (int i = 0; i < count; ++i) {
        std::string to;
        std::string detour = "./";
        for (std::size_t j = 0; j < references; ++j) {
            detour += j % 2 == 0 ? "./" : "x/../";
            to += detour + name(i + 1) + "#/ ";
        }
        files->add(name(i), root("Node", "to='" + to + "'"));
    }
    files->add(name(count), root("Node", ""));
    const auto set = load(files, name(0));
    EXPECT_EQ(set->fileCount(), count + 1U);
    EXPECT_EQ(elementsOf(*set), count + 1U);
    EXPECT_TRUE(set->findings().empty());
}

TEST_F(HostileSets, ThousandsOfMissingFilesAreTold) {
    auto files = std::make_shared<TextFiles>("texts");
    std::string to;
    for (int i = 0; i < 5'000; ++i) {
        to += "platform:/plugin/p" + std::to_string(i) + "/m.xmi#/ none" + name(i) + "#/ ";
    }
    files->add("m.xmi", root("Node", "to='" + to + "'"));
    const auto set = load(files, "m.xmi");
    EXPECT_EQ(set->fileCount(), 1U);
    EXPECT_EQ(set->findings().size(), 10'000U);
}

TEST_F(HostileSets, NothingOutsideOfTheRootsIsRead) {
    FolderTree tree;
    tree.write("secret.xmi", root("Node", "")).write("in/here.xmi", root("Node", ""));
    tree.link("in/link.xmi", "../secret.xmi").link("in/far", tree.path());
    tree.link("in/chain.xmi", "link.xmi").link("in/sub/up", "../..").link("in/etc", "/etc");
    const std::vector<std::string> ways = {
        "../secret.xmi",
        "./../secret.xmi",
        "sub/../../secret.xmi",
        "%2e%2e/secret.xmi",
        "..%2Fsecret.xmi",
        "../in/../secret.xmi",
        "link.xmi",
        "chain.xmi",
        "far/secret.xmi",
        "far/in/../secret.xmi",
        "sub/up/secret.xmi",
        "etc/passwd",
        "/etc/passwd",
        "//etc/passwd",
        "%2Fetc%2Fpasswd",
        tree.path("secret.xmi"),
        "file:" + tree.path("secret.xmi"),
        "file://" + tree.path("secret.xmi"),
        "file:../secret.xmi",
        "http://localhost/secret.xmi",
        "ftp://localhost/secret.xmi",
        "jar:file:" + tree.path("a.zip") + "!/secret.xmi",
        "platform:/resource/in/../secret.xmi",
        "platform:/resource/../secret.xmi",
        "platform:/resource/model/../secret.xmi",
        "platform:/plugin/%2e%2e/secret.xmi",
        "platform:/resource/model//" + tree.path("secret.xmi"),
        "platform:/resource/sub/up/secret.xmi",
        "pathmap://model/../secret.xmi",
        "pathmap://../secret.xmi",
        "here.xmi/../../secret.xmi",
        "secret.xmi%00",
        "here.xmi%00",
    };
    std::string nodes;
    for (const std::string& each : ways) nodes += "<to href='" + each + "#/'/>\n";
    tree.write("in/m.xmi", root("Node", "", nodes));
    FileRoots roots;
    roots.add("model", tree.path("in")).add("metamodels", metamodels_);
    ModelSet set(std::move(roots));
    set.load("m.xmi");
    EXPECT_EQ(set.fileCount(), 1U);
    ASSERT_EQ(set.findings().size(), ways.size());
    for (std::size_t i = 0; i < ways.size(); ++i) {
        const Finding& finding = set.findings().kept()[i];
        EXPECT_EQ(finding.position.line, i + 2) << finding.text();
        EXPECT_TRUE(finding.reason == Finding::Reason::OutsideRoots ||
                    finding.reason == Finding::Reason::MissingFile)
            << finding.text();
    }
}

/// Files of which somebody else makes others all the time.
class ChangingFiles final : public FileTree {
  public:
    /// Says what a file holds when it is asked for the so-manieth time, and of which bytes.
    using Change = std::function<std::string(const std::string& path, std::size_t question)>;

    explicit ChangingFiles(Change change) : change_(std::move(change)) {}

    const std::string& location() const noexcept override { return location_; }
    Opening open(std::string_view path, std::size_t /*limit*/) const override {
        Opening opening;
        opening.outcome = Outcome::Opened;
        opening.path = std::string(path);
        opening.bytes = std::make_unique<Source>(*this, opening.path);
        return opening;
    }
    std::vector<std::string> files(std::size_t /*limit*/) const override { return {}; }

  private:
    class Source final : public ByteSource {
      public:
        Source(const ChangingFiles& files, std::string path)
            : files_(files), path_(std::move(path)) {}
        std::size_t size() override { return now().size(); }
        std::size_t read(std::size_t from, char* into, std::size_t wanted) override {
            const std::string bytes = now();
            return TextSource(bytes).read(from, into, wanted);
        }

      private:
        std::string now() const { return files_.change_(path_, files_.questions_++); }

        const ChangingFiles& files_;
        std::string path_;
    };

    std::string location_ = "texts";
    Change change_;
    mutable std::size_t questions_ = 0;
};

TEST_F(HostileSets, FilesThatChangeWhileTheyAreReadAreRefusedOrRead) {
    const std::string blanks(70'000, ' ');
    const std::vector<std::string> states = {
        root("Node", "to='b.xmi#/ none.xmi#/'", blanks + "<nodes/><core href='b.xmi#/'/>"),
        root("Node", "name='x'", blanks + "<nodes to='b.xmi#/'/>"),
        root("Node", "to='b.xmi#/'"),
        "",
        "<a",
        blanks + blanks,
        std::string("\xFF\xFE<\0", 4),
        root("Node", "", std::string(3'000, '\n') + "<nodes/>"),
    };
    std::size_t loaded = 0;
    std::size_t refused = 0;
    for (std::size_t first = 0; first < states.size(); ++first) {
        for (std::size_t second = 0; second < states.size(); ++second) {
            for (std::size_t when = 0; when < 12; ++when) {
                auto files = std::make_shared<ChangingFiles>(
                    [&](const std::string& /*path*/, std::size_t question) {
                        return states[question < when ? first : second];
                    });
                try {
                    const auto set = load(files, "a.xmi");
                    for (const Finding& each : set->findings()) {
                        EXPECT_EQ(each.text().find('\n'), std::string::npos);
                    }
                    ++loaded;
                } catch (const ReadError& error) {
                    EXPECT_FALSE(error.reason().empty());
                    ++refused;
                }
            }
        }
    }
    EXPECT_GT(loaded, 50U);
    EXPECT_GT(refused, 50U);
}

}  // namespace
}  // namespace nuv::zero::xmi::test
