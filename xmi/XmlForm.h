#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "model/memory/Class.h"
#include "xmi/XmlNames.h"

namespace nuv::zero::xmi {

/// How the elements of a metamodel are written as XML, where it says that they are not simply
/// called by their own names: the form of files that follow an XML schema.
///
///     const XmlForm& form = metamodel.xmlForm();
///     if (const meta::Class type = form.globalElement(name)) ...    // a root <bpmn:definitions>
///     const XmlForm::Part part = form.feature(owner, name);         // <bpmn:task> in a process
///
/// Names are taken with their namespace. All of it costs a look-up or two, and a little more for
/// classes with many superclasses; who asks often keeps the answers. May be read by several threads
/// while the metamodel does not grow.
class XmlForm {
  public:
    enum class Place : std::uint8_t { Element, Attribute };

    /// What an XML element or attribute of an element of the model stands for.
    struct Part {
        /// Null where the class has no such property.
        meta::Property property;
        /// The class of the contained element, where the XML element's name says it; else null, and
        /// the type is that in the file or the declared one.
        meta::Class type;

        explicit operator bool() const noexcept { return static_cast<bool>(property); }
    };

    /// An XML element around the values of a property.
    struct Wrapper {
        meta::Property property;
        /// How far below it the XML elements lie that stand for values, at least 1.
        std::uint32_t depth = 1;
        /// Whether those are called by their classes, with the suffix behind, rather than by the
        /// property.
        bool namesClass = false;
        std::string suffix;
    };

    /// Whether the metamodel says anything of the kind.
    bool empty() const noexcept { return isEmpty_; }

    /// The class of the elements that an XML element of that name stands for by itself, at the top
    /// of a file or in place of another one; null where there is none.
    meta::Class globalElement(const XmlName& name) const;

    /// The property that a child element or an attribute of an element of a class means: one that
    /// is called so, or one that is called by the name of a global element which that name may
    /// take the place of.
    Part feature(const meta::Class& owner, const XmlName& name, Place place = Place::Element) const;

    /// The wrapper that a child element of an element of a class is; null where it is none.
    const Wrapper* wrapper(const meta::Class& owner, const XmlName& name) const;

    /// Whether any child element or attribute of that namespace may stand in an element of a class.
    bool isWildcard(const meta::Class& owner, const XmlName& name,
                    Place place = Place::Element) const;
    /// The property that holds such child elements, as far as they are elements of a model; null
    /// where there is none.
    meta::Property wildcard(const meta::Class& owner, const XmlName& name) const;

    /// The property that the text between the tags of an element belongs to; null where there is
    /// none.
    meta::Property textContent(const meta::Class& owner) const;
    /// Whether an element may hold text between its child elements, which no property keeps.
    bool isMixed(const meta::Class& owner) const;

  private:
    friend class XmlFormReader;

    /// Namespace and local name.
    using Key = std::pair<std::string, std::string>;
    struct Named {
        std::string uri;
        meta::Property property;
        Place place;
    };
    struct Global {
        meta::Class type;
        /// The global element whose place it may take; empty for none.
        Key head;
    };
    struct Wildcard {
        meta::Property property;
        Place place;
        /// The namespaces that it takes.
        std::vector<std::string> namespaces;
        /// The namespace that `##other` is not.
        std::string own;
        /// Whether the property may hold elements.
        bool holdsElements;

        bool takes(std::string_view uri) const;
    };
    /// What a class itself says, without its superclasses.
    struct OfClass {
        std::vector<Wildcard> wildcards;
        meta::Property textContent;
        bool isMixed = false;
    };

    Part named(const meta::Class& owner, std::string_view uri, std::string_view local, Place place,
               bool isExact) const;
    const Global* global(std::string_view uri, std::string_view local) const;
    template <class Found>
    bool anyOfLineage(const meta::Class& owner, const Found& found) const;

    bool isEmpty_ = true;
    /// By local name.
    std::map<std::string, std::vector<Named>, std::less<>> features_;
    std::map<std::string, std::vector<Wrapper>, std::less<>> wrappers_;
    /// By local name, then by namespace.
    std::map<std::string, std::map<std::string, Global, std::less<>>, std::less<>> globals_;
    std::unordered_map<const memory::ClassObject*, OfClass> ofClasses_;
};

}  // namespace nuv::zero::xmi
