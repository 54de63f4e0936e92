#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "xmi/Fragment.h"
#include "xmi/LoadedMetamodel.h"
#include "xmi/LoadedModel.h"
#include "xmi/ReadOptions.h"
#include "xmi/XmlDocument.h"

namespace nuv::zero::xmi {

/// Builds the model of one parsed file, in one go: `XmiBuilder(...).build()`.
///
/// First all elements with their contents and values, in the order of the file, then references,
/// which may lead anywhere in it.
class XmiBuilder {
  public:
    XmiBuilder(const LoadedMetamodel& metamodel, const XmlDocument& document,
               const ReadOptions& options);

    LoadedModel build();

  private:
    using Index = LoadedModel::Index;

    /// References that stand in one place, to be resolved when all elements are there.
    struct Pending {
        Node node;
        Index element;
        meta::Property property;
        std::string_view text;
        /// One reference as it stands, instead of a list.
        bool isSingleReference;
    };

    /// What a path leads to when that is kept in another file.
    static constexpr Index elsewhere = LoadedModel::none - 1;

    void addRoot(Node node, std::size_t ordinal);
    /// Returns whether the children of the node are to be looked at.
    bool addChild(Node node, Index parent);
    bool addContent(Node node, Index parent, const meta::Property& property);
    Index create(Node node, const meta::Class& type, Index parent,
                 const memory::PropertyObject* feature, std::size_t ordinal);
    void addAttributes(Node node, Index element);
    void addOneValue(Node node, Index element, const meta::Property& property,
                     std::string_view text);
    void addXmiId(Node node, Index element, std::string_view id);
    void addIds();

    void resolve(const Pending& pending);
    void resolveOne(const Pending& pending, std::string_view reference);
    Index targetOfPath(std::string_view fragment) const;
    Index targetOfId(const Pending& pending, std::string_view id) const;
    void leaveOut(const Pending& pending, std::string_view reference);
    /// Whether the part of a reference in front of `#` means this file.
    bool meansThisFile(std::string_view file) const;
    void link(Node node, Index element, const meta::Property& property, const ModelElement& target);
    void refuseSecond(Node node, Index element, const meta::Property& property) const;

    meta::Class classNamed(Node node, NameId id) const;
    /// The class of a contained element: what the file says, else the type of the property.
    meta::Class classOfContent(Node node, const meta::Property& property) const;
    meta::Property propertyOf(Node node, Index element, NameId name);
    bool isNil(Node node) const;
    /// Whether `href` is a feature of the class like any other.
    bool hasHref(const memory::ClassObject& type);

    const LoadedMetamodel& metamodel_;
    const XmlDocument& document_;
    const ReadOptions& options_;
    FragmentResolver fragments_;
    std::vector<Node> rootNodes_;
    bool isMetamodel_ = false;
    /// The namespaces of a metamodel's roots, by which it goes, too.
    std::unordered_set<std::string_view> ownNamespaces_;

    LoadedModel loaded_;
    /// The element that an XML element stands for; `none` where it stands for something else.
    std::vector<Index> elementAt_;
    std::vector<Node> nodeOf_;
    std::vector<Pending> pending_;
    std::size_t slots_ = 0;

    /// The values of iD attributes, until it is known which of them are unique.
    struct IdValue {
        Index element;
        std::string text;
    };
    std::vector<IdValue> idValues_;
    std::unordered_set<std::string> ambiguousIds_;

    struct PropertyKey {
        const memory::ClassObject* owner;
        NameId name;
        bool operator==(const PropertyKey&) const = default;
    };
    struct PropertyKeyHash {
        std::size_t operator()(const PropertyKey& key) const noexcept {
            return memory::mixAddress(key.owner) + key.name;
        }
    };
    std::unordered_map<PropertyKey, meta::Property, PropertyKeyHash> properties_;
    std::unordered_map<const memory::ClassObject*, bool> hasHref_;
};

}  // namespace nuv::zero::xmi
