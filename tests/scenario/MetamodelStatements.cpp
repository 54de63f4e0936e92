#include "model/memory/Text.h"
#include "tests/scenario/Statements.h"
#include "tests/support/PrivateAccess.h"

namespace nuv::zero::testing_support {

struct PropertyOpposite {
    friend auto pointerTo(PropertyOpposite);
};
template struct Expose<PropertyOpposite, &memory::PropertyObject::opposite_>;

}  // namespace nuv::zero::testing_support

namespace nuv::zero::scenario {

namespace {

using memory::PropertyFlags;

PropertyFlags flagsOf(const std::string& letters) {
    PropertyFlags flags = PropertyFlags::None;
    if (letters == "-") return flags;
    for (const char letter : letters) {
        switch (letter) {
            case 'a':
                flags = flags | PropertyFlags::Association;
                break;
            case 'd':
                flags = flags | PropertyFlags::Derived;
                break;
            case 'c':
                flags = flags | PropertyFlags::Composite;
                break;
            default:
                throw Malformed("there is no property flag " + std::string(1, letter));
        }
    }
    return flags;
}

void declareClass(Workspace& workspace, Arguments& arguments) {
    const std::string& id = arguments.word();
    const std::u16string name = text::toUtf16(arguments.text());
    const std::u16string qualifiedName = text::toUtf16(arguments.text());
    std::vector<meta::Class> superclasses;
    while (!arguments.empty()) superclasses.push_back(workspace.nextClass(arguments));
    workspace.declareType(id, workspace.metamodel.addClass(name, superclasses, qualifiedName));
}

void declarePrimitive(Workspace& workspace, Arguments& arguments) {
    const std::string& id = arguments.word();
    // Every value is planted, so what the type's own values would be does not matter.
    workspace.declareType(id, workspace.metamodel.addPrimitive(text::toUtf16(arguments.text()),
                                                               memory::TypeObject::Kind::Text));
}

void declareProperty(Workspace& workspace, Arguments& arguments) {
    const std::string& id = arguments.word();
    const meta::Class owner = workspace.nextClass(arguments);
    const std::u16string name = text::toUtf16(arguments.text());
    const meta::StructuredType type = workspace.nextType(arguments);
    const int upperBound = arguments.number<int>();
    const PropertyFlags flags = flagsOf(arguments.word());
    workspace.declareProperty(
        id, workspace.metamodel.addProperty(owner, name, type, upperBound, flags));
}

void setOpposite(Workspace& workspace, Arguments& arguments) {
    const meta::Property property = workspace.nextProperty(arguments);
    const meta::Property opposite = workspace.nextProperty(arguments);
    if (!property->getOpposite()) {
        workspace.metamodel.setOpposite(property, opposite);
        return;
    }
    // A metamodel refuses a second opposite, a scenario just says what holds from here on.
    meta::Property& stored = (*property.get()).*pointerTo(testing_support::PropertyOpposite());
    memory::Lending::forget(stored);
    stored = memory::Lending::lend<meta::Property>(opposite.get());
}

}  // namespace

void addMetamodelStatements(StatementTable& table) {
    table["class"] = {3, anyNumber, declareClass};
    table["prim"] = {2, 2, declarePrimitive};
    table["prop"] = {6, 6, declareProperty};
    table["opposite"] = {2, 2, setOpposite};
}

}  // namespace nuv::zero::scenario
