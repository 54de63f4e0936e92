#include <gtest/gtest.h>

#include "tests/xmi/LenientReader.h"

/// What is wrong inside a file is left out and told, and the rest is read.
namespace nuv::zero::xmi::test {
namespace {

const std::string kinds =
    R"(<eClassifiers xsi:type="ecore:EEnum" name="Kind"><eLiterals name="RED"/>
       <eLiterals name="DARK_BLUE" literal="dark blue"/></eClassifiers>)";

LoadedMetamodel nodesOfManyFeatures() {
    return metamodelOf(
        eClass("Named", attribute("name"), R"(abstract="true")") +
        eClass("Node",
               attribute("key", "EString", R"(iD="true")") + attribute("size", "EInt") +
                   attribute("sizes", "EInt", many) + attribute("on", "EBoolean") +
                   attribute("kind", "#//Kind") + reference("nodes", "Node", contents) +
                   reference("one", "Node", containment) +
                   reference("two", "Node", R"(containment="true" upperBound="2")") +
                   reference("named", "Named", contents) + reference("to", "Node") +
                   reference("all", "Node", many) + reference("few", "Node", R"(upperBound="2")"),
               R"(eSuperTypes="#//Named")") +
        eClass("Other") + kinds);
}

struct InFile : testing::Test {
    LenientRead read(const std::string& text) { return readLeniently(metamodel, text); }
    LoadedMetamodel metamodel = nodesOfManyFeatures();
};

TEST_F(InFile, SubtreesThatMeanNothingAreLeftOutAndCounted) {
    const LenientRead r = read(root("Node", "name='r'",
                                    "<bad><a/><b><c/></b>text</bad>\n"
                                    "<nodes xsi:type='p:Nobody'><nodes/></nodes>\n"
                                    "<named><x/></named>\n"
                                    "<q:x xmlns:q='urn:q'/>\n"
                                    "<nodes xsi:type='q:X' name='q'/>\n"
                                    "<nodes name='kept'/>"));
    EXPECT_EQ(describe(r.model),
              (Lines{"/ Node name='r' nodes=[//@nodes.2]", "//@nodes.2 Node name='kept'"}));
    EXPECT_EQ(
        told(r.findings),
        (Lines{"contents-lost unknown-feature at 2:1 in /, lost 4: the class Node has no feature "
               "'bad'",
               "contents-lost unknown-class at 3:1 in /, lost 2: the package 'urn:p' has no class "
               "'Nobody'",
               "contents-lost abstract-class at 4:1 in /, lost 2: the class Named is abstract, so "
               "the type of the element is missing (xsi:type)",
               "contents-lost unknown-feature at 5:1 in /, lost 1: no given metamodel has the "
               "namespace 'urn:q' of the element 'x'",
               "contents-lost unknown-class at 6:1 in /, lost 1: the prefix of the type 'q:X' is "
               "not declared"}));
    EXPECT_EQ(r.unknownNamespaces, Lines{"urn:q"});
    EXPECT_EQ(r.findings.ofWeight(Finding::Weight::ContentsLost), 5U);
}

TEST_F(InFile, PathsCountWhatIsLeftOut) {
    const LenientRead r = read(root("Node", "to='//@nodes.2' all='//@nodes.1 //@nodes.0/@nodes.0'",
                                    "<nodes xsi:type='p:Nobody'><nodes/></nodes><nodes name='b'/>"
                                    "<nodes name='c'/>"));
    EXPECT_EQ(describe(r.model).front(),
              "/ Node nodes=[//@nodes.1 //@nodes.2] to=//@nodes.2 all=[//@nodes.1]");
    EXPECT_EQ(r.model.find("//@nodes.2"), r.model.elements()[2]);
    EXPECT_FALSE(r.model.find("//@nodes.0"));
    EXPECT_EQ(told(r.findings).front(),
              "link-lost missing-element at 1:1 in / of Node.all: the reference "
              "'//@nodes.0/@nodes.0' of Node.all leads to nothing in this file");
}

TEST_F(InFile, RootsKeepTheirNumbers) {
    const LenientRead r = read(roots("<p:Node name='a'/><p:Nobody/><p:Node to='/0'/>"));
    EXPECT_EQ(describe(r.model), (Lines{"/0 Node name='a'", "/2 Node to=/0"}));
    EXPECT_EQ(r.model.find("/2"), r.model.roots().back());
    EXPECT_FALSE(r.model.find("/1"));
    const LenientRead one = read(roots("<p:Nobody/><p:Node/>"));
    EXPECT_EQ(describe(one.model), Lines{"/1 Node"});
    EXPECT_EQ(one.model.find("/1"), one.model.roots().front());
}

TEST_F(InFile, AttributesAndValuesAreLeftOutOneByOne) {
    const LenientRead r =
        read(root("Node", "name='r' bad='1' size='x' sizes='1 y 3' on='yes' kind='PURPLE'",
                  "<size>4</size><size>5</size><name><b/><c/></name>text<nodes "
                  "kind='dark blue' on='true'/><nodes kind='DARK_BLUE'/>"));
    EXPECT_EQ(
        describe(r.model),
        (Lines{"/ Node name='r' size=4 sizes=[1 3] nodes=[//@nodes.0 //@nodes.1]",
               "//@nodes.0 Node on='true' kind='dark blue'", "//@nodes.1 Node kind='DARK_BLUE'"}));
    EXPECT_EQ(
        told(r.findings),
        (Lines{
            "link-lost unknown-feature at 1:1 in /: the class Node has no feature 'bad'",
            "value-wrong wrong-value at 1:1 in / of Node.size: the value 'x' of Node.size is no "
            "integer",
            "value-wrong wrong-value at 1:1 in / of Node.sizes: the value 'y' of Node.sizes is "
            "no integer",
            "value-wrong wrong-value at 1:1 in / of Node.on: the value 'yes' of Node.on is none "
            "of its type ecore::EBoolean",
            "value-wrong wrong-value at 1:1 in / of Node.kind: the value 'PURPLE' of Node.kind "
            "is none of its type p::Kind",
            "value-wrong wrong-value at 1:1 in /: the element 'Node' holds text where elements "
            "are expected",
            "value-wrong too-many-values at 2:15 in / of Node.size: Node.size holds one value, "
            "and the file gives two",
            "value-wrong wrong-value at 2:29 in / of Named.name, lost 1: the value of Named.name "
            "is no text"}));
}

/// Symptom: a signal's value PURPLE was accepted where the type has three others.
TEST_F(InFile, WrongValuesAreErrorsWhereNobodyTakesFindings) {
    EXPECT_EQ(modelError(metamodel, root("Node", "kind='PURPLE'")),
              "m.xmi:1:1: the value 'PURPLE' of Node.kind is none of its type p::Kind");
    EXPECT_EQ(modelError(metamodel, root("Node", "", "<on>2</on>")),
              "m.xmi:2:1: the value '2' of Node.on is none of its type ecore::EBoolean");
}

TEST_F(InFile, ContentsThatDoNotFitAreNotMade) {
    const LenientRead r = read(root("Node", "",
                                    "<one/>\n<one><nodes/></one>\n<nodes xsi:type='p:Other'/>\n"
                                    "<two/><two/>\n<two/>\n<to><nodes/></to>"));
    EXPECT_EQ(r.model.elements().size(), 4U);
    EXPECT_EQ(
        told(r.findings),
        (Lines{"contents-lost too-many-values at 3:1 in / of Node.one, lost 2: Node.one holds one "
               "value, and the file gives two",
               "contents-lost no-fit at 4:1 in / of Node.nodes, lost 1: an element of the class "
               "Other may not stand in Node.nodes",
               "contents-lost too-many-values at 6:1 in / of Node.two, lost 1: Node.two holds at "
               "most 2 values",
               "contents-lost no-fit at 7:1 in / of Node.to, lost 1: Node.to refers to elements "
               "and does not contain them"}));
}

TEST_F(InFile, ReferencesAreLeftOutOneByOne) {
    const LenientRead r =
        read(roots("<p:Node all='/1 nobody /2 /0' few='/0 /0 /0' to='/0 /2'/>"
                   "<p:Other/><p:Node all='o.xmi#k'/>"));
    EXPECT_EQ(describe(r.model).front(), "/0 Node to=/0 all=[/2 /0] few=[/0 /0]");
    EXPECT_EQ(r.outgoing.size(), 1U);
    Lines lines = told(r.findings);
    for (std::string& each : lines) each = each.substr(0, each.find(" at "));
    EXPECT_EQ(lines, (Lines{"link-lost no-fit", "link-lost missing-element",
                            "link-lost too-many-values", "link-lost too-many-values"}));
    EXPECT_EQ(r.findings.kept()[1].reference, "nobody");
    EXPECT_EQ(r.findings.kept()[1].lookedUpBy, "same file");
}

/// Symptom: a file was refused for two equal ids that nothing referred to.
TEST_F(InFile, IdsThatSeveralShareAreWarnedOf) {
    const LenientRead r = read(root("Node", "",
                                    "<nodes xmi:id='x'/>\n<nodes xmi:id='x'/>\n<nodes xmi:id='x'/>"
                                    "<nodes key='k'/>\n<nodes key='k' xmi:id='y'/>"));
    EXPECT_EQ(told(r.findings),
              (Lines{"warning duplicate-id at 3:1 in //@nodes.1, other m.xmi:2:1: the id 'x' is "
                     "given to several elements",
                     "warning duplicate-id at 5:1 in y, other m.xmi:4:20: the id 'k' is given to "
                     "several elements"}));
    EXPECT_EQ(r.model.identity(r.model.elements()[1]), "//@nodes.0");
    EXPECT_FALSE(r.model.find("x"));
    EXPECT_TRUE(r.model.lookUp("x").isAmbiguous);
    EXPECT_FALSE(r.model.lookUp("nobody").isAmbiguous);
}

TEST_F(InFile, WhoRefersToASharedIdIsToldInstead) {
    const LenientRead r = read(root("Node", "to='x'", "<nodes xmi:id='x'/>\n<nodes xmi:id='x'/>"));
    EXPECT_EQ(told(r.findings),
              Lines{"link-lost ambiguous-element at 1:1 in / of Node.to: the reference 'x' of "
                    "Node.to is the id of several elements"});
}

TEST_F(InFile, AnXmiIdOfOneComesBeforeASharedValue) {
    const LenientRead r = read(
        root("Node", "to='k'", "<nodes key='k'/><nodes key='k'/><nodes xmi:id='k' name='n'/>"));
    EXPECT_EQ(told(r.findings), Lines{});
    EXPECT_EQ(describe(r.model).front(), "/ Node nodes=[//@nodes.0 //@nodes.1 k] to=k");
}

TEST_F(InFile, ElementsAreContainedOnceAndNotInThemselves) {
    const LenientRead r =
        read(roots("<p:Node xmi:id='a'><nodes href='#b'/><nodes href='#c'/>\n"
                   "<nodes href='#b'/></p:Node>\n"
                   "<p:Node xmi:id='b'><one href='#a'/><nodes xmi:id='c'/>"
                   "</p:Node>"));
    EXPECT_EQ(describe(r.model).front(), "a Node nodes=[b]");
    EXPECT_EQ(r.model.container(r.model.find("b")), r.model.find("a"));
    EXPECT_EQ(
        told(r.findings),
        (Lines{"contents-lost contained-twice at 2:38 in a of Node.nodes, other m.xmi:4:1: the "
               "reference '#c' of Node.nodes leads to what 'b' contains already",
               "contents-lost contained-twice at 3:1 in a of Node.nodes, other m.xmi:2:1: the "
               "reference '#b' of Node.nodes leads to what 'a' contains already",
               "contents-lost contained-in-itself at 4:20 in b of Node.one, other m.xmi:2:1: the "
               "reference '#a' of Node.one leads to an element inside which it stands itself"}));
}

TEST_F(InFile, FilesWithNothingInThemAreRefused) {
    const LenientRead r = read("<q:A xmlns:q='urn:q'><b/></q:A>");
    EXPECT_EQ(r.error, "m.xmi:1:1: no given metamodel has the namespace 'urn:q' of the class 'A'");
    EXPECT_EQ(r.unknownNamespaces, Lines{"urn:q"});
    EXPECT_EQ(read(roots("")).error, "m.xmi:1:1: the file holds no element of a model");
    EXPECT_EQ(read("<a>").error, "m.xmi:1:4: no XML element found");
}

TEST_F(InFile, LimitsAreNoFindings) {
    ReadOptions options;
    options.limits.slots = 30;
    const std::string file = "m.xmi";
    const std::string text = root("Node", "", "<bad/>\n<nodes/>\n<nodes/>");
    TextSource source(text);
    Findings findings(10);
    EXPECT_EQ(
        errorOf([&] { XmiBuilder(metamodel, file, source, options).build(nullptr, &findings); }),
        "m.xmi:4:1: the model needs more than 30 places for values");
}

TEST_F(InFile, SoManyAreKeptAndAllAreCounted) {
    const LenientRead r =
        readLeniently(metamodel, root("Node", "", "<bad/>\n<bad/>\n<bad/>\n<bad/>"), 2);
    EXPECT_EQ(r.findings.kept().size(), 2U);
    EXPECT_EQ(r.findings.size(), 4U);
    EXPECT_EQ(r.findings.kept()[1].position.line, 3U);
}

}  // namespace
}  // namespace nuv::zero::xmi::test
