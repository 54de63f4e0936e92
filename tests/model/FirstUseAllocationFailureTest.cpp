#include <gtest/gtest.h>

#include "model/memory/Metamodel.h"
#include "tests/model/FailingAllocations.h"
#include "tests/support/Points.h"

namespace nuv::zero::test {
namespace {

/// What all metamodels share is made once in a process, so this is an executable of its own.
TEST(FirstUseAllocationFailureTest, WhatAllMetamodelsShareIsMadeByALaterAttempt) {
    long points = 0;
    const long live = liveAllocations();
    while (!succeedsWithout(points, [] { meta::StandardTypes::stringMeta(); })) {
        ++points;
        ASSERT_LT(points, 1000);
        ASSERT_EQ(liveAllocations(), live) << "leaked at " << points;
    }
    EXPECT_EQ(meta::StandardTypes::stringMeta()->getQualifiedName(), u"String");
    EXPECT_EQ(ModelElement::metaClass()->getName(), u"ModelElement");
    EXPECT_TRUE(succeedsWith(0, [] { ModelElement::metaClass(); })) << "it is made only once";
    recordPoints(points, "failing allocations in the first use of the standard types");
}

}  // namespace
}  // namespace nuv::zero::test
