#include <memory>
#include <utility>

#include "Consumer.h"
#include "model/Framework.h"
#include "model/memory/Storage.h"

/// How the in-memory model keeps values, and keeps them alive.
namespace nuv_consumer {

namespace {

using memory::ElementView;
using memory::Payload;
using memory::PayloadPointer;
using memory::Pins;
using memory::SlotWord;

void callObject(const Station& station) {
    const memory::Object& object = *station.one.get();
    const auto access = memory::Object::ReflectionPrivateTag::PUBLIC_ACCESS;
    object.retain();
    object.release();
    expect(object.getClass() == station.block, "an object has its class");
    expect(object.get(station.next, access).asElement() == station.two, "an object has values");
    expect(object.view(station.parts, access).size() == 2, "an object shows its elements");
    object.storage()->retain();
    object.storage()->release();
}

void callPins(const Station& station) {
    Pins pins;
    pins.pin(station.one);
    pins.pin(station.block->storage());
    Pins copy(pins);
    const Pins moved(std::move(copy));
    pins = moved;
    expect(pins.holds(station.one->storage()) && pins.storages().size() == 2, "pins are copied");
}

void callPayload() {
    PayloadPointer null;
    const PayloadPointer number(new Payload(Payload::Data(std::int64_t{1})));
    const PayloadPointer text(
        new Payload(std::in_place_type<std::u16string>, std::u16string(u"text")));
    const PayloadPointer shared = PayloadPointer::share(number.get());
    const PayloadPointer copy(shared);
    PayloadPointer moved(copy);
    PayloadPointer taken(std::move(moved));
    null = taken;
    expect(static_cast<bool>(null) && number->isShared() && !(*text).isShared(),
           "a payload counts its pointers");
    const PayloadPointer back(null.detach());
    expect(back.get() == number.get(), "a detached payload is taken back");
}

void callSlotWord(const Station& station) {
    SlotWord word;
    expect(word.isNeverSet(), "a fresh slot was never set");
    word = SlotWord::reference(*station.one.get());
    expect(word.isReference() && word.target() == station.one.get(), "a slot refers");
    word.release();
    word = SlotWord::holding(PayloadPointer(new Payload(Payload::Data(std::int64_t{1}))));
    expect(word.isPayload() && word.payload() != nullptr, "a slot holds");
    word.release();
    word = SlotWord::withoutPayload();
    expect(word.isPayload() && word.payload() == nullptr, "a slot is without payload");
}

void callElementView(const Station& station) {
    ElementView view;
    const ElementView single(station.one.get());
    const std::vector<ModelElement> elements{station.two, station.three};
    ElementView list(PayloadPointer(new Payload(Payload::Data(elements))));
    ElementView copy(list);
    ElementView moved(std::move(copy));
    view = moved;
    copy = ElementView(single);
    moved = std::move(list);
    expect(view.size() == 2 && copy.size() == 1, "a view has a size");
    ModelElement lent = view.lend(1);
    expect(lent == station.three, "a view lends");
    memory::Lending::forget(lent);
    view.clear();
    expect(view.size() == 0, "a cleared view is empty");

    const memory::PropertyReader none;
    const memory::PropertyReader reader(station.block, station.parts);
    expect(none.read(station.one, station.parts).size() == 2 &&
               reader.read(station.one, station.parts).size() == 2,
           "a reader reads any element");
}

}  // namespace

void callStoredValues(Station& station) {
    callObject(station);
    callPins(station);
    callPayload();
    callSlotWord(station);
    callElementView(station);
}

}  // namespace nuv_consumer
