#include <gtest/gtest.h>

#include "model/memory/ModelAccess.h"
#include "tests/xmi/ReaderFixture.h"

namespace nuv::zero::xmi::test {
namespace {

LoadedMetamodel blocks() {
    return metamodelOf(eClass("Named", attribute("name"), R"(abstract="true")") +
                       eClass("Block",
                              attribute("key", "EString", R"(iD="true")") +
                                  attribute("mass", "EInt") + attribute("tags", "EString", many) +
                                  attribute("sizes", "EInt", many) +
                                  reference("blocks", "Block", contents) +
                                  reference("core", "Block", containment) +
                                  reference("type", "Block") + reference("uses", "Block", many) +
                                  reference("few", "Block", R"(upperBound="2")") +
                                  reference("named", "Named", contents),
                              R"(eSuperTypes="#//Named")") +
                       eClass("Big", {}, R"(eSuperTypes="#//Block")") + eClass("Other"));
}

Lines read(const std::string& text) {
    return describe(modelOf(blocks(), text));
}

TEST(XmiReader, ValuesStandInAttributesOrElements) {
    EXPECT_EQ(read(root("Block", R"(name="a &amp; b" mass=" +5 " tags="x y")",
                        "<tags>x y</tags><sizes>1</sizes><sizes>-2</sizes><mass xsi:nil='true'/>")),
              Lines{"/ Block name='a & b' mass=5 tags=['x' 'y' 'x y'] sizes=[1 -2]"});
}

TEST(XmiReader, UnlimitedIsReadAsMinusOne) {
    EXPECT_EQ(read(root("Block", R"(mass="*")")), Lines{"/ Block mass=-1"});
}

TEST(XmiReader, EmptyValueIsAValue) {
    EXPECT_EQ(read(root("Block", R"(name="")", "<tags></tags>")),
              Lines{"/ Block name='' tags=['']"});
}

TEST(XmiReader, ContentsKeepTheOrderOfTheFile) {
    EXPECT_EQ(read(root("Block", "",
                        R"(<blocks name="a"><core name="c"/></blocks>
                           <core name="d"/>
                           <blocks name="b" xsi:type="p:Big"/>)")),
              (Lines{"/ Block blocks=[//@blocks.0 //@blocks.1] core=//@core",
                     "//@blocks.0 Block name='a' core=//@blocks.0/@core",
                     "//@blocks.0/@core Block name='c'", "//@core Block name='d'",
                     "//@blocks.1 Big name='b'"}));
}

TEST(XmiReader, TypesMayBeGivenInEitherNamespace) {
    EXPECT_EQ(
        read(root("Block", "", R"(<named xmi:type="p:Big"/><named xsi:type="p:Block"/>)")),
        (Lines{"/ Block named=[//@named.0 //@named.1]", "//@named.0 Big", "//@named.1 Block"}));
}

TEST(XmiReader, ReferencesLeadByIdAndByPath) {
    EXPECT_EQ(
        read(root("Block", R"(type="//@blocks.1/@core" uses="k x1 #k //@blocks.0 / #//@core")",
                  R"(<blocks key="k"/><blocks xmi:id="x1"><core/></blocks><core/>)")),
        (Lines{"/ Block blocks=[k x1] core=//@core type=//@blocks.1/@core "
               "uses=[k x1 k k / //@core]",
               "k Block key='k'", "x1 Block core=//@blocks.1/@core", "//@blocks.1/@core Block",
               "//@core Block"}));
}

TEST(XmiReader, ReferencesLeadByNames) {
    EXPECT_EQ(
        read(root("Block", R"(uses="//a/b //a/b.1 //a.b //with%20blank p:Block #//a m.xmi#//a")",
                  R"(<blocks name="a"><blocks name="b"/><core name="b"/></blocks>
                           <blocks name="a.b"/><blocks name="with blank"/>)")),
        (Lines{"/ Block blocks=[//@blocks.0 //@blocks.1 //@blocks.2] "
               "uses=[//@blocks.0/@blocks.0 //@blocks.0/@core //@blocks.1 //@blocks.2 "
               "//@blocks.0 //@blocks.0]",
               "//@blocks.0 Block name='a' blocks=[//@blocks.0/@blocks.0] "
               "core=//@blocks.0/@core",
               "//@blocks.0/@blocks.0 Block name='b'", "//@blocks.0/@core Block name='b'",
               "//@blocks.1 Block name='a.b'", "//@blocks.2 Block name='with blank'"}));
}

TEST(XmiReader, ReferencesMayStandInElements) {
    EXPECT_EQ(read(root("Block", "",
                        R"(<blocks key="k"/><uses href="#k"/><uses xmi:idref="k"/>
                           <uses>//@blocks.0 k</uses><type xmi:type="p:Block" href="#//@blocks.0"/>)")),
              (Lines{"/ Block blocks=[k] type=k uses=[k k k k]", "k Block key='k'"}));
}

TEST(XmiReader, IdOfASingleReferenceMayHoldBlanks) {
    EXPECT_EQ(read(root("Block", R"(type="my key")", R"(<core key="my key"/>)")),
              (Lines{"/ Block core=my key type=my key", "my key Block key='my key'"}));
}

TEST(XmiReader, SeveralRootsAreNumbered) {
    EXPECT_EQ(
        read(roots(R"(<p:Block type="/1/@core"/><p:Big uses="/0 /1"><core/></p:Big>)")),
        (Lines{"/0 Block type=/1/@core", "/1 Big core=/1/@core uses=[/0 /1]", "/1/@core Block"}));
}

TEST(XmiReader, OneRootInsideAWrapperIsASingleRoot) {
    EXPECT_EQ(read(roots("<p:Block><core/></p:Block>")),
              (Lines{"/ Block core=//@core", "//@core Block"}));
}

TEST(XmiReader, ElementsOfXmiAreSkipped) {
    EXPECT_EQ(read(roots(R"(<xmi:Documentation exporter="x"><p:Block/></xmi:Documentation>
                            <p:Block><xmi:Extension><core/><unknown/></xmi:Extension></p:Block>)")),
              Lines{"/ Block"});
}

TEST(XmiReader, OppositeEndsAreNotCompleted) {
    const LoadedMetamodel metamodel =
        metamodelOf(eClass("A", reference("to", "A", R"(eOpposite="#//A/from")") +
                                    reference("from", "A", R"(eOpposite="#//A/to")") +
                                    reference("as", "A", contents)));
    EXPECT_EQ(describe(modelOf(metamodel, root("A", R"(to="//@as.0")", "<as/>"))),
              (Lines{"/ A to=//@as.0 as=[//@as.0]", "//@as.0 A"}));
}

TEST(XmiReader, NamesForXmlAreUnderstood) {
    const std::string writtenAs =
        R"(<eAnnotations source="http:///org/eclipse/emf/ecore/util/ExtendedMetaData">
           <details key="name" value="item"/></eAnnotations>)";
    const LoadedMetamodel metamodel = metamodelOf(
        R"(<eClassifiers xsi:type="ecore:EClass" name="A"><eStructuralFeatures xsi:type="ecore:EReference"
            name="items" eType="#//A" containment="true" upperBound="-1">)" +
        writtenAs + "</eStructuralFeatures></eClassifiers>");
    EXPECT_EQ(describe(modelOf(metamodel, root("A", "", "<item/><item/>"))),
              (Lines{"/ A items=[//@items.0 //@items.1]", "//@items.0 A", "//@items.1 A"}));
}

TEST(XmiReader, MetamodelIsAModelOfEcore) {
    const std::string ecore =
        R"(<ecore:EPackage xmlns:xmi="http://www.omg.org/XMI" xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance"
           xmlns:ecore="http://www.eclipse.org/emf/2002/Ecore" name="ecore"
           nsURI="http://www.eclipse.org/emf/2002/Ecore">)" +
        eClass("EPackage", attribute("name", "#//EString") + attribute("nsURI", "#//EString") +
                               reference("eClassifiers", "EClass", contents)) +
        eClass("EClass",
               attribute("name", "#//EString") + reference("eSuperTypes", "EClass", many)) +
        R"(<eClassifiers xsi:type="ecore:EDataType" name="EString" instanceClassName="java.lang.String"/>
           </ecore:EPackage>)";
    const LoadedMetamodel metamodel = EcoreReader().addText("Ecore.ecore", ecore).read();
    const std::string model = package(
        eClass("A", {}, R"(eSuperTypes="urn:p#//B ecore:EClass other.ecore#//C")") + eClass("B"));
    const LoadedModel loaded = XmiReader(metamodel).readText("p.ecore", model);
    EXPECT_EQ(describe(loaded),
              (Lines{"/ EPackage name='p' nsURI='urn:p' "
                     "eClassifiers=[//@eClassifiers.0 //@eClassifiers.1]",
                     "//@eClassifiers.0 EClass name='A' eSuperTypes=[//@eClassifiers.1]",
                     "//@eClassifiers.1 EClass name='B'"}));
    EXPECT_EQ(loaded.leftOut(), 1U);

    ReadOptions strict;
    strict.crossFile = CrossFile::Refuse;
    EXPECT_EQ(modelError(metamodel, model, strict),
              "m.xmi:2:1: the reference 'other.ecore#//C' of EClass.eSuperTypes leads into another "
              "file");
}

TEST(XmiReader, ReferencesIntoOtherFilesAreLeftOutOnRequest) {
    ReadOptions options;
    options.crossFile = CrossFile::LeaveOut;
    const LoadedModel model = modelOf(blocks(),
                                      root("Block", R"(uses="o.xmi#k k" type="//@blocks.0")",
                                           R"(<blocks href="o.xmi#//@x"/><blocks key="k"/>)"),
                                      options);
    EXPECT_EQ(describe(model), (Lines{"/ Block blocks=[k] uses=[k]", "k Block key='k'"}));
    EXPECT_EQ(model.leftOut(), 3U);
    EXPECT_EQ(model.path(model.elements()[1]), "//@blocks.1");
}

/// Symptom: two elements had one path, because the file called their feature by two names.
TEST(XmiReader, ContentsOfOneFeatureKeepTheirOrderUnderTwoNames) {
    const std::string writtenAs =
        R"(<eAnnotations source="http:///org/eclipse/emf/ecore/util/ExtendedMetaData">
           <details key="name" value="item"/></eAnnotations>)";
    const LoadedMetamodel metamodel = metamodelOf(
        R"(<eClassifiers xsi:type="ecore:EClass" name="A">)" + reference("others", "A", contents) +
        R"(<eStructuralFeatures xsi:type="ecore:EReference"
            name="items" eType="#//A" containment="true" upperBound="-1">)" +
        writtenAs + "</eStructuralFeatures>" + attribute("name") + "</eClassifiers>");
    const LoadedModel model =
        modelOf(metamodel, root("A", "",
                                "<item name='1'/><others name='2'/><items name='3'/>"
                                "<item name='4'><items name='5'/></item><others name='6'/>"));
    EXPECT_EQ(describe(model).front(),
              "/ A others=[//@others.0 //@others.1] items=[//@items.0 //@items.1 //@items.2]");
    EXPECT_EQ(model.path(model.elements()[1]), "//@items.0");
}

/// Long files are read in pieces.
TEST(XmiReader, ErrorsInLongFilesNameTheLine) {
    std::string children;
    for (int i = 0; i < 20'000; ++i) children += "<blocks name='\u00E9'/>\n";
    EXPECT_EQ(modelError(blocks(), root("Block", "", children + "  <blok/>")),
              "m.xmi:20002:3: the class Block has no feature 'blok'");
    EXPECT_EQ(
        modelError(blocks(), root("Block", "", children + "<!-- \u00E9 --> <core type='x'/>")),
        "m.xmi:20002:12: the reference 'x' of Block.type leads to nothing in this file");
}

/// A start tag longer than several pieces.
TEST(XmiReader, LongListsOfReferencesAreReadWhole) {
    std::string uses;
    for (int i = 0; i < 50'000; ++i) uses += i % 2 == 0 ? "//@core " : "/ ";
    const LoadedModel model = modelOf(blocks(), root("Block", "uses='" + uses + "'", "<core/>"));
    const std::vector<ModelElement> read = access::toElements(access::read(
        model.roots().front(), model.roots().front()->getClass()->getProperty(u"uses")));
    ASSERT_EQ(read.size(), 50'000U);
    for (std::size_t i = 0; i < read.size(); ++i) {
        ASSERT_EQ(read[i], model.elements()[1 - i % 2]);
    }
}

struct BadModel {
    const char* name;
    std::string text;
    std::string error;
};

void PrintTo(const BadModel& bad, std::ostream* out) {
    *out << bad.name;
}

class XmiReaderErrors : public testing::TestWithParam<BadModel> {};

TEST_P(XmiReaderErrors, NamesFileLineAndReason) {
    EXPECT_EQ(modelError(blocks(), GetParam().text), GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(
    All, XmiReaderErrors,
    testing::Values(
        BadModel{"Empty", "", "m.xmi:1:1: no XML element found"},
        BadModel{"NotXml", "hello", "m.xmi:1:1: syntax error"},
        BadModel{"Unclosed", "<a>\n<b></a>", "m.xmi:2:6: mismatched tag"},
        BadModel{"UnknownNamespace", "<q:A xmlns:q='urn:q'/>",
                 "m.xmi:1:1: no given metamodel has the namespace 'urn:q' of the class 'A'"},
        BadModel{"UnknownClass", root("Blok", ""),
                 "m.xmi:1:1: the package 'urn:p' has no class 'Blok'"},
        BadModel{"AbstractClass", root("Block", "", "<named/>"),
                 "m.xmi:2:1: the class Named is abstract, so the type of the element is missing "
                 "(xsi:type)"},
        BadModel{"UnknownAttribute", root("Block", R"(nam="a")"),
                 "m.xmi:1:1: the class Block has no feature 'nam'"},
        BadModel{"UnknownElement", root("Block", "", "\n  <block/>"),
                 "m.xmi:3:3: the class Block has no feature 'block'"},
        BadModel{"UndeclaredPrefix", root("Block", "", R"(<core xsi:type="q:Big"/>)"),
                 "m.xmi:2:1: the prefix of the type 'q:Big' is not declared"},
        BadModel{"WrongType", root("Block", "", R"(<core xsi:type="p:Other"/>)"),
                 "m.xmi:2:1: The property Block.core of Block'' cannot hold Other'', because its "
                 "type is Block."},
        BadModel{"NoInteger", root("Block", R"(mass="5 kg")"),
                 "m.xmi:1:1: the value '5 kg' of Block.mass is no integer"},
        BadModel{"TooBigInteger", root("Block", R"(mass="9223372036854775808")"),
                 "m.xmi:1:1: the value '9223372036854775808' of Block.mass is no integer"},
        BadModel{"UnknownId", root("Block", R"(type="nobody")"),
                 "m.xmi:1:1: the reference 'nobody' of Block.type leads to nothing in this file"},
        BadModel{"UnknownPath", root("Block", "", R"(<core type="//@core/@core"/>)"),
                 "m.xmi:2:1: the reference '//@core/@core' of Block.type leads to nothing in this "
                 "file"},
        BadModel{"OtherFile", root("Block", "", R"(<core href="o.xmi#/"/>)"),
                 "m.xmi:2:1: the reference 'o.xmi#/' of Block.core leads into another file"},
        BadModel{"TwoSingleValues", root("Block", R"(name="a")", "<name>b</name>"),
                 "m.xmi:2:1: Named.name holds one value, and the file gives two"},
        BadModel{"TwoSingleContents", root("Block", "", "<core/>\n<core/>"),
                 "m.xmi:3:1: Block.core holds one value, and the file gives two"},
        BadModel{"TwoSingleReferences", root("Block", R"(type="/ /")"),
                 "m.xmi:1:1: Block.type holds one value, and the file gives two"},
        BadModel{"TooManyValues", root("Block", R"(few="/ / /")"),
                 "m.xmi:1:1: The property Block.few of Block'' cannot hold 3 values, because its "
                 "upper bound is 2."},
        BadModel{"SameXmiIdTwice", root("Block", "", "<blocks xmi:id='x'/>\n<blocks xmi:id='x'/>"),
                 "m.xmi:3:1: the id 'x' is given twice, first in line 2"},
        BadModel{"AmbiguousId", root("Block", R"(type="k")", "<blocks key='k'/><blocks key='k'/>"),
                 "m.xmi:1:1: the reference 'k' of Block.type is the id of several elements"},
        BadModel{"ContentInReference", root("Block", "", "<type><core/></type>"),
                 "m.xmi:2:1: Block.type refers to elements and does not contain them"},
        BadModel{"TextAmongElements", root("Block", "", "<core>text</core>"),
                 "m.xmi:2:1: the element 'core' holds text where elements are expected"},
        BadModel{"ElementInValue", root("Block", "", "<name><b/></name>"),
                 "m.xmi:2:1: the value of Named.name is no text"},
        BadModel{"ForeignElement", root("Block", "", "<q:core xmlns:q='urn:q'/>"),
                 "m.xmi:2:1: no given metamodel has the namespace 'urn:q' of the element 'core'"},
        // What is wrong with the whole file is told before what is wrong with its content, and of
        // the content what stands first; the text of an element comes before all that is inside.
        BadModel{"NotXmlBehindAMisfit", root("Block", R"(nam="a")") + "<",
                 "m.xmi:3:11: unclosed token"},
        BadModel{"BadTypeBehindAMisfit", root("Block", R"(nam="a")", R"(<core xsi:type="q:X"/>)"),
                 "m.xmi:2:1: the prefix of the type 'q:X' is not declared"},
        BadModel{"TwoMisfits", root("Block", "", "<blok/>\n<named/>"),
                 "m.xmi:2:1: the class Block has no feature 'blok'"},
        BadModel{"MisfitAndUnknownReference", root("Block", R"(type="x")", "<blok/>"),
                 "m.xmi:2:1: the class Block has no feature 'blok'"},
        BadModel{"TextBehindAMisfit", root("Block", "", "<core>\n<blok/>text</core>"),
                 "m.xmi:2:1: the element 'core' holds text where elements are expected"},
        BadModel{"TextBehindAMisfitOfTheSameElement",
                 root("Block", "", R"(<core nam="a">x</core>)"),
                 "m.xmi:2:1: the element 'core' holds text where elements are expected"},
        BadModel{"TextAroundATextAmongElements", root("Block", "", "<core>a</core>b"),
                 "m.xmi:1:1: the element 'Block' holds text where elements are expected"},
        BadModel{"TextInsideAMisfit", root("Block", "", "<blok>text</blok>"),
                 "m.xmi:2:1: the class Block has no feature 'blok'"},
        BadModel{"TextOfALaterElement", root("Block", "", "<blok/>\n<core>text</core>"),
                 "m.xmi:2:1: the class Block has no feature 'blok'"},
        BadModel{"ContentOfTheWrongType",
                 root("Block", "", R"(<named xsi:type="p:Block"/><named xsi:type="p:Other"/>)"),
                 "m.xmi:2:28: The property Block.named of Block'' cannot hold Other'', because its "
                 "type is Named."},
        BadModel{"ListWithAnElementOfTheWrongType",
                 roots(R"(<p:Block uses="/0 /1 /0"/><p:Other/>)"),
                 "m.xmi:2:1: The property Block.uses of Block'' cannot hold Other'', because its "
                 "type is Block."},
        BadModel{"NoRoots", roots(""), "m.xmi:1:1: the file holds no element of a model"}),
    [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace
}  // namespace nuv::zero::xmi::test
