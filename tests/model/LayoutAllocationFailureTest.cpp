#include <gtest/gtest.h>

#include "tests/model/Blocks.h"
#include "tests/model/FailingAllocations.h"

namespace nuv::zero::test {
namespace {

/// The declaration may have reached some subclasses already when it fails, and the next one uses
/// what it left: the same place in memory, the same numbers.
TEST(LayoutAllocationFailureTest, PropertyWhoseDeclarationFailedLeavesNothingInSubclasses) {
    bool succeeded = false;
    for (long allowed = 0; !succeeded; ++allowed) {
        SCOPED_TRACE(allowed);
        ASSERT_LT(allowed, 100);
        Blocks m;
        meta::Property inherited;
        succeeded = succeedsWith(
            allowed, [&] { inherited = m.metamodel.addProperty(m.named, u"new", m.block); });
        const meta::Property ofBlock = m.metamodel.addProperty(m.block, u"other", m.block);
        const meta::Property ofPort = m.metamodel.addProperty(m.port, u"other", m.block);
        if (!succeeded) inherited = m.metamodel.addProperty(m.named, u"new", m.block);

        memory::Model model;
        const ModelElement block = model.create(m.block);
        const ModelElement port = model.create(m.port);
        model.set(block, ofBlock, block);
        model.set(port, ofPort, block);
        EXPECT_FALSE(elementOf(block, inherited));
        EXPECT_FALSE(elementOf(port, inherited));
    }
}

}  // namespace
}  // namespace nuv::zero::test
