#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "tests/support/SmallStack.h"
#include "tests/xmi/ReaderFixture.h"

namespace nuv::zero::xmi::test {
namespace {

/// Levels of one XML element within the other, and then one that closes them.
std::string nested(std::size_t levels) {
    std::string text = "<p:Node xmlns:p='urn:p'>";
    for (std::size_t i = 1; i < levels; ++i) text += "<nodes>";
    for (std::size_t i = 1; i < levels; ++i) text += "</nodes>";
    return text + "</p:Node>";
}

TEST(Nesting, AsDeepAsTheLimitIsReadAndFoundAgainOnASmallStack) {
    const LoadedMetamodel metamodel =
        metamodelOf(eClass("Node", reference("nodes", "Node", contents)));
    const std::size_t limit = ReadLimits().depth;
    const std::string text = nested(limit);
    std::size_t count = 0;
    bool found = false;
    zero::test::onSmallStack([&] {
        const LoadedModel model = modelOf(metamodel, text);
        const ModelElement& deepest = model.elements().back();
        count = model.elements().size();
        found = model.find(model.identity(deepest)) == deepest;
    });
    EXPECT_EQ(count, limit);
    EXPECT_TRUE(found);
}

TEST(Nesting, DeeperThanTheLimitIsAnErrorOnASmallStackToo) {
    const LoadedMetamodel metamodel =
        metamodelOf(eClass("Node", reference("nodes", "Node", contents)));
    const std::string text = nested(100 * ReadLimits().depth);
    std::string error;
    zero::test::onSmallStack([&] { error = modelError(metamodel, text); });
    EXPECT_NE(error.find("nested deeper than 10000 levels"), std::string::npos) << error;
}

/// Subpackages are the one thing in a metamodel that nests.
TEST(Nesting, OfPackagesAsDeepAsTheLimitIsReadOnASmallStack) {
    const std::size_t levels = ReadLimits().depth / 10;
    std::string inner = eClass("Deep");
    std::string open;
    std::string close;
    for (std::size_t i = 0; i < levels; ++i) {
        open += "<eSubpackages name='q'>";
        close += "</eSubpackages>";
    }
    std::size_t classes = 0;
    zero::test::onSmallStack(
        [&] { classes = metamodelOf(open + inner + close).metamodel().classes().size(); });
    EXPECT_EQ(classes, 1U);
}

}  // namespace
}  // namespace nuv::zero::xmi::test
