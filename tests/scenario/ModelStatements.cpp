#include "model/memory/Text.h"
#include "tests/scenario/Statements.h"

namespace nuv::zero::scenario {

namespace {

using memory::Content;
using memory::PlantedValue;

void declareElement(Workspace& workspace, Arguments& arguments) {
    const std::string& id = arguments.word();
    workspace.declareElement(id, workspace.model.create(workspace.nextClass(arguments)));
}

void setName(Workspace& workspace, Arguments& arguments) {
    const ModelElement element = workspace.nextElement(arguments);
    const std::u16string name = text::toUtf16(arguments.text());
    const meta::Property property = element->getClass()->getProperty(u"name");
    if (!property) throw Malformed("the element's class has no property called \"name\"");
    const meta::Type type = meta::StandardTypes::stringMeta();
    if (property->isSingleValued() && property->getType() == type) {
        workspace.model.set(element, property, name);
    } else {
        workspace.model.plant(element, property, PlantedValue{type, false, name});
    }
}

void setReferences(Workspace& workspace, Arguments& arguments) {
    const ModelElement element = workspace.nextElement(arguments);
    const meta::Property property = workspace.nextProperty(arguments);
    std::vector<ModelElement> targets = workspace.remainingElements(arguments);
    if (!property->isSingleValued()) {
        try {
            workspace.model.set(element, property, targets);
        } catch (const memory::ModelError&) {
            // Scenarios also hold what a checked model refuses, such as null entries.
            workspace.model.plant(element, property,
                                  PlantedValue{property->getType(), true, std::move(targets)});
        }
        return;
    }
    if (targets.size() != 1) throw Malformed("a single-valued property takes exactly one element");
    try {
        workspace.model.set(element, property, targets.front());
    } catch (const memory::ModelError&) {
        workspace.model.plant(element, property,
                              PlantedValue{property->getType(), false, targets.front()});
    }
}

std::vector<std::u16string> remainingTexts(Arguments& arguments) {
    std::vector<std::u16string> texts;
    while (!arguments.empty()) texts.push_back(text::toUtf16(arguments.text()));
    return texts;
}

std::vector<std::int64_t> remainingIntegers(Arguments& arguments) {
    std::vector<std::int64_t> integers;
    while (!arguments.empty()) integers.push_back(arguments.integer());
    return integers;
}

Content singlePayload(Workspace& workspace, Arguments& arguments, const std::string& kind) {
    if (kind == "ref") return workspace.nextElementOrNull(arguments);
    if (kind == "str") return text::toUtf16(arguments.text());
    if (kind == "int") return arguments.integer();
    throw Malformed("a single value has none, ref, str or int in place of " + kind);
}

Content manyPayload(Workspace& workspace, Arguments& arguments, const std::string& kind) {
    if (kind == "refs") return workspace.remainingElements(arguments);
    if (kind == "strs") return remainingTexts(arguments);
    if (kind == "ints") return remainingIntegers(arguments);
    throw Malformed("a collection has none, refs, strs or ints in place of " + kind);
}

void setValue(Workspace& workspace, Arguments& arguments) {
    const ModelElement element = workspace.nextElement(arguments);
    const meta::Property property = workspace.nextProperty(arguments);
    const std::string& multiplicity = arguments.word();
    const bool many = multiplicity == "many";
    if (!many && multiplicity != "single") {
        throw Malformed("single or many is expected in place of " + multiplicity);
    }
    PlantedValue value{workspace.nextType(arguments), many, {}};
    const std::string& kind = arguments.word();
    if (kind != "none") {
        value.data = many ? manyPayload(workspace, arguments, kind)
                          : singlePayload(workspace, arguments, kind);
    }
    if (!arguments.empty()) throw Malformed("the value goes on behind its payload");
    workspace.model.plant(element, property, std::move(value));
}

}  // namespace

void addModelStatements(StatementTable& table) {
    table["element"] = {2, 2, declareElement};
    table["name"] = {2, 2, setName};
    table["refs"] = {2, anyNumber, setReferences};
    table["value"] = {5, anyNumber, setValue};
}

}  // namespace nuv::zero::scenario
