#include "xmi/FolderIndex.h"

#include <algorithm>
#include <functional>
#include <unordered_set>
#include <utility>

#include "xmi/ReadError.h"

namespace nuv::zero::xmi {
namespace {

using Folders = std::map<std::string, std::vector<std::string>, std::less<>>;

/// The folders that the files stand in, by their names.
Folders foldersOf(const std::vector<std::string>& files) {
    Folders folders;
    std::unordered_set<std::string_view> known;
    for (const std::string& file : files) {
        std::string_view path = file;
        for (std::size_t slash = path.rfind('/'); slash != std::string_view::npos;
             slash = path.rfind('/')) {
            path = path.substr(0, slash);
            if (!known.insert(path).second) break;
            const std::size_t last = path.rfind('/');
            const std::string_view name =
                last == std::string_view::npos ? path : path.substr(last + 1);
            folders[std::string(name)].emplace_back(path);
        }
    }
    for (auto& [name, paths] : folders) {
        std::sort(paths.begin(), paths.end(), [](const std::string& one, const std::string& other) {
            const std::size_t steps = stepsOf(one);
            const std::size_t others = stepsOf(other);
            return steps == others ? one < other : steps < others;
        });
    }
    return folders;
}

}  // namespace

std::size_t stepsOf(std::string_view path) noexcept {
    if (path.empty()) return 0;
    return static_cast<std::size_t>(std::count(path.begin(), path.end(), '/')) + 1;
}

FolderIndex::FolderIndex(std::shared_ptr<const FileTree> tree, std::size_t limit)
    : tree_(std::move(tree)), limit_(limit) {}

const std::vector<std::string>& FolderIndex::files() {
    scan();
    return files_;
}

const std::vector<std::string>& FolderIndex::foldersNamed(std::string_view name) {
    static const std::vector<std::string> none;
    scan();
    const auto found = folders_.find(name);
    return found == folders_.end() ? none : found->second;
}

bool FolderIndex::holds(std::string_view path) {
    scan();
    return std::binary_search(files_.begin(), files_.end(), path, std::less<>());
}

void FolderIndex::scan() {
    // What is scanned does not change any more, so it may be read without the mutex.
    const std::lock_guard<std::mutex> locked(mutex_);
    if (failure_) throw ReadError(failure_->file, {}, failure_->reason);
    if (isScanned_) return;
    try {
        std::vector<std::string> files = tree_->files(limit_);
        folders_ = foldersOf(files);
        files_ = std::move(files);
        isScanned_ = true;
    } catch (const ReadError& error) {
        failure_ = std::make_unique<Failure>(Failure{error.file(), error.reason()});
        throw;
    }
}

}  // namespace nuv::zero::xmi
