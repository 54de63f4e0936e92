#include <functional>
#include <utility>

#include "Consumer.h"
#include "model/Framework.h"

namespace nuv_consumer {

namespace {

/// The operations that every kind of handle has of its own.
template <class Handle>
void callHandle(const Handle& handle, const std::string& kind) {
    const Handle null;
    expect(!null && null == Handle() && null.get() == nullptr, kind + ": null by default");
    const Handle same(handle.get());
    expect(same == handle && same.operator->() == handle.get(), kind + ": one object, one handle");
}

}  // namespace

void callHandles(Station& station) {
    callHandle(station.one, "element");
    callHandle<meta::Class>(station.block, "class");
    callHandle<meta::Property>(station.parts, "property");
    callHandle<meta::Type>(station.name->getType(), "type");
    callHandle<meta::StructuredType>(station.name->getOwningType(), "structured type");
    callHandle<meta::PrimitiveType>(meta::StandardTypes::stringMeta(), "primitive type");

    ModelElement element(station.one);
    ModelElement taken(std::move(element));
    element = taken;
    taken = ModelElement(station.two);
    expect(static_cast<bool>(element) && element == station.one && taken == station.two,
           "handles are copied and moved");

    const meta::Class owner(station.name->getOwningType());
    expect(owner == station.block, "a structured type is a class");
    expect(meta::internal::getPrimitiveTypeFromMetaRegistry(u"String") ==
               meta::StandardTypes::stringMeta(),
           "the standard string type is registered");
    expect(station.block->conformsTo(ModelElement::metaClass()) &&
               station.block->getClass() == meta::Class::metaClass(),
           "a class is a class of elements, and an element of the class of classes");

    const std::hash<ModelElement> hash;
    expect(hash(station.one) == hash(ModelElement(station.one)), "equal handles hash alike");
    expect(std::hash<meta::Class>()(station.block) == hash(station.block) &&
               std::hash<meta::Property>()(station.name) == hash(station.name) &&
               std::hash<meta::Type>()(station.block) == hash(station.block),
           "what is an element hashes as one");
    expect(memory::mixAddress(&hash) != memory::mixAddress(&element), "addresses are mixed");

    ModelElement lent = memory::Lending::lend<ModelElement>(station.one.get());
    expect(lent == station.one, "a lent handle is equal");
    memory::Lending::forget(lent);
    expect(!lent, "a forgotten handle is null");
}

void callAccess(Station& station) {
    using namespace access;
    expect(classOf(station.one) == station.block, "an element has its class");
    expect(nameOf(station.block) == u"Block" && nameOf(station.parts) == u"parts" &&
               qualifiedNameOf(station.block) == u"station::Block",
           "classes and properties have names");
    expect(allProperties(station.block).size() == 4, "a class lists its properties");
    expect(propertyNamed(station.block, u"next") == station.next &&
               hasProperty(station.block, station.next),
           "a class knows its properties");
    expect(conformsTo(station.block, ModelElement::metaClass()), "a class is one of elements");
    expect(
        owningClass(station.next) == station.block && oppositeOf(station.next) == station.previous,
        "a property knows its class and its other end");
    expect(asElement(station.next) == station.next, "a property is an element");
    expect(isAssociation(station.parts) && isComposite(station.parts) &&
               !isDerived(station.parts) && !isSingleValued(station.parts),
           "a property has flags");
    expect(toUtf8(toString(read(station.one, station.name))) == "one", "a text is read");
    expect(toElements(read(station.one, station.parts)).size() == 2, "elements are read");
    const Value next = read(station.one, station.next);
    expect(isSet(next) && toElement(next) == station.two, "an element is read");
}

}  // namespace nuv_consumer
