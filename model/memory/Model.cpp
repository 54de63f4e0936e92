#include "model/memory/Model.h"

#include <algorithm>
#include <utility>

#include "model/memory/Describe.h"
#include "model/memory/ModelStorage.h"

namespace nuv::zero::memory {
namespace {

std::string describeValue(const ModelElement& element) {
    return element ? describe::element(*element.get()) : "null";
}
std::string describeValue(std::u16string_view text) {
    return describe::quoted(text);
}
std::string describeValue(std::int64_t number) {
    return std::to_string(number);
}

/// One property of one element, both known to fit together.
struct Place {
    const Object& element;
    const PropertyObject& property;

    [[noreturn]] void refuse(const std::string& value, const std::string& reason) const {
        throw ModelError("The property " + describe::property(property) + " of " +
                         describe::element(element) + " cannot hold " + value + ", because " +
                         reason + ".");
    }
};

Place checkedPlace(const ModelStorage& storage, const ModelElement& element,
                   const meta::Property& property) {
    if (!property) {
        throw ModelError("A null property cannot be set on " + describeValue(element) + ".");
    }
    if (!element) {
        throw ModelError("The property " + describe::property(*property.get()) +
                         " cannot be set on a null element.");
    }
    if (element->storage() != &storage) {
        throw ModelError("The property " + describe::property(*property.get()) +
                         " cannot be set on " + describeValue(element) +
                         ", because that element is of another model.");
    }
    if (!element->getClass()->hasProperty(property)) {
        throw ModelError("The property " + describe::property(*property.get()) +
                         " cannot be set on " + describeValue(element) + ", because the class " +
                         describe::type(*element->getClass().get()) + " does not have it.");
    }
    return {*element.get(), *property.get()};
}

template <class Value>
void checkSingle(const Place& place, const Value& value) {
    if (place.property.isSingleValued()) return;
    place.refuse(describeValue(value) + " as a single value", "it holds a collection");
}

void checkCount(const Place& place, std::size_t count) {
    const int bound = place.property.getUpperBound();
    if (bound == unbounded || count <= static_cast<std::size_t>(bound)) return;
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

template <class Content>
PayloadPointer makePayload(Content content) {
    return PayloadPointer(new Payload(std::in_place_type<Content>, std::move(content)));
}

/// Puts a new word into a slot. What stood there is released last, when the slot is right already.
void replace(SlotWord& slot, SlotWord word) noexcept {
    SlotWord previous = std::exchange(slot, word);
    previous.release();
}

void store(ModelStorage& storage, const Place& place, PayloadPointer payload) {
    // First the slot, which may fail while the payload still has an owner.
    SlotWord& slot = storage.slot(place.element, place.property);
    replace(slot, SlotWord::holding(std::move(payload)));
}

template <class Value, class Stored>
void setSingle(ModelStorage& storage, const Place& place, const Value& value, Stored stored) {
    checkSingle(place, value);
    checkType(place, value);
    store(storage, place, makePayload(std::move(stored)));
}

template <class Entry>
void setMany(ModelStorage& storage, const Place& place, std::vector<Entry> entries) {
    if (place.property.isSingleValued()) place.refuse("a collection", "it holds a single value");
    checkListType<Entry>(place);
    checkCount(place, entries.size());
    for (const Entry& entry : entries) checkEntry(place, entry);
    store(storage, place, makePayload(std::move(entries)));
}

template <class Entry, class Value>
void addOne(ModelStorage& storage, const Place& place, const Value& value) {
    if (place.property.isSingleValued()) {
        place.refuse(describeValue(value) + " as one more value", "it holds a single value");
    }
    checkEntry(place, value);

    SlotWord& slot = storage.slot(place.element, place.property);
    Payload* present = slot.isPayload() ? slot.payload() : nullptr;
    if (present == nullptr) {
        checkCount(place, 1);
        std::vector<Entry> first;
        first.emplace_back(value);
        replace(slot, SlotWord::holding(makePayload(std::move(first))));
        return;
    }

    if (present->planted) {
        place.refuse(describeValue(value) + " as well",
                     "what it holds was planted; set or clear it first");
    }
    auto& entries = std::get<std::vector<Entry>>(present->data);
    checkCount(place, entries.size() + 1);
    if (!present->isShared()) {
        entries.emplace_back(value);
        return;
    }
    // Somebody still reads the list as it stands, so it is left to them.
    std::vector<Entry> grown;
    grown.reserve(2 * entries.size() + 1);
    grown.insert(grown.end(), entries.begin(), entries.end());
    grown.emplace_back(value);
    replace(slot, SlotWord::holding(makePayload(std::move(grown))));
}

ModelStorage& usable(ModelStorage* storage) {
    if (storage == nullptr) throw ModelError("A model that was moved from cannot be used.");
    return *storage;
}

}  // namespace

Model::Model() : storage_(new ModelStorage) {}

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
    ModelStorage& storage = usable(storage_);
    if (!elementClass) throw ModelError("An element cannot be made of a null class.");
    return ModelElement(&storage.create(*elementClass.get()));
}

ModelElement Model::create(const meta::Class& elementClass, std::u16string_view name) {
    ModelStorage& storage = usable(storage_);
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
    PayloadPointer payload = makePayload(std::u16string(name));
    ModelElement element(&storage.create(*elementClass.get()));
    // A new element has a slot for every property of its class, so nothing fails any more.
    store(storage, {*element.get(), *property.get()}, std::move(payload));
    return element;
}

void Model::set(const ModelElement& element, const meta::Property& property,
                const ModelElement& target) {
    ModelStorage& storage = usable(storage_);
    const Place place = checkedPlace(storage, element, property);
    if (!target) return setSingle(storage, place, target, ModelElement());
    checkSingle(place, target);
    checkType(place, target);
    SlotWord& slot = storage.slot(place.element, place.property);
    replace(slot, SlotWord::reference(*target.get()));
}

void Model::set(const ModelElement& element, const meta::Property& property,
                std::u16string_view text) {
    ModelStorage& storage = usable(storage_);
    setSingle(storage, checkedPlace(storage, element, property), text, std::u16string(text));
}

void Model::set(const ModelElement& element, const meta::Property& property, std::int64_t number) {
    ModelStorage& storage = usable(storage_);
    setSingle(storage, checkedPlace(storage, element, property), number, number);
}

void Model::set(const ModelElement& element, const meta::Property& property,
                std::vector<ModelElement> targets) {
    ModelStorage& storage = usable(storage_);
    setMany(storage, checkedPlace(storage, element, property), std::move(targets));
}

void Model::set(const ModelElement& element, const meta::Property& property,
                std::vector<std::u16string> texts) {
    ModelStorage& storage = usable(storage_);
    setMany(storage, checkedPlace(storage, element, property), std::move(texts));
}

void Model::set(const ModelElement& element, const meta::Property& property,
                std::vector<std::int64_t> numbers) {
    ModelStorage& storage = usable(storage_);
    setMany(storage, checkedPlace(storage, element, property), std::move(numbers));
}

void Model::add(const ModelElement& element, const meta::Property& property,
                const ModelElement& target) {
    ModelStorage& storage = usable(storage_);
    addOne<ModelElement>(storage, checkedPlace(storage, element, property), target);
}

void Model::add(const ModelElement& element, const meta::Property& property,
                std::u16string_view text) {
    ModelStorage& storage = usable(storage_);
    addOne<std::u16string>(storage, checkedPlace(storage, element, property), text);
}

void Model::add(const ModelElement& element, const meta::Property& property, std::int64_t number) {
    ModelStorage& storage = usable(storage_);
    addOne<std::int64_t>(storage, checkedPlace(storage, element, property), number);
}

void Model::unset(const ModelElement& element, const meta::Property& property) {
    ModelStorage& storage = usable(storage_);
    const Place place = checkedPlace(storage, element, property);
    const bool single = place.property.isSingleValued();
    replace(storage.slot(place.element, place.property),
            single ? SlotWord() : SlotWord::withoutPayload());
}

void Model::clear(const ModelElement& element, const meta::Property& property) {
    ModelStorage& storage = usable(storage_);
    const Place place = checkedPlace(storage, element, property);
    replace(storage.slot(place.element, place.property), SlotWord());
}

void Model::plant(const ModelElement& element, const meta::Property& property, PlantedValue value) {
    ModelStorage& storage = usable(storage_);
    const Place place = checkedPlace(storage, element, property);
    PayloadPointer payload(new Payload(std::move(value.data)));
    payload->planted = true;
    payload->plantedMany = value.many;
    payload->plantedType = std::move(value.type);
    store(storage, place, std::move(payload));
}

std::size_t Model::size() const {
    return usable(storage_).size();
}

}  // namespace nuv::zero::memory
