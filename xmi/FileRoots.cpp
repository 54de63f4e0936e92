#include "xmi/FileRoots.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "xmi/Archive.h"
#include "xmi/FilePaths.h"
#include "xmi/Folder.h"
#include "xmi/FolderIndex.h"
#include "xmi/Fragment.h"
#include "xmi/GzipSource.h"
#include "xmi/PrefixRules.h"
#include "xmi/ReadError.h"

namespace nuv::zero::xmi {
namespace {

/// Files and folders of a root that is gone through.
constexpr std::size_t mostListed = 100'000;
/// Folders that are looked into by a link that is in none of the listed paths.
constexpr std::size_t mostUnlisted = 4;

bool isRootName(std::string_view name) {
    return !name.empty() && std::none_of(name.begin(), name.end(), [](char character) {
        const auto code = static_cast<unsigned char>(character);
        return code <= 0x20 || code == 0x7F || character == ':' || character == '#' ||
               character == '/';
    });
}

void checkPrefix(std::string_view prefix) {
    if (prefix.empty()) throw std::invalid_argument("a prefix is empty");
}

std::string joined(std::string_view folder, std::string_view path) {
    std::string whole(folder);
    if (!whole.empty() && !whole.ends_with('/')) whole += '/';
    return whole += path;
}

}  // namespace

bool hasScheme(std::string_view reference) {
    const auto isLetter = [](char character) {
        return std::isalpha(static_cast<unsigned char>(character)) != 0;
    };
    if (reference.empty() || !isLetter(reference.front())) return false;
    const std::size_t end = reference.find_first_of(":/?#");
    if (end == std::string_view::npos || reference[end] != ':') return false;
    const std::string_view scheme = reference.substr(0, end);
    return std::all_of(scheme.begin(), scheme.end(), [&](char character) {
        const bool isMark = character == '+' || character == '-' || character == '.';
        return isMark || isLetter(character) || (character >= '0' && character <= '9');
    });
}

/// Looks for one file, by one rule after the other.
class FileRoots::Search {
  public:
    Search(const FileRoots& roots, std::size_t limit) : roots_(roots), limit_(limit) {}

    bool isOver() const noexcept { return !lookup_.places.empty(); }
    Lookup result() { return std::move(lookup_); }

    void byPath(std::size_t root, std::string_view path, std::string rule);
    /// Leads nowhere.
    void byAbsolutePath(std::string path);
    void byPrefix(std::string_view reference);
    void byFolder(std::string_view reference);
    void byBuiltInPrefix(std::string_view reference);

  private:
    /// A prefix that the reference begins with.
    struct Lead {
        std::size_t length;
        bool isName;
        std::size_t root;
        std::string path;
        std::string rule;
    };
    /// A folder of the name, with the file's path.
    struct Candidate {
        std::size_t depth;
        std::size_t root;
        std::string path;
    };
    struct Candidates {
        /// In which the file is known to be, and those that may have it by a link.
        std::vector<Candidate> likely;
        std::vector<Candidate> other;
    };

    void begin(std::string rule);
    void tryPath(std::size_t root, std::string_view path);
    FileTree::Opening open(std::size_t root, std::string_view path);
    void tryNearest(std::vector<Candidate>& candidates);
    void collectAround(std::size_t root, const NamedFolder& folder, Candidates& candidates) const;
    void collectBelow(std::size_t root, const NamedFolder& folder, Candidates& candidates);

    const FileRoots& roots_;
    std::size_t limit_;
    /// The rule that is being applied.
    std::string rule_;
    /// Says what it is applied for, if not for itself.
    std::string reason_;
    Lookup lookup_;
};

void FileRoots::Search::begin(std::string rule) {
    rule_ = reason_.empty() ? std::move(rule) : reason_;
    if (lookup_.lookedUpBy.empty()) lookup_.lookedUpBy = rule_;
}

void FileRoots::Search::byPath(std::size_t root, std::string_view path, std::string rule) {
    begin(std::move(rule));
    tryPath(root, path);
}

void FileRoots::Search::byAbsolutePath(std::string path) {
    begin("absolute path");
    lookup_.outcome = Outcome::Outside;
    lookup_.tried.push_back(std::move(path));
}

void FileRoots::Search::byPrefix(std::string_view reference) {
    std::vector<Lead> leads;
    for (std::size_t root = 0; root < roots_.size(); ++root) {
        for (const Prefix& prefix : roots_.roots_[root].prefixes) {
            const auto behind = behindPrefix(reference, prefix.text);
            if (!behind) continue;
            const std::string rest = percentDecoded(*behind);
            leads.push_back({prefix.text.size(), false, root,
                             rest.empty() ? prefix.path : joined(prefix.path, rest),
                             "prefix " + inQuotes(prefix.text)});
        }
    }
    if (const auto named = namedFolderIn(reference)) {
        const std::size_t root = roots_.rootNamed(named->name);
        if (root < roots_.size()) {
            leads.push_back({reference.size() - named->rest.size(), true, root,
                             percentDecoded(named->rest), "root name " + inQuotes(named->name)});
        }
    }
    const auto rank = [](const Lead& lead) { return std::pair(~lead.length, lead.isName); };
    std::stable_sort(leads.begin(), leads.end(),
                     [&](const Lead& one, const Lead& other) { return rank(one) < rank(other); });
    for (auto lead = leads.begin(); lead != leads.end(); ++lead) {
        if (isOver() && rank(*lead) != rank(*(lead - 1))) return;
        byPath(lead->root, lead->path, lead->rule);
    }
}

void FileRoots::Search::byFolder(std::string_view reference) {
    const auto named = namedFolderIn(reference);
    if (!named || !named->isAnywhere) return;
    begin("folder " + inQuotes(named->name));
    Candidates candidates;
    for (std::size_t root = 0; root < roots_.size(); ++root) {
        collectAround(root, *named, candidates);
        collectBelow(root, *named, candidates);
    }
    tryNearest(candidates.likely);
    if (!isOver()) tryNearest(candidates.other);
}

/// A root may be a folder of the name itself, or one inside such a folder.
void FileRoots::Search::collectAround(std::size_t root, const NamedFolder& folder,
                                      Candidates& candidates) const {
    const std::optional<std::string> rest = withoutDetours(percentDecoded(folder.rest));
    if (!rest) return;
    const std::string_view own = roots_.tree(root).systemPath();
    for (std::size_t end = own.size(); end != std::string_view::npos && end != 0;
         end = own.rfind('/', end - 1)) {
        const std::string_view around = own.substr(0, end);
        if (!around.ends_with("/" + folder.name)) continue;
        const std::string_view inside = own.substr(std::min(end + 1, own.size()));
        const auto path = pathBelow(inside, *rest);
        if (path) candidates.likely.push_back({0, root, std::string(*path)});
    }
}

void FileRoots::Search::collectBelow(std::size_t root, const NamedFolder& folder,
                                     Candidates& candidates) {
    const std::string rest = percentDecoded(folder.rest);
    std::string missing = roots_.name(root) + ":**/" + folder.name + "/" + rest;
    try {
        FolderIndex& index = *roots_.roots_[root].index;
        const std::vector<std::string>& folders = index.foldersNamed(folder.name);
        if (folders.empty()) lookup_.tried.push_back(std::move(missing));
        std::size_t unlisted = 0;
        for (const std::string& each : folders) {
            std::string path = joined(each, rest);
            const std::optional<std::string> plain = withoutDetours(path);
            const bool isListed = plain && index.holds(*plain);
            if (!isListed && ++unlisted > mostUnlisted) continue;
            (isListed ? candidates.likely : candidates.other)
                .push_back({stepsOf(each), root, std::move(path)});
        }
    } catch (const ReadError& error) {
        lookup_.tried.push_back(missing + " (" + error.what() + ")");
    }
}

void FileRoots::Search::tryNearest(std::vector<Candidate>& candidates) {
    std::stable_sort(
        candidates.begin(), candidates.end(),
        [](const Candidate& one, const Candidate& other) { return one.depth < other.depth; });
    for (auto each = candidates.begin(); each != candidates.end(); ++each) {
        if (isOver() && each->depth != (each - 1)->depth) return;
        tryPath(each->root, each->path);
    }
}

void FileRoots::Search::byBuiltInPrefix(std::string_view reference) {
    for (const BuiltInPrefix& each : builtInPrefixes()) {
        const auto behind = behindPrefix(reference, each.prefix);
        if (!behind) continue;
        reason_ = "built-in prefix " + inQuotes(each.prefix);
        const std::string meant = std::string(each.meaning).append(*behind);
        byPrefix(meant);
        if (!isOver()) byFolder(meant);
        reason_.clear();
        if (isOver()) return;
    }
}

FileTree::Opening FileRoots::Search::open(std::size_t root, std::string_view path) {
    std::string text = roots_.name(root) + ":" + std::string(path);
    const bool isKnown =
        std::find(lookup_.tried.begin(), lookup_.tried.end(), text) != lookup_.tried.end();
    if (isKnown) return {};
    lookup_.tried.push_back(std::move(text));
    return roots_.tree(root).open(path, limit_);
}

void FileRoots::Search::tryPath(std::size_t root, std::string_view path) {
    if (lookup_.outcome == Outcome::Ambiguous) return;
    FileTree::Opening opening = open(root, path);
    if (opening.outcome == FileTree::Outcome::Outside && !path.starts_with('/')) {
        const std::string_view own = roots_.tree(root).systemPath();
        for (std::size_t other = 0; other < roots_.size(); ++other) {
            const auto way = pathBelow(roots_.tree(other).systemPath(), own);
            if (!way || way->empty()) continue;
            FileTree::Opening outer = open(other, joined(*way, path));
            if (outer.outcome == FileTree::Outcome::Outside) continue;
            opening = std::move(outer);
            root = other;
            break;
        }
    }
    switch (opening.outcome) {
        case FileTree::Outcome::Opened: {
            FilePlace place = roots_.placeOf(root, opening.path);
            if (lookup_.places.empty()) {
                lookup_.outcome = Outcome::Found;
                lookup_.bytes = std::make_unique<GzipSource>(roots_.textOf(place),
                                                             std::move(opening.bytes), limit_);
                lookup_.lookedUpBy = rule_;
                lookup_.reason.clear();
            } else if (lookup_.places.front() == place) {
                return;
            } else {
                lookup_.outcome = Outcome::Ambiguous;
                lookup_.bytes.reset();
            }
            lookup_.places.push_back(std::move(place));
            return;
        }
        // What was found by another way, or refused for a graver reason, stays.
        case FileTree::Outcome::Missing:
            return;
        case FileTree::Outcome::Outside:
            if (!isOver()) lookup_.outcome = Outcome::Outside;
            return;
        case FileTree::Outcome::NoFile:
            opening.reason = "is no file";
            [[fallthrough]];
        case FileTree::Outcome::Refused:
            if (isOver() || lookup_.outcome == Outcome::Outside) return;
            lookup_.outcome = Outcome::Refused;
            lookup_.reason = std::move(opening.reason);
            return;
    }
}

FileRoots& FileRoots::add(const std::string& name, const std::string& path,
                          std::vector<std::string> prefixes) {
    std::error_code ignored;
    const std::filesystem::file_status status = std::filesystem::status(path, ignored);
    if (!std::filesystem::exists(status) || std::filesystem::is_directory(status)) {
        return add(name, std::make_shared<const Folder>(path), std::move(prefixes));
    }
    auto archive = std::make_shared<const Archive>(path);
    // By another name it is no other archive.
    for (const Root& each : roots_) {
        const auto* const other = dynamic_cast<const Archive*>(each.tree.get());
        const bool isSame = other != nullptr && other->location() == archive->location();
        if (isSame) return add(name, each.tree, std::move(prefixes));
    }
    return add(name, std::move(archive), std::move(prefixes));
}

FileRoots& FileRoots::add(const std::string& name, std::shared_ptr<const FileTree> tree,
                          std::vector<std::string> prefixes) {
    if (!isRootName(name)) {
        throw std::invalid_argument("no root may be named " + inQuotes(name));
    }
    if (rootNamed(name) != size()) {
        throw std::invalid_argument("there are two roots named " + inQuotes(name));
    }
    auto index = std::make_shared<FolderIndex>(tree, mostListed);
    Root root{name, std::move(tree), std::move(index), {}};
    for (std::string& each : prefixes) {
        checkPrefix(each);
        root.prefixes.push_back({std::move(each), {}});
    }
    roots_.push_back(std::move(root));
    return *this;
}

FileRoots& FileRoots::addPrefix(std::string prefix, std::string_view name, std::string path) {
    checkPrefix(prefix);
    const std::size_t root = rootNamed(name);
    if (root == size()) throw std::invalid_argument("there is no root named " + inQuotes(name));
    roots_[root].prefixes.push_back({std::move(prefix), std::move(path)});
    return *this;
}

std::size_t FileRoots::rootNamed(std::string_view name) const noexcept {
    const auto found = std::find_if(roots_.begin(), roots_.end(),
                                    [&](const Root& each) { return each.name == name; });
    return static_cast<std::size_t>(found - roots_.begin());
}

std::string FileRoots::textOf(const FilePlace& place) const {
    return roots_[place.root].name + ":" + place.path;
}

const std::vector<std::string>& FileRoots::files(std::size_t root) const {
    return roots_[root].index->files();
}

FileRoots::Lookup FileRoots::find(const FilePlace& from, std::string_view reference,
                                  std::size_t limit) const {
    reference = reference.substr(0, reference.find('#'));
    Search search(*this, limit);
    search.byPrefix(reference);
    if (!search.isOver() && !hasScheme(reference)) {
        const std::size_t slash = from.path.rfind('/');
        const std::string folder =
            slash == std::string::npos ? std::string() : from.path.substr(0, slash + 1);
        const std::string path = percentDecoded(reference);
        if (path.starts_with('/')) {
            search.byAbsolutePath(path);
        } else {
            search.byPath(from.root, folder + path, "relative path");
        }
    }
    if (!search.isOver()) search.byFolder(reference);
    if (!search.isOver()) search.byBuiltInPrefix(reference);
    return search.result();
}

FileRoots::Lookup FileRoots::find(std::size_t root, std::string_view path,
                                  std::size_t limit) const {
    Search search(*this, limit);
    search.byPath(root, path, "path");
    return search.result();
}

FilePlace FileRoots::placeOf(std::size_t root, const std::string& path) const {
    const std::string_view own = tree(root).systemPath();
    const std::string whole = own.empty() ? std::string() : joined(own, path);
    for (std::size_t i = 0; i < root; ++i) {
        if (roots_[i].tree == roots_[root].tree) return {i, path};
        const auto below = own.empty() ? std::nullopt : pathBelow(tree(i).systemPath(), whole);
        if (below) return {i, std::string(*below)};
    }
    return {root, path};
}

}  // namespace nuv::zero::xmi
