#pragma once

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "Metamodel.h"
#include "Value.h"

namespace nuv::zero::memory {

/// A value of any kind, type and multiplicity, to be planted unchecked: tests of tools need models
/// that no checked operation would make.
struct PlantedValue {
    meta::Type type;
    bool many = false;
    Content data;
};

/// The elements of one model, and the only way to change them.
///
///     memory::Model model;
///     const ModelElement b1 = model.create(block);
///     model.set(b1, name, u"b1");
///     model.add(b1, ports, p1);
///
/// Every operation checks what it is given and throws `ModelError` with the names of the class, the
/// property and the value before anything changes: null handles, an element of another model, a
/// property that the element's class does not have, a value that does not conform to the property's
/// type, a single value for a collection or the reverse, a null entry of a list, more values than
/// the upper bound. Values of a list may repeat. Opposites are not kept in step: each end is set by
/// itself.
///
/// Ownership: the model owns its elements. A handle that outlives the model stays valid; its
/// properties read as never set. References may lead into other models. Building and destroying are
/// linear and never recurse, so cycles and long chains are no concern. Reading never grows a model.
/// A model that was moved from is empty and usable.
///
/// Threads: an unchanging model may be read on any number of threads; changing it needs the one
/// thread that nobody reads on.
class MODELING_NUV0_MODEL_EXPORT Model {
  public:
    Model() noexcept = default;
    Model(const Model&) = delete;
    Model& operator=(const Model&) = delete;
    Model(Model&& other) noexcept;
    Model& operator=(Model&& other) noexcept;
    ~Model();

    /// Makes an element. The reference of the class is kept.
    ModelElement create(const meta::Class& elementClass);
    /// Makes an element and sets its property called "name".
    ModelElement create(const meta::Class& elementClass, std::u16string_view name);

    /// Sets a single value: an element (null holds "no element"), a text, an integer.
    void set(const ModelElement& element, const meta::Property& property,
             const ModelElement& target);
    void set(const ModelElement& element, const meta::Property& property, std::u16string_view text);
    void set(const ModelElement& element, const meta::Property& property, std::int64_t number);
    /// Sets a whole collection, of at most 2^32 - 1 values.
    void set(const ModelElement& element, const meta::Property& property,
             const std::vector<ModelElement>& targets);
    void set(const ModelElement& element, const meta::Property& property,
             const std::vector<std::u16string>& texts);
    void set(const ModelElement& element, const meta::Property& property,
             const std::vector<std::int64_t>& numbers);
    /// Braces mean a collection, however few values stand in them: `{}` empties any.
    void set(const ModelElement& element, const meta::Property& property,
             std::initializer_list<ModelElement> targets);
    template <class Entry>
    requires(std::integral<Entry> ||
             std::convertible_to<
                 const Entry&, std::u16string_view>) void set(const ModelElement& element,
                                                              const meta::Property& property,
                                                              std::initializer_list<Entry> values) {
        using Stored = std::conditional_t<std::integral<Entry>, std::int64_t, std::u16string>;
        set(element, property, std::vector<Stored>(values.begin(), values.end()));
    }

    /// Appends to a collection; amortised constant cost while nobody holds the collection's value.
    void add(const ModelElement& element, const meta::Property& property,
             const ModelElement& target);
    void add(const ModelElement& element, const meta::Property& property, std::u16string_view text);
    void add(const ModelElement& element, const meta::Property& property, std::int64_t number);
    /// One value at a time; braces would mean several.
    void add(const ModelElement& element, const meta::Property& property,
             std::initializer_list<ModelElement> targets) = delete;
    template <class Entry>
    void add(const ModelElement& element, const meta::Property& property,
             std::initializer_list<Entry> values) = delete;

    /// Leaves the property without a value: a single value is unset, a collection has no payload
    /// at all (reading elements from it then fails, unlike from an empty one).
    void unset(const ModelElement& element, const meta::Property& property);
    /// Empties a collection, or makes a single value unset.
    void clear(const ModelElement& element, const meta::Property& property);

    /// Stores any value, unchecked but for the element and the property.
    void plant(const ModelElement& element, const meta::Property& property, PlantedValue value);

    /// The number of elements made.
    std::size_t size() const noexcept;
    /// All elements, in the order in which they were made; costs a handle each.
    std::vector<ModelElement> elements() const;
    /// The elements that no element of this model contains, in the same order: where a composition
    /// traversal of the whole model starts. What is contained is what it follows, the values of
    /// containment associations that are not derived; something else planted there contains
    /// nothing. Elements that contain each other in a ring are no roots. Looks at every element.
    std::vector<ModelElement> roots() const;

  private:
    /// Null until the first element is made.
    ModelStorage* storage_ = nullptr;
};

}  // namespace nuv::zero::memory
