#include "model/memory/MessageException.h"

#include <gtest/gtest.h>

#include <exception>
#include <string>
#include <vector>

namespace nuv::zero::test {
namespace {

TEST(MessageExceptionTest, NamesCatalogMessageAndArguments) {
    const CannotCastIncompatibleTypes failure(u"m::Integer");
    EXPECT_EQ(failure.catalog(), "nuv0:messages");
    EXPECT_EQ(failure.id(), "CannotCastIncompatibleTypes");
    EXPECT_EQ(failure.arguments(), std::vector<std::u16string>{u"m::Integer"});
}

TEST(MessageExceptionTest, SaysInOneUtf8SentenceWhichTypeCannotBeCast) {
    const CannotCastIncompatibleTypes failure(u"m::Gr\u00F6\u00DFe");
    EXPECT_STREQ(failure.what(),
                 "A value of type 'm::Gr\xC3\xB6\xC3\x9F"
                 "e' cannot be read as the kind of value that was asked for.");
}

TEST(MessageExceptionTest, IsCaughtAsEachOfItsBases) {
    EXPECT_THROW(throw CannotCastIncompatibleTypes(u"T"), MessageException);
    EXPECT_THROW(throw CannotCastIncompatibleTypes(u"T"), std::exception);
}

TEST(MessageExceptionTest, CopiesCarryTheWholeMessage) {
    MessageException copy("other", "Id", {}, "text");
    EXPECT_STREQ(copy.what(), "text");
    copy = MessageException(CannotCastIncompatibleTypes(u"T"));
    EXPECT_EQ(copy.id(), "CannotCastIncompatibleTypes");
    EXPECT_EQ(copy.arguments(), std::vector<std::u16string>{u"T"});
}

}  // namespace
}  // namespace nuv::zero::test
