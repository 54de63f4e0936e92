#include "xmi/XmlDocument.h"

#include <utility>

namespace nuv::zero::xmi {

/// Takes down what the parser tells.
class XmlDocument::Builder final : public XmlHandler {
  public:
    explicit Builder(XmlDocument& document) : document_(document) {}

    void enter(const XmlStart& start) override {
        Element element;
        element.name = start.name;
        element.type = start.type;
        element.parent = open_.empty() ? noNode : open_.back();
        element.position = start.place.position();
        element.firstAttribute = static_cast<std::uint32_t>(document_.attributes_.size());
        element.attributeCount = static_cast<std::uint32_t>(start.attributes.size());
        for (const XmlAttribute& each : start.attributes) {
            document_.attributes_.push_back({each.name, document_.texts_.keep(each.value)});
        }
        open_.push_back(document_.size());
        document_.elements_.push_back(element);
    }
    /// Metamodels hold nothing of interest between their tags.
    void text(std::string_view /*part*/) override {}
    void leave() override {
        document_.elements_[open_.back()].end = document_.size();
        open_.pop_back();
    }

  private:
    XmlDocument& document_;
    std::vector<Node> open_;
};

XmlDocument XmlDocument::parse(std::string file, ByteSource& source, const ReadLimits& limits) {
    XmlDocument document(std::move(file));
    Builder builder(document);
    parseXml(document.file_, source, limits, document.names_, builder);
    return document;
}

std::span<const XmlAttribute> XmlDocument::attributes(Node node) const noexcept {
    const Element& element = elements_[node];
    return std::span(attributes_).subspan(element.firstAttribute, element.attributeCount);
}

const std::string_view* XmlDocument::attribute(Node node, std::string_view local) const noexcept {
    for (const XmlAttribute& each : attributes(node)) {
        if (names_[each.name].isPlain(local)) return &each.value;
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

}  // namespace nuv::zero::xmi
