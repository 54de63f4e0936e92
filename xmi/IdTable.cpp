#include "xmi/IdTable.h"

namespace nuv::zero::xmi {

IdTable::Index IdTable::addXmiId(std::string_view id, Index element) {
    const auto [text, isNew] = texts_.add(id);
    if (isNew) owners_.push_back({0, Kind::Nobody});
    Owner& owner = owners_[text];
    const bool isShared = owner.kind() == Kind::Shared && sharedXmiIds_.contains(text);
    if (owner.kind() == Kind::XmiId) {
        const Index first = owner.element();
        sharedXmiIds_.insert(text);
        // Another of its ids may take the place.
        if (idOf_[first] == text) idOf_[first] = TextTable::none;
        share(text, element);
        return first;
    }
    if (isShared) return owner.element();
    giveId(element, text);
    owner = {element, Kind::XmiId};
    return none;
}

void IdTable::addValue(std::string_view value, Index element) {
    // A path is never looked up here.
    if (value.starts_with('/')) return;
    const auto [text, isNew] = texts_.add(value);
    if (isNew) {
        owners_.push_back({element, Kind::Value});
    } else if (owners_[text].kind() == Kind::Value && owners_[text].element() != element) {
        share(text, element);
    }
}

void IdTable::share(TextTable::Number text, Index second) {
    Owner& owner = owners_[text];
    if (isId(texts_[text])) repeated_.push_back({text, owner.element(), second});
    owner = {owner.element(), Kind::Shared};
}

void IdTable::settle() {
    for (TextTable::Number text = 0; text < texts_.size(); ++text) {
        Owner& owner = owners_[text];
        if (owner.kind() != Kind::Value) continue;
        if (isId(texts_[text])) {
            giveId(owner.element(), text);
        } else {
            owner = {owner.element(), Kind::Nobody};
        }
    }
    // A value that was shared first may be an `xmi:id` now, and that be shared in its turn.
    std::unordered_set<TextTable::Number> told;
    std::erase_if(repeated_, [&](const Repeated& each) {
        return owners_[each.id].kind() != Kind::Shared || !told.insert(each.id).second;
    });
}

void IdTable::giveId(Index element, TextTable::Number text) {
    if (element >= idOf_.size()) idOf_.resize(element + std::size_t{1}, TextTable::none);
    if (idOf_[element] == TextTable::none) idOf_[element] = text;
}

IdTable::Index IdTable::find(std::string_view id) const noexcept {
    const TextTable::Number text = texts_.find(id);
    return text != TextTable::none && owners_[text].hasId() ? owners_[text].element() : none;
}

TextTable::Number IdTable::numberOfShared(std::string_view id) const noexcept {
    const TextTable::Number text = texts_.find(id);
    return text != TextTable::none && owners_[text].kind() == Kind::Shared ? text : none;
}

std::optional<std::string_view> IdTable::idOf(Index element) const noexcept {
    const bool hasId = element < idOf_.size() && idOf_[element] != TextTable::none;
    return hasId ? std::optional(texts_[idOf_[element]]) : std::nullopt;
}

std::vector<std::string> IdTable::all() const {
    std::vector<std::string> ids;
    for (TextTable::Number text = 0; text < texts_.size(); ++text) {
        if (owners_[text].hasId()) ids.emplace_back(texts_[text]);
    }
    return ids;
}

}  // namespace nuv::zero::xmi
