#include "tests/xmi/FolderTree.h"

#include <gtest/gtest.h>

#include <fstream>

namespace nuv::zero::xmi::test {

namespace fs = std::filesystem;

FolderTree::FolderTree() {
    const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
    // Tests may run side by side, each in a process of its own.
    folder_ = fs::path(testing::TempDir()) /
              ("modeling_nuv0_" + std::string(test->test_suite_name()) + "_" + test->name());
    fs::remove_all(folder_);
    fs::create_directories(folder_);
    folder_ = fs::canonical(folder_);
}

FolderTree::~FolderTree() {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
}

const FolderTree& FolderTree::write(const std::string& path, const std::string& content) const {
    fs::create_directories((folder_ / path).parent_path());
    std::ofstream(folder_ / path, std::ios::binary) << content;
    return *this;
}

const FolderTree& FolderTree::link(const std::string& path, const std::string& target) const {
    fs::create_directories((folder_ / path).parent_path());
    fs::create_symlink(target, folder_ / path);
    return *this;
}

std::string FolderTree::path(const std::string& below) const {
    return (below.empty() ? folder_ : folder_ / below).string();
}

std::string opened(const FileTree& tree, std::string_view path, std::size_t limit) {
    const FileTree::Opening opening = tree.open(path, limit);
    switch (opening.outcome) {
        case FileTree::Outcome::Missing:
            return "missing";
        case FileTree::Outcome::Outside:
            return "outside";
        case FileTree::Outcome::NoFile:
            return "no file";
        case FileTree::Outcome::Refused:
            return "refused: " + opening.reason;
        case FileTree::Outcome::Opened:
            break;
    }
    return opening.path + " = " + contentOf(*opening.bytes);
}

std::string contentOf(ByteSource& source) {
    std::string content(source.size() + 10, '?');
    content.resize(source.read(0, content.data(), content.size()));
    return content;
}

}  // namespace nuv::zero::xmi::test
