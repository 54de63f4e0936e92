#include "xmi/FileRoots.h"

#include <algorithm>
#include <cctype>
#include <stdexcept>
#include <utility>

#include "xmi/Fragment.h"
#include "xmi/ReadError.h"

namespace nuv::zero::xmi {

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

FileRoots& FileRoots::add(const std::string& name, const std::string& folder,
                          std::vector<std::string> prefixes) {
    for (const Root& each : roots_) {
        if (each.name == name) {
            throw std::invalid_argument("there are two roots named " + inQuotes(name));
        }
    }
    roots_.push_back({name, Folder(folder), std::move(prefixes)});
    return *this;
}

std::string FileRoots::textOf(const FilePlace& place) const {
    return roots_[place.root].name + ":" + place.path;
}

FileRoots::Finding FileRoots::find(const FilePlace& from, std::string_view reference) const {
    reference = reference.substr(0, reference.find('#'));
    Finding finding;
    if (!hasScheme(reference)) {
        const std::size_t slash = from.path.rfind('/');
        const std::string folder =
            slash == std::string::npos ? std::string() : from.path.substr(0, slash + 1);
        const std::string path = percentDecoded(reference);
        if (path.starts_with('/')) {
            finding.outcome = Outcome::Outside;
            finding.tried.push_back(path);
            return finding;
        }
        tryPath(finding, from.root, folder + path);
        return finding;
    }
    // By the longest prefix under which the file is there.
    std::vector<std::pair<std::size_t, std::size_t>> leads;
    for (std::size_t root = 0; root < roots_.size(); ++root) {
        std::size_t longest = 0;
        for (const std::string& prefix : roots_[root].prefixes) {
            if (reference.starts_with(prefix)) longest = std::max(longest, prefix.size());
        }
        if (longest != 0) leads.emplace_back(longest, root);
    }
    std::stable_sort(leads.begin(), leads.end(),
                     [](const auto& one, const auto& other) { return one.first > other.first; });
    std::size_t foundBy = 0;
    for (const auto& [length, root] : leads) {
        if (!finding.places.empty() && length < foundBy) break;
        tryPath(finding, root, percentDecoded(reference.substr(length)));
        if (!finding.places.empty() && foundBy == 0) foundBy = length;
    }
    return finding;
}

FileRoots::Finding FileRoots::find(std::size_t root, std::string_view path) const {
    Finding finding;
    tryPath(finding, root, path);
    return finding;
}

void FileRoots::tryPath(Finding& finding, std::size_t root, std::string_view path) const {
    finding.tried.push_back(roots_[root].name + ":" + std::string(path));
    Folder::Opening opening = roots_[root].folder.open(path);
    if (opening.outcome == Folder::Outcome::Opened) {
        FilePlace place = placeOf(root, opening.path);
        if (finding.places.empty()) {
            finding.outcome = Outcome::Found;
            finding.file = std::move(opening);
        } else if (finding.places.front() != place) {
            finding.outcome = Outcome::Ambiguous;
            finding.file = {};
        } else {
            return;
        }
        finding.places.push_back(std::move(place));
        return;
    }
    // What was found by another way, or refused for a graver reason, stays.
    if (!finding.places.empty() || finding.outcome == Outcome::Outside) return;
    if (opening.outcome == Folder::Outcome::Outside) {
        finding.outcome = Outcome::Outside;
    } else if (opening.outcome == Folder::Outcome::Refused) {
        finding.outcome = Outcome::Refused;
        finding.reason = opening.reason;
    } else if (opening.outcome == Folder::Outcome::NoFile) {
        finding.outcome = Outcome::Refused;
        finding.reason = "it is no file";
    }
}

FilePlace FileRoots::placeOf(std::size_t root, const std::string& path) const {
    const std::string whole = roots_[root].folder.path() + "/" + path;
    for (std::size_t i = 0; i < root; ++i) {
        const std::string folder = roots_[i].folder.path() + "/";
        if (whole.starts_with(folder)) return {i, whole.substr(folder.size())};
    }
    return {root, path};
}

}  // namespace nuv::zero::xmi
