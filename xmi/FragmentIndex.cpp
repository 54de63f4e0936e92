#include "xmi/FragmentIndex.h"

#include <algorithm>
#include <tuple>

#include "xmi/FragmentWay.h"

namespace nuv::zero::xmi {

FragmentIndex::FragmentIndex(const XmlDocument& document) {
    for (Node node = 0; node < document.size(); ++node) {
        enter(add(), tagNamed(document.nameOf(node).local));
        const Node parent = document[node].parent;
        const std::string_view* name = document.attribute(node, "name");
        if (parent != noNode && name != nullptr) byName_.push_back({parent, node, *name});
        const std::string_view* source = document.attribute(node, "source");
        if (parent != noNode && source != nullptr) bySource_.push_back({parent, node, *source});
        // An element ends where its subtree does.
        while (!open_.empty() && document[open_.back().node].end == node + 1) leave();
    }
    sort(byName_);
    sort(bySource_);
}

void FragmentIndex::enter(Node node, Tag tag) {
    if (!open_.empty()) waiting_.push_back({tag, node});
    open_.push_back({node, waiting_.size()});
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

void FragmentIndex::sort(std::vector<Keyed>& keyed) {
    std::sort(keyed.begin(), keyed.end(), [](const Keyed& one, const Keyed& other) {
        return std::tie(one.parent, one.key, one.node) <
               std::tie(other.parent, other.key, other.node);
    });
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

struct FragmentIndex::Document {
    using Step = Node;
    static constexpr Node none = noNode;

    Node root(std::size_t number) const noexcept {
        return number < roots.size() ? roots[number] : none;
    }
    Node byFeature(Node parent, std::string_view name, std::size_t number) const noexcept {
        const Tag tag = index.findTag(name);
        return tag == TextTable::none ? none : index.child(parent, tag, number);
    }
    Node byName(Node parent, std::string_view name, std::size_t number) const {
        return memberOf(index.byName_, parent, name, number);
    }
    Node bySource(Node parent, std::string_view source, std::size_t number) const {
        return memberOf(index.bySource_, parent, source, number);
    }
    /// Metamodels are not referred to so.
    Node byKeys(Node /*parent*/, const FragmentStep& /*step*/) const noexcept { return none; }

    const FragmentIndex& index;
    const std::vector<Node>& roots;
};

Node FragmentIndex::resolve(const FragmentPath& path, const std::vector<Node>& roots) const {
    const Document document{*this, roots};
    return FragmentWay<Document>(document).go(path);
}

}  // namespace nuv::zero::xmi
