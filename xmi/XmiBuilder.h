#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "xmi/ElementBuilder.h"
#include "xmi/FeatureTable.h"
#include "xmi/FileFindings.h"
#include "xmi/FileNames.h"
#include "xmi/FragmentIndex.h"
#include "xmi/LoadedMetamodel.h"
#include "xmi/LoadedModel.h"
#include "xmi/Misfit.h"
#include "xmi/OutgoingReference.h"
#include "xmi/ReadOptions.h"
#include "xmi/ReferenceLog.h"
#include "xmi/ReferenceResolver.h"
#include "xmi/XmlParser.h"

namespace nuv::zero::xmi {

/// Builds the model of one file while it is parsed, in one go: `XmiBuilder(...).build()`.
///
/// First all elements with their contents and values, in the order of the file, then references,
/// which may lead anywhere in it. Besides the model, only what references ask for is kept.
///
/// A file that is not well-formed is refused as such, wherever its content may be wrong as well.
/// What else is wrong becomes a finding, where there is a list for them: the XML element is left
/// out with all that it holds, or the one value or reference, and reading goes on. Otherwise the
/// first misfit is kept, and what follows is parsed and looked at no more.
class XmiBuilder final : private XmlHandler {
  public:
    /// REQUIRES: everything that is given by reference outlives the builder.
    XmiBuilder(const LoadedMetamodel& metamodel, const std::string& file, ByteSource& source,
               const ReadOptions& options);

    /// References into other files are collected, where there is a list for them; otherwise they
    /// are treated as the options say. Throws `ReadError` for what is no finding, and where nothing
    /// is left of the model; there may be new findings then, too.
    LoadedModel build(std::vector<OutgoingReference>* outgoing = nullptr,
                      Findings* findings = nullptr);

    /// The namespaces that the metamodel does not have, in the order in which they were met. Also
    /// when `build` has thrown: whoever finds metamodels for them reads the file again.
    std::vector<std::string> unknownNamespaces() const { return meanings_.unknownNamespaces(); }

  private:
    using Index = LoadedModel::Index;

    /// What an XML element stands for.
    enum class Role : std::uint8_t {
        /// `xmi:XMI`, around several roots.
        Roots,
        /// An element of the model.
        Element,
        /// Nothing, around values of the element around it.
        Wrapper,
        /// A value of the element around it.
        Value,
        /// References of the element around it.
        References,
        /// Nothing that is to be read.
        Skipped,
        /// The same, in a namespace of its own; all of it is counted.
        Foreign,
    };
    struct Open {
        Node node = noNode;
        NameId name = noName;
        Role role = Role::Skipped;
        /// Whether paths lead through it.
        bool isStep = false;
        /// Whether it was said that its text is out of place, or need not be.
        bool takesText = false;
        /// The element that it stands for, or the one around it.
        Index element = noElement;
        const KnownClass* type = nullptr;
        /// What its text is a value of.
        const Feature* feature = nullptr;
        /// Where its children begin among those that wait.
        std::size_t firstChild = 0;
        const XmlForm::Wrapper* wrapper = nullptr;
        /// How far below the wrapper it lies.
        std::uint32_t depth = 0;
    };
    /// In which order what is wrong with one element is told.
    enum class Check : std::uint8_t { BeforeText, Text, AfterText };
    struct Failure {
        Node node;
        Check check;
        std::string reason;
    };

    void enter(const XmlStart& start) override;
    void text(std::string_view part) override;
    void leave() override;
    void declare(std::string_view prefix, std::string_view uri) override;
    bool takesUnknownTypes() const noexcept override { return findings_.has_value(); }

    void fail(Node node, Check check, const std::string& reason);
    [[noreturn]] void failAt(Node node, std::string_view reason);
    /// Does it, and takes down what is wrong with it, where that is wanted.
    template <class Action>
    void attempt(Index element, const Action& action);
    bool isFinding(const Misfit& misfit) const { return findings_ && !misfit.isOfTheWholeFile(); }
    void addFinding(const Misfit& misfit, Index element);
    /// The XML element that was entered last is no part of the model.
    void leaveOut(const Misfit& misfit);
    void finish(std::vector<OutgoingReference>* outgoing);
    void addRepeatedIds(const ReferenceResolver& resolver);

    Open& push(Node node, NameId name, Role role, Index element);
    /// Paths lead to the XML element by the name of the feature.
    void step(Node node, const Feature& feature);
    void open(Node node, const XmlStart& start);
    void openRoot(Node node, const XmlStart& start);
    void openChild(Node node, const XmlStart& start, const Open& parent);
    void openInWrapper(Node node, const XmlStart& start, const Open& parent);
    void openForeign(Node node, const XmlStart& start);
    /// What stands for a value, a reference or a content of an element.
    void openPart(Node node, const XmlStart& start, Index owner, const FileNames::Child& part);
    void openContent(Node node, const XmlStart& start, Index owner, const FileNames::Child& part);
    [[noreturn]] void failInside(const Open& parent) const;
    void create(Node node, const XmlStart& start, const KnownClass& type, Index container,
                const Feature* feature);
    void close(const Open& closed);
    void addText(const Open& closed);
    void closeElement(const Open& closed);
    void addAttributes(Node node, const XmlStart& start, Index element, const KnownClass& type);
    void addAttribute(Node node, const XmlAttribute& attribute, Index element,
                      const KnownClass& type);
    void addXmiId(Node node, Index element, std::string_view id);

    const LoadedMetamodel& metamodel_;
    const std::string& file_;
    ByteSource& source_;
    const ReadOptions& options_;
    XmlNames names_;
    FeatureTable features_;
    FileNames meanings_;
    FragmentIndex fragments_;
    ReferenceLog references_;
    OwnNames ownNames_;
    bool isMetamodel_ = false;

    LoadedModel loaded_;
    ElementBuilder elements_;
    /// By `Node`.
    BlockList<NodeContent> contents_;
    std::vector<Node> rootNodes_;
    /// By the number of the feature, what paths call it.
    std::vector<FragmentIndex::Tag> tags_;

    std::vector<Open> open_;
    /// What stands between the tags of the value or the references that are open.
    std::string text_;
    std::optional<Failure> failure_;
    std::optional<FileFindings> findings_;
    /// How many of the elements that were entered after the failure, or are left out, are open.
    std::size_t unseen_ = 0;
    /// How many XML elements are left out with the one that is.
    std::size_t lost_ = 0;
};

}  // namespace nuv::zero::xmi
