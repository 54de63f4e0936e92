#include "xmi/ModelSet.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "model/memory/ModelAccess.h"
#include "tests/xmi/FolderTree.h"
#include "tests/xmi/ReaderFixture.h"
#include "xmi/IncomingReferences.h"

namespace nuv::zero::xmi::test {
namespace {

/// Files of nodes in three folders: of the model, and of two libraries.
class ModelSetTest : public testing::Test {
  protected:
    ModelSetTest() {
        for (const char* const each : {"model", "one", "two"}) {
            std::filesystem::create_directories(tree_.path(each));
        }
        tree_.write(
            "model/p.ecore",
            package(eClass("Node", attribute("name") + reference("nodes", "Node", contents) +
                                       reference("core", "Node", containment) +
                                       reference("to", "Node", many) + reference("type", "Node") +
                                       reference("other", "Other")) +
                    eClass("Other")));
    }

    FileRoots roots() const {
        FileRoots roots;
        roots.add("model", tree_.path("model"));
        roots.add("one", tree_.path("one"), {"platform:/plugin/", "one:"});
        roots.add("two", tree_.path("two"), {"platform:/plugin/"});
        return roots;
    }

    void write(const std::string& path, const std::string& attributes,
               const std::string& inside = {}) const {
        tree_.write(path, root("Node", attributes, inside));
    }

    /// Loads `m.xmi` and says what the set holds: each element with its references, then findings.
    Lines load(const ModelSetLimits& limits = {}) const {
        LoadOptions options;
        options.limits = limits;
        ModelSet set(roots(), options);
        set.load("m.xmi");
        return describe(set);
    }

    static Lines describe(const ModelSet& set) {
        Lines lines;
        for (std::size_t file = 0; file < set.fileCount(); ++file) {
            for (const ModelElement& element : set.model(file).elements()) {
                const std::string identity = set.address(element).text();
                EXPECT_EQ(set.find(identity), element) << identity;
                std::string line = identity;
                for (const meta::Property& each : element->getClass()->getAllClassProperties()) {
                    if (each->isAssociation()) line += values(set, element, each);
                }
                lines.push_back(line);
            }
        }
        for (const Finding& each : set.findings()) lines.push_back(each.text());
        return lines;
    }

    static std::string values(const ModelSet& set, const ModelElement& element,
                              const meta::Property& property) {
        const Value value = access::read(element, property);
        std::vector<ModelElement> targets;
        if (!property->isSingleValued()) {
            targets = access::toElements(value);
        } else if (access::isSet(value)) {
            targets.push_back(access::toElement(value));
        }
        std::string text;
        for (const ModelElement& each : targets) text += " " + set.address(each).text();
        return text.empty() ? text : " " + text::toUtf8(property->getName()) + ":" + text;
    }

    static ModelSetLimits limitsOf(std::size_t files, std::size_t elements) {
        ModelSetLimits limits;
        limits.files = files;
        limits.elements = elements;
        return limits;
    }

    FolderTree tree_;
};

TEST_F(ModelSetTest, ReferencesLeadIntoOtherFilesAndBack) {
    write("model/m.xmi", R"(to="a/b.xmi#x one:lib.xmi#//@nodes.0")", R"(<type href="a/b.xmi#/"/>)");
    write("model/a/b.xmi", R"(to="../m.xmi#/ #x")", R"(<nodes xmi:id="x" name="x"/>)");
    write("one/lib.xmi", "", "<nodes/>");
    EXPECT_EQ(load(), (Lines{"model:m.xmi#/ to: model:a/b.xmi#x one:lib.xmi#//@nodes.0 "
                             "type: model:a/b.xmi#/",
                             "model:a/b.xmi#/ nodes: model:a/b.xmi#x to: model:m.xmi#/ "
                             "model:a/b.xmi#x",
                             "model:a/b.xmi#x", "one:lib.xmi#/ nodes: one:lib.xmi#//@nodes.0",
                             "one:lib.xmi#//@nodes.0"}));
}

TEST_F(ModelSetTest, ListsKeepTheOrderOfTheirFile) {
    write("model/b.xmi", "", R"(<nodes xmi:id="x"/><nodes xmi:id="y"/>)");
    write("model/m.xmi", R"(to="b.xmi#x /")",
          R"(<nodes href="c.xmi#/"/><nodes xmi:id="n"><nodes xmi:id="k"/></nodes>
             <nodes href="d.xmi#/"/><nodes xmi:id="o"/><nodes href="e.xmi#/"/>
             <to href="b.xmi#y"/><to href="#n"/><to href="b.xmi#x"/>)");
    for (const char* const each : {"c", "d", "e"}) write(std::string("model/") + each + ".xmi", "");
    EXPECT_EQ(load().front(),
              "model:m.xmi#/ nodes: model:c.xmi#/ model:m.xmi#n model:d.xmi#/ model:m.xmi#o "
              "model:e.xmi#/ to: model:b.xmi#x model:m.xmi#/ model:b.xmi#y model:m.xmi#n "
              "model:b.xmi#x");
}

TEST_F(ModelSetTest, AFileIsLoadedOnceWhateverItsSpelling) {
    tree_.link("model/link.xmi", "a/b.xmi").link("model/folder", "a");
    write("model/a/b.xmi", R"(to="./b.xmi#/ ../a/b.xmi#/")");
    write("model/m.xmi",
          R"(to="a/b.xmi#/ ./a/b.xmi#/ a/../a//b.xmi#/ link.xmi#/ folder/b.xmi#/ a/b%2Exmi#/")");
    const std::string b = " model:a/b.xmi#/";
    EXPECT_EQ(load(),
              (Lines{"model:m.xmi#/ to:" + b + b + b + b + b + b, "model:a/b.xmi#/ to:" + b + b}));
}

/// Symptom: of two files of one name, one stood for both.
TEST_F(ModelSetTest, FilesOfOneNameInDifferentFoldersAreTwoFiles) {
    write("model/m.xmi", R"(to="a/m.xmi#/ b/m.xmi#/ platform:/plugin/a/m.xmi#/ m.xmi#/")");
    write("model/a/m.xmi", R"(to="m.xmi#/ ../m.xmi#/")");
    write("model/b/m.xmi", "");
    write("one/a/m.xmi", "");
    EXPECT_EQ(load(), (Lines{"model:m.xmi#/ to: model:a/m.xmi#/ model:b/m.xmi#/ one:a/m.xmi#/ "
                             "model:m.xmi#/",
                             "model:a/m.xmi#/ to: model:a/m.xmi#/ model:m.xmi#/", "model:b/m.xmi#/",
                             "one:a/m.xmi#/"}));
}

TEST_F(ModelSetTest, WhatCannotBeFoundIsLeftOutAndTold) {
    write("two/both.xmi", "");
    write("one/both.xmi", "");
    tree_.write("secret.xmi", root("Node", ""));
    tree_.link("model/out.xmi", "../secret.xmi");
    tree_.write("model/bad.xmi", "<a");
    write("model/b.xmi", "");
    write("model/m.xmi", R"(to="none.xmi#/ b.xmi#/ b.xmi#y ../secret.xmi#/ out.xmi#/")",
          "\n<nodes href='platform:/plugin/both.xmi#/'/>\n"
          "<type href='http://example.org/b.xmi#/'/><other href='b.xmi#/'/>\n"
          "<core href='bad.xmi#/'/>");
    EXPECT_EQ(
        load(),
        (Lines{"model:m.xmi#/ to: model:b.xmi#/", "model:b.xmi#/",
               "model:m.xmi:1:1: the reference 'none.xmi#/' of Node.to leads to a file that is in "
               "none of the file roots",
               "model:m.xmi:1:1: the reference 'b.xmi#y' of Node.to leads to nothing in "
               "model:b.xmi",
               "model:m.xmi:1:1: the reference '../secret.xmi#/' of Node.to leads to a file that "
               "lies outside of its file root",
               "model:m.xmi:1:1: the reference 'out.xmi#/' of Node.to leads to a file that lies "
               "outside of its file root",
               "model:m.xmi:3:1: the reference 'platform:/plugin/both.xmi#/' of Node.nodes leads "
               "to a file that may be one:both.xmi or two:both.xmi",
               "model:m.xmi:4:1: the reference 'http://example.org/b.xmi#/' of Node.type leads to "
               "a file that is in none of the file roots",
               "model:m.xmi:4:42: the reference 'b.xmi#/' of Node.other leads to "
               "'model:b.xmi#/' of the class Node, which may not stand there",
               "model:m.xmi:5:1: the reference 'bad.xmi#/' of Node.core leads to a file that "
               "cannot be read: model:bad.xmi:1:1: unclosed token"}));
}

TEST_F(ModelSetTest, FindingsSayWhatWasLostAndWhereItWasLookedFor) {
    write("model/m.xmi", R"(to="platform:/plugin/a/b%20c.xmi#x")", "<nodes href='n.xmi#/'/>");
    ModelSet set(roots());
    set.load("m.xmi");
    ASSERT_EQ(set.findings().size(), 2U);
    const Finding& reference = set.findings().kept().front();
    EXPECT_EQ(reference.reason, Finding::Reason::MissingFile);
    EXPECT_EQ(reference.weight, Finding::Weight::LinkLost);
    EXPECT_EQ(reference.element, "/");
    EXPECT_EQ(reference.tried, (Lines{"one:a/b c.xmi", "two:a/b c.xmi", "model:**/a/b c.xmi",
                                      "one:**/a/b c.xmi", "two:**/a/b c.xmi"}));
    EXPECT_EQ(reference.property, "Node.to");
    EXPECT_EQ(set.findings().kept().back().weight, Finding::Weight::ContentsLost);
    EXPECT_EQ(set.findings().kept().back().tried, Lines{"model:n.xmi"});
}

TEST_F(ModelSetTest, ElementsAreContainedAcrossFilesOnce) {
    write("model/m.xmi", "",
          "<nodes href='a.xmi#/'/>\n<core href='a.xmi#/'/><nodes href='b.xmi#x'/>");
    write("model/a.xmi", "", "<core href='b.xmi#/'/>");
    write("model/b.xmi", "", "<nodes xmi:id='x'/>");
    EXPECT_EQ(load(),
              (Lines{"model:m.xmi#/ nodes: model:a.xmi#/", "model:a.xmi#/ core: model:b.xmi#/",
                     "model:b.xmi#/ nodes: model:b.xmi#x", "model:b.xmi#x",
                     "model:m.xmi:3:1: the reference 'a.xmi#/' of Node.core leads to "
                     "'model:a.xmi#/', which 'model:m.xmi#/' contains already",
                     "model:m.xmi:3:23: the reference 'b.xmi#x' of Node.nodes leads to "
                     "'model:b.xmi#x', which 'model:b.xmi#/' contains already"}));
}

TEST_F(ModelSetTest, NoElementContainsItselfByWayOfOtherFiles) {
    write("model/m.xmi", "", "<nodes xmi:id='n'><nodes href='a.xmi#/'/></nodes>");
    write("model/a.xmi", "", "<nodes href='b.xmi#/'/>");
    write("model/b.xmi", "", "<nodes href='m.xmi#/'/>");
    const Lines lines = load();
    ASSERT_EQ(lines.size(), 5U);
    EXPECT_EQ(lines.back(),
              "model:b.xmi:2:1: the reference 'm.xmi#/' of Node.nodes leads to 'model:m.xmi#/', "
              "inside which 'model:b.xmi#/' stands itself");
}

/// A path that ends where another file's element is contained leads to that element.
TEST_F(ModelSetTest, PathsLeadThroughContainedFiles) {
    write("model/m.xmi", R"(type="//@nodes.1" to="//@nodes.0 //@nodes.1")",
          "<nodes/><nodes href='a.xmi#/'/>");
    write("model/a.xmi", "");
    EXPECT_EQ(load().front(),
              "model:m.xmi#/ nodes: model:m.xmi#//@nodes.0 model:a.xmi#/ to: "
              "model:m.xmi#//@nodes.0 model:a.xmi#/ type: model:a.xmi#/");
}

TEST_F(ModelSetTest, SingleValuesAreSetOnce) {
    write("model/m.xmi", R"(type="a.xmi#/")", "<type href='b.xmi#/'/>");
    write("model/a.xmi", "");
    write("model/b.xmi", "");
    EXPECT_EQ(load(), (Lines{"model:m.xmi#/ type: model:a.xmi#/", "model:a.xmi#/", "model:b.xmi#/",
                             "model:m.xmi:2:1: the reference 'b.xmi#/' of Node.type is one value "
                             "more, and the property holds one"}));
}

TEST_F(ModelSetTest, LoadingAddsToWhatIsLoaded) {
    write("model/m.xmi", R"(to="a.xmi#/")");
    write("model/a.xmi", "");
    write("model/n.xmi", "", "<core href='m.xmi#/'/><type href='a.xmi#/'/>");
    ModelSet set(roots());
    const LoadedModel& first = set.load("m.xmi");
    EXPECT_EQ(&set.load("./m.xmi"), &first);
    EXPECT_EQ(set.fileCount(), 2U);
    set.load("n.xmi");
    EXPECT_EQ(describe(set), (Lines{"model:m.xmi#/ to: model:a.xmi#/", "model:a.xmi#/",
                                    "model:n.xmi#/ core: model:m.xmi#/ type: model:a.xmi#/"}));
}

TEST_F(ModelSetTest, AFileThatCannotBeLoadedLeavesTheSetAsItWas) {
    write("model/m.xmi", "");
    tree_.write("model/bad.xmi", "<a");
    ModelSet set(roots());
    EXPECT_EQ(errorOf([&] { set.load("none.xmi"); }), "none.xmi: is in none of the file roots");
    EXPECT_EQ(errorOf([&] { set.load("../secret.xmi"); }),
              "../secret.xmi: lies outside of its file root");
    EXPECT_EQ(errorOf([&] { set.load("bad.xmi"); }), "model:bad.xmi:1:1: unclosed token");
    EXPECT_EQ(set.fileCount(), 0U);
    write("model/bad.xmi", "");
    set.load("bad.xmi");
    set.load("m.xmi");
    EXPECT_EQ(describe(set), (Lines{"model:bad.xmi#/", "model:m.xmi#/"}));
    EXPECT_TRUE(set.address(ModelElement()).empty());
    for (const char* const other :
         {"", "model:m.xmi", "m.xmi#/", "other:m.xmi#/", "model:x.xmi#/", "model:m.xmi#x"}) {
        EXPECT_FALSE(set.find(other)) << other;
    }
}

TEST_F(ModelSetTest, LimitsHoldForTheWholeSet) {
    write("model/m.xmi", R"(to="a.xmi#/ b.xmi#/")", "<nodes/>");
    write("model/a.xmi", "", "<nodes/>");
    write("model/b.xmi", "");
    EXPECT_EQ(load(limitsOf(2, 100)).back(),
              "model:m.xmi:1:1: the reference 'b.xmi#/' of Node.to leads to a file that cannot be "
              "read: model:b.xmi: the model has more than 2 files");
    EXPECT_EQ(load(limitsOf(100, 4)).back(),
              "model:m.xmi:1:1: the reference 'b.xmi#/' of Node.to leads to a file that cannot be "
              "read: model:b.xmi: the model has more than 4 elements");
    EXPECT_EQ(load(limitsOf(3, 5)).size(), 5U);
}

TEST_F(ModelSetTest, ACircleOfManyFilesIsLoaded) {
    constexpr int count = 300;
    const auto name = [](int number) { return "f" + std::to_string(number) + ".xmi"; };
    for (int i = 0; i < count; ++i) {
        write("model/" + name(i), "type='" + name((i + 1) % count) + "#/'",
              "<core href='" + name((i + 1) % count) + "#/'/>");
    }
    ModelSet set(roots());
    set.load(name(0));
    EXPECT_EQ(set.fileCount(), 300U);
    ASSERT_EQ(set.findings().size(), 1U);
    EXPECT_EQ(set.findings().kept().front().reason, Finding::Reason::ContainedInItself);
    EXPECT_EQ(set.findings().kept().front().file, "model:" + name(count - 1));
}

TEST_F(ModelSetTest, OnlyGivenFilesAreLoadedOnRequest) {
    write("model/m.xmi", R"(to="a.xmi#/ b.xmi#/")");
    write("model/a.xmi", "");
    write("model/b.xmi", "");
    LoadOptions options;
    options.extent = Extent::Given;
    ModelSet set(roots(), options);
    set.load(std::vector<std::string>{"m.xmi", "model:b.xmi"});
    EXPECT_EQ(describe(set),
              (Lines{"model:m.xmi#/ to: model:b.xmi#/", "model:b.xmi#/",
                     "model:m.xmi:1:1: the reference 'a.xmi#/' of Node.to leads to model:a.xmi, "
                     "which is not loaded"}));
    EXPECT_EQ(set.findings().kept().front().weight, Finding::Weight::Note);
    set.requireComplete();
}

TEST_F(ModelSetTest, AFolderIsLoadedWithAllItsModels) {
    write("model/m.xmi", "");
    write("model/a/b.xmi", "");
    tree_.write("model/readme.txt", "no model");
    tree_.write("model/other.xml", "<x xmlns='urn:x'/>");
    ModelSet set(roots());
    set.loadFolder("model");
    EXPECT_EQ(describe(set), (Lines{"model:a/b.xmi#/", "model:m.xmi#/",
                                    "model:other.xml: is of no metamodel that is found"}));
    EXPECT_EQ(errorOf([&] { set.loadFolder("none"); }), "none: is no file root");
}

TEST_F(ModelSetTest, AFolderOfMetamodelsIsLoadedAsModels) {
    tree_.write("two/q.ecore", package(eClass("A")));
    ModelSet set(roots());
    set.loadFolder("two");
    EXPECT_EQ(describe(set).front(), "two:q.ecore#/ eClassifiers: two:q.ecore#//@eClassifiers.0");
}

TEST_F(ModelSetTest, NamespacesLeadIntoTheFilesOfMetamodels) {
    write("model/m.xmi", R"(other="urn:p#//Other" type="urn:q#//sub")");
    ModelSet set(roots());
    set.load("m.xmi");
    ASSERT_EQ(set.fileCount(), 3U);
    EXPECT_EQ(set.place(1).path, "p.ecore");
    // What metamodels refer to is there as well.
    EXPECT_EQ(set.fileRoots().name(set.place(2).root), "built-in");
    ASSERT_EQ(set.findings().size(), 2U);
    EXPECT_EQ(set.findings().kept().back().text(),
              "model:m.xmi:1:1: the reference 'urn:p#//Other' of Node.other leads to "
              "'model:p.ecore#//@eClassifiers.1' of the class EClass, which may not stand there");
    EXPECT_EQ(set.findings().kept().front().reason, Finding::Reason::MissingFile);
}

TEST_F(ModelSetTest, MetamodelsAreModelsWhoseReferencesLeadIntoEcore) {
    ModelSet set(roots());
    set.load("p.ecore");
    EXPECT_TRUE(set.findings().empty());
    const ModelElement name = set.find("model:p.ecore#//@eClassifiers.0/@eStructuralFeatures.0");
    const ModelElement type =
        access::toElement(access::read(name, name->getClass()->getProperty(u"eType")));
    EXPECT_EQ(set.address(type).text().substr(0, 21), "built-in:Ecore.ecore#");
}

TEST_F(ModelSetTest, ContainersAndContentsAreThoseOfTheWholeModel) {
    write("model/m.xmi", "", "<nodes xmi:id='a'/><nodes href='b.xmi#/'/>");
    write("model/b.xmi", "", "<nodes xmi:id='c'/>");
    ModelSet set(roots());
    set.load("m.xmi");
    const ModelElement m = set.find("model:m.xmi#/");
    const ModelElement b = set.find("model:b.xmi#/");
    EXPECT_EQ(set.container(b), m);
    EXPECT_FALSE(set.container(m));
    EXPECT_EQ(set.contents(m), (std::vector{set.find("model:m.xmi#a"), b}));
    EXPECT_EQ(set.rootElements(), std::vector{m});
    EXPECT_EQ(set.elements().size(), 4U);
    EXPECT_EQ(set.elementCount(), 4U);
    EXPECT_EQ(set.fileOf(b), 1U);
    EXPECT_EQ(set.fileOf(ModelElement()), 2U);
}

TEST_F(ModelSetTest, LookupsAreExplained) {
    write("model/m.xmi", R"(to="a.xmi#x")");
    write("model/a.xmi", "", "<nodes xmi:id='x'/>");
    ModelSet set(roots());
    set.load("m.xmi");
    const ModelSet::Lookup found = set.explain(set.place(0), "a.xmi#x");
    EXPECT_EQ(found.file, "model:a.xmi");
    EXPECT_EQ(found.element, set.find("model:a.xmi#x"));
    EXPECT_TRUE(found.reason.empty());
    EXPECT_EQ(set.explain(set.place(1), "#x").element, found.element);
    const ModelSet::Lookup missing = set.explain(set.place(0), "platform:/plugin/a/n.xmi#x");
    EXPECT_EQ(missing.reason, "leads to a file that is in none of the file roots");
    EXPECT_FALSE(missing.tried.empty());
    EXPECT_EQ(set.explain(set.place(0), "a.xmi#y").reason, "leads to nothing in model:a.xmi");
    EXPECT_EQ(set.fileCount(), 2U);
}

TEST_F(ModelSetTest, IncompleteModelsAreRefusedOnRequest) {
    write("model/m.xmi", "", "<to href='none.xmi#/'/>");
    ModelSet set(roots());
    set.load("m.xmi");
    EXPECT_EQ(errorOf([&] { set.requireComplete(); }),
              "model:m.xmi:2:1: the reference 'none.xmi#/' of Node.to leads to a file that is in "
              "none of the file roots");
}

TEST_F(ModelSetTest, GivenMetamodelsComeFirst) {
    tree_.write("far/given.ecore", package(eClass("Node", reference("only", "Node"))));
    write("model/m.xmi", "only='/'");
    LoadOptions options;
    options.metamodels = {tree_.path("far/given.ecore")};
    ModelSet set(roots(), options);
    set.load("m.xmi");
    EXPECT_EQ(describe(set), Lines{"model:m.xmi#/ only: model:m.xmi#/"});
    options.metamodels = {tree_.path("far/none.ecore")};
    EXPECT_EQ(errorOf([&] { ModelSet(roots(), options); }),
              tree_.path("far/none.ecore") + ": cannot be opened: No such file or directory");
}

TEST_F(ModelSetTest, WrongContentOfAFileIsAFinding) {
    tree_.write("model/m.xmi", root("Node", "", "<nod/><nodes xmi:id='x'/>\n<to href='a.xmi#/'/>"));
    EXPECT_EQ(load(), (Lines{"model:m.xmi#/ nodes: model:m.xmi#x", "model:m.xmi#x",
                             "model:m.xmi:2:1: the class Node has no feature 'nod'",
                             "model:m.xmi:3:1: the reference 'a.xmi#/' of Node.to leads to a file "
                             "that is in none of the file roots"}));
}

TEST_F(ModelSetTest, NumberOfThreadsChangesNothing) {
    const std::string filling(40'000, ' ');
    for (int i = 0; i < 40; ++i) {
        const std::string next = "f" + std::to_string(i * 7 % 40) + ".xmi#/ ";
        const std::string after = "f" + std::to_string(i + 1) + ".xmi#/";
        write("model/f" + std::to_string(i) + ".xmi", "to='" + next + after + "'",
              filling + "<nodes/>");
    }
    const auto loadOn = [&](unsigned threads) {
        LoadOptions options;
        options.threads = threads;
        ModelSet set(roots(), options);
        set.load("f0.xmi");
        return describe(set);
    };
    EXPECT_EQ(loadOn(1), loadOn(2));
    EXPECT_EQ(loadOn(1), loadOn(5));
}

TEST_F(ModelSetTest, IncomingReferencesAreThoseOfAllFiles) {
    write("model/m.xmi", R"(to="b.xmi#/ b.xmi#/")", "<nodes href='b.xmi#/'/>");
    write("model/b.xmi", R"(type="/")");
    ModelSet set(roots());
    set.load("m.xmi");
    const IncomingReferences incoming(set);
    Lines lines;
    for (const IncomingReferences::Reference& each : incoming.of(set.find("model:b.xmi#/"))) {
        lines.push_back(set.address(each.source).text() + " " +
                        text::toUtf8(each.property->getName()));
    }
    EXPECT_EQ(lines, (Lines{"model:m.xmi#/ nodes", "model:m.xmi#/ to", "model:m.xmi#/ to",
                            "model:b.xmi#/ type"}));
    EXPECT_TRUE(incoming.of(set.find("model:m.xmi#/")).empty());
    EXPECT_EQ(incoming.size(), 4U);
}

TEST(ElementAddresses, AreReadBackAsTheyWereWritten) {
    for (const ElementAddress& each :
         {ElementAddress{"model", "a/b.xmi", "//@x.0"}, ElementAddress{"m", "a#b:c.xmi", "x#y:z"},
          ElementAddress{"m", "a\tb", "\n\\"}, ElementAddress{"m", "", ""}}) {
        EXPECT_EQ(ElementAddress::of(each.text()), each) << each.text();
    }
    EXPECT_EQ((ElementAddress{"m", "a#b.xmi", "\t"}.text()), "m:a\\u{23}b.xmi#\\t");
    EXPECT_EQ(ElementAddress().text(), "");
    for (const char* const other : {"", "m", "m:a", ":a#b", "#b", "a#m:b"}) {
        EXPECT_FALSE(ElementAddress::of(other)) << other;
    }
}

}  // namespace
}  // namespace nuv::zero::xmi::test
