#include "xmi/ReferenceLog.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace nuv::zero::xmi {
namespace {

/// A log of lists, one place for each.
class LoggedLists {
  public:
    explicit LoggedLists(const std::vector<std::string>& texts) {
        std::uint32_t number = 0;
        for (const std::string& each : texts) {
            log_.addList({number, number + 1, number + 2}, each);
            ++number;
        }
    }

    /// What is read back: `P` and the number of shared steps for each path, `L` for a text.
    std::vector<std::string> read() const {
        std::vector<std::string> lines;
        ReferenceLog::Reader reader(log_);
        for (std::uint32_t number = 0; reader.next(); ++number) {
            EXPECT_EQ(reader.place().node, number);
            EXPECT_EQ(reader.place().element, number + 1);
            EXPECT_EQ(reader.place().feature, number + 2);
            if (!reader.isPaths()) {
                lines.push_back("L " + std::string(reader.text()));
                continue;
            }
            std::string line = "P";
            while (reader.nextPath()) {
                line += " " + std::to_string(reader.sharedSteps()) + ":" + reader.pathText();
            }
            lines.push_back(line);
        }
        return lines;
    }

    ReferenceLog& log() { return log_; }

  private:
    FragmentIndex index_;
    ReferenceLog log_{index_};
};

using Lines = std::vector<std::string>;

TEST(ReferenceLog, PathsAreKeptByTheStepsInWhichTheyDifferFromTheOneBefore) {
    EXPECT_EQ(LoggedLists({"//@a.0/@b.1 //@a.0/@b.10", " //@a.0\t//@a.0/@c ", "//@a.0/@c",
                           "/1/@a.0", "/1", "/", "//@a", "//@a.0.1/@b"})
                  .read(),
              (Lines{"P 0://@a.0/@b.1 1://@a.0/@b.10", "P 1://@a.0 1://@a.0/@c", "P 2://@a.0/@c",
                     "P 0:/1/@a.0", "P 0:/1", "P 0:/", "P 0://@a", "P 0://@a.0.1/@b"}));
}

TEST(ReferenceLog, WhatIsNoPathOfTheUsualFormStaysAText) {
    const Lines texts = {"id",          "//@a id",     "//a",          "//@a/b",
                         "//@a.01",     "//@",         "//@.1",        "//",
                         "//@a/",       "///@a",       "/01",          "/x",
                         "//@a%20b",    "//@p:a",      "//@a x.xmi#/", "//@a.1234567890",
                         "/1234567890", "//@a/%s%/@b", "x.xmi#//@a",   "#//@a"};
    Lines expected;
    for (const std::string& each : texts) expected.push_back("L " + each);
    EXPECT_EQ(LoggedLists(texts).read(), expected);
}

/// What was given up in the middle of a list is nothing that the next path could continue.
TEST(ReferenceLog, PathsBehindATextStartAnew) {
    EXPECT_EQ(LoggedLists({"//@a/@b", "//@a/@b/@c id", "//@a/@b/@c"}).read(),
              (Lines{"P 0://@a/@b", "L //@a/@b/@c id", "P 0://@a/@b/@c"}));
}

TEST(ReferenceLog, BlankListsHoldNothing) {
    EXPECT_EQ(LoggedLists({"", " \n"}).read(), (Lines{"P", "P"}));
}

TEST(ReferenceLog, SingleReferencesStayTexts) {
    LoggedLists lists({});
    lists.log().addOne({7, 8, 9}, "//@a b");
    ReferenceLog::Reader reader(lists.log());
    ASSERT_TRUE(reader.next());
    EXPECT_TRUE(reader.isOne());
    EXPECT_EQ(reader.text(), "//@a b");
    EXPECT_EQ(reader.place().feature, 9U);
    EXPECT_FALSE(reader.next());
}

TEST(ReferenceLog, PlacesMayLieAnywhere) {
    LoggedLists lists({});
    const std::vector<std::uint32_t> numbers = {0,           1, 0xFFFFFFFEU, 0,
                                                0x80000000U, 7, 0x7FFFFFFFU, 8};
    for (const std::uint32_t each : numbers) lists.log().addOne({each, each ^ 5U, each / 2}, "x");
    ReferenceLog::Reader reader(lists.log());
    for (const std::uint32_t each : numbers) {
        ASSERT_TRUE(reader.next());
        EXPECT_EQ(reader.place().node, each);
        EXPECT_EQ(reader.place().element, each ^ 5U);
        EXPECT_EQ(reader.place().feature, each / 2);
    }
    EXPECT_FALSE(reader.next());
}

TEST(ReferenceLog, RecordsOfAnySizeComeBackInTheirOrder) {
    Lines texts;
    Lines expected;
    for (std::size_t i = 0; i < 300; ++i) {
        texts.push_back(std::string(1 + i * 37 % 1000 + (i % 100 == 99 ? 200'000 : 0), 'x'));
        expected.push_back("L " + texts.back());
    }
    EXPECT_EQ(LoggedLists(texts).read(), expected);
}

}  // namespace
}  // namespace nuv::zero::xmi
