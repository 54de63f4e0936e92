#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// A model that a host had long before it met the traversal library: things of some kind, with
/// slots that hold other things. It knows nothing of the library.
namespace host {

struct Kind;
struct Slot;

struct Thing : std::enable_shared_from_this<Thing> {
    Thing(std::shared_ptr<const Kind> thingKind, std::u16string thingName)
        : kind(std::move(thingKind)), name(std::move(thingName)) {}
    virtual ~Thing() = default;

    std::shared_ptr<const Kind> kind;
    std::u16string name;
    std::map<const Slot*, std::vector<std::shared_ptr<const Thing>>> held;
};

struct Slot : Thing {
    enum class Holds { Name, One, Many, Parts };
    Slot(const Kind& slotOwner, std::u16string slotName, Holds slotHolds)
        : Thing(nullptr, std::move(slotName)), owner(&slotOwner), holds(slotHolds) {}

    const Kind* owner;
    Holds holds;
};

struct Kind : Thing {
    explicit Kind(std::u16string kindName, std::shared_ptr<const Kind> kindBase = nullptr)
        : Thing(nullptr, std::move(kindName)), base(std::move(kindBase)) {}

    std::shared_ptr<const Slot> addSlot(std::u16string slotName, Slot::Holds holds) {
        return slots.emplace_back(std::make_shared<Slot>(*this, std::move(slotName), holds));
    }

    std::shared_ptr<const Kind> base;
    std::vector<std::shared_ptr<const Slot>> slots;
};

}  // namespace host
