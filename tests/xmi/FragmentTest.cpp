#include "xmi/Fragment.h"

#include <gtest/gtest.h>

#include "xmi/FragmentIndex.h"

namespace nuv::zero::xmi {
namespace {

std::string shown(std::string_view text) {
    const auto path = parseFragmentPath(text);
    if (!path) return "no path";
    std::string result = std::to_string(path->root);
    for (const FragmentStep& each : path->steps) {
        const char* const kinds = "@n%[";
        result += std::string(" ") + kinds[static_cast<int>(each.kind)] + each.text + ":" +
                  std::to_string(each.index);
        for (const auto& [key, value] : each.keys) result += "," + key + "=" + value;
    }
    return result;
}

TEST(Fragment, PathsAreRootsAndSteps) {
    EXPECT_EQ(shown("/"), "0");
    EXPECT_EQ(shown("/7"), "7");
    EXPECT_EQ(shown("//@a.0/@b"), "0 @a:0 @b:0");
    EXPECT_EQ(shown("/2/@x.13"), "2 @x:13");
    EXPECT_EQ(shown("//A/b.1"), "0 nA:0 nb:1");
    EXPECT_EQ(shown("//with%20blank"), "0 nwith blank:0");
    EXPECT_EQ(shown("//A/%http:%2F%2Fx%/@details.0"), "0 nA:0 %http://x:0 @details:0");
    EXPECT_EQ(shown("//A/%http://x%"), "0 nA:0 %http://x:0");
    EXPECT_EQ(shown("//A/%x%.2/%%"), "0 nA:0 %x:2 %:0");
    EXPECT_EQ(shown("//@a[k='v',l=\"w'/]\"]/@b.1"), "0 [a:0,k=v,l=w'/] @b:1");
    EXPECT_EQ(shown("//@a[k='%2F']"), "0 [a:0,k=/");
    EXPECT_EQ(shown("//@a[]/@b[k=v]/@c['/@d[k='v'"), "0 @a[]:0 @b[k=v]:0 @c[':0 @d[k='v':0");
}

TEST(Fragment, OtherTextsAreNoPaths) {
    for (const char* text :
         {"", "a", "#/", "//", "/a", "///@x", "//@x/", "/18446744073709551616"}) {
        EXPECT_EQ(shown(text), "no path") << text;
    }
}

TEST(Fragment, PathsLeadThroughTagsNamesAndSources) {
    TextSource source(R"(<r><a name="n"/><b/><a name="n"><b source="s/t"/></a></r>)");
    const XmlDocument document = XmlDocument::parse("x", source, ReadLimits());
    const FragmentIndex fragments(document);
    const auto resolve = [&](std::string_view text) {
        return fragments.resolve(*parseFragmentPath(text), {0});
    };
    EXPECT_EQ(resolve("/"), 0U);
    EXPECT_EQ(resolve("//@a.0"), 1U);
    EXPECT_EQ(resolve("//@b"), 2U);
    EXPECT_EQ(resolve("//@a.1"), 3U);
    EXPECT_EQ(resolve("//n"), 1U);
    EXPECT_EQ(resolve("//n.1"), 3U);
    EXPECT_EQ(resolve("//n.1/%s%2Ft%"), 4U);
    EXPECT_EQ(resolve("//n.1/@b"), 4U);
    EXPECT_EQ(resolve("//@a.2"), noNode);
    EXPECT_EQ(resolve("//n.2"), noNode);
    EXPECT_EQ(resolve("//@c"), noNode);
    EXPECT_EQ(resolve("/1"), noNode);
}

TEST(Fragment, TypesInListsAreToldFromReferences) {
    const auto references = splitReferences(" a:b \n p:T f#//x c:d p:U #y ");
    std::string shownList;
    for (const ListedReference& each : references) {
        shownList += "[" + std::string(each.declaredType) + "|" + std::string(each.text) + "]";
    }
    EXPECT_EQ(shownList, "[|a:b][p:T|f#//x][|c:d][p:U|#y]");
}

}  // namespace
}  // namespace nuv::zero::xmi
