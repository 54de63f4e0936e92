#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>

#include "tools/model-walk/Completion.h"
#include "tools/model-walk/HelpPages.h"
#include "tools/model-walk/ManPage.h"
#include "tools/model-walk/QuestionTable.h"

/// The pages that are made of the table of options.
namespace model_walk {
namespace {

std::string fileText(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void expectShort(const std::string& page, std::size_t mostLines) {
    std::istringstream lines(page);
    std::size_t count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        EXPECT_LE(line.size(), 98U) << line;
    }
    EXPECT_LE(count, mostLines) << page;
}

TEST(OptionTable, EveryOptionStandsInItOnce) {
    std::set<Option> known;
    for (const OptionEntry& each : table::options()) EXPECT_TRUE(known.insert(each.id).second);
    EXPECT_EQ(known.size(), static_cast<std::size_t>(Option::Version) + 1);
}

TEST(OptionTable, NoQuestionHasTwoOptionsOfOneName) {
    for (const QuestionEntry& question : table::questions()) {
        std::set<std::string> names;
        for (const OptionEntry& each : table::options()) {
            if (!table::takes(question, each.id)) continue;
            std::istringstream all{std::string(each.names)};
            for (std::string name; std::getline(all, name, ',');) {
                EXPECT_TRUE(names.insert(name).second) << question.name << ' ' << name;
            }
        }
    }
}

TEST(HelpPages, AreShort) {
    expectShort(helpPage(), 40);
    for (const QuestionEntry& each : table::questions()) {
        expectShort(helpPage(each), each.id == Question::Walk ? 60 : 40);
    }
    for (const GroupEntry* each : table::groups()) expectShort(helpPage(*each), 40);
}

TEST(HelpPages, NameEveryOptionThatAQuestionTakes) {
    for (const QuestionEntry& question : table::questions()) {
        const std::string page = helpPage(question);
        for (const OptionEntry& each : table::options()) {
            if (!table::takes(question, each.id)) continue;
            EXPECT_NE(page.find(table::nameOf(each.id)), std::string::npos)
                << question.name << ' ' << each.names;
        }
    }
}

TEST(HelpPages, TextIsBrokenAtBlanks) {
    EXPECT_EQ(wrapped("aa bb cc", 2, 7), "aa bb\n  cc");
    EXPECT_EQ(wrapped("longerthanthat a", 2, 5), "longerthanthat\n  a");
    EXPECT_EQ(wrapped("", 2, 5), "");
}

TEST(ManPage, IsTheOneThatIsKept) {
    EXPECT_EQ(manPage(), fileText(MODEL_WALK_SOURCES "/model-walk.1"))
        << "the target update-pages writes it anew";
}

TEST(Completion, IsTheOneThatIsKept) {
    EXPECT_EQ(bashCompletion(), fileText(MODEL_WALK_SOURCES "/model-walk.bash"))
        << "the target update-pages writes it anew";
}

}  // namespace
}  // namespace model_walk
