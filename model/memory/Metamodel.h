#pragma once

#include <initializer_list>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "Class.h"
#include "Pins.h"

namespace nuv::zero::memory {

/// Thrown for a metamodel or model that cannot be: the text names the class, the property and the
/// value, and nothing has changed.
class MODELING_NUV0_MODEL_EXPORT ModelError : public std::invalid_argument {
  public:
    using std::invalid_argument::invalid_argument;
    ModelError(const ModelError&) = default;
    ModelError& operator=(const ModelError&) = default;
    ~ModelError() override;
};

/// The classes, properties and primitive types of a family of models.
///
///     memory::Metamodel metamodel(u"m");
///     const auto port = metamodel.addClass(u"Port");
///     const auto block = metamodel.addClass(u"Block");
///     const auto ports = metamodel.addProperty(block, u"ports", port, memory::unbounded,
///                                              memory::PropertyFlags::Association);
///
/// Ownership: handles and models made from a metamodel keep its objects valid after the metamodel
/// object is gone. A metamodel that was moved from is empty, without a name, and usable. A
/// metamodel may use classes of another one (as superclass or as type) as long as the other does
/// not, directly or by way of more, use this one; opposites stand in one metamodel. A metamodel may
/// grow while models of it exist: their elements then read the new properties as never set.
///
/// Threads: reading (everything that handles offer) is safe from any number of threads while nobody
/// adds.
class MODELING_NUV0_MODEL_EXPORT Metamodel {
  public:
    /// The name becomes the first part of qualified names that are not given.
    explicit Metamodel(std::u16string_view name = {});
    Metamodel(const Metamodel&) = delete;
    Metamodel& operator=(const Metamodel&) = delete;
    Metamodel(Metamodel&& other) noexcept;
    Metamodel& operator=(Metamodel&& other) noexcept;
    ~Metamodel();

    /// Adds a class. Without a qualified name, `name()::class` is used. Names need not be unique.
    /// Throws `ModelError` for a null superclass or one given twice.
    meta::Class addClass(std::u16string_view name,
                         const std::vector<meta::Class>& superclasses = {},
                         const std::optional<std::u16string>& qualifiedName = std::nullopt);
    /// Adds one more superclass. Throws `ModelError` when the class is not of this metamodel, when
    /// the superclass is null or there already, and when the class would become its own ancestor.
    void addSuperclass(const meta::Class& subclass, const meta::Class& superclass);

    /// Adds a primitive type whose values are texts or integers, as `kind` says.
    meta::PrimitiveType addPrimitive(std::u16string_view qualifiedName, TypeObject::Kind kind);

    /// Adds a property to a class of this metamodel. Throws `ModelError` for a foreign or null
    /// class and for a null type. Exactly an upper bound of one makes the property single-valued;
    /// one below zero is no limit.
    meta::Property addProperty(const meta::Class& owner, std::u16string_view name,
                               const meta::Type& type, int upperBound = 1,
                               PropertyFlags flags = PropertyFlags::None);
    /// Makes `opposite` the other end of `property`, one way. Throws `ModelError` for a foreign
    /// property and for a property that has another opposite already.
    void setOpposite(const meta::Property& property, const meta::Property& opposite);
    /// The same, both ways.
    void setOpposites(const meta::Property& one, const meta::Property& other);

    std::u16string name() const;
    std::vector<meta::Class> classes() const;

  private:
    MetamodelStorage& storage();
    /// The pins of this metamodel and one for each of the types, if none of them uses this one.
    Pins pinsWith(const std::vector<const TypeObject*>& used);

    void checkOpposite(const meta::Property& property, const meta::Property& opposite) const;

    /// Null after a move, until something is added.
    MetamodelStorage* storage_;
};

}  // namespace nuv::zero::memory
