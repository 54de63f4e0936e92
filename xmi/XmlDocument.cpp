#include "xmi/XmlDocument.h"

#include <algorithm>

namespace nuv::zero::xmi {
namespace {

/// The namespaces of the versions of XMI: "http://www.omg.org/XMI",
/// "http://www.omg.org/spec/XMI/20131001", "http://schema.omg.org/spec/XMI/2.1".
bool isXmiNamespace(std::string_view uri) {
    return uri == "http://www.omg.org/XMI" || uri.starts_with("http://www.omg.org/spec/XMI/") ||
           uri.starts_with("http://schema.omg.org/spec/XMI/");
}

}  // namespace

XmlDocument::XmlDocument(std::string file) : file_(std::move(file)) {}

std::span<const XmlAttribute> XmlDocument::attributes(Node node) const noexcept {
    const Element& element = elements_[node];
    return std::span(attributes_).subspan(element.firstAttribute, element.attributeCount);
}

const std::string_view* XmlDocument::attribute(Node node, std::string_view local) const noexcept {
    for (const XmlAttribute& each : attributes(node)) {
        const XmlName& name = names_[each.name];
        if (name.uri.empty() && name.local == local) return &each.value;
    }
    return nullptr;
}

Node XmlDocument::firstChild(Node node) const noexcept {
    return elements_[node].end > node + 1 ? node + 1 : noNode;
}

Node XmlDocument::nextSibling(Node node) const noexcept {
    const Element& element = elements_[node];
    if (element.parent == noNode || element.end == elements_[element.parent].end) return noNode;
    return element.end;
}

std::vector<Node> XmlDocument::modelRoots() const {
    const XmlName& root = nameOf(0);
    if (!root.isXmi || root.local != "XMI") return {0};
    std::vector<Node> roots;
    for (Node child = firstChild(0); child != noNode; child = nextSibling(child)) {
        if (!nameOf(child).isXmi) roots.push_back(child);
    }
    return roots;
}

void XmlDocument::fail(Node node, std::string_view reason) const {
    throw ReadError(file_, elements_[node].position, reason);
}

NameId XmlDocument::intern(std::string_view uri, std::string_view local) {
    const auto known = nameIds_.find({uri, local});
    if (known != nameIds_.end()) return known->second;
    XmlName& name = names_.emplace_back();
    name.uri = uri;
    name.local = local;
    name.isXmi = isXmiNamespace(uri);
    name.isXsi = uri == "http://www.w3.org/2001/XMLSchema-instance";
    const auto id = static_cast<NameId>(names_.size() - 1);
    nameIds_.emplace(std::pair(std::string_view(name.uri), std::string_view(name.local)), id);
    return id;
}

std::string_view XmlDocument::keep(std::string_view text) {
    constexpr std::size_t blockSize = std::size_t{1} << 16U;
    if (text.empty()) return {};
    // A block is never grown beyond what it reserved, so views into it stay.
    if (texts_.empty() || texts_.back().capacity() - texts_.back().size() < text.size()) {
        texts_.emplace_back().reserve(std::max(blockSize, text.size()));
    }
    std::string& block = texts_.back();
    const std::size_t begin = block.size();
    block.append(text);
    return std::string_view(block).substr(begin);
}

}  // namespace nuv::zero::xmi
