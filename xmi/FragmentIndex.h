#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "xmi/BlockList.h"
#include "xmi/Fragment.h"
#include "xmi/TextTable.h"
#include "xmi/XmlDocument.h"

namespace nuv::zero::xmi {

/// Finds the XML elements that fragment paths of a file lead to.
///
/// It is told of every element in the order of the file, and of its end, by which the element's
/// children are put in order. A step of a path then costs a binary search among the tags that the
/// children have, whatever the number of children. Of a metamodel it also finds names and sources.
class FragmentIndex {
  public:
    /// A number for each tag: what a path calls the children of one feature.
    using Tag = TextTable::Number;

    FragmentIndex() = default;
    /// Of a whole document, whose tags are the names of XML elements without their namespaces.
    explicit FragmentIndex(const XmlDocument& document);

    /// The number of the next element of the file. Paths lead past one that is not entered.
    Node add() {
        nodes_.push_back({0, 0});
        return static_cast<Node>(nodes_.size() - 1);
    }
    /// Opens an element below the one that was entered last and not left. REQUIRES: none was
    /// entered that was added later.
    void enter(Node node, Tag tag);
    void leave();
    /// How many are open.
    std::size_t depth() const noexcept { return open_.size(); }

    /// The element of a document at the end of the path; `noNode` where there is none. The first
    /// step starts at `roots[path.root]`.
    Node resolve(const FragmentPath& path, const std::vector<Node>& roots) const;

    /// One child by the place among those of its tag; `noNode` where there is none. REQUIRES: the
    /// parent was left.
    Node child(Node parent, Tag tag, std::size_t index) const noexcept;

    Tag tagNamed(std::string_view name) { return tagNumbers_.add(name).first; }
    /// `TextTable::none` where nothing is called so.
    Tag findTag(std::string_view name) const noexcept { return tagNumbers_.find(name); }
    std::string_view textOf(Tag tag) const noexcept { return tagNumbers_[tag]; }

    /// Calls `visit(child, ordinal)` for the children of an element that was left: which one of its
    /// tag each is.
    template <class Visit>
    void forEachChild(Node parent, const Visit& visit) const {
        const Links& links = nodes_[parent];
        for (std::uint32_t i = 0; i < links.groupCount; ++i) {
            const std::uint32_t group = links.firstGroup + i;
            const std::uint32_t begin = groups_[group].begin;
            for (std::uint32_t at = begin; at < endOf(group); ++at) {
                visit(children_[at], at - begin);
            }
        }
    }

  private:
    /// The children of one tag that an element has stand one behind the other in `children_`.
    struct Group {
        Tag tag;
        std::uint32_t begin;
    };
    /// The groups of an element stand one behind the other, sorted by tag.
    struct Links {
        std::uint32_t firstGroup;
        std::uint32_t groupCount;
    };
    struct Open {
        Node node;
        /// Where its children begin among those that wait.
        std::size_t firstChild;
    };
    struct Waiting {
        Tag tag;
        Node node;
        friend bool operator<(const Waiting& one, const Waiting& other) noexcept {
            return one.tag != other.tag ? one.tag < other.tag : one.node < other.node;
        }
    };
    /// An element and the attribute that paths know it by. Kept beside each other: looking the
    /// attribute up costs the number of attributes, which a hostile file makes large.
    struct Keyed {
        Node parent;
        Node node;
        std::string_view key;
    };

    std::uint32_t endOf(std::uint32_t group) const noexcept {
        const bool isLast = group + 1 == groups_.size();
        return isLast ? static_cast<std::uint32_t>(children_.size()) : groups_[group + 1].begin;
    }
    /// A document as paths see it.
    struct Document;
    static void sort(std::vector<Keyed>& keyed);
    static Node memberOf(const std::vector<Keyed>& sorted, Node parent, std::string_view key,
                         std::size_t index);

    TextTable tagNumbers_;
    BlockList<Links> nodes_;
    BlockList<Group> groups_;
    BlockList<Node> children_;
    std::vector<Open> open_;
    /// The children of the elements that were entered and not left.
    std::vector<Waiting> waiting_;
    /// Sorted by parent, key and place; their texts are the document's.
    std::vector<Keyed> byName_;
    std::vector<Keyed> bySource_;
};

}  // namespace nuv::zero::xmi
