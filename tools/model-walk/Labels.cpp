#include "Labels.h"

#include <algorithm>
#include <utility>
#include <variant>

#include "model/memory/ModelAccess.h"
#include "xmi/EscapedText.h"

namespace model_walk {

using nuv::zero::ModelElement;
using nuv::zero::meta::Class;
using nuv::zero::meta::Property;
using nuv::zero::text::toUtf16;
using nuv::zero::text::toUtf8;
using nuv::zero::traversal::Link;

namespace {

constexpr const char* pseudo = "[pseudo]";

struct Reading {
    AttributeLabel& label;

    void operator()(const std::monostate& /*nothing*/) const {}
    void operator()(const ModelElement& /*element*/) const {}
    void operator()(const std::vector<ModelElement>& /*elements*/) const {}
    void operator()(const std::u16string& text) const { label.values.push_back(toUtf8(text)); }
    void operator()(const std::vector<std::u16string>& texts) const {
        for (const std::u16string& each : texts) (*this)(each);
    }
    void operator()(std::int64_t number) const {
        label.isNumber = true;
        label.values.push_back(std::to_string(number));
    }
    void operator()(const std::vector<std::int64_t>& numbers) const {
        for (const std::int64_t each : numbers) (*this)(each);
    }
};

}  // namespace

AttributeLabel readAttribute(const ModelElement& element, const Property& attribute) {
    AttributeLabel label{toUtf8(attribute->getName()), {}, !attribute->isSingleValued(), false};
    std::visit(Reading{label}, nuv::zero::access::read(element, attribute).content());
    return label;
}

Labels::Labels(const Project& project, const Names& names, std::vector<std::string> attributes,
               Naming naming)
    : project_(project), names_(names), attributes_(std::move(attributes)), naming_(naming) {}

std::string Labels::className(const ModelElement& element) const {
    std::string& name = classNames_[element->getClass()];
    if (name.empty()) name = names_.nameOf(element->getClass());
    return name;
}

std::string Labels::givenName(const ModelElement& element) const {
    for (const Property& each : nameAttributes(element->getClass())) {
        const AttributeLabel label = readAttribute(element, each);
        if (!label.values.empty() && !label.values.front().empty()) return label.values.front();
    }
    return {};
}

std::string Labels::name(const ModelElement& element) const {
    std::string given = givenName(element);
    if (!given.empty()) return given;
    const std::string address = project_.address(element);
    return nuv::zero::xmi::unescaped(address.substr(address.find('#') + 1));
}

std::string Labels::element(const ModelElement& element) const {
    if (!element) return nuv::zero::traversal::dumpElement(element);
    const Property plain = element->getClass()->getProperty(u"name");
    const bool isPlain =
        naming_ == Naming::Plain && (!plain || !nameAttributes(element->getClass()).empty());
    return toUtf8(element->getClass()->getName()) + "'" +
           (isPlain ? givenName(element) : name(element)) + "'";
}

std::string Labels::property(const Link& link) {
    return link.getProperty() ? toUtf8(link.getProperty()->getName()) : pseudo;
}

std::string Labels::link(const Link& link) const {
    const std::string property = link.getProperty() ? "[" + Labels::property(link) + "]" : pseudo;
    return element(link.getSource()) + "-" + property + "-" + element(link.getTarget());
}

std::vector<AttributeLabel> Labels::attributes(const ModelElement& element) const {
    std::vector<AttributeLabel> labels;
    const auto add = [&](const Property& property) {
        if (!property || property->isAssociation()) return;
        AttributeLabel label = readAttribute(element, property);
        if (!label.values.empty()) labels.push_back(std::move(label));
    };
    for (const std::string& each : attributes_) {
        if (each != "*") {
            add(element->getClass()->getProperty(toUtf16(each)));
            continue;
        }
        for (const Property& property : element->getClass()->getAllClassProperties()) add(property);
    }
    return labels;
}

const Labels::Attributes& Labels::nameAttributes(const Class& type) const {
    const auto known = nameAttributes_.find(type);
    if (known != nameAttributes_.end()) return known->second;
    Attributes all;
    for (const Property& each : type->getAllClassProperties()) {
        const std::u16string& name = each->getName();
        const bool isText = each->isSingleValued() &&
                            each->getType() == nuv::zero::meta::StandardTypes::stringMeta();
        const bool isPlain = name == u"name";
        const bool isOther = naming_ == Naming::Telling && name.ends_with(u"Name");
        if (isText && (isPlain || isOther)) all.push_back(each);
    }
    std::stable_sort(all.begin(), all.end(), [](const Property& one, const Property& other) {
        return one->getName().size() < other->getName().size();
    });
    return nameAttributes_.emplace(type, std::move(all)).first->second;
}

}  // namespace model_walk
