#include "xmi/FilePaths.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace nuv::zero::xmi {

std::optional<std::string> withoutDetours(std::string_view path) {
    if (path.starts_with('/')) return std::nullopt;
    std::string plain;
    while (!path.empty()) {
        const std::size_t slash = path.find('/');
        const std::string_view step = path.substr(0, slash);
        path = slash == std::string_view::npos ? std::string_view() : path.substr(slash + 1);
        if (step.empty() || step == ".") continue;
        if (step == "..") {
            if (plain.empty()) return std::nullopt;
            const std::size_t last = plain.rfind('/');
            plain.erase(last == std::string::npos ? 0 : last);
            continue;
        }
        if (!plain.empty()) plain += '/';
        plain += step;
    }
    return plain;
}

std::optional<std::string_view> pathBelow(std::string_view folder, std::string_view path) {
    if (folder.empty()) {
        if (path.starts_with('/')) return std::nullopt;
        return path;
    }
    if (!path.starts_with(folder)) return std::nullopt;
    const std::string_view behind = path.substr(folder.size());
    if (behind.empty() || folder.ends_with('/')) return behind;
    if (!behind.starts_with('/')) return std::nullopt;
    return behind.substr(1);
}

bool FilePaths::add(std::string path, std::size_t number) {
    return numbers_.emplace(std::move(path), number).second;
}

FilePaths::Found FilePaths::find(std::string_view path) const {
    std::optional<std::string> plain = withoutDetours(path);
    if (!plain) return {FileTree::Outcome::Outside, {}, 0};
    const auto found = numbers_.find(*plain);
    if (found != numbers_.end()) {
        return {FileTree::Outcome::Opened, std::move(*plain), found->second};
    }
    if (plain->empty()) return {FileTree::Outcome::NoFile, {}, 0};
    // What stands behind it begins with the same name, if it is a folder.
    *plain += '/';
    const auto inside = numbers_.lower_bound(*plain);
    const bool isFolder = inside != numbers_.end() && inside->first.starts_with(*plain);
    return {isFolder ? FileTree::Outcome::NoFile : FileTree::Outcome::Missing, {}, 0};
}

std::vector<std::string> FilePaths::all() const {
    std::vector<std::string> paths;
    paths.reserve(numbers_.size());
    std::transform(numbers_.begin(), numbers_.end(), std::back_inserter(paths),
                   [](const auto& each) { return each.first; });
    return paths;
}

}  // namespace nuv::zero::xmi
