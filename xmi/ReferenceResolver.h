#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "model/memory/Model.h"
#include "xmi/FeatureTable.h"
#include "xmi/FragmentIndex.h"
#include "xmi/IdTable.h"
#include "xmi/OutgoingReference.h"
#include "xmi/ReferenceLog.h"

namespace nuv::zero::xmi {

/// What an XML element of a model file is.
struct NodeContent {
    /// The number of its first byte.
    std::uint32_t offset;
    /// The number of the element that it stands for, or one of the two below.
    std::uint32_t element;
};
/// It stands for no element.
inline constexpr std::uint32_t noElement = 0xFFFFFFFFU;
/// It stands for one that is kept in another file.
inline constexpr std::uint32_t elementElsewhere = 0xFFFFFFFEU;

/// Everything that references can lead to.
struct ReferenceTargets {
    memory::Model& model;
    const std::vector<ModelElement>& elements;
    const IdTable& ids;
    FragmentIndex& fragments;
    /// By `Node`.
    const BlockList<NodeContent>& contents;
    const std::vector<Node>& roots;
};

/// The names by which references may mean the file that they stand in.
struct OwnNames {
    std::string file;
    /// The namespaces of a metamodel's roots, by which it goes, too.
    TextTable namespaces;
};

/// Resolves the references of one file, once all its elements are there, and sets them. What is
/// wrong with one is thrown as a `Misfit`.
class ReferenceResolver {
  public:
    /// REQUIRES: everything that is given by reference outlives the resolver.
    ReferenceResolver(const ReferenceTargets& targets, const FeatureTable& features,
                      const OwnNames& ownNames, bool leavesOut);

    /// References into other files go here instead, to be resolved later. The list has to outlive
    /// the resolver.
    void collectInto(std::vector<OutgoingReference>& outgoing) { outgoing_ = &outgoing; }

    void resolve(const ReferenceLog& log);
    /// References into other files that were left out.
    std::size_t leftOut() const noexcept { return leftOut_; }

  private:
    using Index = std::uint32_t;

    void begin(const ReferenceLog::Place& place);
    void end();
    void resolvePaths(ReferenceLog::Reader& log);
    void resolveList(std::string_view text);
    void resolveOne(std::string_view reference);
    Node nodeOfPath(std::string_view fragment);
    Index targetOfId(std::string_view id) const;
    /// The text of the reference is only asked for when it does not lead to an element.
    template <class Text>
    void takeNode(Node target, const Text& text);
    void takeElement(Index target, std::string_view text);
    [[noreturn]] void failUnresolved(std::string_view reference) const;
    void leaveOut(std::string_view reference, Node through);
    std::uint32_t valuesInFront();
    void link(const ModelElement& target);
    /// Whether the part of a reference in front of `#` means this file.
    bool meansThisFile(std::string_view file);
    [[noreturn]] void fail(const std::string& reason) const;

    const ReferenceTargets targets_;
    const FeatureTable& features_;
    const OwnNames& ownNames_;
    const std::string ownFileName_;
    const bool leavesOut_;
    std::size_t leftOut_ = 0;
    std::vector<OutgoingReference>* outgoing_ = nullptr;
    /// How many elements the first so many XML elements stand for; see `valuesInFront`.
    Node countedNodes_ = 0;
    std::uint32_t countedElements_ = 0;
    bool keysAreSorted_ = false;
    /// What was asked last, since many references lead into few files.
    std::string askedFile_;
    bool askedMeansThis_ = false;

    /// The references that are being resolved stand here.
    ReferenceLog::Place place_{};
    const Feature* feature_ = nullptr;
    /// Targets of a list that had none before, to be set at once.
    std::vector<ModelElement> list_;
    bool isNewList_ = false;
    /// The XML elements on the way of the path that was resolved last; the root is the first.
    std::vector<Node> way_;
};

/// `Class.feature`, for error texts.
std::string nameOf(const meta::Property& property);

/// Refuses to set a single value that is set. The values are read from the model.
void refuseSecondValue(Node node, const ModelElement& element, const meta::Property& property);

}  // namespace nuv::zero::xmi
