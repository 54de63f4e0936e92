#include "traversal/StreamOutput.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <sstream>
#include <string>
#include <type_traits>

#include "tests/support/ModelBuilder.h"
#include "traversal/Traversal.h"

namespace nuv::zero::traversal {
namespace {

class StreamOutputTest : public testing::Test {
  protected:
    template <class Shown>
    static std::string shown(const Shown& value) {
        std::ostringstream out;
        out << value;
        return out.str();
    }

    test::ModelBuilder m{"Node; Node.x -> Node *; Node.name2 -- String", "A.x = B"};
    ModelElement a = m("A");
    Link link{a, m("B"), m["Node.x"]};
};

TEST_F(StreamOutputTest, TextsAreThoseOfTheDumps) {
    for (const ModelElement& element : {a, ModelElement()}) {
        EXPECT_EQ(shown(element), dumpElement(element));
    }
    for (const Link& each : {link, Link({}, a, {}), Link()}) {
        EXPECT_EQ(shown(each), dumpLink(each));
    }
}

TEST_F(StreamOutputTest, WidthHoldsForTheWholeText) {
    std::ostringstream out;
    out << std::left << std::setw(10) << a << '|' << std::setw(20) << link << '|';
    EXPECT_EQ(out.str(), "Node'A'   |Node'A'-[x]-Node'B' |");
}

TEST_F(StreamOutputTest, GoogleTestShowsThem) {
    EXPECT_EQ(testing::PrintToString(a), "Node'A'");
    EXPECT_EQ(testing::PrintToString(link), "Node'A'-[x]-Node'B'");
    EXPECT_EQ(testing::PrintToString(std::vector<Link>{link}), "{ Node'A'-[x]-Node'B' }");
}

TEST_F(StreamOutputTest, TextThatCannotBeMadeLeavesNothingOnTheStream) {
    m.model.plant(a, access::propertyNamed(m.type("Node"), u"name"),
                  {meta::StandardTypes::stringMeta(), true, {}});
    std::ostringstream out;
    EXPECT_THROW(out << a, CannotCastIncompatibleTypes);
    EXPECT_THROW(out << Link(a, m("B"), m["Node.x"]), CannotCastIncompatibleTypes);
    EXPECT_EQ(out.str(), "");
    EXPECT_TRUE(out.good());
}

// A class is an element too, but its framework may have an output of its own for it.
template <class T>
concept IsShown = requires(std::ostream& out, const T& value) {
    out << value;
};
static_assert(IsShown<ModelElement> && IsShown<Link>);
static_assert(!IsShown<meta::Class> && !IsShown<meta::Property>);

}  // namespace
}  // namespace nuv::zero::traversal
