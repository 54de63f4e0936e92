#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "model/memory/Metamodel.h"
#include "xmi/DataType.h"
#include "xmi/FeatureDeclaration.h"
#include "xmi/XmlForm.h"

namespace nuv::zero::xmi {

inline constexpr std::string_view ecoreNamespace = "http://www.eclipse.org/emf/2002/Ecore";

/// A metamodel read from Ecore files, with what a model file needs to be understood.
///
///     const LoadedMetamodel metamodel = EcoreReader().addFile("railway.ecore").read();
///     const meta::Class route = metamodel.findClass("http://.../trainbenchmark", "Route");
///
/// That of a `MetamodelSet` grows; its classes stay as they are. Handles stay valid when the object
/// is gone. Answers about classes and properties of other metamodels are those for "nothing known".
class LoadedMetamodel {
  public:
    LoadedMetamodel() = default;
    LoadedMetamodel(LoadedMetamodel&&) = default;
    LoadedMetamodel& operator=(LoadedMetamodel&&) = default;
    ~LoadedMetamodel() = default;

    /// All classes, those of each file that was read together with others in one go.
    std::vector<meta::Class> classes() const;

    /// The class of that name, or written so, in the package with that namespace; null where there
    /// is none. A namespace may also be one that files use for the package in its place, or an
    /// alias.
    meta::Class findClass(std::string_view nsUri, std::string_view name) const;
    /// The property of a class that files call by that name: the one of that name, or the one that
    /// the metamodel says to be written so (in an annotation for XML). Null where there is none.
    meta::Property findProperty(const meta::Class& type, std::string_view name) const;
    bool hasNamespace(std::string_view nsUri) const;
    /// The classes whose qualified name (`uml::Class`) or simple name (`Class`) it is.
    std::vector<meta::Class> classesNamed(std::string_view name) const;
    /// The namespace of the package of a class; empty where it has none.
    std::string_view namespaceOf(const meta::Class& type) const;

    /// Whether no object can be of the class itself.
    bool isAbstract(const meta::Class& type) const { return abstract_.contains(type); }
    /// Whether the values of the property identify objects within their file.
    bool isId(const meta::Property& property) const { return ids_.contains(property); }
    /// Whether elements of the class have an id that no file holds, since it is derived from what
    /// they are called.
    bool hasDerivedId(const meta::Class& type) const;

    /// What values the attribute has; null for a reference.
    const DataType* dataType(const meta::Property& property) const;
    const FeatureDeclaration& declaration(const meta::Property& property) const;
    /// How elements are written in files that follow an XML schema.
    const XmlForm& xmlForm() const noexcept { return xmlForm_; }

    /// References into files that were not given and that were left out on request.
    std::size_t leftOut() const noexcept { return leftOut_; }

  private:
    friend class EcoreBuilder;
    /// Shares all that it consists of.
    LoadedMetamodel(const LoadedMetamodel&) = default;
    LoadedMetamodel& operator=(const LoadedMetamodel&) = default;

    using Package = std::map<std::string, meta::Class, std::less<>>;
    /// Null where no package has the namespace.
    const Package* package(std::string_view nsUri) const;

    /// Those that were read in one go. Each uses classes of those in front of it only.
    std::vector<std::shared_ptr<memory::Metamodel>> metamodels_;
    std::map<std::string, Package, std::less<>> packages_;
    /// Namespaces that mean the package of another one.
    std::map<std::string, std::string, std::less<>> aliases_;
    std::unordered_map<meta::Class, std::string> namespaces_;
    /// The properties that files call by another name than their own.
    std::map<std::string, std::vector<meta::Property>, std::less<>> writtenAs_;
    std::unordered_set<meta::Class> abstract_;
    std::unordered_set<meta::Property> ids_;
    std::unordered_map<meta::Property, std::shared_ptr<const DataType>> dataTypes_;
    std::unordered_map<meta::Property, FeatureDeclaration> declarations_;
    XmlForm xmlForm_;
    std::size_t leftOut_ = 0;
};

}  // namespace nuv::zero::xmi
