#include "xmi/ValueCheck.h"

#include <charconv>

#include "xmi/Fragment.h"

namespace nuv::zero::xmi {

bool ValueCheck::holds(const DataType* type, std::string_view text) {
    const bool isChecked = type != nullptr && (type->kind() == DataType::Kind::Boolean ||
                                               type->kind() == DataType::Kind::Enumeration);
    if (!isChecked) return true;
    const std::size_t mix =
        text.empty() ? 0 : static_cast<unsigned char>(text.back()) * std::size_t{7} + text.size();
    Known& known = known_[mix % known_.size()];
    if (known.type == type && known.text == text) return true;
    if (!look(*type, text)) return false;
    known.type = nullptr;
    known.text = text;
    known.type = type;
    return true;
}

bool ValueCheck::look(const DataType& type, std::string_view text) {
    if (type.kind() == DataType::Kind::Boolean) return type.holds(text);
    auto known = literals_.find(&type);
    if (known == literals_.end()) {
        TextTable texts;
        for (const DataType::Literal& each : type.literals()) {
            texts.add(each.text);
            texts.add(each.name);
        }
        known = literals_.emplace(&type, std::move(texts)).first;
    }
    const TextTable& texts = known->second;
    return texts.find(trimmed(text)) != TextTable::none || texts.find(text) != TextTable::none;
}

std::optional<std::int64_t> ValueCheck::integer(std::string_view text) {
    text = trimmed(text);
    // How models of models write "without a limit".
    if (text == "*") return -1;
    if (text.starts_with('+')) text.remove_prefix(1);
    std::int64_t value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, code] = std::from_chars(text.data(), end, value);
    if (text.empty() || code != std::errc() || stop != end) return std::nullopt;
    return value;
}

}  // namespace nuv::zero::xmi
