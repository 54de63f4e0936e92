#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "model/memory/Metamodel.h"

namespace nuv::zero::xmi {

inline constexpr std::string_view ecoreNamespace = "http://www.eclipse.org/emf/2002/Ecore";

/// A metamodel read from Ecore files, with what a model file needs to be understood.
///
///     const LoadedMetamodel metamodel = EcoreReader().addFile("railway.ecore").read();
///     const meta::Class route = metamodel.findClass("http://.../trainbenchmark", "Route");
///
/// Handles stay valid when the object is gone.
class LoadedMetamodel {
  public:
    const memory::Metamodel& metamodel() const noexcept { return metamodel_; }

    /// The class of that name, or written so, in the package with that namespace; null where there
    /// is none.
    meta::Class findClass(std::string_view nsUri, std::string_view name) const;
    /// The property of a class that files call by that name: the one of that name, or the one that
    /// the metamodel says to be written so (in an annotation for XML). Null where there is none.
    meta::Property findProperty(const meta::Class& type, std::string_view name) const;
    bool hasNamespace(std::string_view nsUri) const;
    /// The classes whose qualified name (`uml::Class`) or simple name (`Class`) it is.
    std::vector<meta::Class> classesNamed(std::string_view name) const;
    /// Whether no object can be of the class itself.
    bool isAbstract(const meta::Class& type) const { return abstract_.contains(type); }
    /// Whether the values of the property identify objects within their file.
    bool isId(const meta::Property& property) const { return ids_.contains(property); }
    /// Whether elements of the class have an id that no file holds, since it is derived from what
    /// they are called.
    bool hasDerivedId(const meta::Class& type) const;

    /// References into files that were not given and that were left out on request.
    std::size_t leftOut() const noexcept { return leftOut_; }

  private:
    friend class EcoreBuilder;
    explicit LoadedMetamodel(memory::Metamodel metamodel);

    memory::Metamodel metamodel_;
    std::map<std::string, std::map<std::string, meta::Class, std::less<>>, std::less<>> classes_;
    /// The properties that files call by another name than their own.
    std::map<std::string, std::vector<meta::Property>, std::less<>> writtenAs_;
    std::unordered_set<meta::Class> abstract_;
    std::unordered_set<meta::Property> ids_;
    std::size_t leftOut_ = 0;
};

}  // namespace nuv::zero::xmi
