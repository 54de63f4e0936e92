#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Consumer.h"
#include "model/Framework.h"
#include "model/memory/AttributeText.h"
#include "model/memory/MessageException.h"
#include "model/memory/Text.h"

namespace nuv_consumer {

namespace {

void callMetamodel() {
    memory::Metamodel first(u"first");
    memory::Metamodel metamodel(std::move(first));
    first = std::move(metamodel);
    metamodel = std::move(first);
    const meta::Class base = metamodel.addClass(u"Base");
    const meta::Class derived =
        metamodel.addClass(u"Derived", {}, std::u16string(u"other::Derived"));
    metamodel.addSuperclass(derived, base);
    const auto number = metamodel.addPrimitive(u"Number", memory::TypeObject::Kind::Integer);
    metamodel.addProperty(derived, u"count", number);
    const auto to = metamodel.addProperty(base, u"to", base);
    const auto from = metamodel.addProperty(base, u"from", base);
    metamodel.setOpposite(to, from);
    metamodel.setOpposites(to, from);
    expect(metamodel.name() == u"first" && metamodel.classes().size() == 2,
           "a metamodel is filled");
    try {
        metamodel.addSuperclass(base, derived);
        expect(false, "a class became its own ancestor");
    } catch (const memory::ModelError& refused) {
        memory::ModelError copy(refused);
        copy = refused;
        expect(copy.what() == std::string(refused.what()), "an error is copied");
    }
}

void callModel() {
    memory::Metamodel metamodel;
    const meta::Class thing = metamodel.addClass(u"Thing");
    const auto integer = metamodel.addPrimitive(u"Integer", memory::TypeObject::Kind::Integer);
    const auto& string = meta::StandardTypes::stringMeta();
    const auto link = memory::PropertyFlags::Association;
    const auto name = metamodel.addProperty(thing, u"name", string);
    const auto one = metamodel.addProperty(thing, u"one", thing, 1, link);
    const auto number = metamodel.addProperty(thing, u"number", integer);
    const auto many = metamodel.addProperty(thing, u"many", thing, memory::unbounded, link);
    const auto texts = metamodel.addProperty(thing, u"texts", string, memory::unbounded);
    const auto numbers = metamodel.addProperty(thing, u"numbers", integer, memory::unbounded);

    memory::Model first;
    memory::Model model(std::move(first));
    first = std::move(model);
    model = std::move(first);
    const ModelElement a = model.create(thing);
    const ModelElement b = model.create(thing, u"b");
    model.set(a, one, b);
    model.set(a, name, u"a");
    model.set(a, number, std::int64_t{7});
    model.set(a, many, std::vector<ModelElement>{b});
    model.set(a, texts, std::vector<std::u16string>{u"x"});
    model.set(a, numbers, std::vector<std::int64_t>{1});
    model.add(a, many, a);
    model.add(a, texts, u"y");
    model.add(a, numbers, std::int64_t{2});
    expect(access::toElements(access::read(a, many)) == std::vector<ModelElement>{b, a},
           "elements are set and added");
    model.set(a, many, {a});
    model.set(a, numbers, {3});
    model.set(a, texts, {u"z"});
    expect(access::read(a, many).viewElements().size() == 1 &&
               access::read(a, one).viewElement()[0] == b.get(),
           "what a value holds is viewed");
    model.clear(a, texts);
    model.unset(a, one);
    model.plant(a, number, {string, false, std::u16string(u"no number")});
    expect(access::toString(access::read(a, number)) == u"no number", "a value is planted");
    expect(model.size() == 2 && model.elements() == std::vector<ModelElement>{a, b} &&
               model.roots() == model.elements(),
           "a model counts and lists its elements");
    expect(memory::textOf(a, name) == "a" && memory::textOf(b, u"name") == "b",
           "attributes are read as text");
}

void callValue(const Station& station) {
    const ValueMeta nothing;
    ValueMeta text(meta::StandardTypes::stringMeta(), false);
    ValueMeta copy(text);
    const ValueMeta moved(std::move(copy));
    text = moved;
    expect(
        text.getType() == meta::StandardTypes::stringMeta() && text.isSingle() && !nothing.isMany(),
        "a value's type is told");
    expect(!Value().isSet() && Value(text, {}).asString().empty(), "an unset text is empty");
    const Value name = access::read(station.one, station.name);
    expect(name.getMeta().getType() == meta::StandardTypes::stringMeta() &&
               name.asString() == u"one" && std::get<std::u16string>(name.content()) == u"one",
           "a text is a text");
    expect(access::read(station.one, station.next).asElement() == station.two &&
               access::read(station.one, station.parts).asElements().size() == 2,
           "elements are elements");
    try {
        (void)name.asElement();
        expect(false, "a text was read as an element");
    } catch (const CannotCastIncompatibleTypes& refused) {
        expect(refused.id() == "CannotCastIncompatibleTypes", refused.what());
    }
}

void callExceptions() {
    MessageException made("catalog", "id", {u"argument"}, "text");
    const MessageException copy(made);
    made = copy;
    expect(made.catalog() == "catalog" && made.id() == "id" &&
               made.arguments() == std::vector<std::u16string>{u"argument"} &&
               made.what() == std::string("text"),
           "an exception tells its message");
    expect(CannotCastIncompatibleTypes(u"T").arguments().front() == u"T",
           "an exception names the type");
}

}  // namespace

void callModels(Station& station) {
    callMetamodel();
    callModel();
    callValue(station);
    callExceptions();
    expect(text::toUtf16(text::toUtf8(u"\u00e4")) == u"\u00e4", "texts are converted");
}

}  // namespace nuv_consumer
