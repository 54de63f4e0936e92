#include <gtest/gtest.h>

#include "tests/xmi/LenientReader.h"

/// What fragments call elements, in references of the file and when somebody looks for them.
namespace nuv::zero::xmi::test {
namespace {

LoadedMetamodel books() {
    return metamodelOf(
        eClass("Named",
               attribute("name") + attribute("unique", "EString", R"(iD="true" derived="true")"),
               R"(abstract="true")") +
        eClass("Library",
               reference("books", "Book", contents) + reference("notes", "Note", contents) +
                   reference("inner", "Library", contents) + reference("all", "Book", many) +
                   reference("note", "Note"),
               R"(eSuperTypes="#//Named")") +
        eClass(
            "Book",
            attribute("title") + attribute("year", "EInt") + reference("parts", "Book", contents),
            R"(eSuperTypes="#//Named")") +
        eClass("Note", attribute("source")));
}

/// What a reference of the root leads to, which is the same as what is found by its text.
std::string target(const std::string& reference, const std::string& inside) {
    const std::string text = root("Library", "all=\"" + reference + "\"", inside);
    const LenientRead r = readLeniently(books(), text);
    const ModelElement found = r.model.find(reference);
    const std::string name = r.model.identity(found);
    const std::string described = describe(r.model).front();
    const std::string linked = found ? "all=[" + name + "]" : "leads to nothing";
    const std::string told = r.findings.kept().empty() ? described : r.findings.kept()[0].message;
    return told.find(linked) == std::string::npos ? told + ", but found: " + name : name;
}

TEST(ContentPaths, LeadByTheValuesOfKeys) {
    const std::string some =
        "<books title='A' year='1'/><books title='A' year='2'/>"
        "<books title='x/y ]' year='2'><parts title='A'/></books>";
    EXPECT_EQ(target("//@books[title='A']", some), "//@books.0");
    EXPECT_EQ(target("//@books[title='A',year='2']", some), "//@books.1");
    EXPECT_EQ(target("//@books[year='2',title='A']", some), "//@books.1");
    EXPECT_EQ(target("//@books[title='x%2Fy%20%5D']/@parts[title='A']", some),
              "//@books.2/@parts.0");
    EXPECT_EQ(target("//@books[title='x/y%20]']", some), "//@books.2");
    EXPECT_EQ(target("//@books[title='B']", some), "");
    EXPECT_EQ(target("//@books[nothing='A']", some), "");
    EXPECT_EQ(target("//@inner[title='A']", some), "");
    EXPECT_EQ(target("//@books[title='A'", some), "");
    EXPECT_EQ(target("//@books[]", some), "");
}

TEST(ContentPaths, LeadBySources) {
    const LoadedMetamodel metamodel = books();
    const LoadedModel model =
        modelOf(metamodel, root("Library", "note='//%s%20t%25%'",
                                "<notes source='http://x/y'/><notes source='s t%'/>"
                                "<notes source='http://x/y'/><notes source=''/>"));
    EXPECT_EQ(describe(model).front(),
              "/ Library notes=[//@notes.0 //@notes.1 //@notes.2 //@notes.3] note=//@notes.1");
    EXPECT_EQ(model.identity(model.find("//%http:%2F%2Fx%2Fy%")), "//@notes.0");
    EXPECT_EQ(model.identity(model.find("//%http://x/y%")), "//@notes.0");
    EXPECT_EQ(model.identity(model.find("//%http:%2F%2Fx%2Fy%.1")), "//@notes.2");
    EXPECT_EQ(model.identity(model.find("//%%")), "//@notes.3");
    EXPECT_FALSE(model.find("//%http:%2F%2Fx%2Fy%.2"));
}

TEST(ContentPaths, LeadByNames) {
    const std::string some =
        "<books name='a'><parts name='b'/><parts name='b'/></books>"
        "<books name='a.1'/><books name='%25'/>";
    EXPECT_EQ(target("//a/b", some), "//@books.0/@parts.0");
    EXPECT_EQ(target("//a/b.1", some), "//@books.0/@parts.1");
    EXPECT_EQ(target("//a.1", some), "//@books.1");
    EXPECT_EQ(target("//%25", some), "//@books.2");
    EXPECT_EQ(target("//a/@parts.1", some), "//@books.0/@parts.1");
}

TEST(ContentPaths, NamesAndClassesIdentifyWhereIdsAreMadeOfThem) {
    const std::string some =
        "<books name='a'><parts name='p'/></books><books name='b b'><parts name='p'/></books>"
        "<inner name='a'><books name='a'/></inner>";
    EXPECT_EQ(target("b%20b?type=Book", some), "//@books.1");
    EXPECT_EQ(target("a/p?type=Book", some), "//@books.0/@parts.0");
    EXPECT_EQ(target("a/a?type=Book", some), "//@inner.0/@books.0");
    EXPECT_EQ(target("c?type=Book", some), "");
    EXPECT_EQ(target("a?type=Note", some), "");
    const LenientRead r = readLeniently(books(), root("Library", "all='p?type=Book'", some));
    EXPECT_EQ(told(r.findings),
              Lines{"link-lost ambiguous-element at 1:1 in / of Library.all: the reference "
                    "'p?type=Book' of Library.all is the id of several elements"});
    EXPECT_TRUE(r.model.lookUp("p?type=Book").isAmbiguous);
    EXPECT_EQ(r.model.identity(r.model.find("a?type=Library")), "//@inner.0");
}

TEST(ContentPaths, NamesAndClassesIdentifyNothingElsewhere) {
    const LoadedMetamodel metamodel =
        metamodelOf(eClass("A", attribute("name") + reference("as", "A", contents)));
    const LoadedModel model = modelOf(metamodel, root("A", "", "<as name='n'/>"));
    EXPECT_FALSE(model.find("n?type=A"));
}

TEST(ContentPaths, TextsOfReferencesMayBeEncoded) {
    const LoadedModel model =
        modelOf(books(), root("Library", "", "<books xmi:id='a b'/><books xmi:id='c%20d'/>"));
    EXPECT_EQ(model.identity(model.lookUp("a%20b").element), "a b");
    EXPECT_EQ(model.identity(model.lookUp("c%20d").element), "c%20d");
}

}  // namespace
}  // namespace nuv::zero::xmi::test
