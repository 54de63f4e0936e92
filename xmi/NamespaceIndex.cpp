#include "xmi/NamespaceIndex.h"

#include <algorithm>
#include <array>
#include <utility>

#include "xmi/BuiltInEcore.h"
#include "xmi/ByteSource.h"
#include "xmi/ReadError.h"

namespace nuv::zero::xmi {
namespace {

bool isXmlBlank(char character) {
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

std::size_t skipBlanks(std::string_view text, std::size_t at) {
    while (at < text.size() && isXmlBlank(text[at])) ++at;
    return at;
}

/// The value of an attribute whose name ends at a place of the text; empty where none stands there.
std::string_view valueAt(std::string_view text, std::size_t at) {
    at = skipBlanks(text, at);
    if (at >= text.size() || text[at] != '=') return {};
    at = skipBlanks(text, at + 1);
    if (at >= text.size() || (text[at] != '"' && text[at] != '\'')) return {};
    const std::size_t end = text.find(text[at], at + 1);
    return end == std::string_view::npos ? std::string_view() : text.substr(at + 1, end - at - 1);
}

std::string unescaped(std::string_view text) {
    constexpr std::array<std::pair<std::string_view, char>, 5> entities = {
        {{"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}}};
    std::string plain;
    while (!text.empty()) {
        const auto* const entity =
            std::find_if(entities.begin(), entities.end(),
                         [&](const auto& each) { return text.starts_with(each.first); });
        const bool isEntity = entity != entities.end();
        plain += isEntity ? entity->second : text.front();
        text.remove_prefix(isEntity ? entity->first.size() : 1);
    }
    return plain;
}

/// Calls `visit` with the value of each attribute whose name, or whose name and value, stand in the
/// text like that.
template <class Visit>
void forEachValue(std::string_view text, std::string_view marker, std::string_view attribute,
                  const Visit& visit) {
    for (std::size_t at = text.find(marker); at != std::string_view::npos;
         at = text.find(marker, at + marker.size())) {
        std::size_t name = at + marker.size();
        if (!attribute.empty()) {
            name = skipBlanks(text, name);
            if (text.substr(name, attribute.size()) != attribute) continue;
            name += attribute.size();
        }
        const std::string_view value = valueAt(text, name);
        if (!value.empty()) visit(unescaped(value));
    }
}

void addOnce(std::vector<FilePlace>& places, const FilePlace& place) {
    if (places.empty() || places.back() != place) places.push_back(place);
}

/// How many folders two paths share from their roots on.
std::size_t sharedFolders(std::string_view one, std::string_view other) {
    const auto [end, ignored] = std::mismatch(one.begin(), one.end(), other.begin(), other.end());
    return static_cast<std::size_t>(std::count(one.begin(), end, '/'));
}

}  // namespace

std::vector<FilePlace> NamespaceIndex::filesWith(std::string_view nsUri, const FilePlace& from) {
    if (!found_) found_ = scan();
    std::vector<FilePlace> all;
    const auto take = [&](const auto& index) {
        const auto found = index.find(nsUri);
        if (found == index.end()) return;
        const auto begin = static_cast<std::ptrdiff_t>(all.size());
        for (const FilePlace& each : found->second) {
            if (std::find(all.begin(), all.end(), each) == all.end()) all.push_back(each);
        }
        const auto nearness = [&](const FilePlace& each) {
            return each.root == from.root ? 1 + sharedFolders(each.path, from.path) : 0;
        };
        std::stable_sort(all.begin() + begin, all.end(),
                         [&](const FilePlace& one, const FilePlace& other) {
                             return nearness(one) > nearness(other);
                         });
    };
    take(found_->packages);
    take(found_->forms);
    return all;
}

NamespaceIndex::Found NamespaceIndex::scan() const {
    Found all;
    std::size_t files = limits_.files;
    std::size_t bytes = limits_.bytes;
    for (std::size_t root = 0; root < roots_.size(); ++root) {
        // What is built in is for want of files.
        if (roots_.name(root) == builtInRoot) continue;
        try {
            for (const std::string& path : roots_.files(root)) {
                if (!path.ends_with(".ecore") && !path.ends_with(".uml")) continue;
                if (files == 0) return all;
                --files;
                const FileRoots::Lookup file = roots_.find(root, path, bytes);
                if (file.bytes == nullptr) continue;
                const std::string text = allBytes(*file.bytes);
                bytes -= std::min(bytes, text.size());
                scanFile(all, {root, path}, text);
            }
        } catch (const ReadError&) {
            // A root with too many files is not gone through, and a file that cannot be read
            // defines nothing.
            continue;
        }
    }
    return all;
}

void NamespaceIndex::scanFile(Found& all, const FilePlace& place, std::string_view text) {
    // Models in the same form have no packages of this kind in them, unless they are profiles.
    const bool mayDefine = place.path.ends_with(".ecore") ||
                           text.find(":EPackage\"") != std::string_view::npos ||
                           text.find(":EPackage'") != std::string_view::npos;
    if (!mayDefine) return;
    forEachValue(text, "nsURI", {},
                 [&](std::string nsUri) { addOnce(all.packages[std::move(nsUri)], place); });
    for (const std::string_view marker : {R"(key="namespace")", "key='namespace'"}) {
        forEachValue(text, marker, "value", [&](std::string nsUri) {
            if (!nsUri.starts_with("##")) addOnce(all.forms[std::move(nsUri)], place);
        });
    }
}

}  // namespace nuv::zero::xmi
