#include "xmi/FragmentIndex.h"

#include <algorithm>
#include <tuple>

namespace nuv::zero::xmi {

FragmentIndex::FragmentIndex(const XmlNames& names, const XmlDocument& document)
    : FragmentIndex(names) {
    for (Node node = 0; node < document.size(); ++node) {
        enter(document[node].name, document.attributes(node));
        // An element ends where its subtree does.
        while (!open_.empty() && document[open_.back().node].end == node + 1) leave();
    }
    sortKeys();
}

Node FragmentIndex::enter(NameId name, std::span<const XmlAttribute> attributes) {
    const Node node = size();
    const Tag tag = tagOf(name);
    if (!open_.empty()) {
        waiting_.push_back({tag, node});
        for (const XmlAttribute& each : attributes) {
            const XmlName& attribute = names_[each.name];
            if (attribute.isPlain("name")) {
                named_.push_back({open_.back().node, node, keys_.keep(each.value)});
            } else if (attribute.isPlain("source")) {
                sourced_.push_back({open_.back().node, node, keys_.keep(each.value)});
            }
        }
    }
    nodes_.push_back({0, 0});
    open_.push_back({node, waiting_.size()});
    return node;
}

void FragmentIndex::leave() {
    const Open left = open_.back();
    open_.pop_back();
    const auto begin = waiting_.begin() + static_cast<std::ptrdiff_t>(left.firstChild);
    if (begin == waiting_.end()) return;
    // Mostly they are sorted as they stand.
    if (!std::is_sorted(begin, waiting_.end())) std::sort(begin, waiting_.end());

    Links& links = nodes_[left.node];
    links.firstGroup = static_cast<std::uint32_t>(groups_.size());
    for (auto each = begin; each != waiting_.end(); ++each) {
        if (each == begin || each->tag != groups_.back().tag) {
            groups_.push_back({each->tag, static_cast<std::uint32_t>(children_.size())});
            ++links.groupCount;
        }
        children_.push_back(each->node);
    }
    waiting_.erase(begin, waiting_.end());
    // Swapped: an assignment would keep the room.
    if (open_.empty()) decltype(waiting_)().swap(waiting_);
}

FragmentIndex::Tag FragmentIndex::tagOf(NameId name) {
    if (name >= tags_.size()) tags_.resize(names_.size(), TextTable::none);
    Tag& tag = tags_[name];
    if (tag == TextTable::none) tag = tagNamed(names_[name].local);
    return tag;
}

Node FragmentIndex::child(Node parent, Tag tag, std::size_t index) const noexcept {
    const Links& links = nodes_[parent];
    std::uint32_t group = links.firstGroup;
    const std::uint32_t end = group + links.groupCount;
    for (std::uint32_t count = links.groupCount; count > 0;) {
        const std::uint32_t half = count / 2;
        const bool isBefore = groups_[group + half].tag < tag;
        group += isBefore ? half + 1 : 0;
        count = isBefore ? count - half - 1 : half;
    }
    if (group == end || groups_[group].tag != tag) return noNode;
    const std::uint32_t begin = groups_[group].begin;
    return index < endOf(group) - begin ? children_[begin + index] : noNode;
}

void FragmentIndex::sortKeys() {
    byName_ = sorted(named_);
    bySource_ = sorted(sourced_);
}

std::vector<FragmentIndex::Keyed> FragmentIndex::sorted(const BlockList<Keyed>& keyed) {
    std::vector<Keyed> all;
    all.reserve(keyed.size());
    for (std::size_t i = 0; i < keyed.size(); ++i) all.push_back(keyed[i]);
    std::sort(all.begin(), all.end(), [](const Keyed& one, const Keyed& other) {
        return std::tie(one.parent, one.key, one.node) <
               std::tie(other.parent, other.key, other.node);
    });
    return all;
}

Node FragmentIndex::memberOf(const std::vector<Keyed>& sorted, Node parent, std::string_view key,
                             std::size_t index) {
    const auto begin = std::lower_bound(sorted.begin(), sorted.end(), std::pair(parent, key),
                                        [](const Keyed& each, const auto& wanted) {
                                            return std::pair(each.parent, each.key) < wanted;
                                        });
    if (index >= static_cast<std::size_t>(sorted.end() - begin)) return noNode;
    const Keyed& found = begin[static_cast<std::ptrdiff_t>(index)];
    return found.parent == parent && found.key == key ? found.node : noNode;
}

Node FragmentIndex::resolve(const FragmentPath& path, const std::vector<Node>& roots) const {
    if (path.root >= roots.size()) return noNode;
    Node node = roots[path.root];
    for (const FragmentStep& each : path.steps) {
        node = step(node, each);
        if (node == noNode) break;
    }
    return node;
}

Node FragmentIndex::step(Node node, const FragmentStep& step) const {
    switch (step.kind) {
        case FragmentStep::Kind::Feature: {
            const Tag tag = tagNumbers_.find(step.text);
            return tag == TextTable::none ? noNode : child(node, tag, step.index);
        }
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

Node FragmentIndex::childNamed(Node parent, std::string_view name, std::size_t index) const {
    return memberOf(byName_, parent, name, index);
}

}  // namespace nuv::zero::xmi
