#include <cstdint>
#include <string_view>
#include <utility>

#include "Consumer.h"
#include "model/Framework.h"

/// How the in-memory model keeps values, and keeps them alive.
namespace nuv_consumer {

namespace {

using memory::ElementView;
using memory::HeldWord;
using memory::Object;
using memory::Payload;
using memory::Pins;
using memory::SlotWord;

/// A list of two elements that counts them, as values and views keep one.
HeldWord listOfTwo(const Station& station) {
    Payload& list = Payload::make(Payload::Kind::Elements, 2);
    list.append<const Object*>(station.two.get());
    list.append<const Object*>(station.three.get());
    list.countElements();
    return HeldWord(SlotWord::holding(list));
}

void callObject(const Station& station) {
    const Object& object = *station.one.get();
    const auto access = Object::ReflectionPrivateTag::PUBLIC_ACCESS;
    object.retain();
    object.release();
    expect(object.getClass() == station.block, "an object has its class");
    expect(object.get(station.next, access).asElement() == station.two, "an object has values");
    expect(object.view(station.parts, access).size() == 2, "an object shows its elements");
}

void callStorage(const Station& station) {
    memory::Storage& storage = *station.one->storage();
    storage.retain();
    expect(storage.isShared(), "a storage counts its users");
    storage.release();
    storage.pin();
    expect(storage.isPinned(), "a storage counts its pins");
    storage.unpin();

    Pins pins;
    pins.pin(station.one);
    pins.pin(station.block->storage());
    Pins copy(pins);
    const Pins moved(std::move(copy));
    pins = moved;
    expect(pins.holds(&storage) && pins.storages().size() == 2, "pins are copied");
}

void callSlotWord(const Station& station) {
    expect(SlotWord().isNeverSet(), "a fresh slot was never set");
    const SlotWord own = SlotWord::own(*station.one.get());
    expect(own.isReference() && !own.isCounted() && own.target() == station.one.get(),
           "a slot refers");
    station.one->retain();
    const HeldWord counted(SlotWord::counted(*station.one.get()));
    expect(counted.word().isReference() && counted.word().isCounted(), "a slot counts");
    const SlotWord nothing = SlotWord::withoutPayload();
    expect(nothing.isPayload() && nothing.isWithoutPayload() && nothing.payload() == nullptr,
           "a slot is without payload");
    const std::int64_t number = -7;
    expect(SlotWord::fits(number) && SlotWord::number(number).isNumber() &&
               SlotWord::number(number).number() == number,
           "a slot takes a number");
    const std::u16string_view text = u"abc";
    expect(SlotWord::fits(text) && SlotWord::text(text).isText() &&
               SlotWord::text(text).text() == text,
           "a slot takes a short text");
}

void callHeldWord(const Station& station) {
    HeldWord none;
    const HeldWord kept = HeldWord::keeping(SlotWord::own(*station.one.get()));
    const HeldWord lean = HeldWord::lean(SlotWord::own(*station.one.get()));
    expect(kept.word().isCounted() && !lean.word().isCounted(), "a word is kept, or leans");
    HeldWord copy(kept);
    HeldWord moved(std::move(copy));
    none = moved;
    HeldWord back(none.detach());
    expect(none.word().isNeverSet() && back.word().target() == station.one.get(),
           "a detached word is taken back");
}

void callPayload(const Station& station) {
    const HeldWord owner = listOfTwo(station);
    Payload& list = *owner.word().payload();
    expect(list.kind() == Payload::Kind::Elements && list.size() == 2 && list.capacity() == 2 &&
               list.countsElements(),
           "a list knows what it holds");
    list.retain();
    expect(list.isShared(), "a list counts its readers");
    list.release();

    memory::Storage& storage = *station.one->storage();
    list.view();
    expect(!list.isReadElsewhere(storage), "nobody views what is not pinned");
    storage.pin();
    expect(list.isViewedIn(storage), "a list is viewed");
    storage.unpin();

    Payload& taking = Payload::make(Payload::Kind::Elements, 2);
    const HeldWord ownerOfTaking(SlotWord::holding(taking));
    list.moveInto<const Object*>(taking);
    expect(*taking.entries<const Object*>() == station.two.get() &&
               std::as_const(taking).entries<const Object*>()[1] == station.three.get() &&
               taking.countsElements() && !list.countsElements(),
           "a list is moved, counts and all");
}

void callElementView(const Station& station) {
    ElementView view;
    const ElementView single(HeldWord::keeping(SlotWord::own(*station.one.get())));
    ElementView list(listOfTwo(station));
    ElementView copy(list);
    ElementView moved(std::move(copy));
    view = moved;
    copy = ElementView(single);
    moved = std::move(list);
    expect(view.size() == 2 && view[0] == station.two.get() && copy.size() == 1,
           "a view shows elements");
    ModelElement lent = view.lend(1);
    expect(lent == station.three, "a view lends");
    memory::Lending::forget(lent);
    view.clear();
    expect(view.size() == 0, "a cleared view is empty");
}

void callPinnedReading(const Station& station) {
    Pins pins;
    pins.pin(station.one);
    expect(ElementView::pinned(SlotWord::own(*station.one.get())).size() == 1,
           "an element of a pinned model is viewed");
    const memory::PropertyReader none;
    const memory::PropertyReader reader(station.block, station.parts);
    reader.prefetch(station.one);
    expect(none.read(station.one, station.parts).size() == 2 &&
               reader.read(station.one, station.parts).size() == 2,
           "a reader reads any element");
}

}  // namespace

void callStoredValues(Station& station) {
    callObject(station);
    callStorage(station);
    callSlotWord(station);
    callHeldWord(station);
    callPayload(station);
    callElementView(station);
    callPinnedReading(station);
}

}  // namespace nuv_consumer
