#include "tools/model-walk/JsonText.h"

#include <gtest/gtest.h>

#include <string>

namespace model_walk {
namespace {

TEST(JsonText, IsReadBackAsItWasWritten) {
    for (const char* text : {"", "plain", "a\"b\\c", "tab\tline\n", "\u202E", "🙂 Größe",
                             "\\u{41}", "\U000E0041"}) {
        const std::string object = "{\"kind\":\"x\",\"address\":" + inJson(text) + ",\"z\":1}";
        EXPECT_EQ(stringBehind(object, "address"), text) << object;
    }
    EXPECT_EQ(inJson("\u202E\t"), "\"\\u202e\\u0009\"");
    EXPECT_EQ(stringBehind("{\"name\": \"b\"}", "address"), "");
    EXPECT_EQ(stringBehind("{\"address\": \"b\\", "address"), "");
    EXPECT_EQ(stringBehind("{\"address\": \"b\\u00", "address"), "");
}

}  // namespace
}  // namespace model_walk
