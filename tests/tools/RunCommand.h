#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <string>

/// Runs model-walk as a user does, and looks at all that it says.
namespace model_walk {

struct Ended {
    int status = -1;
    std::string out;
    std::string err;
    bool operator==(const Ended&) const = default;
};

inline void PrintTo(const Ended& ended, std::ostream* out) {
    *out << "status " << ended.status << "\nout: " << ended.out << "\nerr: " << ended.err;
}

inline std::string contentsOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

class ModelWalkFixture : public testing::Test {
  protected:
    void SetUp() override {
        // mkdtemp wants a name that ends in six of these.
        const std::filesystem::path pattern =
            std::filesystem::temp_directory_path() / ("model-walk-test-" + std::string(6, 'X'));
        std::string made = pattern.string();
        ASSERT_NE(mkdtemp(made.data()), nullptr);
        folder_ = made;
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }

    /// Runs the program in the folder of the sample model; the arguments are words of the shell.
    Ended run(const std::string& arguments,
              const std::filesystem::path& folder = SAMPLE_MODELS) const {
        const std::string command = "cd '" + folder.string() + "' && '" MODEL_WALK "' " +
                                    arguments + " >'" + (folder_ / "out").string() + "' 2>'" +
                                    (folder_ / "err").string() + "'";
        const int status = std::system(command.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, contentsOf(folder_ / "out"),
                contentsOf(folder_ / "err")};
    }
    /// The same for a question; without the summary, which is told apart.
    Ended ask(const std::string& words) const {
        Ended ended = run(words);
        const std::size_t summary = ended.err.rfind("model-walk: ");
        const bool isSummary =
            summary != std::string::npos && std::isdigit(ended.err[summary + 12]) != 0;
        if (isSummary) ended.err.resize(summary);
        return ended;
    }

    /// Writes a file and returns its path.
    std::string write(const std::string& name, const std::string& contents) const {
        std::ofstream(folder_ / name, std::ios::binary) << contents;
        return (folder_ / name).string();
    }

    std::filesystem::path folder_;
};

}  // namespace model_walk
