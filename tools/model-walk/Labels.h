#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Names.h"
#include "Project.h"
#include "traversal/Traversal.h"

namespace model_walk {

/// An attribute of an element, and what it holds: one value, or a list.
struct AttributeLabel {
    std::string name;
    std::vector<std::string> values;
    bool isList;
    bool isNumber;
};

/// What elements and links are called where people read them. All texts are unescaped but those
/// that say otherwise.
class Labels {
  public:
    enum class Naming {
        /// Who has no name goes by the fragment.
        Telling,
        /// As `dumpElement` does it: by the attribute `name` alone, which may be empty.
        Plain,
    };

    /// The attributes that are to be shown of each element; `*` means all that are set. REQUIRES:
    /// project and names outlive the labels.
    Labels(const Project& project, const Names& names, std::vector<std::string> attributes,
           Naming naming = Naming::Telling);

    /// Escaped, as `Project::address`.
    std::string address(const nuv::zero::ModelElement& element) const {
        return project_.address(element);
    }
    /// The shortest name of its class that means only this class.
    std::string className(const nuv::zero::ModelElement& element) const;
    /// What its attribute says that names elements of its class: the one called `name`, or else the
    /// shortest that is called so in the end, such as `declaredName`. Empty where there is none.
    std::string givenName(const nuv::zero::ModelElement& element) const;
    /// Its given name, or else its fragment.
    std::string name(const nuv::zero::ModelElement& element) const;
    /// `Class'name'`.
    std::string element(const nuv::zero::ModelElement& element) const;
    /// `[pseudo]` for the property of an input's own link.
    static std::string property(const nuv::zero::traversal::Link& link);
    /// `Class'name'-[property]-Class'name'`.
    std::string link(const nuv::zero::traversal::Link& link) const;
    /// Those that were asked for and that are set, in that order.
    std::vector<AttributeLabel> attributes(const nuv::zero::ModelElement& element) const;

    const Project& project() const noexcept { return project_; }
    const Names& names() const noexcept { return names_; }

  private:
    using Attributes = std::vector<nuv::zero::meta::Property>;
    const Attributes& nameAttributes(const nuv::zero::meta::Class& type) const;

    const Project& project_;
    const Names& names_;
    std::vector<std::string> attributes_;
    Naming naming_;
    mutable std::unordered_map<nuv::zero::meta::Class, Attributes> nameAttributes_;
    mutable std::unordered_map<nuv::zero::meta::Class, std::string> classNames_;
};

/// The values of an attribute, as texts.
AttributeLabel readAttribute(const nuv::zero::ModelElement& element,
                             const nuv::zero::meta::Property& attribute);

}  // namespace model_walk
