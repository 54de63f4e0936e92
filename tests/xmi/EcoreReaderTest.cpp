#include <gtest/gtest.h>

#include "tests/xmi/ReaderFixture.h"

namespace nuv::zero::xmi::test {
namespace {

TEST(EcoreReader, ReferencesAreAssociationsAndAttributesAreNot) {
    const LoadedMetamodel metamodel = metamodelOf(
        eClass("Block", attribute("name") + reference("ports", "Port", contents) +
                            reference("type", "Block") +
                            reference("near", "Block", R"(derived="true" upperBound="3")")) +
        eClass("Port"));
    EXPECT_EQ(describe(metamodel),
              (Lines{"p::Block", "  name: String", "  ports: p::Port[*] association composite",
                     "  type: p::Block association", "  near: p::Block[3] association derived",
                     "p::Port"}));
}

TEST(EcoreReader, DataTypesBecomeStringIntegerOrText) {
    const LoadedMetamodel metamodel = metamodelOf(
        eClass("A", attribute("s") + attribute("i", "EInt") + attribute("l", "ELongObject") +
                        attribute("b", "EBoolean") + attribute("big", "EBigInteger") +
                        attribute("own", "#//Name") + attribute("count", "#//Count") +
                        attribute("date", "#//Date") + attribute("color", "#//Color")) +
        R"(<eClassifiers xsi:type="ecore:EDataType" name="Name" instanceClassName="java.lang.String"/>
           <eClassifiers xsi:type="ecore:EDataType" name="Count" instanceClassName="int"/>
           <eClassifiers xsi:type="ecore:EDataType" name="Date" instanceClassName="java.util.Date"/>
           <eClassifiers xsi:type="ecore:EEnum" name="Color"><eLiterals name="red"/></eClassifiers>)");
    EXPECT_EQ(
        describe(metamodel),
        (Lines{"p::A", "  s: String", "  i: ecore::EInt integer", "  l: ecore::ELongObject integer",
               "  b: ecore::EBoolean", "  big: ecore::EBigInteger", "  own: String",
               "  count: p::Count integer", "  date: p::Date", "  color: p::Color"}));
}

TEST(EcoreReader, UnboundedAndUnspecifiedUpperBoundsHaveNoLimit) {
    const LoadedMetamodel metamodel = metamodelOf(
        eClass("A", reference("one", "A", R"(upperBound="1")") + reference("all", "A", many) +
                        reference("some", "A", R"(upperBound="-2")")));
    EXPECT_EQ(describe(metamodel),
              (Lines{"p::A", "  one: p::A association", "  all: p::A[*] association",
                     "  some: p::A[*] association"}));
}

TEST(EcoreReader, OppositesAreTakenAsTheFileSays) {
    const LoadedMetamodel metamodel =
        metamodelOf(eClass("A", reference("b", "B", R"(eOpposite="#//B/a")")) +
                    eClass("B", reference("a", "A", R"(eOpposite="#//A/b")") +
                                    reference("other", "A", R"(eOpposite="#//A/b")")));
    EXPECT_EQ(describe(metamodel), (Lines{"p::A", "  b: p::B association opposite=B.a", "p::B",
                                          "  a: p::A association opposite=A.b",
                                          "  other: p::A association opposite=A.b"}));
}

TEST(EcoreReader, SuperclassesMayStandBehindTheirSubclasses) {
    const LoadedMetamodel metamodel =
        metamodelOf(eClass("Both", {}, R"(eSuperTypes="#//Left #//Right")") +
                    eClass("Left", {}, R"(eSuperTypes="#//Top" abstract="true")") +
                    eClass("Right", {}, R"(eSuperTypes="#//Top" interface="true")") +
                    eClass("Top", attribute("id", "EString", R"(iD="true")")));
    EXPECT_EQ(describe(metamodel),
              (Lines{"p::Top", "  id: String id", "p::Left abstract < p::Top",
                     "p::Right abstract < p::Top", "p::Both < p::Left, p::Right"}));
}

TEST(EcoreReader, NestedPackagesQualifyNamesAndHaveNamespacesOfTheirOwn) {
    const LoadedMetamodel metamodel = metamodelOf(
        R"(<eSubpackages name="q" nsURI="urn:q"><eSubpackages name="r" nsURI="urn:r">)" +
        eClass("A", reference("b", "A")) + "</eSubpackages></eSubpackages>" +
        eClass("A", reference("inner", "q/r/A")));
    EXPECT_EQ(describe(metamodel), (Lines{"p::q::r::A", "  b: p::A association", "p::A",
                                          "  inner: p::q::r::A association"}));
    EXPECT_EQ(metamodel.findClass("urn:r", "A")->getQualifiedName(), u"p::q::r::A");
    EXPECT_EQ(metamodel.findClass("urn:p", "A")->getQualifiedName(), u"p::A");
    EXPECT_FALSE(metamodel.findClass("urn:q", "A"));
    EXPECT_TRUE(metamodel.hasNamespace("urn:q"));
}

TEST(EcoreReader, GenericTypesCountByTheirClassifier) {
    const LoadedMetamodel metamodel =
        metamodelOf(eClass("List",
                           R"(<eTypeParameters name="T"/>
                  <eStructuralFeatures xsi:type="ecore:EReference" name="any">
                    <eGenericType eTypeParameter="#//List/T"/></eStructuralFeatures>
                  <eStructuralFeatures xsi:type="ecore:EReference" name="next">
                    <eGenericType eClassifier="#//List"/></eStructuralFeatures>)") +
                    eClass("Names", R"(<eGenericSuperTypes eClassifier="#//List"/>)"));
    EXPECT_EQ(describe(metamodel), (Lines{"p::List", "  any: ModelElement association",
                                          "  next: p::List association", "p::Names < p::List"}));
}

TEST(EcoreReader, EObjectStandsForEveryClass) {
    const std::string eObject = "ecore:EClass http://www.eclipse.org/emf/2002/Ecore#//EObject";
    const LoadedMetamodel metamodel =
        metamodelOf(eClass("A", reference("any", eObject, many),
                           R"(eSuperTypes="http://www.eclipse.org/emf/2002/Ecore#//EObject")"));
    EXPECT_EQ(describe(metamodel), (Lines{"p::A", "  any: ModelElement[*] association"}));
}

TEST(EcoreReader, FilesReferToEachOtherByNamespaceAndByPath) {
    const std::string other =
        R"(<ecore:EPackage xmlns:xmi="http://www.omg.org/XMI" xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance"
           xmlns:ecore="http://www.eclipse.org/emf/2002/Ecore" name="o" nsURI="urn:o">)" +
        eClass("A", reference("b", "ecore:EClass ../p/p.ecore#//B") +
                        reference("c", "ecore:EClass platform:/plugin/x/p.ecore#//B") +
                        reference("d", "ecore:EClass urn:p#//B")) +
        "</ecore:EPackage>";
    const LoadedMetamodel metamodel = EcoreReader()
                                          .addText("dir/o/o.ecore", other)
                                          .addText("dir/p/p.ecore", package(eClass("B")))
                                          .read();
    EXPECT_EQ(describe(metamodel), (Lines{"o::A", "  b: p::B association", "  c: p::B association",
                                          "  d: p::B association", "p::B"}));
}

TEST(EcoreReader, ClassesAreFoundBySimpleAndByQualifiedName) {
    const LoadedMetamodel metamodel =
        metamodelOf(R"(<eSubpackages name="q" nsURI="urn:q">)" + eClass("A") + "</eSubpackages>" +
                    eClass("A") + eClass("B"));
    EXPECT_EQ(metamodel.classesNamed("A").size(), 2U);
    EXPECT_EQ(metamodel.classesNamed("p::q::A").size(), 1U);
    EXPECT_EQ(metamodel.classesNamed("B").size(), 1U);
    EXPECT_TRUE(metamodel.classesNamed("C").empty());
}

struct BadMetamodel {
    const char* name;
    std::string classifiers;
    std::string error;
};

void PrintTo(const BadMetamodel& bad, std::ostream* out) {
    *out << bad.name;
}

class EcoreReaderErrors : public testing::TestWithParam<BadMetamodel> {};

TEST_P(EcoreReaderErrors, NamesFileLineAndReason) {
    EXPECT_EQ(metamodelError(GetParam().classifiers), GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(
    All, EcoreReaderErrors,
    testing::Values(
        BadMetamodel{"UnknownType", eClass("A") + eClass("B", reference("r", "C")),
                     "p.ecore:3:49: the reference '#//C' leads to nothing in this file"},
        BadMetamodel{"UnknownSuperclass", eClass("A", {}, R"(eSuperTypes="#//B")"),
                     "p.ecore:2:1: the reference '#//B' leads to nothing in this file"},
        BadMetamodel{
            "OwnAncestor",
            eClass("A", {}, R"(eSuperTypes="#//B")") + eClass("B", {}, R"(eSuperTypes="#//A")"),
            "p.ecore:3:1: the class 'B' is its own ancestor"},
        BadMetamodel{"ReferenceToData",
                     eClass("A", reference("r", "D")) +
                         R"(<eClassifiers xsi:type="ecore:EDataType" name="D"/>)",
                     "p.ecore:2:49: the type 'D' of a reference is no class"},
        BadMetamodel{"AttributeOfClass", eClass("A", attribute("a", "#//A")),
                     "p.ecore:2:49: the type 'A' of an attribute is a class"},
        BadMetamodel{"NoBound", eClass("A", reference("r", "A", R"(upperBound="many")")),
                     "p.ecore:2:49: the upper bound 'many' is no bound"},
        BadMetamodel{"ZeroBound", eClass("A", reference("r", "A", R"(upperBound="0")")),
                     "p.ecore:2:49: the upper bound '0' is no bound"},
        BadMetamodel{"OppositeIsNoFeature", eClass("A", reference("r", "A", R"(eOpposite="#//A")")),
                     "p.ecore:2:49: the opposite '//A' is no feature"},
        BadMetamodel{"TwiceInPackage", eClass("A") + eClass("A"),
                     "p.ecore:3:1: the class 'A' stands twice in its package"},
        BadMetamodel{"NoName", "<eClassifiers xsi:type='ecore:EClass'/>",
                     "p.ecore:2:1: the classifier has no name"},
        BadMetamodel{"NoKind", "<eClassifiers name='A'/>",
                     "p.ecore:2:1: the type is missing (xsi:type)"},
        BadMetamodel{"OtherFile", eClass("A", reference("r", "ecore:EClass other.ecore#//B")),
                     "p.ecore:2:49: the reference 'other.ecore#//B' leads into a file that was not "
                     "given"}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST(EcoreReader, FileThatIsNoMetamodelIsAnError) {
    EXPECT_EQ(errorOf([] { EcoreReader().addText("m.xmi", "<a/>"); }),
              "m.xmi:1:1: is not an Ecore metamodel: the root 'a' is no package of Ecore");
    EXPECT_EQ(errorOf([] { EcoreReader().read(); }), "metamodel: no file was given");
}

TEST(EcoreReader, SameFileTwiceIsOneMetamodel) {
    const LoadedMetamodel metamodel = EcoreReader()
                                          .addText("a.ecore", package(eClass("A")))
                                          .addText("b.ecore", package(eClass("A")))
                                          .read();
    EXPECT_EQ(describe(metamodel), (Lines{"p::A"}));
}

TEST(EcoreReader, SameNamespaceTwiceIsAnError) {
    EXPECT_EQ(errorOf([] {
                  EcoreReader()
                      .addText("a.ecore", package(eClass("A")))
                      .addText("b.ecore", package(eClass("B")));
              }),
              "b.ecore:1:1: the namespace 'urn:p' is given twice; it is also that of a.ecore");
}

TEST(EcoreReader, ReferencesIntoOtherFilesAreLeftOutOnRequest) {
    ReadOptions options;
    options.crossFile = CrossFile::LeaveOut;
    const LoadedMetamodel metamodel =
        EcoreReader(options)
            .addText("p.ecore", package(eClass("A", reference("r", "ecore:EClass o.ecore#//B"),
                                               R"(eSuperTypes="o.ecore#//C")")))
            .read();
    EXPECT_EQ(describe(metamodel), (Lines{"p::A", "  r: ModelElement association"}));
    EXPECT_EQ(metamodel.leftOut(), 2U);
}

}  // namespace
}  // namespace nuv::zero::xmi::test
