#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "xmi/ReadError.h"

namespace nuv::zero::xmi {

/// A number of an XML element in its document. Parents come before their children.
using Node = std::uint32_t;
inline constexpr Node noNode = 0xFFFFFFFFU;

/// The name of an XML element, of an attribute or of a type, with the namespace in full.
struct XmlName {
    std::string uri;
    std::string local;
    /// Whether the namespace is one of the versions of XMI.
    bool isXmi = false;
    /// Whether the namespace is XML Schema's for instances (`xsi:type`, `xsi:nil`).
    bool isXsi = false;
};

/// A number of a name in its document; equal names have equal numbers.
using NameId = std::uint32_t;
inline constexpr NameId noName = 0xFFFFFFFFU;

struct XmlAttribute {
    NameId name;
    std::string_view value;
};

/// An XML file as one flat list of elements, complete and unchangeable after parsing.
///
/// Flat, so that no step needs recursion and a subtree is a range of numbers. Attributes and texts
/// are views that live as long as the document does.
class XmlDocument {
  public:
    struct Element {
        NameId name = noName;
        /// The value of `xsi:type` or `xmi:type`, its prefix resolved.
        NameId type = noName;
        Node parent = noNode;
        /// The number behind the last element of the subtree.
        Node end = noNode;
        std::uint32_t firstAttribute = 0;
        std::uint32_t attributeCount = 0;
        Position position;
        /// What stands between the tags, without the children; empty when children surround
        /// nothing but white space.
        std::string_view text;
    };

    explicit XmlDocument(std::string file);
    XmlDocument(const XmlDocument&) = delete;
    XmlDocument& operator=(const XmlDocument&) = delete;
    // May throw: what the standard library leaves in a deque that was moved from needs memory.
    XmlDocument(XmlDocument&&) = default;
    XmlDocument& operator=(XmlDocument&&) = default;
    ~XmlDocument() = default;

    /// The name of the file, for error texts.
    const std::string& file() const noexcept { return file_; }
    Node size() const noexcept { return static_cast<Node>(elements_.size()); }
    const Element& operator[](Node node) const noexcept { return elements_[node]; }
    const XmlName& name(NameId id) const noexcept { return names_[id]; }
    /// The numbers of names are those below this one.
    NameId nameCount() const noexcept { return static_cast<NameId>(names_.size()); }
    const XmlName& nameOf(Node node) const noexcept { return names_[elements_[node].name]; }
    std::span<const XmlAttribute> attributes(Node node) const noexcept;
    /// The value of an attribute without namespace; null where there is none.
    const std::string_view* attribute(Node node, std::string_view local) const noexcept;
    /// The children, to iterate over: `for (Node c = first(n); c != noNode; c = next(c))`.
    Node firstChild(Node node) const noexcept;
    Node nextSibling(Node node) const noexcept;

    /// The elements that stand for roots of the model: the root of the document, or the children of
    /// an `xmi:XMI` wrapper.
    std::vector<Node> modelRoots() const;

    [[noreturn]] void fail(Node node, std::string_view reason) const;

  private:
    friend class XmlParser;

    NameId intern(std::string_view uri, std::string_view local);
    /// Keeps a text for the lifetime of the document.
    std::string_view keep(std::string_view text);

    std::string file_;
    std::vector<Element> elements_;
    std::vector<XmlAttribute> attributes_;
    std::deque<XmlName> names_;
    std::map<std::pair<std::string_view, std::string_view>, NameId> nameIds_;
    std::deque<std::string> texts_;
};

}  // namespace nuv::zero::xmi
