#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <unordered_map>
#include <vector>

#include "xmi/KeyedHash.h"
#include "xmi/LoadedMetamodel.h"
#include "xmi/XmlNames.h"

namespace nuv::zero::xmi {

struct Feature;

/// A class, with what each of its elements asks of it.
struct KnownClass {
    meta::Class type;
    std::uint32_t number;
    bool isAbstract;
    /// Whether `href` is a feature of the class like any other.
    bool hasHref;
    std::size_t slotCount;
};

/// A property, with what each of its values asks of it.
struct Feature {
    enum class Kind : std::uint8_t { Text, Integer, Reference };
    meta::Property property;
    std::uint32_t number;
    Kind kind;
    bool isSingle;
    bool isComposite;
    /// Whether any number of values fits.
    bool isUnbounded;
    bool isId;
    /// The declared class of the elements; null for values.
    const KnownClass* target;
    /// What texts are values; null for references. Lives while the metamodel does not grow.
    const DataType* dataType;
};

/// What the name of an XML element or attribute means in an element of a class.
struct KnownPart {
    /// Null where it means nothing.
    Feature* feature = nullptr;
    /// The class of the contained element, where the name says it; see `XmlForm::Part`.
    const KnownClass* type = nullptr;
};

/// The classes and features of a metamodel by the names of one file, each looked up once.
class FeatureTable {
  public:
    /// REQUIRES: both outlive the table.
    FeatureTable(const LoadedMetamodel& metamodel, const XmlNames& names);

    /// Null where no package with the namespace has the class.
    const KnownClass* findClass(NameId name);
    /// The class of the elements that an XML element of that name stands for by itself; null where
    /// there is none. See `XmlForm::globalElement`.
    const KnownClass* globalElement(NameId name);
    /// The feature by a name in an element, and what else the name says.
    KnownPart find(const KnownClass& owner, NameId name, XmlForm::Place place);
    /// Null where the class has no such feature.
    Feature* find(const KnownClass& owner, NameId name) {
        return find(owner, name, XmlForm::Place::Element).feature;
    }
    /// What is known of a class and of a property, by whatever way one has come to it.
    const KnownClass& known(const meta::Class& type);
    Feature& known(const meta::Property& property);
    /// How many were looked up so far; their numbers are those below.
    std::uint32_t size() const noexcept { return static_cast<std::uint32_t>(features_.size()); }
    const Feature& operator[](std::uint32_t number) const noexcept { return features_[number]; }
    /// Whether the name has no namespace, or that of a package.
    bool isNamespaceKnown(NameId name);

  private:
    /// What is known of a name so far.
    struct OfName {
        enum class Answer : std::uint8_t { Unasked, No, Yes };
        const KnownClass* type = nullptr;
        Answer isClass = Answer::Unasked;
        Answer isNamespaceKnown = Answer::Unasked;
    };
    /// The feature that a class has by a name; null where the place is free.
    struct OfClass {
        std::uint64_t key = 0;
        KnownPart part;
    };

    OfName& ofName(NameId name);
    OfClass& placeOf(std::uint64_t key) noexcept;
    void grow();

    const LoadedMetamodel& metamodel_;
    const XmlNames& names_;
    std::vector<OfName> ofNames_;
    std::deque<KnownClass> classes_;
    std::unordered_map<const memory::ClassObject*, const KnownClass*> byClass_;
    std::deque<Feature> features_;
    std::unordered_map<const memory::PropertyObject*, Feature*> byProperty_;
    /// A flat table, at most half full, by class and name. Whoever writes a file chooses which
    /// names meet which classes, so places are spread by a random factor.
    std::vector<OfClass> ofClasses_;
    std::size_t taken_ = 0;
    std::uint64_t factor_;
};

}  // namespace nuv::zero::xmi
