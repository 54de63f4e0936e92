#include "xmi/ByteSource.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "tests/xmi/FolderTree.h"
#include "tests/xmi/ReaderFixture.h"

namespace nuv::zero::xmi::test {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t noLimit = std::size_t{1} << 30U;

/// Longer than what is read at once, and different everywhere.
std::string longText() {
    std::string text;
    for (int i = 0; text.size() < 300'000; ++i) text += std::to_string(i) + ' ';
    return text;
}

class ByteSourceTest : public testing::Test {
  protected:
    void SetUp() override {
        const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
        path_ = fs::path(testing::TempDir()) / ("modeling_nuv0_bytes_" + std::string(test->name()));
        fs::remove(path_);
    }
    void TearDown() override { fs::remove(path_); }
    void write(const std::string& text) { std::ofstream(path_, std::ios::binary) << text; }

    fs::path path_;
};

TEST_F(ByteSourceTest, FilesAndTextsAreReadFromAnyPlace) {
    for (const std::string& text : {longText(), longText().substr(0, 100), std::string()}) {
        write(text);
        FileSource file(path_.string(), noLimit);
        TextSource bytes(text);
        for (ByteSource* source :
             {static_cast<ByteSource*>(&file), static_cast<ByteSource*>(&bytes)}) {
            EXPECT_EQ(source->size(), text.size());
            EXPECT_EQ(contentOf(*source), text);
            for (const std::size_t from : {std::size_t{70'000}, std::size_t{3}, text.size()}) {
                std::string piece(50, '?');
                piece.resize(source->read(from, piece.data(), piece.size()));
                EXPECT_EQ(piece, from > text.size() ? "" : text.substr(from, 50)) << from;
            }
        }
    }
}

TEST_F(ByteSourceTest, SharedTextsAreKept) {
    auto text = std::make_shared<const std::string>(longText());
    TextSource source(text);
    text.reset();
    EXPECT_EQ(contentOf(source), longText());
}

TEST_F(ByteSourceTest, FilesAsLongAsTheLimitAreReadAndLongerOnesAreRefused) {
    const std::string text = longText();
    write(text);
    FileSource file(path_.string(), text.size());
    EXPECT_EQ(contentOf(file), text);
    EXPECT_EQ(errorOf([&] { FileSource(path_.string(), text.size() - 1); }),
              path_.string() + ": is longer than " + std::to_string(text.size() - 1) + " bytes");
}

TEST_F(ByteSourceTest, FilesThatAreCutOffMeanwhileEndThere) {
    write(longText());
    FileSource file(path_.string(), noLimit);
    fs::resize_file(path_, 100'000);
    EXPECT_EQ(contentOf(file), longText().substr(0, 100'000));
}

TEST_F(ByteSourceTest, FilesThatGrowMeanwhileAreReadUpToTheirFormerEnd) {
    write(longText());
    FileSource file(path_.string(), noLimit);
    std::ofstream(path_, std::ios::app) << "more";
    EXPECT_EQ(contentOf(file), longText());
}

TEST_F(ByteSourceTest, PipesAreReadAsAWhole) {
    ASSERT_EQ(mkfifo(path_.c_str(), 0600), 0);
    const std::string text = longText();
    std::thread writer([&] { std::ofstream(path_, std::ios::binary) << text; });
    FileSource pipe(path_.string(), noLimit);
    writer.join();
    EXPECT_EQ(contentOf(pipe), text);
    EXPECT_EQ(contentOf(pipe), text) << "again";
}

}  // namespace
}  // namespace nuv::zero::xmi::test
