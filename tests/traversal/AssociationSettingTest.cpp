#include "traversal/AssociationSetting.h"

#include <gtest/gtest.h>

#include <utility>

#include "tests/support/ModelBuilder.h"

namespace nuv::zero::traversal {
namespace {

TEST(AssociationSettingTest, DefaultHasNoPropertyAndReports) {
    AssociationSetting setting;
    EXPECT_FALSE(setting.getProperty());
    EXPECT_EQ(setting.getPolicy(), ResultPolicy::Report);
}

TEST(AssociationSettingTest, CopiesAndMovesCarryBothFields) {
    const test::ModelBuilder m("Node; Node.kids -> Node *");
    AssociationSetting original(m["Node.kids"], ResultPolicy::Extended);
    AssociationSetting copy(original);
    AssociationSetting moved(std::move(copy));
    AssociationSetting assigned;
    assigned = moved;
    AssociationSetting moveAssigned;
    moveAssigned = std::move(moved);
    for (AssociationSetting* setting : {&original, &assigned, &moveAssigned}) {
        EXPECT_EQ(setting->getProperty(), m["Node.kids"]);
        EXPECT_EQ(setting->property(), m["Node.kids"]);
        EXPECT_EQ(setting->getPolicy(), ResultPolicy::Extended);
    }
}

}  // namespace
}  // namespace nuv::zero::traversal
