#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "xmi/FeatureTable.h"
#include "xmi/Misfit.h"
#include "xmi/TextTable.h"
#include "xmi/XmlParser.h"

namespace nuv::zero::xmi {

/// What the names of XML elements and attributes of one file mean in the metamodel. Those that mean
/// nothing are misfits.
///
/// Most files call classes and features by their own names. Files of an XML schema have global
/// elements at the top and in place of others, wrappers, and content of any namespace; see
/// `XmlForm`.
class FileNames {
  public:
    /// What a child element of an element of the model stands for.
    struct Child {
        /// Null where it is something else.
        const Feature* feature = nullptr;
        /// The class that the name says; null where the file or the feature says it.
        const KnownClass* type = nullptr;
        /// Null where it is no wrapper.
        const XmlForm::Wrapper* wrapper = nullptr;
        /// It means nothing and may stand there all the same.
        bool isForeign = false;
    };

    /// REQUIRES: everything outlives it.
    FileNames(const LoadedMetamodel& metamodel, const XmlNames& names, FeatureTable& features);

    const KnownClass& classOfRoot(Node node, const XmlStart& start);
    /// The class of a contained element: what the file says, else what its name says, else the type
    /// of the property.
    const KnownClass& classOfContent(Node node, const XmlStart& start, const Feature& feature,
                                     const KnownClass* said);
    Child child(Node node, const XmlStart& start, const KnownClass& owner);
    /// What the XML elements inside a wrapper stand for.
    Child inWrapper(Node node, const XmlStart& start, const XmlForm::Wrapper& wrapper);
    /// Null where it means nothing and may stand there all the same.
    const Feature* attribute(Node node, NameId name, const KnownClass& owner);
    /// The feature that the text between the tags of an element belongs to; null where there is
    /// none.
    const Feature* text(const KnownClass& owner);
    bool mayHoldText(const KnownClass& owner) const;

    bool isNil(const XmlStart& start) const;
    /// The namespaces that were asked for in vain, in the order in which they were met.
    std::vector<std::string> unknownNamespaces() const;

  private:
    const KnownClass& classNamed(Node node, NameId id);
    Child childOfForm(Node node, const XmlStart& start, const KnownClass& owner);
    [[noreturn]] void failNamespace(Node node, NameId id, std::string_view what,
                                    Finding::Weight weight);
    [[noreturn]] void failFeature(Node node, NameId name, const KnownClass& owner,
                                  Finding::Weight weight) const;
    [[noreturn]] void failType(Node node, const XmlStart& start) const;

    const LoadedMetamodel& metamodel_;
    const XmlNames& names_;
    FeatureTable& features_;
    const XmlForm& form_;
    const bool hasForm_;
    TextTable unknownNamespaces_;
};

}  // namespace nuv::zero::xmi
