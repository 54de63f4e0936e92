#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "xmi/DataType.h"
#include "xmi/TextTable.h"

namespace nuv::zero::xmi {

/// Says whether the texts of one file are values of their types. A file has few different values of
/// enumerations and booleans, so what was asked last is mostly asked again.
class ValueCheck {
  public:
    /// As `DataType::holds`; true where nothing is known of the type.
    bool holds(const DataType* type, std::string_view text);
    /// The number that a text stands for; nothing where it is none.
    static std::optional<std::int64_t> integer(std::string_view text);

  private:
    bool look(const DataType& type, std::string_view text);

    struct Known {
        const DataType* type = nullptr;
        std::string text;
    };
    /// Texts that are values.
    std::array<Known, 64> known_;
    /// What files write for the values of each enumeration.
    std::unordered_map<const DataType*, TextTable> literals_;
};

}  // namespace nuv::zero::xmi
