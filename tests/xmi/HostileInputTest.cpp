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

std::string nested(std::size_t levels) {
    std::string text = "<p:Node xmlns:p='urn:p'>";
    for (std::size_t i = 1; i < levels; ++i) text += "<nodes>";
    for (std::size_t i = 1; i < levels; ++i) text += "</nodes>";
    return text + "</p:Node>";
}

TEST(HostileInput, NestingUpToTheLimitIsRead) {
    const LoadedModel model = modelOf(nodes(), nested(10'000));
    EXPECT_EQ(model.elements().size(), 10'000U);
    EXPECT_EQ(model.find(model.identity(model.elements().back())), model.elements().back());
}

TEST(HostileInput, NestingBeyondTheLimitIsAnError) {
    EXPECT_EQ(modelError(nodes(), nested(10'001)),
              "m.xmi:1:70018: elements are nested deeper than 10000 levels");
    // Far beyond, it must not become a matter of the stack either.
    EXPECT_EQ(modelError(nodes(), nested(1'000'000)),
              "m.xmi:1:70018: elements are nested deeper than 10000 levels");
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

TEST(HostileInput, LimitsHold) {
    ReadOptions options;
    options.limits.fileBytes = 10;
    EXPECT_EQ(modelError(nodes(), nested(1), options), "m.xmi: is too long");
    options = {};
    options.limits.elements = 5;
    EXPECT_EQ(modelError(nodes(), nested(6), options),
              "m.xmi:1:53: the file has more than 5 elements");
    options = {};
    options.limits.slots = 8;
    EXPECT_EQ(modelError(nodes(), nested(3), options),
              "m.xmi:1:32: the model needs more than 8 places for values");
    options = {};
    options.limits.classes = 1;
    const auto read = [&](const std::string& classifiers) {
        return errorOf(
            [&] { EcoreReader(options).addText("p.ecore", package(classifiers)).read(); });
    };
    EXPECT_EQ(read(eClass("A") + eClass("B")),
              "p.ecore:3:1: the metamodel has more than 1 classes");
    options = {};
    options.limits.inheritedParts = 3;
    EXPECT_EQ(read(eClass("A", attribute("a") + attribute("b")) +
                   eClass("B", {}, R"(eSuperTypes="#//A")")),
              "p.ecore:2:181: the classes inherit more than 3 ancestors and features in total");
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
