#include "xmi/PrefixRules.h"

#include <gtest/gtest.h>

namespace nuv::zero::xmi::test {
namespace {

TEST(PrefixRules, PrefixesCoverWholeSegments) {
    EXPECT_EQ(behindPrefix("platform:/plugin/a/m.xmi", "platform:/plugin/a"), "m.xmi");
    EXPECT_EQ(behindPrefix("platform:/plugin/a/m.xmi", "platform:/plugin/a/"), "m.xmi");
    EXPECT_EQ(behindPrefix("platform:/plugin/a/m.xmi", "platform:"), "/plugin/a/m.xmi");
    EXPECT_EQ(behindPrefix("urn:a", "urn:"), "a");
    EXPECT_EQ(behindPrefix("http://a.org/si", "http://a.org/si"), "");
    EXPECT_EQ(behindPrefix("http://a.org/si/", "http://a.org/si"), "");
    EXPECT_FALSE(behindPrefix("platform:/plugin/ab/m.xmi", "platform:/plugin/a"));
    EXPECT_FALSE(behindPrefix("http://a.org/si", "http://a.org/si/"));
    EXPECT_FALSE(behindPrefix("a", "")) << "an empty prefix covers nothing";
}

std::string named(std::string_view reference) {
    const auto folder = namedFolderIn(reference);
    if (!folder) return "none";
    return folder->name + " | " + std::string(folder->rest) + (folder->isAnywhere ? " | any" : "");
}

TEST(PrefixRules, SomeReferencesNameFolders) {
    EXPECT_EQ(named("platform:/plugin/org.units/model/si.xmi"), "org.units | model/si.xmi | any");
    EXPECT_EQ(named("platform:/resource/my%20units/a%20b"), "my units | a%20b | any");
    EXPECT_EQ(named("pathmap://UNITS/si.xmi"), "UNITS | si.xmi");
    for (const char* const other :
         {"", "a/b", "platform:/plugin/org.units", "platform:/plugin//a", "platform:/fragment/a/b",
          "platform:/plugin/./a", "platform:/plugin/../a", "platform:/plugin/%2e%2e/a",
          "platform:/plugin/a%2Fb/c", "http://a/b"}) {
        EXPECT_EQ(named(other), "none") << other;
    }
}

TEST(PrefixRules, BuiltInPrefixesMeanReferencesThatNameFolders) {
    for (const BuiltInPrefix& each : builtInPrefixes()) {
        EXPECT_TRUE(each.prefix.ends_with('/')) << each.prefix;
        const auto folder = namedFolderIn(each.meaning);
        ASSERT_TRUE(folder) << each.meaning;
        EXPECT_TRUE(folder->isAnywhere && folder->rest.ends_with('/')) << each.meaning;
    }
}

}  // namespace
}  // namespace nuv::zero::xmi::test
