#include "xmi/Fragment.h"

#include <algorithm>
#include <charconv>
#include <tuple>

namespace nuv::zero::xmi {
namespace {

std::optional<std::size_t> number(std::string_view text) {
    std::size_t value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, code] = std::from_chars(text.data(), end, value);
    if (text.empty() || code != std::errc() || stop != end) return std::nullopt;
    return value;
}

int hexDigit(char character) {
    if (character >= '0' && character <= '9') return character - '0';
    if (character >= 'a' && character <= 'f') return character - 'a' + 10;
    if (character >= 'A' && character <= 'F') return character - 'A' + 10;
    return -1;
}

FragmentStep parseStep(std::string_view raw) {
    FragmentStep step{FragmentStep::Kind::Name, {}, 0, raw};
    std::string_view text = raw;
    if (text.size() > 2 && text.front() == '%' && text.back() == '%') {
        step.kind = FragmentStep::Kind::Source;
        step.text = percentDecoded(text.substr(1, text.size() - 2));
        return step;
    }
    if (text.starts_with('@')) {
        step.kind = FragmentStep::Kind::Feature;
        text.remove_prefix(1);
    }
    const std::size_t dot = text.rfind('.');
    if (dot != std::string_view::npos) {
        if (const auto index = number(text.substr(dot + 1))) {
            step.index = *index;
            text = text.substr(0, dot);
        }
    }
    step.text = percentDecoded(text);
    return step;
}

/// The N-th of the members that have a key, in a list sorted by it; null when they are fewer.
template <class Member, class Key, class KeyOf>
const Member* nthOf(const std::vector<Member>& sorted, const Key& key, std::size_t index,
                    KeyOf keyOf) {
    const auto begin = std::lower_bound(
        sorted.begin(), sorted.end(), key,
        [&](const Member& member, const Key& wanted) { return keyOf(member) < wanted; });
    const auto left = static_cast<std::size_t>(sorted.end() - begin);
    if (index >= left) return nullptr;
    const Member& member = begin[static_cast<std::ptrdiff_t>(index)];
    return keyOf(member) == key ? &member : nullptr;
}

}  // namespace

std::optional<FragmentPath> parseFragmentPath(std::string_view text) {
    if (!text.starts_with('/')) return std::nullopt;
    FragmentPath path;
    text.remove_prefix(1);
    const std::size_t end = text.find('/');
    const std::string_view root = text.substr(0, end);
    if (!root.empty()) {
        const auto index = number(root);
        if (!index) return std::nullopt;
        path.root = *index;
    }
    while (text.find('/') != std::string_view::npos) {
        text.remove_prefix(text.find('/') + 1);
        // A source is free text between percent signs and may hold slashes.
        const std::size_t closing = text.starts_with('%') ? text.find('%', 1) : 0;
        const std::size_t from = closing == std::string_view::npos ? 0 : closing;
        const std::string_view step = text.substr(0, text.find('/', from));
        if (step.empty()) return std::nullopt;
        path.steps.push_back(parseStep(step));
        text.remove_prefix(step.size());
    }
    return path;
}

std::string percentDecoded(std::string_view text) {
    std::string decoded;
    decoded.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size()) {
            const int high = hexDigit(text[i + 1]);
            const int low = hexDigit(text[i + 2]);
            if (high >= 0 && low >= 0) {
                decoded += static_cast<char>(high * 16 + low);
                i += 2;
                continue;
            }
        }
        decoded += text[i];
    }
    return decoded;
}

std::vector<std::string_view> splitAtBlanks(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    std::vector<std::string_view> words;
    while (true) {
        const std::size_t begin = text.find_first_not_of(blanks);
        if (begin == std::string_view::npos) return words;
        text.remove_prefix(begin);
        const std::string_view word = text.substr(0, text.find_first_of(blanks));
        words.push_back(word);
        text.remove_prefix(word.size());
    }
}

std::vector<ListedReference> splitReferences(std::string_view text) {
    const std::vector<std::string_view> words = splitAtBlanks(text);
    const auto has = [&](std::size_t index, char wanted) {
        return index < words.size() && words[index].find(wanted) != std::string_view::npos;
    };
    std::vector<ListedReference> references;
    for (std::size_t i = 0; i < words.size(); ++i) {
        // An id may hold a colon, so only what stands in front of a reference with a file is a
        // type.
        const bool isTyped = has(i, ':') && !has(i, '#') && has(i + 1, '#');
        if (isTyped) {
            references.push_back({words[i + 1], words[i]});
            ++i;
        } else {
            references.push_back({words[i], {}});
        }
    }
    return references;
}

FragmentResolver::FragmentResolver(const XmlDocument& document)
    : document_(document),
      ordinals_(document.size()),
      byName_(sortedBy(document, "name")),
      bySource_(sortedBy(document, "source")) {
    for (NameId id = 0; id < document.nameCount(); ++id) {
        const auto known = tagNumbers_.emplace(document.name(id).local, id).first;
        tags_.push_back(known->second);
    }
    for (Node node = 1; node < document.size(); ++node) byTag_.push_back(node);
    const auto place = [&](Node node) {
        return std::tuple(document[node].parent, tagOf(node), node);
    };
    std::sort(byTag_.begin(), byTag_.end(),
              [&](Node one, Node other) { return place(one) < place(other); });
    for (std::size_t i = 1; i < byTag_.size(); ++i) {
        const Node before = byTag_[i - 1];
        const Node node = byTag_[i];
        if (document[before].parent == document[node].parent && tagOf(before) == tagOf(node)) {
            ordinals_[node] = ordinals_[before] + 1;
        }
    }
}

std::vector<FragmentResolver::Keyed> FragmentResolver::sortedBy(const XmlDocument& document,
                                                                std::string_view attribute) {
    std::vector<Keyed> sorted;
    for (Node node = 1; node < document.size(); ++node) {
        const std::string_view* key = document.attribute(node, attribute);
        if (key != nullptr) sorted.push_back({document[node].parent, *key, node});
    }
    std::sort(sorted.begin(), sorted.end(), [](const Keyed& one, const Keyed& other) {
        return std::tie(one.parent, one.key, one.node) <
               std::tie(other.parent, other.key, other.node);
    });
    return sorted;
}

Node FragmentResolver::memberOf(const std::vector<Keyed>& sorted, Node parent, std::string_view key,
                                std::size_t index) {
    const Keyed* const found = nthOf(sorted, std::pair(parent, key), index, [](const Keyed& each) {
        return std::pair(each.parent, each.key);
    });
    return found == nullptr ? noNode : found->node;
}

Node FragmentResolver::resolve(const FragmentPath& path, const std::vector<Node>& roots) const {
    if (path.root >= roots.size()) return noNode;
    Node node = roots[path.root];
    for (const FragmentStep& each : path.steps) {
        node = step(node, each);
        if (node == noNode) break;
    }
    return node;
}

Node FragmentResolver::step(Node node, const FragmentStep& step) const {
    switch (step.kind) {
        case FragmentStep::Kind::Feature:
            return childOfFeature(node, step.text, step.index);
        case FragmentStep::Kind::Source:
            return memberOf(bySource_, node, step.text, step.index);
        case FragmentStep::Kind::Name:
            break;
    }
    // Read as it stands before it is decoded and before `.N` is taken for a number: names may hold
    // dots and percent signs.
    const Node plain = childNamed(node, step.raw, 0);
    if (plain != noNode) return plain;
    const Node decoded = childNamed(node, percentDecoded(step.raw), 0);
    return decoded != noNode ? decoded : childNamed(node, step.text, step.index);
}

Node FragmentResolver::childOfFeature(Node parent, std::string_view feature,
                                      std::size_t index) const {
    const auto tag = tagNumbers_.find(feature);
    if (tag == tagNumbers_.end()) return noNode;
    const Node* const found = nthOf(byTag_, std::pair(parent, tag->second), index, [&](Node node) {
        return std::pair(document_[node].parent, tagOf(node));
    });
    return found == nullptr ? noNode : *found;
}

Node FragmentResolver::childNamed(Node parent, std::string_view name, std::size_t index) const {
    return memberOf(byName_, parent, name, index);
}

}  // namespace nuv::zero::xmi
