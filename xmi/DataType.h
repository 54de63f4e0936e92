#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace nuv::zero::xmi {

/// What the texts of an attribute may be, as its metamodel declares the type.
///
///     const DataType* type = metamodel.dataType(signal);
///     if (type->kind() == DataType::Kind::Enumeration && !type->holds("PURPLE")) ...
///
/// Unchangeable; lives as long as the `LoadedMetamodel` that gave it.
class DataType {
  public:
    enum class Kind : std::uint8_t {
        /// Any text.
        Text,
        /// A whole number; the model keeps it as one.
        Integer,
        /// `true` or `false`.
        Boolean,
        /// One of the literals.
        Enumeration,
    };
    /// A value of an enumeration.
    struct Literal {
        /// What the metamodel calls it.
        std::string name;
        /// What files write; mostly the same.
        std::string text;
    };

    DataType(std::string qualifiedName, Kind kind, std::vector<Literal> literals = {})
        : qualifiedName_(std::move(qualifiedName)), kind_(kind), literals_(std::move(literals)) {}

    /// `railway::Signal`.
    const std::string& qualifiedName() const noexcept { return qualifiedName_; }
    Kind kind() const noexcept { return kind_; }
    /// Of an enumeration, in the order of the metamodel; otherwise none.
    const std::vector<Literal>& literals() const noexcept { return literals_; }

    /// Whether the text is a value of the type. Of an enumeration these are the texts of literals,
    /// and their names, which some programs write instead. White space around it counts for texts
    /// only. Costs the number of literals.
    bool holds(std::string_view text) const;
    /// What an attribute holds of which neither the file nor the metamodel says anything: `0`,
    /// `false`, the first literal; null where there is no such value.
    const std::string* initialText() const;

  private:
    std::string qualifiedName_;
    Kind kind_;
    std::vector<Literal> literals_;
};

}  // namespace nuv::zero::xmi
