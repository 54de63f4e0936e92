#include "tests/scenario/Workspace.h"

namespace nuv::zero::scenario {

namespace {

const std::string nullName = "null";

void refuseNull(const std::string& name, const char* kind) {
    if (name == nullName) {
        throw Malformed("null stands for no " + std::string(kind) + " and cannot be declared");
    }
}

}  // namespace

Workspace::Workspace(std::ostream& transcript) : output(transcript) {
    declareType("String", meta::StandardTypes::stringMeta());
}

std::string Workspace::idOf(const ModelElement& object) const {
    if (!object) return nullName;
    const auto entry = ids_.find(object);
    return entry == ids_.end() ? "undeclared" : entry->second;
}

std::string Workspace::stepOf(const Link& link) const {
    return idOf(link.getSource()) + ' ' + idOf(link.getProperty()) + ' ' + idOf(link.getTarget());
}

std::string Workspace::cascadingStepOf(const Link& link) const {
    return (link.shouldCascade() ? "cascade " : "nocascade ") + stepOf(link);
}

meta::StructuredType Workspace::nextType(Arguments& arguments) {
    return types_.get(arguments.word());
}

meta::Class Workspace::nextClass(Arguments& arguments) {
    return classNamed(arguments.word());
}

meta::Property Workspace::nextProperty(Arguments& arguments) {
    return properties_.get(arguments.word());
}

meta::Property Workspace::nextPropertyOrNull(Arguments& arguments) {
    return propertyNamedOrNull(arguments.word());
}

ModelElement Workspace::nextElement(Arguments& arguments) {
    return elements_.get(arguments.word());
}

ModelElement Workspace::nextElementOrNull(Arguments& arguments) {
    return elementNamedOrNull(arguments.word());
}

PrintingProcessor* Workspace::nextProcessorOrNull(Arguments& arguments) {
    const std::string& name = arguments.word();
    return name == nullName ? nullptr : processors.get(name);
}

meta::Class Workspace::classNamed(const std::string& name) {
    const meta::Class type(types_.get(name));
    if (!type) throw Malformed("a class is expected in place of the primitive type " + name);
    return type;
}

meta::Property Workspace::propertyNamedOrNull(const std::string& name) {
    return name == nullName ? meta::Property() : properties_.get(name);
}

ModelElement Workspace::elementNamedOrNull(const std::string& name) {
    return name == nullName ? ModelElement() : elements_.get(name);
}

std::vector<ModelElement> Workspace::remainingElements(Arguments& arguments) {
    std::vector<ModelElement> elements;
    while (!arguments.empty()) elements.push_back(nextElementOrNull(arguments));
    return elements;
}

std::vector<PropertyMatcher> Workspace::remainingMatchers(Arguments& arguments) {
    std::vector<PropertyMatcher> remaining;
    while (!arguments.empty()) remaining.push_back(matchers.get(arguments.word()));
    return remaining;
}

void Workspace::declareType(const std::string& name, const meta::StructuredType& type) {
    types_.put(name, type);
    ids_.insert_or_assign(type, name);
}

void Workspace::declareProperty(const std::string& name, const meta::Property& property) {
    refuseNull(name, "property");
    properties_.put(name, property);
    ids_.insert_or_assign(property, name);
}

void Workspace::declareElement(const std::string& name, const ModelElement& element) {
    refuseNull(name, "element");
    elements_.put(name, element);
    ids_.insert_or_assign(element, name);
}

}  // namespace nuv::zero::scenario
