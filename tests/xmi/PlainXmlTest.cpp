#include <gtest/gtest.h>

#include "tests/xmi/LenientReader.h"

/// Files that follow an XML schema, which a metamodel was made of: each metamodel here is in the
/// manner of one that many people have such files of.
namespace nuv::zero::xmi::test {
namespace {

using Details = std::vector<std::pair<std::string, std::string>>;

std::string noted(const std::string& source, const Details& details) {
    std::string text = R"(<eAnnotations source=")" + source + R"(">)";
    for (const auto& [key, value] : details) {
        text.append(R"(<details key=")").append(key).append(R"(" value=")").append(value);
        text += R"("/>)";
    }
    return text + "</eAnnotations>";
}

std::string xml(const Details& details) {
    return noted("http:///org/eclipse/emf/ecore/util/ExtendedMetaData", details);
}

/// The beginning of a feature, whose annotations follow.
std::string feature(const std::string& kind, const std::string& name, const std::string& type,
                    const std::string& more) {
    return R"(<eStructuralFeatures xsi:type="ecore:)" + kind + R"(" name=")" + name +
           R"(" eType=")" + type + R"(" )" + more + ">";
}
const std::string end = "</eStructuralFeatures>";

std::string holds(const std::string& name, const std::string& type, Details details,
                  const std::string& more = {}) {
    details.insert(details.begin(), {"kind", "element"});
    return feature("EReference", name, "#//" + type, std::string(contents) + " " + more) +
           xml(details) + end;
}

std::string refers(const std::string& name, const std::string& type, const std::string& kind,
                   const std::string& more = {}) {
    return feature("EReference", name, "#//" + type, more) + xml({{"kind", kind}, {"name", name}}) +
           end;
}

const std::string eString = "ecore:EDataType http://www.eclipse.org/emf/2002/Ecore#//EString";
const std::string mapEntry =
    "ecore:EDataType http://www.eclipse.org/emf/2002/Ecore#//EFeatureMapEntry";

std::string holdsAny(const std::string& kind, const std::string& name) {
    return feature("EAttribute", name, mapEntry, std::string(many)) +
           xml({{"kind", kind}, {"wildcards", "##other"}, {"name", ":" + name}}) + end;
}

std::string global(const std::string& name, const std::string& type, const std::string& head = {}) {
    Details details = {{"name", name}, {"namespace", "urn:xml"}};
    if (!head.empty()) details.push_back({"affiliation", "urn:xml#" + head});
    return holds(name, type, details);
}

/// Processes of flow elements, which are written in each other's place.
LoadedMetamodel processes() {
    const std::string id = attribute("id", "EString", R"(iD="true")");
    return metamodelOf(
        eClass("DocumentRoot",
               xml({{"name", ""}, {"kind", "mixed"}}) + global("definitions", "Definitions") +
                   global("rootElement", "Root") + global("process", "Process", "rootElement") +
                   global("flowElement", "Flow") + global("task", "Task", "flowElement") +
                   global("userTask", "UserTask", "task")) +
        eClass("Base",
               id + holds("extensions", "Extension", {{"name", "extensionElements"}}) +
                   holdsAny("attributeWildcard", "anyAttribute"),
               R"(abstract="true")") +
        eClass("Extension", xml({{"name", "tExtension"}, {"kind", "elementOnly"}}) +
                                holdsAny("elementWildcard", "any")) +
        eClass("Root", {}, R"(abstract="true" eSuperTypes="#//Base")") +
        eClass("Flow", attribute("name"), R"(abstract="true" eSuperTypes="#//Base")") +
        eClass(
            "Definitions",
            xml({{"name", "tDefinitions"}, {"kind", "elementOnly"}}) +
                holds("rootElements", "Root", {{"name", "rootElement"}, {"namespace", "urn:xml"}}),
            R"(eSuperTypes="#//Base")") +
        eClass(
            "Process",
            xml({{"name", "tProcess"}}) +
                holds("flowElements", "Flow", {{"name", "flowElement"}, {"namespace", "urn:xml"}}) +
                refers("supports", "Process", "element", std::string(many)) +
                refers("first", "Flow", "attribute"),
            R"(eSuperTypes="#//Root")") +
        eClass("Task", xml({{"name", "tTask"}}), R"(eSuperTypes="#//Flow")") +
        eClass("UserTask", xml({{"name", "tUserTask"}}), R"(eSuperTypes="#//Task")"));
}

std::string definitions(const std::string& inside) {
    return R"(<b:definitions xmlns:b="urn:xml" xmlns="urn:target" xmlns:o="urn:other" id="d"
              xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance">)" +
           inside + "</b:definitions>";
}

TEST(PlainXml, GlobalElementsStandForClassesAndTakeEachOthersPlace) {
    const std::string text = definitions(
        R"(<b:process id="p" first="t"><b:task id="t" name="n"/><b:userTask id="u"/>
           <b:flowElement xsi:type="b:tTask" id="v"/><b:task id="w" xsi:type="b:tUserTask"/>
           <b:supports>p</b:supports></b:process><b:process id="q"/>)");
    const LenientRead r = readLeniently(processes(), text);
    EXPECT_EQ(told(r.findings), Lines{});
    EXPECT_EQ(describe(r.model),
              (Lines{"d Definitions id='d' rootElements=[p q]",
                     "p Process id='p' flowElements=[t u v w] supports=[p] first=t",
                     "t Task id='t' name='n'", "u UserTask id='u'", "v Task id='v'",
                     "w UserTask id='w'", "q Process id='q'"}));
    EXPECT_EQ(r.model.path(r.model.find("w")), "//@rootElements.0/@flowElements.3");
    EXPECT_EQ(describe(modelOf(processes(), text)), describe(r.model));
}

TEST(PlainXml, PathsLeadThroughPropertiesWhateverTheirElementsAreCalled) {
    const LenientRead r = readLeniently(
        processes(), definitions(R"(<b:process first="//@rootElements.0/@flowElements.1"><b:task/>
                                    <b:userTask/></b:process>)"));
    EXPECT_EQ(describe(r.model)[1],
              "//@rootElements.0 Process "
              "flowElements=[//@rootElements.0/@flowElements.0 "
              "//@rootElements.0/@flowElements.1] "
              "first=//@rootElements.0/@flowElements.1");
}

TEST(PlainXml, NamesOfReferencesMayHaveAPrefix) {
    const LenientRead r =
        readLeniently(processes(), definitions(R"(<b:process id="p"><b:supports>o:p</b:supports>
            <b:supports>o:q</b:supports><b:supports>x:p</b:supports></b:process>
            <b:process id="x:p"/>)"));
    EXPECT_EQ(describe(r.model)[1], "p Process id='p' supports=[p x:p]");
    EXPECT_EQ(told(r.findings),
              Lines{"link-lost missing-element at 3:13 in p of Process.supports: the reference "
                    "'o:q' of Process.supports leads to nothing in this file, in the namespace "
                    "'urn:other'"});
}

TEST(PlainXml, ContentOfOtherNamespacesIsNotedWhereAnyMayStand) {
    const LoadedMetamodel metamodel = processes();
    const std::string text = definitions(
        R"(<b:extensionElements><o:x><b:task/><o:y/>text</o:x><o:z a="b"/></b:extensionElements>
           <b:process id="p" o:color="red"/>)");
    const LenientRead r = readLeniently(metamodel, text);
    EXPECT_EQ(describe(r.model), (Lines{"d Definitions id='d' extensions=[//@extensions.0] "
                                        "rootElements=[p]",
                                        "//@extensions.0 Extension", "p Process id='p'"}));
    EXPECT_EQ(told(r.findings),
              (Lines{"note foreign-content at 2:90, lost 4: 4 XML elements and attributes of the "
                     "namespace 'urn:other' stand where any may",
                     "note foreign-content at 2:95, lost 1: 1 XML elements and attributes of the "
                     "namespace 'urn:xml' stand where any may"}));
    EXPECT_EQ(describe(modelOf(metamodel, text)), describe(r.model));
    EXPECT_EQ(told(readLeniently(metamodel, definitions("<o:x/>")).findings).size(), 1U);
}

TEST(PlainXml, ElementsOfModelsAreReadWhereAnyMayStand) {
    const LoadedMetamodel metamodel =
        EcoreReader()
            .addText("p.ecore", package(eClass("Root", xml({{"kind", "elementOnly"}}) +
                                                           holdsAny("elementWildcard", "any"))))
            .addText("q.ecore",
                     R"(<ecore:EPackage xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance"
                        xmlns:ecore="http://www.eclipse.org/emf/2002/Ecore" name="q" nsURI="urn:q">
                        <eClassifiers xsi:type="ecore:EClass" name="Tool"/></ecore:EPackage>)")
            .read();
    const LenientRead r = readLeniently(
        metamodel, root("Root", "xmlns:q='urn:q' xmlns:o='urn:o'", "<q:Tool/><o:x/><q:Tool/>"));
    EXPECT_EQ(describe(r.model),
              (Lines{"/ Root any=[//@any.0 //@any.1]", "//@any.0 Tool", "//@any.1 Tool"}));
    EXPECT_EQ(r.unknownNamespaces, Lines{"urn:o"});
}

/// Elements in boxes, called by their classes.
LoadedMetamodel requirements() {
    const auto boxed = [](const std::string& name, const std::string& box, const std::string& more,
                          Details details) {
        details.insert(details.begin(), {{"wrapperName", box}, {"featureWrapperElement", "true"}});
        return feature("EReference", name, "#//Spec", more) +
               xml({{"kind", "element"}, {"name", "X-" + box}}) +
               noted(
                   "http:///org/eclipse/sphinx/emf/serialization/"
                   "XMLPersistenceMappingExtendedMetaData",
                   details) +
               end;
    };
    return metamodelOf(
        eClass("ReqIf",
               xml({{"name", "REQ-IF"}}) +
                   boxed("specs", "SPECS", std::string(contents), {{"classifierElement", "true"}}) +
                   boxed("deep", "DEEPS", std::string(contents),
                         {{"featureElement", "true"}, {"classifierElement", "true"}}) +
                   boxed("refs", "REFS", std::string(many),
                         {{"classifierElement", "true"}, {"classifierNameSuffix", "-REF"}})) +
        eClass("Spec", xml({{"name", "SPEC"}}) +
                           feature("EAttribute", "id", eString, R"(iD="true")") +
                           xml({{"kind", "attribute"}, {"name", "IDENTIFIER"}}) + end) +
        eClass("Odd", xml({{"name", "ODD-SPEC"}}), R"(eSuperTypes="#//Spec")"));
}

TEST(PlainXml, WrappersStandForNothing) {
    const LoadedMetamodel metamodel = requirements();
    const LenientRead r =
        readLeniently(metamodel, R"(<REQ-IF xmlns="urn:p"><SPECS><SPEC IDENTIFIER="a"/><ODD-SPEC
                      IDENTIFIER="b"/><SPEC/></SPECS><DEEPS><X-DEEPS><SPEC/></X-DEEPS></DEEPS>
                      <REFS><SPEC-REF>b</SPEC-REF><ODD-SPEC-REF>a</ODD-SPEC-REF></REFS>
                      <SPECS><SPEC/>text</SPECS><SPECS><NOBODY><a/></NOBODY></SPECS></REQ-IF>)");
    EXPECT_EQ(describe(r.model),
              (Lines{"/ ReqIf specs=[a b //@specs.2 //@specs.3] deep=[//@deep.0] refs=[b a]",
                     "a Spec id='a'", "b Odd id='b'", "//@specs.2 Spec", "//@deep.0 Spec",
                     "//@specs.3 Spec"}));
    EXPECT_EQ(
        told(r.findings),
        (Lines{
            "value-wrong wrong-value at 4:23 in /: the element 'SPECS' holds text where elements "
            "are expected",
            "contents-lost unknown-class at 4:56 in /, lost 2: the package 'urn:p' has no class "
            "'NOBODY'"}));
    EXPECT_EQ(r.model.find("//@specs.3"), r.model.elements().back());
    EXPECT_EQ(r.model.contents(r.model.roots().front()).size(), 5U);
}

/// Places with texts as values, and texts among elements.
LoadedMetamodel maps() {
    return metamodelOf(
        eClass("DocumentRoot", xml({{"name", ""}, {"kind", "mixed"}}) + global("kml", "Kml") +
                                   global("feature", "Feature") +
                                   global("Placemark", "Placemark", "feature") +
                                   global("Folder", "Folder", "feature")) +
        eClass("Kml",
               xml({{"name", "KmlType"}, {"kind", "elementOnly"}}) +
                   holds("features", "Feature", {{"name", "feature"}, {"namespace", "urn:xml"}})) +
        eClass("Feature", feature("EAttribute", "name", eString, {}) +
                              xml({{"kind", "element"}, {"name", "name"}}) + end) +
        eClass("Placemark",
               xml({{"name", "PlacemarkType"}}) +
                   holds("descriptions", "Description", {{"name", "description"}}) +
                   holds("dates", "Date", {{"name", "date"}}),
               R"(eSuperTypes="#//Feature")") +
        eClass("Folder",
               xml({{"name", "FolderType"}}) +
                   holds("features", "Feature", {{"name", "feature"}, {"namespace", "urn:xml"}}),
               R"(eSuperTypes="#//Feature")") +
        eClass("Description", xml({{"name", "DescriptionType"}, {"kind", "mixed"}}) +
                                  holds("dates", "Date", {{"name", "date"}})) +
        eClass("Date", xml({{"name", "Date"}, {"kind", "simple"}}) +
                           feature("EAttribute", "value", eString, {}) +
                           xml({{"kind", "simple"}, {"name", ":0"}}) + end));
}

TEST(PlainXml, TextsAreValuesOrStandAmongElements) {
    const LenientRead r = readLeniently(
        maps(), R"(<kml xmlns="urn:xml"><Folder><name>f</name><Placemark><name>p &amp; q</name>
                   <description>some <date>1999</date> text</description><date> 2001 </date><date/>
                   </Placemark></Folder>none</kml>)");
    EXPECT_EQ(describe(r.model),
              (Lines{"/ Kml features=[//@features.0]",
                     "//@features.0 Folder name='f' features=[//@features.0/@features.0]",
                     "//@features.0/@features.0 Placemark name='p & q' "
                     "descriptions=[//@features.0/@features.0/@descriptions.0] "
                     "dates=[//@features.0/@features.0/@dates.0 "
                     "//@features.0/@features.0/@dates.1]",
                     "//@features.0/@features.0/@descriptions.0 Description "
                     "dates=[//@features.0/@features.0/@descriptions.0/@dates.0]",
                     "//@features.0/@features.0/@descriptions.0/@dates.0 Date value='1999'",
                     "//@features.0/@features.0/@dates.0 Date value=' 2001 '",
                     "//@features.0/@features.0/@dates.1 Date"}));
    EXPECT_EQ(told(r.findings),
              Lines{"value-wrong wrong-value at 1:1 in /: the element 'kml' holds text where "
                    "elements are expected"});
}

}  // namespace
}  // namespace nuv::zero::xmi::test
