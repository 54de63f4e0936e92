#include <gtest/gtest.h>

#include <cstddef>
#include <random>
#include <string>

#include "tests/xmi/ReaderFixture.h"

namespace nuv::zero::xmi::test {
namespace {

LoadedMetamodel nodes() {
    return metamodelOf(eClass("Node", attribute("name", "EString", R"(iD="true")") +
                                          reference("nodes", "Node", contents) +
                                          reference("to", "Node", many)));
}

TEST(HostileInput, EntitiesAreRefused) {
    const std::string laughs =
        "<!DOCTYPE x [<!ENTITY a \"ha\"><!ENTITY b \"&a;&a;&a;\">]>\n"
        "<p:Node xmlns:p='urn:p' name='&b;'/>";
    EXPECT_EQ(modelError(nodes(), laughs),
              "m.xmi:1:13: document type declarations are not accepted");
    EXPECT_EQ(modelError(nodes(), "<!DOCTYPE x SYSTEM 'file:///etc/passwd'><x/>"),
              "m.xmi:1:40: document type declarations are not accepted");
    EXPECT_EQ(modelError(nodes(), "<p:Node xmlns:p='urn:p' name='&b;'/>"),
              "m.xmi:1:1: undefined entity");
}

TEST(HostileInput, LongChainsOfClassesAreRefusedInTime) {
    std::string classifiers;
    for (int i = 0; i < 4'000; ++i) {
        const std::string next = R"(eSuperTypes="#//C)" + std::to_string(i + 1) + "\"";
        classifiers += eClass("C" + std::to_string(i), {}, next);
    }
    classifiers += eClass("C4000");
    EXPECT_NE(metamodelError(classifiers).find("inherit more than 2000000 ancestors"),
              std::string::npos);
}

TEST(HostileInput, ControlCharactersStayOutOfMessages) {
    EXPECT_EQ(modelError(nodes(), "<p:Node xmlns:p='urn:p' to='&#10;a&#9;b&#127;'/>"),
              "m.xmi:1:1: the reference 'a' of Node.to leads to nothing in this file");
    EXPECT_EQ(modelError(nodes(),
                         "<p:Node xmlns:p='urn:p'><nodes xmlns:q='&#10;' xmlns:x="
                         "'http://www.w3.org/2001/XMLSchema-instance' x:type='q:A'/>"
                         "</p:Node>"),
              "m.xmi:1:25: no given metamodel has the namespace '?' of the class 'A'");
}

TEST(HostileInput, LongTextsAreCutInMessages) {
    const std::string error =
        modelError(nodes(), "<p:Node xmlns:p='urn:p' to='" + std::string(100'000, 'x') + "'/>");
    EXPECT_EQ(error, "m.xmi:1:1: the reference '" + std::string(100, 'x') +
                         "...' of Node.to leads to nothing in this file");
}

TEST(HostileInput, LongNamesOfClassesAreCutInMessages) {
    const std::string name(100'000, 'N');
    const std::string error = modelError(metamodelOf(eClass(name)), root(name, "x=''"));
    EXPECT_EQ(error, "m.xmi:1:1: the class " + std::string(990, 'N') + "...");
}

/// Symptom: a file of a megabyte took minutes, because each reference compared all its siblings.
TEST(HostileInput, ManyReferencesToManySourcesAreResolvedInTime) {
    const LoadedMetamodel metamodel =
        metamodelOf(eClass("Node", attribute("source") + reference("nodes", "Node", contents) +
                                       reference("to", "Node")));
    constexpr std::size_t count = 30'000;
    std::string children;
    for (std::size_t i = 0; i < count; ++i) {
        children += "<nodes source='s" + std::to_string(i) + "' to='//%s29999%'/>";
    }
    EXPECT_EQ(modelOf(metamodel, root("Node", "", children)).elements().size(), count + 1);
}

/// Symptom: the same, because a name behind many attributes was looked for again and again.
TEST(HostileInput, ManyReferencesToANameBehindManyAttributesAreResolvedInTime) {
    std::string children = "<nodes";
    for (int i = 0; i < 50'000; ++i) children += " xmi:a" + std::to_string(i) + "=''";
    children += " name='m'/>";
    constexpr std::size_t count = 20'000;
    for (std::size_t i = 0; i < count; ++i) children += "<nodes name='z' to='//m'/>";
    const LoadedModel model = modelOf(nodes(), root("Node", "", children));
    EXPECT_EQ(model.elements().size(), count + 2);
}

/// Symptom: the same for a metamodel read as a model, whose namespaces were all compared with each
/// reference into another file.
TEST(HostileInput, ManyReferencesFromManyPackagesAreLeftOutInTime) {
    std::string ecore =
        package(eClass("EPackage", attribute("nsURI") + reference("to", "EPackage")));
    ecore.replace(ecore.find("urn:p"), 5, "http://www.eclipse.org/emf/2002/Ecore");
    for (std::size_t at; (at = ecore.find("http://www.eclipse.org/emf/2002/Ecore#//EString")) !=
                         std::string::npos;) {
        ecore.replace(at, 47, "http://www.eclipse.org/emf/2003/XMLType#//String");
    }
    const LoadedMetamodel metamodel = EcoreReader().addText("p.ecore", ecore).read();
    constexpr std::size_t count = 30'000;
    std::string text =
        "<xmi:XMI xmlns:xmi='http://www.omg.org/XMI' "
        "xmlns:e='http://www.eclipse.org/emf/2002/Ecore'>";
    for (std::size_t i = 0; i < count; ++i) {
        text += "<e:EPackage nsURI='urn:" + std::to_string(i) + "' to='other.ecore#//'/>";
    }
    const LoadedModel model = modelOf(metamodel, text + "</xmi:XMI>");
    EXPECT_EQ(model.leftOut(), count);
}

/// A model or one error of one line.
void readAnything(const LoadedMetamodel& metamodel, const std::string& bytes) {
    try {
        describe(XmiReader(metamodel).readText("m.xmi", bytes));
    } catch (const ReadError& error) {
        EXPECT_EQ(std::string_view(error.what()).find('\n'), std::string_view::npos);
        EXPECT_TRUE(std::string_view(error.what()).starts_with("m.xmi:"));
    }
}

const std::string sample =
    root("Node", R"(to="//@nodes.0 b")",
         R"(<nodes name="a" to="#//a b"/><nodes name="b"><nodes xsi:type="p:Node"/></nodes>
                                   <to href="#b"/><to>a</to><name>r</name>)");

TEST(HostileInput, FileCutAnywhereGivesAnError) {
    const LoadedMetamodel metamodel = nodes();
    for (std::size_t length = 0; length < sample.size(); ++length) {
        EXPECT_NE(modelError(metamodel, sample.substr(0, length)), "no error") << length;
    }
    EXPECT_EQ(modelError(metamodel, sample), "no error");
}

TEST(HostileInput, ChangedBytesGiveAModelOrAnError) {
    const LoadedMetamodel metamodel = nodes();
    std::mt19937 random(20260101);
    for (int round = 0; round < 3'000; ++round) {
        std::string bytes = sample;
        for (int i = 0; i < 1 + round % 4; ++i) {
            const std::size_t place = random() % bytes.size();
            const std::size_t from = random() % bytes.size();
            switch (random() % 3) {
                case 0:
                    bytes[place] = static_cast<char>(random() & 0xFFU);
                    break;
                case 1:
                    bytes.erase(place, random() % 20);
                    break;
                default:
                    bytes.insert(place, bytes.substr(from, random() % 30));
            }
            if (bytes.empty()) bytes = "<";
        }
        SCOPED_TRACE(bytes);
        readAnything(metamodel, bytes);
    }
}

TEST(HostileInput, ChangedMetamodelsGiveAMetamodelOrAnError) {
    const std::string whole =
        package(eClass("A", attribute("n", "#//D") + reference("b", "B", R"(eOpposite="#//B/a")")) +
                eClass("B", reference("a", "A", R"(eOpposite="#//A/b")"), R"(eSuperTypes="#//A")") +
                R"(<eClassifiers xsi:type="ecore:EDataType" name="D" instanceClassName="int"/>)");
    std::mt19937 random(20260102);
    for (int round = 0; round < 3'000; ++round) {
        std::string bytes = whole;
        for (int i = 0; i < 1 + round % 3; ++i) {
            const std::size_t place = random() % bytes.size();
            const std::size_t from = random() % bytes.size();
            const std::string piece = bytes.substr(from, random() % 12);
            bytes.replace(place, random() % 6, piece);
        }
        SCOPED_TRACE(bytes);
        try {
            describe(EcoreReader().addText("p.ecore", bytes).read());
        } catch (const ReadError& error) {
            EXPECT_EQ(std::string_view(error.what()).find('\n'), std::string_view::npos);
        }
    }
}

TEST(HostileInput, UnreadableFilesAreErrors) {
    const LoadedMetamodel metamodel = nodes();
    EXPECT_EQ(errorOf([&] { XmiReader(metamodel).readFile("no/such/file"); }),
              "no/such/file: cannot be opened: No such file or directory");
    EXPECT_EQ(errorOf([&] { XmiReader(metamodel).readFile("."); }),
              ".: cannot be read: Is a directory");
    ReadOptions options;
    options.limits.fileBytes = 1000;
    EXPECT_EQ(errorOf([&] { XmiReader(metamodel, options).readFile("/dev/zero"); }),
              "/dev/zero: is longer than 1000 bytes");
}

}  // namespace
}  // namespace nuv::zero::xmi::test
