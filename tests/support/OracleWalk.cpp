#include "tests/support/OracleWalk.h"

#include <utility>
#include <variant>

namespace nuv::zero::test {

using traversal::Link;
using traversal::ResultPolicy;

OracleGround::OracleGround(const ModelBuilder& m) {
    for (const meta::Class& type : m.classes()) addClass(type);
    for (const meta::Class& type : m.classes()) addProperties(type);
    for (const meta::Property& property : properties_) {
        const auto index = static_cast<std::size_t>(indexOf(property));
        world_.properties[index].opposite = indexOf(access::oppositeOf(property));
    }
    for (const ModelElement& element : m.elements()) {
        add(elements_, element);
        world_.elements.push_back(indexOf(access::classOf(element)));
    }
    for (const ModelElement& element : elements_) addValues(element);
}

template <class Handle>
int OracleGround::add(std::vector<Handle>& handles, const Handle& handle) {
    const int index = static_cast<int>(handles.size());
    handles.push_back(handle);
    indices_.emplace(handle, index);
    return index;
}

void OracleGround::addClass(const meta::Class& type) {
    add(classes_, type);
    oracle::ClassDefinition definition;
    definition.qualifiedName = access::qualifiedNameOf(type);
    for (const meta::Class& superclass : type->getSuperclasses()) {
        definition.superclasses.push_back(indexOf(superclass));
    }
    world_.classes.push_back(std::move(definition));
}

/// A class's own properties, in their order: those of its superclasses come before.
void OracleGround::addProperties(const meta::Class& type) {
    for (const meta::Property& property : access::allProperties(type)) {
        if (indices_.count(property) != 0) continue;
        add(properties_, property);
        oracle::PropertyDefinition definition;
        definition.owner = indexOf(access::owningClass(property));
        definition.name = access::nameOf(property);
        definition.type = typeIndexOf(property->getType());
        definition.upperBound = access::isSingleValued(property) ? 1 : -1;
        definition.association = access::isAssociation(property);
        definition.derived = access::isDerived(property);
        definition.composite = access::isComposite(property);
        world_.properties.push_back(std::move(definition));
    }
}

void OracleGround::addValues(const ModelElement& element) {
    using Payload = oracle::ValueDefinition::Payload;
    for (const meta::Property& property : access::allProperties(access::classOf(element))) {
        const Value value = access::read(element, property);
        oracle::ValueDefinition definition;
        definition.type = typeIndexOf(value.getMeta().getType());
        definition.many = value.getMeta().isMany();
        const memory::Content content = value.content();
        if (const auto* one = std::get_if<ModelElement>(&content)) {
            definition.payload = Payload::Elements;
            definition.elements.push_back(indexOf(*one));
        } else if (const auto* all = std::get_if<std::vector<ModelElement>>(&content)) {
            definition.payload = Payload::Elements;
            for (const ModelElement& entry : *all) definition.elements.push_back(indexOf(entry));
        } else if (access::isSet(value)) {
            definition.payload = Payload::Text;
        }
        world_.values[{indexOf(element), indexOf(property)}] = std::move(definition);
    }
}

int OracleGround::typeIndexOf(const meta::Type& type) const {
    for (std::size_t index = 0; index < classes_.size(); ++index) {
        if (meta::Type(classes_[index]) == type) return static_cast<int>(index);
    }
    return oracle::stringType;
}

std::shared_ptr<oracle::NaiveResult> OracleGround::result(const oracle::Rules& rules,
                                                          const std::vector<ModelElement>& inputs,
                                                          traversal::Algo order) const {
    auto result = std::make_shared<oracle::NaiveResult>();
    result->provider = std::make_shared<oracle::NaiveProvider>(world_, rules);
    if (observer != nullptr) result->hearers.push_back({0, {}});
    for (const ModelElement& input : inputs) result->inputs.push_back(indexOf(input));
    result->dropsPseudoLinks = rules.pseudoLinkPolicy == 0;
    for (std::size_t index = 0; index < filters.size(); ++index) {
        result->filters.push_back(static_cast<int>(index));
    }
    result->algo = static_cast<int>(order);
    return result;
}

ModelElement OracleGround::elementAt(int index) const {
    return index == oracle::none ? ModelElement() : elements_.at(static_cast<std::size_t>(index));
}

Link OracleGround::linkOf(const oracle::IndexedLink& step) const {
    meta::Property property;
    if (step.property != oracle::none) {
        property = properties_.at(static_cast<std::size_t>(step.property));
    }
    Link link(elementAt(step.source), elementAt(step.target), property);
    if (!step.cascade) link.setNoCascade();
    return link;
}

bool OracleGround::predicate(int predicate, int type) {
    return predicates.at(static_cast<std::size_t>(predicate))(
        classes_.at(static_cast<std::size_t>(type)));
}

int OracleGround::filter(int filter, const oracle::IndexedLink& link) {
    return static_cast<int>(filters.at(static_cast<std::size_t>(filter))(linkOf(link)));
}

void OracleGround::event(int /*observer*/, oracle::Event event, int element, int property) {
    using oracle::Event;
    const ModelElement about = elementAt(element);
    switch (event) {
        case Event::EnterInput:
            return observer->onEnterInputElement(about);
        case Event::EnterElement:
            return observer->onEnterElement(about);
        case Event::EnterProperty:
            return observer->onEnterProperty(about,
                                             properties_.at(static_cast<std::size_t>(property)));
        case Event::ExitProperty:
            return observer->onExitProperty(about,
                                            properties_.at(static_cast<std::size_t>(property)));
        case Event::ExitElement:
            return observer->onExitElement(about);
        case Event::ExitInput:
            return observer->onExitInputElement(about);
    }
}

}  // namespace nuv::zero::test
