#include <sstream>
#include <vector>

#include "RunCommand.h"

/// The page that shows what model-walk answers: each command is run, and what it prints compared.
namespace model_walk {
namespace {

/// A block of the page: commands behind `$ `, each with what it prints, and the folder in which
/// they are run.
struct Block {
    std::string folder;
    std::string text;
    std::size_t line = 0;

    bool isOfSamples() const { return folder != "examples"; }
    std::string path() const {
        return isOfSamples() ? std::string(SHARED_MODELS) + "/" + folder : SAMPLE_MODELS;
    }
};

std::vector<Block> blocksOf(const std::string& page) {
    std::vector<Block> blocks;
    std::istringstream lines(page);
    std::string folder;
    bool isInside = false;
    std::size_t number = 0;
    for (std::string line; std::getline(lines, line);) {
        ++number;
        constexpr std::string_view mark = "<!-- in ";
        if (isInside && line == "```") {
            isInside = false;
        } else if (isInside) {
            blocks.back().text += line + "\n";
        } else if (line.starts_with(mark)) {
            folder = line.substr(mark.size(), line.find(" -->") - mark.size());
        } else if (line == "```console") {
            isInside = true;
            blocks.push_back({folder, {}, number});
        }
    }
    return blocks;
}

class ConsolePage : public ModelWalkFixture {
  protected:
    /// The block as it is when its commands are run now.
    std::string runAnew(const Block& block) const {
        std::string text;
        std::istringstream lines(block.text);
        for (std::string line; std::getline(lines, line);) {
            if (!line.starts_with("$ ")) continue;
            text += line + "\n" + output(block.path(), line.substr(2));
        }
        return text;
    }

    /// What people see on a terminal, both outputs one behind the other, and a status that is not
    /// 0.
    std::string output(const std::string& folder, const std::string& command) const {
        const std::string out = (folder_ / "shown").string();
        const std::string whole = "cd '" + folder +
                                  "' && PATH=\"$(dirname '" MODEL_WALK "'):$PATH\" bash -c '" +
                                  inQuotes(command) + "' >'" + out + "' 2>&1";
        const int status = std::system(whole.c_str());
        std::string shown = contentsOf(out);
        if (WEXITSTATUS(status) != 0) {
            shown += "[status " + std::to_string(WEXITSTATUS(status)) + "]\n";
        }
        return shown;
    }

    static std::string inQuotes(const std::string& command) {
        std::string quoted;
        for (const char each : command) quoted += each == '\'' ? "'\\''" : std::string(1, each);
        return quoted;
    }

    /// The page with the outputs of now, for who has asked to write it anew.
    void writeAnew(const std::vector<Block>& blocks, bool areOfSamples) const {
        std::string page = contentsOf(CONSOLE_PAGE);
        for (const Block& block : blocks) {
            if (block.isOfSamples() != areOfSamples) continue;
            const std::string before = "```console\n" + block.text + "```\n";
            const std::size_t at = page.find(before);
            ASSERT_NE(at, std::string::npos);
            page.replace(at, before.size(), "```console\n" + runAnew(block) + "```\n");
        }
        std::ofstream(CONSOLE_PAGE, std::ios::binary) << page;
    }

    void compare(bool areOfSamples) const {
        const std::vector<Block> blocks = blocksOf(contentsOf(CONSOLE_PAGE));
        ASSERT_FALSE(blocks.empty());
        if (std::getenv("MODEL_WALK_WRITE_PAGE") != nullptr) {
            return writeAnew(blocks, areOfSamples);
        }
        for (const Block& block : blocks) {
            if (block.isOfSamples() != areOfSamples) continue;
            EXPECT_EQ(runAnew(block), block.text) << "in the block of line " << block.line;
        }
    }
};

TEST_F(ConsolePage, ShowsWhatIsAnsweredOnTheProjectsOwnModels) {
    compare(false);
}

TEST_F(ConsolePage, ShowsWhatIsAnsweredOnModelsOfOthers) {
    if (!std::filesystem::exists(SHARED_MODELS)) {
        GTEST_SKIP() << "MODELING_NUV0_SAMPLES names no models; only the project's own were asked";
    }
    compare(true);
}

}  // namespace
}  // namespace model_walk
