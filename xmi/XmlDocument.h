#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "xmi/ByteSource.h"
#include "xmi/ReadError.h"
#include "xmi/ReadOptions.h"
#include "xmi/TextArena.h"
#include "xmi/XmlNames.h"
#include "xmi/XmlParser.h"

namespace nuv::zero::xmi {

/// A number of an XML element in its file. Parents come before their children.
using Node = std::uint32_t;
inline constexpr Node noNode = 0xFFFFFFFFU;

/// An XML file as one flat list of elements, complete and unchangeable after parsing.
///
/// For metamodels, which are small and lead from one file into another, so that they are looked at
/// again and again. Models are built while their file is parsed and have no document.
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
    };

    /// Parses a file; throws as `parseXml` does. The source may go afterwards.
    static XmlDocument parse(std::string file, ByteSource& source, const ReadLimits& limits);

    XmlDocument(const XmlDocument&) = delete;
    XmlDocument& operator=(const XmlDocument&) = delete;
    XmlDocument(XmlDocument&&) = default;
    XmlDocument& operator=(XmlDocument&&) = default;
    ~XmlDocument() = default;

    /// The name of the file, for error texts.
    const std::string& file() const noexcept { return file_; }
    Node size() const noexcept { return static_cast<Node>(elements_.size()); }
    const Element& operator[](Node node) const noexcept { return elements_[node]; }
    const XmlNames& names() const noexcept { return names_; }
    const XmlName& name(NameId id) const noexcept { return names_[id]; }
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
    class Builder;
    explicit XmlDocument(std::string file) : file_(std::move(file)) {}

    std::string file_;
    std::vector<Element> elements_;
    std::vector<XmlAttribute> attributes_;
    XmlNames names_;
    TextArena texts_;
};

}  // namespace nuv::zero::xmi
