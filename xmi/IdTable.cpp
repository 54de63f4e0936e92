#include "xmi/IdTable.h"

namespace nuv::zero::xmi {

IdTable::Index IdTable::addXmiId(std::string_view id, Index element) {
    const auto [text, isNew] = texts_.add(id);
    if (isNew) owners_.push_back({0, Kind::Nobody});
    Owner& owner = owners_[text];
    if (owner.kind() == Kind::XmiId) return owner.element();
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
        owners_[text] = {element, Kind::Shared};
    }
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
}

void IdTable::giveId(Index element, TextTable::Number text) {
    if (element >= idOf_.size()) idOf_.resize(element + std::size_t{1}, TextTable::none);
    if (idOf_[element] == TextTable::none) idOf_[element] = text;
}

IdTable::Index IdTable::find(std::string_view id) const noexcept {
    const TextTable::Number text = texts_.find(id);
    return text != TextTable::none && owners_[text].hasId() ? owners_[text].element() : none;
}

bool IdTable::isShared(std::string_view value) const noexcept {
    const TextTable::Number text = texts_.find(value);
    return text != TextTable::none && owners_[text].kind() == Kind::Shared;
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
