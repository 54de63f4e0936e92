#include "model/memory/Model.h"

#include <algorithm>
#include <string>
#include <type_traits>
#include <utility>

#include "model/Compiler.h"
#include "model/memory/Describe.h"
#include "model/memory/ModelStorage.h"
#include "model/memory/Roots.h"
#include "model/memory/StoredWords.h"
#include "model/memory/Text.h"

namespace nuv::zero::memory {
namespace {

/// `Block'b1'`: the class and the text of the property called "name", empty where there is none.
std::string describeValue(const ModelElement& element) {
    if (!element) return "null";
    std::string name;
    if (const meta::Property named = element->getClass()->getProperty(u"name")) {
        const Content content =
            element->get(named, Object::ReflectionPrivateTag::PUBLIC_ACCESS).content();
        if (const auto* text = std::get_if<std::u16string>(&content)) name = text::toUtf8(*text);
    }
    return describe::type(*element->getClass().get()) + "'" + name + "'";
}
std::string describeValue(std::u16string_view text) {
    return describe::quoted(text);
}
std::string describeValue(std::int64_t number) {
    return std::to_string(number);
}

/// One property of one element, both known to fit together.
struct Place {
    ModelStorage& storage;
    const Object& element;
    const PropertyObject& property;
    ClassLayout::Slot number;

    /// Throws `std::bad_alloc`, and then has changed nothing.
    SlotWord& slot() const { return storage.slot(element, number); }

    [[noreturn]] MODELING_NUV0_COLD void refuse(const std::string& value,
                                                const std::string& reason) const {
        throw ModelError("The property " + describe::property(property) + " of " +
                         describeValue(ModelElement(&element)) + " cannot hold " + value +
                         ", because " + reason + ".");
    }
};

[[noreturn]] MODELING_NUV0_COLD void refusePlace(const ModelStorage* storage,
                                                 const ModelElement& element,
                                                 const meta::Property& property) {
    if (!property) {
        throw ModelError("A null property cannot be set on " + describeValue(element) + ".");
    }
    const std::string name = describe::property(*property.get());
    if (!element) {
        throw ModelError("The property " + name + " cannot be set on a null element.");
    }
    throw ModelError(
        "The property " + name + " cannot be set on " + describeValue(element) + ", because " +
        (element->storage() != storage
             ? "that element is of another model."
             : "the class " + describe::type(*element->getClass().get()) + " does not have it."));
}

Place checkedPlace(ModelStorage* storage, const ModelElement& element,
                   const meta::Property& property) {
    if (storage != nullptr && property && element && element->storage() == storage) {
        const ClassLayout::Slot number =
            element->getClass().get()->layout().slotOf(*property.get());
        if (number != ClassLayout::noSlot)
            return {*storage, *element.get(), *property.get(), number};
    }
    refusePlace(storage, element, property);
}

template <class Value>
void checkSingle(const Place& place, const Value& value) {
    if (place.property.isSingleValued()) return;
    place.refuse(describeValue(value) + " as a single value", "it holds a collection");
}

void checkCount(const Place& place, std::size_t count) {
    const int bound = place.property.getUpperBound();
    if (bound < 0 || count <= static_cast<std::size_t>(bound)) return;
    place.refuse(std::to_string(count) + " values", "its upper bound is " + std::to_string(bound));
}

template <class Value>
[[noreturn]] void refuseType(const Place& place, const Value& value) {
    place.refuse(describeValue(value), "its type is " + describe::type(place.property.type()));
}

void checkType(const Place& place, const ModelElement& target) {
    const TypeObject& declared = place.property.type();
    const bool fits = target ? target->getClass()->canStandFor(declared) : declared.isClass();
    if (!fits) refuseType(place, target);
}
void checkType(const Place& place, std::u16string_view text) {
    if (place.property.type().kind() != TypeObject::Kind::Text) refuseType(place, text);
}
void checkType(const Place& place, std::int64_t number) {
    if (place.property.type().kind() != TypeObject::Kind::Integer) refuseType(place, number);
}

void checkEntry(const Place& place, const ModelElement& target) {
    if (!target) place.refuse("a null entry", "the entries of a collection are elements");
    checkType(place, target);
}
void checkEntry(const Place& place, std::u16string_view text) {
    checkType(place, text);
}
void checkEntry(const Place& place, std::int64_t number) {
    checkType(place, number);
}

/// Lists are checked as a whole too, because an empty one has no entry that is of the wrong type.
template <class Entry>
void checkListType(const Place& place) {
    constexpr bool elements = std::is_same_v<Entry, ModelElement>;
    constexpr bool texts = std::is_same_v<Entry, std::u16string>;
    constexpr TypeObject::Kind kind = elements ? TypeObject::Kind::Class
                                      : texts  ? TypeObject::Kind::Text
                                               : TypeObject::Kind::Integer;
    if (place.property.type().kind() == kind) return;
    place.refuse(elements ? "a list of elements"
                 : texts  ? "a list of texts"
                          : "a list of integers",
                 "its type is " + describe::type(place.property.type()));
}

bool isForeign(const ModelStorage& storage, const ModelElement& element) noexcept {
    return element->storage() != &storage;
}
/// A reference that keeps an element alive which its storage does not keep.
SlotWord reference(const ModelStorage& storage, const ModelElement& target) noexcept {
    if (!isForeign(storage, target)) return SlotWord::own(*target.get());
    target->retain();
    return SlotWord::counted(*target.get());
}

void store(const Place& place, HeldWord word) {
    // First the slot, which may fail while the word still has an owner.
    SlotWord& slot = place.slot();
    place.storage.replace(slot, word.detach());
}

template <class Value>
void setSingle(const Place& place, const Value& value) {
    checkSingle(place, value);
    checkType(place, value);
    store(place, wordFor(value));
}

void checkMany(const Place& place) {
    if (place.property.isSingleValued()) place.refuse("a collection", "it holds a single value");
}

template <class Entry>
void setMany(const Place& place, const std::vector<Entry>& entries) {
    checkMany(place);
    checkListType<Entry>(place);
    checkCount(place, entries.size());
    for (const Entry& entry : entries) checkEntry(place, entry);
    // An empty list reads as one that was never set.
    if (entries.empty()) return place.storage.replace(place.slot(), SlotWord());
    if constexpr (std::is_same_v<Entry, ModelElement>) {
        const bool counts = std::any_of(entries.begin(), entries.end(), [&](const Entry& entry) {
            return isForeign(place.storage, entry);
        });
        if (entries.size() == 1 && !counts) {
            return place.storage.replace(place.slot(), SlotWord::own(*entries.front().get()));
        }
        HeldWord list = wordFor(entries);
        if (counts) list.word().payload()->countElements();
        return store(place, std::move(list));
    } else {
        store(place, wordFor(entries));
    }
}

template <class Entry, class Value>
void addOne(const Place& place, const Value& value) {
    using List = ListOf<Entry>;
    if (place.property.isSingleValued()) {
        place.refuse(describeValue(value) + " as one more value", "it holds a single value");
    }
    checkEntry(place, value);
    bool counts = false;
    if constexpr (std::is_same_v<Entry, ModelElement>) counts = isForeign(place.storage, value);

    SlotWord& slot = place.slot();
    if (slot.isNeverSet() || slot.isWithoutPayload()) {
        checkCount(place, 1);
        if constexpr (std::is_same_v<Entry, ModelElement>) {
            if (!counts) return place.storage.replace(slot, SlotWord::own(*value.get()));
        }
        typename List::Stored entry = List::entry(value);
        place.storage.replace(slot, SlotWord::holding(Payload::make(List::kind, 1)));
        return appendTo(place.storage, slot, std::move(entry), counts);
    }
    if (slot.isReference()) {
        checkCount(place, 2);
        Payload& list = Payload::make(Payload::Kind::Elements, grownCapacity(1));
        list.append(slot.target());
        slot = SlotWord::holding(list);
    } else if (slot.payload()->kind() == Payload::Kind::Planted) {
        place.refuse(describeValue(value) + " as well",
                     "what it holds was planted; set or clear it first");
    } else {
        checkCount(place, slot.payload()->size() + 1);
    }
    appendTo<typename List::Stored>(place.storage, slot, List::entry(value), counts);
}

}  // namespace

Model::Model(Model&& other) noexcept : storage_(std::exchange(other.storage_, nullptr)) {}

Model& Model::operator=(Model&& other) noexcept {
    Model taken(std::move(other));
    std::swap(storage_, taken.storage_);
    return *this;
}

Model::~Model() {
    if (storage_ == nullptr) return;
    storage_->giveUpElements();
    storage_->release();
}

ModelElement Model::create(const meta::Class& elementClass) {
    if (!elementClass) throw ModelError("An element cannot be made of a null class.");
    if (storage_ == nullptr) storage_ = new ModelStorage;
    return storage_->create(*elementClass.get());
}

ModelElement Model::create(const meta::Class& elementClass, std::u16string_view name) {
    if (!elementClass) {
        throw ModelError("An element " + describeValue(name) + " cannot be made of a null class.");
    }
    const meta::Property property = elementClass->getProperty(u"name");
    if (!property || !property->isSingleValued() ||
        property->type().kind() != TypeObject::Kind::Text) {
        throw ModelError("An element of the class " + describe::type(*elementClass.get()) +
                         " cannot have the name " + describeValue(name) +
                         ", because the class has no property called 'name' that holds one text.");
    }
    HeldWord word = wordFor(name);
    ModelElement element = create(elementClass);
    // A new element has a slot for every property of its class, so nothing fails any more.
    store(checkedPlace(storage_, element, property), std::move(word));
    return element;
}

void Model::set(const ModelElement& element, const meta::Property& property,
                const ModelElement& target) {
    const Place place = checkedPlace(storage_, element, property);
    if (!target) return setSingle(place, target);
    checkSingle(place, target);
    checkType(place, target);
    SlotWord& slot = place.slot();
    place.storage.replace(slot, reference(place.storage, target));
}

void Model::set(const ModelElement& element, const meta::Property& property,
                std::u16string_view text) {
    setSingle(checkedPlace(storage_, element, property), text);
}

void Model::set(const ModelElement& element, const meta::Property& property, std::int64_t number) {
    setSingle(checkedPlace(storage_, element, property), number);
}

void Model::set(const ModelElement& element, const meta::Property& property,
                const std::vector<ModelElement>& targets) {
    setMany(checkedPlace(storage_, element, property), targets);
}

void Model::set(const ModelElement& element, const meta::Property& property,
                const std::vector<std::u16string>& texts) {
    setMany(checkedPlace(storage_, element, property), texts);
}

void Model::set(const ModelElement& element, const meta::Property& property,
                const std::vector<std::int64_t>& numbers) {
    setMany(checkedPlace(storage_, element, property), numbers);
}

void Model::set(const ModelElement& element, const meta::Property& property,
                std::initializer_list<ModelElement> targets) {
    const Place place = checkedPlace(storage_, element, property);
    if (targets.size() != 0) return setMany(place, std::vector<ModelElement>(targets));
    // Empty braces do not say of what, and need not.
    checkMany(place);
    place.storage.replace(place.slot(), SlotWord());
}

void Model::add(const ModelElement& element, const meta::Property& property,
                const ModelElement& target) {
    addOne<ModelElement>(checkedPlace(storage_, element, property), target);
}

void Model::add(const ModelElement& element, const meta::Property& property,
                std::u16string_view text) {
    addOne<std::u16string>(checkedPlace(storage_, element, property), text);
}

void Model::add(const ModelElement& element, const meta::Property& property, std::int64_t number) {
    addOne<std::int64_t>(checkedPlace(storage_, element, property), number);
}

void Model::unset(const ModelElement& element, const meta::Property& property) {
    const Place place = checkedPlace(storage_, element, property);
    const bool single = place.property.isSingleValued();
    place.storage.replace(place.slot(), single ? SlotWord() : SlotWord::withoutPayload());
}

void Model::clear(const ModelElement& element, const meta::Property& property) {
    const Place place = checkedPlace(storage_, element, property);
    place.storage.replace(place.slot(), SlotWord());
}

void Model::plant(const ModelElement& element, const meta::Property& property, PlantedValue value) {
    const Place place = checkedPlace(storage_, element, property);
    HeldWord word = plantedWordFor(value.data);
    Payload& planted = Payload::make(Payload::Kind::Planted, 1);
    planted.append(Payload::Planted{std::move(value.type), word.detach(), value.many});
    store(place, HeldWord(SlotWord::holding(planted)));
}

std::vector<ModelElement> Model::elements() const {
    return storage_ == nullptr ? std::vector<ModelElement>() : storage_->elements();
}

std::vector<ModelElement> Model::roots() const {
    return rootsAmong(elements());
}

std::size_t Model::size() const noexcept {
    return storage_ == nullptr ? 0 : storage_->size();
}

}  // namespace nuv::zero::memory
