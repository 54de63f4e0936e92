#include "Consumer.h"
#include "model/Framework.h"

/// What handles of classes, properties and types lead to.
namespace nuv_consumer {

namespace {

using memory::ClassObject;
using memory::PropertyObject;
using memory::TypeObject;

/// Only metamodels make these objects; the operations can be linked all the same.
void makeObjects(const Station& station) {
    const meta::Class& metaClass = meta::Class::metaClass();
    memory::Storage& storage = *station.block->storage();
    ClassObject made(metaClass.get(), u"Made", u"station::Made", storage, {station.block.get()});
    const PropertyObject property(metaClass, made, u"made", *station.block.get(), 1,
                                  memory::PropertyFlags::None, 0);
    const memory::PrimitiveTypeObject primitive(TypeObject::Kind::Integer, u"station::Int",
                                                metaClass, storage);
    expect(primitive.getName().empty(), "objects are made");
}

void callTypes(const Station& station) {
    const TypeObject& type = station.name->type();
    expect(type.getName() == u"String" && type.getQualifiedName() == u"String", "a type has names");
    expect(type.kind() == TypeObject::Kind::Text && !type.isClass(), "a type has a kind");
    expect(type.conformsTo(meta::StandardTypes::stringMeta()), "a type conforms to itself");
    expect(station.block->canStandFor(*station.block.get()), "a class can stand for itself");
}

void callClasses(const Station& station) {
    const ClassObject& block = *station.block.get();
    expect(block.handle() == station.block, "a class has a handle");
    expect(block.getAllClassProperties().size() == 4 && block.ownProperties().size() == 4,
           "a class has its properties");
    expect(block.getProperty(u"name") == station.name && block.hasProperty(station.name),
           "a class finds its properties");
    expect(block.isKindOf(block) && block.getSuperclasses().empty(), "a class has a place");
    const memory::ClassLayout& layout = block.layout();
    expect(layout.lineage().back() == &block && layout.descendsFrom(layout),
           "a lineage ends with the class");
    expect(layout.slotOf(*station.name.get()) < layout.slotCount(), "a property has a slot");
}

void callProperties(const Station& station) {
    const PropertyObject& next = *station.next.get();
    expect(next.getName() == u"next" && next.getType() == station.block &&
               &next.type() == station.block.get(),
           "a property has a name and a type");
    expect(next.getUpperBound() == 1 && next.isSingleValued(), "a property has a bound");
    expect(has(next.flags(), memory::PropertyFlags::Association) && next.isAssociation() &&
               !next.isDerived() && !next.isComposite(),
           "a property has flags");
    expect(next.isEmptyWhenNeverSet(), "nothing is there before it is set");
    expect(next.getOpposite() == station.previous, "a property has another end");
    expect(next.getOwningType() == station.block && &next.owner() == station.block.get(),
           "a property has an owner");
}

}  // namespace

void callMetamodelObjects(Station& station) {
    callTypes(station);
    callClasses(station);
    callProperties(station);
    if (never()) makeObjects(station);
}

}  // namespace nuv_consumer
