#include <gtest/gtest.h>

#include "model/memory/Text.h"
#include "tests/xmi/ReaderFixture.h"

namespace nuv::zero::xmi::test {
namespace {

using Details = std::vector<std::pair<std::string, std::string>>;

std::string annotation(const std::string& source, const Details& details) {
    std::string text = R"(<eAnnotations source=")" + source + R"(">)";
    for (const auto& [key, value] : details) {
        text.append(R"(<details key=")").append(key).append(R"(" value=")").append(value);
        text += R"("/>)";
    }
    return text + "</eAnnotations>";
}

std::string xml(const Details& details) {
    return annotation("http:///org/eclipse/emf/ecore/util/ExtendedMetaData", details);
}

std::string wrapping(const Details& details) {
    return annotation(
        "http:///org/eclipse/sphinx/emf/serialization/XMLPersistenceMappingExtendedMetaData",
        details);
}

std::string noted(const std::string& kind, const std::string& name, const std::string& type,
                  const std::string& note, const std::string& more = {}) {
    return R"(<eStructuralFeatures xsi:type="ecore:)" + kind + R"(" name=")" + name +
           R"(" eType=")" + type + R"(" )" + more + ">" + note + "</eStructuralFeatures>";
}

std::string element(const std::string& name, const std::string& type, Details details,
                    const std::string& more = {}) {
    details.insert(details.begin(), {"kind", "element"});
    return noted("EReference", name, "#//" + type, xml(details),
                 R"(containment="true" upperBound="-1" )" + more);
}

const std::string mapEntry =
    "ecore:EDataType http://www.eclipse.org/emf/2002/Ecore#//EFeatureMapEntry";
const std::string eString = "ecore:EDataType http://www.eclipse.org/emf/2002/Ecore#//EString";
const std::string computed = R"(derived="true" transient="true" volatile="true")";

/// A small metamodel in the manner of those that come from XML schemas: a plan holds steps, of
/// which tasks are one kind and are written in their place.
LoadedMetamodel plans() {
    const std::string top = eClass(
        "Top",
        xml({{"name", ""}, {"kind", "mixed"}}) +
            element("plan", "Plan", {{"name", "plan"}, {"namespace", "urn:xml"}}) +
            element("step", "Step", {{"name", "step"}, {"namespace", "urn:xml"}}) +
            element("task", "Task",
                    {{"name", "task"}, {"namespace", "urn:xml"}, {"affiliation", "urn:xml#step"}}) +
            element("job", "Job",
                    {{"name", "job"}, {"namespace", "urn:xml"}, {"affiliation", "urn:xml#task"}}));
    const std::string plan = eClass(
        "Plan",
        xml({{"name", "tPlan"}, {"kind", "elementOnly"}}) +
            noted("EAttribute", "stepGroup", mapEntry,
                  xml({{"kind", "group"}, {"name", "step:group"}, {"namespace", "urn:xml"}}),
                  R"(upperBound="-1")") +
            element("steps", "Step",
                    {{"name", "step"}, {"namespace", "urn:xml"}, {"group", "urn:xml#step:group"}},
                    computed) +
            noted("EAttribute", "title", eString, xml({{"kind", "attribute"}, {"name", "t"}})) +
            noted("EAttribute", "any", mapEntry,
                  xml({{"kind", "elementWildcard"}, {"wildcards", "##other"}, {"name", ":1"}}),
                  R"(upperBound="-1")") +
            noted("EAttribute", "more", mapEntry,
                  xml({{"kind", "attributeWildcard"}, {"wildcards", "##any"}, {"name", ":2"}}),
                  R"(upperBound="-1")"));
    const std::string note =
        eClass("Note", xml({{"name", "tNote"}, {"kind", "mixed"}}) +
                           element("plan", "Plan", {{"name", "plan"}}, computed) +
                           noted("EReference", "sum", "#//Plan", {}, R"(derived="true")"));
    const std::string date = eClass("Date", xml({{"name", "Date"}, {"kind", "simple"}}) +
                                                noted("EAttribute", "value", eString,
                                                      xml({{"kind", "simple"}, {"name", ":0"}})));
    return metamodelOf(top + plan + eClass("Step", {}, R"(abstract="true")") +
                       eClass("Task", xml({{"name", "tTask"}}), R"(eSuperTypes="#//Step")") +
                       eClass("Job", {}, R"(eSuperTypes="#//Task")") + note + date);
}

XmlName name(std::string_view uri, std::string_view local) {
    return {uri, local};
}

std::string shown(const XmlForm::Part& part) {
    if (!part) return "nothing";
    return text::toUtf8(part.property->getName()) +
           (part.type ? " of " + text::toUtf8(part.type->getName()) : "");
}

struct XmlForms : testing::Test {
    meta::Class type(std::string_view called) const { return plan.findClass("urn:p", called); }
    const XmlForm& form() const { return plan.xmlForm(); }
    LoadedMetamodel plan = plans();
};

TEST_F(XmlForms, GlobalElementsStandForClassesByThemselves) {
    EXPECT_EQ(form().globalElement(name("urn:xml", "plan")), type("Plan"));
    EXPECT_EQ(form().globalElement(name("urn:xml", "task")), type("Task"));
    EXPECT_FALSE(form().globalElement(name("", "plan")));
    EXPECT_FALSE(form().globalElement(name("urn:xml", "nothing")));
}

TEST_F(XmlForms, ClassesAreCalledByTheirWrittenNamesInTheXmlNamespace) {
    EXPECT_EQ(plan.findClass("urn:xml", "tTask"), type("Task"));
    EXPECT_EQ(plan.findClass("urn:xml", "Task"), type("Task"));
}

TEST_F(XmlForms, GlobalElementsTakeThePlaceOfThoseThatTheyAreAffiliatedWith) {
    EXPECT_EQ(shown(form().feature(type("Plan"), name("urn:xml", "step"))), "steps");
    EXPECT_EQ(shown(form().feature(type("Plan"), name("urn:xml", "task"))), "steps of Task");
    EXPECT_EQ(shown(form().feature(type("Plan"), name("urn:xml", "job"))), "steps of Job");
    EXPECT_EQ(shown(form().feature(type("Plan"), name("urn:xml", "plan"))), "nothing");
}

TEST_F(XmlForms, PropertiesAreCalledByTheirOwnNamesAsWell) {
    EXPECT_EQ(shown(form().feature(type("Plan"), name("", "steps"))), "steps");
    EXPECT_EQ(shown(form().feature(type("Plan"), name("", "t"), XmlForm::Place::Attribute)),
              "title");
    EXPECT_EQ(shown(form().feature(type("Plan"), name("", "title"), XmlForm::Place::Attribute)),
              "title");
}

TEST_F(XmlForms, MembersOfGroupsAndOfMixedClassesAreFollowed) {
    // Both are declared as derived, from what has no property here, and walks followed neither.
    EXPECT_FALSE(type("Plan")->getProperty(u"steps")->isDerived());
    EXPECT_FALSE(type("Note")->getProperty(u"plan")->isDerived());
    EXPECT_TRUE(type("Note")->getProperty(u"sum")->isDerived());
}

TEST_F(XmlForms, WildcardsTakeTheNamespacesThatTheySay) {
    EXPECT_TRUE(form().isWildcard(type("Plan"), name("urn:foreign", "x")));
    EXPECT_FALSE(form().isWildcard(type("Plan"), name("urn:p", "x")));
    EXPECT_FALSE(form().isWildcard(type("Plan"), name("", "x")));
    EXPECT_FALSE(form().isWildcard(type("Step"), name("urn:foreign", "x")));
    EXPECT_TRUE(form().isWildcard(type("Plan"), name("urn:p", "x"), XmlForm::Place::Attribute));
    EXPECT_EQ(form().wildcard(type("Plan"), name("urn:foreign", "x")),
              type("Plan")->getProperty(u"any"));
    EXPECT_TRUE(type("Plan")->getProperty(u"any")->isComposite());
}

TEST_F(XmlForms, TextBetweenTagsIsAPropertysOrNobodys) {
    EXPECT_EQ(form().textContent(type("Date")), type("Date")->getProperty(u"value"));
    EXPECT_FALSE(form().textContent(type("Plan")));
    EXPECT_TRUE(form().isMixed(type("Note")));
    EXPECT_FALSE(form().isMixed(type("Plan")));
}

TEST(XmlForm, WrappersStandAroundTheValuesOfAProperty) {
    const auto wrapped = [](const std::string& featureName, const Details& details,
                            const std::string& more = {}) {
        return noted("EReference", featureName, "#//B",
                     xml({{"kind", "element"}, {"name", "W-" + featureName}}) + wrapping(details),
                     more);
    };
    const LoadedMetamodel metamodel = metamodelOf(
        eClass("A",
               wrapped("many", {{"wrapperName", "MANY"},
                                {"featureWrapperElement", "true"},
                                {"classifierElement", "true"}}) +
                   wrapped("one", {{"featureElement", "true"}, {"classifierElement", "true"}}) +
                   wrapped("refs", {{"wrapperName", "REFS"},
                                    {"featureWrapperElement", "true"},
                                    {"classifierElement", "true"},
                                    {"classifierNameSuffix", "-REF"}}) +
                   wrapped("deep", {{"wrapperName", "DEEPS"},
                                    {"featureWrapperElement", "true"},
                                    {"featureElement", "true"},
                                    {"classifierElement", "true"}}) +
                   wrapped("plain", {{"wrapperName", "P"}, {"featureElement", "true"}})) +
        eClass("B"));
    const meta::Class a = metamodel.findClass("urn:p", "A");
    const auto told = [&](std::string_view called) -> std::string {
        const XmlForm::Wrapper* const found = metamodel.xmlForm().wrapper(a, name("", called));
        if (found == nullptr) return "none";
        return text::toUtf8(found->property->getName()) + " " + std::to_string(found->depth) +
               (found->namesClass ? " by class " : " by feature ") + found->suffix;
    };
    EXPECT_EQ(told("MANY"), "many 1 by class ");
    EXPECT_EQ(told("W-one"), "one 1 by class ");
    EXPECT_EQ(told("REFS"), "refs 1 by class -REF");
    EXPECT_EQ(told("DEEPS"), "deep 2 by class ");
    EXPECT_EQ(told("W-plain"), "none");
    EXPECT_EQ(shown(metamodel.xmlForm().feature(a, name("", "W-plain"))), "plain");
    EXPECT_EQ(metamodel.xmlForm().wrapper(metamodel.findClass("urn:p", "B"), name("", "MANY")),
              nullptr);
}

TEST(XmlForm, AffiliationInACircleEnds) {
    const LoadedMetamodel metamodel =
        metamodelOf(eClass("Top", xml({{"name", ""}, {"kind", "mixed"}}) +
                                      element("a", "A", {{"name", "a"}, {"affiliation", "b"}}) +
                                      element("b", "A", {{"name", "b"}, {"affiliation", "a"}})) +
                    eClass("A"));
    const meta::Class a = metamodel.findClass("urn:p", "A");
    EXPECT_EQ(shown(metamodel.xmlForm().feature(a, name("", "a"))), "nothing");
}

}  // namespace
}  // namespace nuv::zero::xmi::test
