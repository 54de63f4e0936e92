#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "tests/xmi/ReaderFixture.h"
#include "xmi/BuiltInEcore.h"
#include "xmi/MetamodelSet.h"
#include "xmi/TextFiles.h"

namespace nuv::zero::xmi::test {
namespace {

/// A package of any name and namespace.
std::string packageOf(const std::string& name, const std::string& nsUri,
                      const std::string& inside) {
    return R"(<ecore:EPackage xmi:version="2.0" xmlns:xmi="http://www.omg.org/XMI")"
           R"( xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance")"
           R"( xmlns:ecore="http://www.eclipse.org/emf/2002/Ecore" name=")" +
           name + R"(" nsURI=")" + nsUri + "\">\n" + inside + "</ecore:EPackage>";
}

struct MetamodelSets : testing::Test {
    MetamodelSets& file(const std::string& path, std::string text) {
        files->add(path, std::move(text));
        return *this;
    }
    MetamodelSet& set() {
        if (made == nullptr) {
            roots.add("m", files);
            made = std::make_unique<MetamodelSet>(roots, ReadOptions(), aliases);
        }
        return *made;
    }
    bool provides(const std::string& nsUri, const std::string& location = {},
                  const std::string& from = "x.xmi") {
        return set().provide(nsUri, location, {0, from});
    }
    Lines findings() {
        Lines lines;
        for (const Finding& each : set().takeFindings()) {
            lines.push_back(std::string(nameOf(each.reason)) + " " + each.text());
        }
        return lines;
    }
    std::string place(const std::string& nsUri) {
        const auto found = set().placeOf(nsUri);
        return found ? std::to_string(found->place.root) + ":" + found->place.path + "#" +
                           found->fragment
                     : "nowhere";
    }

    std::shared_ptr<TextFiles> files = std::make_shared<TextFiles>("texts");
    FileRoots roots;
    NamespaceAliases aliases;
    std::unique_ptr<MetamodelSet> made;
};

TEST_F(MetamodelSets, NamespaceIsFoundInWhateverFileDeclaresIt) {
    file("other/a.ecore", packageOf("a", "urn:a", eClass("A")));
    file("b.ecore",
         packageOf("b", "urn:b",
                   R"(<eSubpackages name="c" nsURI='urn:c'>)" + eClass("C") + "</eSubpackages>"));
    EXPECT_TRUE(provides("urn:c"));
    EXPECT_EQ(describe(set().loaded()), (Lines{"b::c::C"}));
    EXPECT_TRUE(provides("urn:a"));
    EXPECT_EQ(describe(set().loaded()), (Lines{"b::c::C", "a::A"}));
    EXPECT_FALSE(provides("urn:d"));
    EXPECT_EQ(findings(), Lines{});
    EXPECT_EQ(place("urn:a"), "0:other/a.ecore#/");
    EXPECT_EQ(place("urn:c"), "0:b.ecore#//@eSubpackages.0");
    EXPECT_EQ(place("urn:d"), "nowhere");
}

TEST_F(MetamodelSets, SchemaLocationComesBeforeTheSearch) {
    file("a.ecore", packageOf("a", "urn:a", eClass("Near")));
    file("far/b.ecore", packageOf("a", "urn:a", eClass("Located")));
    EXPECT_TRUE(provides("urn:a", "far/b.ecore#/"));
    EXPECT_EQ(describe(set().loaded()), (Lines{"a::Located"}));
}

TEST_F(MetamodelSets, LocationThatLeadsNowhereIsNoMatter) {
    file("a.ecore", packageOf("a", "urn:a", eClass("A")));
    EXPECT_TRUE(provides("urn:a", "java://org.a.APackage"));
    EXPECT_EQ(findings(), Lines{});
}

TEST_F(MetamodelSets, NearestFileCountsAndAnotherThatDiffersIsTold) {
    file("1/a.ecore", packageOf("a", "urn:a", eClass("One")));
    file("2/a.ecore", packageOf("a", "urn:a", eClass("Two")));
    EXPECT_TRUE(provides("urn:a", {}, "2/x.xmi"));
    EXPECT_EQ(describe(set().loaded()), (Lines{"a::Two"}));
    EXPECT_EQ(findings(),
              (Lines{"metamodel-twice m:1/a.ecore: defines the namespace 'urn:a' otherwise than "
                     "m:2/a.ecore, which counts"}));
}

TEST_F(MetamodelSets, SameMetamodelTwiceIsNoMatter) {
    file("1/a.ecore", packageOf("a", "urn:a", eClass("A")));
    file("2/a.ecore", packageOf("a", "urn:a", eClass("A")));
    EXPECT_TRUE(provides("urn:a"));
    EXPECT_EQ(describe(set().loaded()), (Lines{"a::A"}));
    EXPECT_EQ(findings(), Lines{});
}

TEST_F(MetamodelSets, MetamodelBringsThoseThatItRefersTo) {
    file("p/a.ecore", packageOf("a", "urn:a",
                                eClass("A", reference("b", "ecore:EClass ../q/b.ecore#//B") +
                                                reference("c", "ecore:EClass urn:c#//C"))));
    file("q/b.ecore",
         packageOf("b", "urn:b", eClass("B", reference("a", "ecore:EClass ../p/a.ecore#//A"))));
    file("c.ecore", packageOf("c", "urn:c", eClass("C")));
    EXPECT_TRUE(provides("urn:a"));
    EXPECT_EQ(describe(set().loaded()),
              (Lines{"a::A", "  b: b::B association", "  c: c::C association", "b::B",
                     "  a: a::A association", "c::C"}));
}

TEST_F(MetamodelSets, TwoFilesOfOneNameAreTwoMetamodels) {
    // `platform:/plugin/b/m.ecore` meant the first file called m.ecore, whatever its folder.
    file("a/m.ecore", packageOf("a", "urn:a", eClass("Same")));
    file("b/m.ecore", packageOf("b", "urn:b", eClass("Same")));
    file("c.ecore",
         packageOf("c", "urn:c",
                   eClass("C", reference("r", "ecore:EClass platform:/plugin/b/m.ecore#//Same"))));
    EXPECT_TRUE(provides("urn:a"));
    EXPECT_TRUE(provides("urn:c"));
    EXPECT_EQ(describe(set().loaded()),
              (Lines{"a::Same", "c::C", "  r: b::Same association", "b::Same"}));
}

TEST_F(MetamodelSets, LaterMetamodelsExtendEarlierOnesThatStayAsTheyAre) {
    file("a.ecore", packageOf("a", "urn:a", eClass("A", attribute("n"))));
    file("b.ecore", packageOf("b", "urn:b",
                              eClass("B", reference("a", "ecore:EClass a.ecore#//A"),
                                     R"(eSuperTypes="a.ecore#//A")")));
    EXPECT_TRUE(provides("urn:a"));
    const meta::Class before = set().loaded().findClass("urn:a", "A");
    EXPECT_TRUE(provides("urn:b"));
    EXPECT_EQ(set().loaded().findClass("urn:a", "A"), before);
    EXPECT_EQ(describe(set().loaded()),
              (Lines{"a::A", "  n: String", "b::B < a::A", "  a: a::A association"}));
}

TEST_F(MetamodelSets, WhatIsNotThereIsLeftOpenAndTold) {
    file("a.ecore", packageOf("a", "urn:a",
                              eClass("A", reference("b", "ecore:EClass gone.ecore#//B"),
                                     R"(eSuperTypes="gone.ecore#//C")")));
    EXPECT_TRUE(provides("urn:a"));
    EXPECT_EQ(describe(set().loaded()), (Lines{"a::A", "  b: ModelElement association"}));
    EXPECT_EQ(findings(),
              (Lines{"no-metamodel-file m:a.ecore: refers to the metamodel 'gone.ecore', which is "
                     "not found; its types are taken for any element"}));
}

TEST_F(MetamodelSets, FileThatCannotBeReadIsToldAndTheOthersAreThere) {
    file("a.ecore",
         packageOf("a", "urn:a", eClass("A", reference("b", "ecore:EClass b.ecore#//B"))));
    file("b.ecore", packageOf("b", "urn:b", eClass("B", reference("r", "Nothing"))));
    EXPECT_TRUE(provides("urn:a"));
    EXPECT_FALSE(provides("urn:b"));
    EXPECT_EQ(describe(set().loaded()), (Lines{"a::A", "  b: ModelElement association"}));
    EXPECT_EQ(findings(), (Lines{"unreadable-file m:b.ecore:2:49: cannot be read as a metamodel: "
                                 "the reference '#//Nothing' leads to nothing in this file"}));
}

TEST_F(MetamodelSets, FileThatIsNotWellFormedIsTold) {
    file("a.ecore", "<a nsURI='urn:a'>");
    EXPECT_FALSE(provides("urn:a"));
    const Lines told = findings();
    ASSERT_EQ(told.size(), 1U);
    EXPECT_TRUE(told.front().starts_with("unreadable-file m:a.ecore")) << told.front();
}

TEST_F(MetamodelSets, EcoreNeedsNoFile) {
    EXPECT_TRUE(provides(std::string(ecoreNamespace)));
    const meta::Class type = set().loaded().findClass(ecoreNamespace, "EReference");
    ASSERT_TRUE(type);
    EXPECT_TRUE(type->getProperty(u"eOpposite"));
    EXPECT_EQ(place(std::string(ecoreNamespace)), "1:Ecore.ecore#/");
}

TEST_F(MetamodelSets, ClassesOfEcoreAreWholeWhereAnotherMetamodelRefersToThem) {
    file("a.ecore",
         packageOf(
             "a", "urn:a",
             eClass("A", {}, R"(eSuperTypes="platform:/plugin/e/model/Ecore.ecore#//EClass")")));
    EXPECT_TRUE(provides("urn:a"));
    EXPECT_TRUE(set().loaded().findClass("urn:a", "A")->getProperty(u"eStructuralFeatures"));
    EXPECT_EQ(findings(), Lines{});
}

TEST_F(MetamodelSets, AliasLeadsToAnotherNamespace) {
    file("a.ecore", packageOf("a", "urn:a:2", eClass("A")));
    aliases.add("urn:a:1", "urn:a:2");
    EXPECT_TRUE(provides("urn:a:1"));
    EXPECT_EQ(set().loaded().findClass("urn:a:1", "A"), set().loaded().findClass("urn:a:2", "A"));
    EXPECT_EQ(place("urn:a:1"), "0:a.ecore#/");
}

TEST_F(MetamodelSets, AliasesInACircleEnd) {
    aliases.add("urn:a", "urn:b").add("urn:b", "urn:a");
    EXPECT_FALSE(provides("urn:a"));
}

TEST_F(MetamodelSets, BuiltInAliasServesWhereTheNamespaceItselfIsNotFound) {
    file("uml.ecore", packageOf("uml", "http://www.eclipse.org/uml2/5.0.0/UML", eClass("Five")));
    EXPECT_TRUE(provides("http://www.omg.org/spec/UML/20131001"));
    EXPECT_TRUE(set().loaded().findClass("http://www.omg.org/spec/UML/20131001", "Five"));
}

TEST_F(MetamodelSets, FoundNamespaceComesBeforeABuiltInAlias) {
    file("new.ecore", packageOf("uml", "http://www.eclipse.org/uml2/5.0.0/UML", eClass("Five")));
    file("old.ecore", packageOf("uml", "http://www.eclipse.org/uml2/4.0.0/UML", eClass("Four")));
    EXPECT_TRUE(provides("http://www.eclipse.org/uml2/4.0.0/UML"));
    EXPECT_EQ(describe(set().loaded()), (Lines{"uml::Four"}));
}

TEST_F(MetamodelSets, NamespaceInPlaceOfALocationIsAnAlias) {
    file("a.ecore", packageOf("a", "http://a/2", eClass("A")));
    EXPECT_TRUE(provides("http://a/1", "http://a/2"));
    EXPECT_TRUE(set().loaded().findClass("http://a/1", "A"));
}

TEST_F(MetamodelSets, PackagesInsideProfilesAreFound) {
    const std::string package =
        R"(<contents xmi:type="ecore:EPackage" xmi:id="%" name="P" nsURI="urn:p%">)"
        R"(<eClassifiers xmi:type="ecore:EClass" xmi:id="c%" name="S%">)"
        R"(<eStructuralFeatures xmi:type="ecore:EReference" name="other" eType="c%"/>)"
        R"(</eClassifiers></contents>)";
    const auto version = [&](char number) {
        std::string text = package;
        std::replace(text.begin(), text.end(), '%', number);
        return text;
    };
    file("my.profile.uml",
         R"(<xmi:XMI xmlns:xmi="http://www.omg.org/spec/XMI/20131001" )"
         R"(xmlns:ecore="http://www.eclipse.org/emf/2002/Ecore" xmlns:uml="urn:uml">)"
         R"(<uml:Profile><eAnnotations>)" +
             version('2') + version('1') + "</eAnnotations></uml:Profile></xmi:XMI>");
    EXPECT_TRUE(provides("urn:p2"));
    EXPECT_EQ(describe(set().loaded()), (Lines{"P::S2", "  other: P::S2 association"}));
    EXPECT_EQ(place("urn:p2"), "0:my.profile.uml#//@eAnnotations.0/@contents.0");
    // Models that were not brought up to date ask for an older one.
    EXPECT_TRUE(provides("urn:p1"));
    EXPECT_TRUE(set().loaded().findClass("urn:p1", "S1"));
    EXPECT_EQ(findings(), Lines{});
}

TEST_F(MetamodelSets, ProfileInTheFileThatAsksIsALocationWithoutAPath) {
    file(
        "x.profile.uml",
        R"(<xmi:XMI xmlns:xmi="http://www.omg.org/spec/XMI/20131001" )"
        R"(xmlns:ecore="http://www.eclipse.org/emf/2002/Ecore">)"
        R"(<p><contents xmi:type="ecore:EPackage" xmi:id="i" name="P" nsURI="urn:p"/></p></xmi:XMI>)");
    EXPECT_TRUE(provides("urn:p", "#i", "x.profile.uml"));
}

TEST_F(MetamodelSets, XmlNamespaceOfAMetamodelIsOneOfItsNamespaces) {
    const std::string root =
        R"(<eClassifiers xsi:type="ecore:EClass" name="Top">)"
        R"(<eAnnotations source="http:///org/eclipse/emf/ecore/util/ExtendedMetaData">)"
        R"(<details key="name" value=""/><details key="kind" value="mixed"/></eAnnotations>)"
        R"(<eStructuralFeatures xsi:type="ecore:EReference" name="a" eType="#//A">)"
        R"(<eAnnotations source="http:///org/eclipse/emf/ecore/util/ExtendedMetaData">)"
        R"(<details key="kind" value="element"/><details key="name" value="a"/>)"
        R"(<details key="namespace" value="urn:xml"/></eAnnotations></eStructuralFeatures>)"
        R"(</eClassifiers>)";
    file("a.ecore", packageOf("a", "urn:a-xmi", root + eClass("A")));
    EXPECT_TRUE(provides("urn:xml"));
    EXPECT_TRUE(set().loaded().findClass("urn:xml", "A"));
}

}  // namespace
}  // namespace nuv::zero::xmi::test
