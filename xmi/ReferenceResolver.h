#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "xmi/CrossFileContainment.h"
#include "xmi/FeatureTable.h"
#include "xmi/FileFindings.h"
#include "xmi/FragmentIndex.h"
#include "xmi/LoadedModel.h"
#include "xmi/Misfit.h"
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
    LoadedModel& loaded;
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
    /// Whether ids may be written with a prefix, as files of an XML schema do.
    bool hasQNames = false;
    /// What the prefixes mean, the first of each name.
    std::map<std::string, std::string, std::less<>> prefixes;
};

/// Resolves the references of one file, once all its elements are there, and sets them. What is
/// wrong with one is thrown as a `Misfit`, or reported.
class ReferenceResolver {
  public:
    /// REQUIRES: everything that is given by reference outlives the resolver.
    ReferenceResolver(const ReferenceTargets& targets, const FeatureTable& features,
                      const OwnNames& ownNames, bool leavesOut);

    /// References into other files go here instead, to be resolved later. The list has to outlive
    /// the resolver.
    void collectInto(std::vector<OutgoingReference>& outgoing) { outgoing_ = &outgoing; }
    /// What is wrong is reported here, and left out. The findings have to outlive the resolver.
    void reportTo(FileFindings& findings) { findings_ = &findings; }

    void resolve(const ReferenceLog& log);
    /// References into other files that were left out.
    std::size_t leftOut() const noexcept { return leftOut_; }
    /// Whether a reference asked for an id that several elements share.
    bool isAskedFor(const IdTable::Repeated& repeated) const {
        return sharedAskedFor_.contains(repeated.id);
    }

  private:
    using Index = std::uint32_t;

    /// The file as paths see it.
    struct Steps;

    void begin(const ReferenceLog::Place& place);
    void end();
    void resolvePaths(ReferenceLog::Reader& log);
    void resolveList(std::string_view text);
    void resolveOne(std::string_view reference);
    /// Does it, and reports what is wrong with it, where that is wanted.
    template <class Action>
    void attempt(const Action& action);
    Node nodeOfPath(std::string_view fragment);
    Node nodeOf(Index element);
    Index targetOfId(std::string_view id);
    /// The namespace of a reference that is written with a prefix; null for another.
    const std::string* namespaceOf(std::string_view reference) const;
    /// The text of the reference is only asked for when it does not lead to an element.
    template <class Text>
    void takeNode(Node target, const Text& text);
    void takeElement(Index target, std::string_view text);
    [[noreturn]] void failUnresolved(std::string_view reference) const;
    void leaveOut(std::string_view reference, Node through);
    std::uint32_t valuesInFront();
    void link(Index target, std::string_view reference);
    /// Refuses to contain what is contained, or what contains the owner.
    void checkContainment(Index target, std::string_view reference);
    ModelElement outermostOf(const ModelElement& element);
    /// Whether the part of a reference in front of `#` means this file.
    bool meansThisFile(std::string_view file);
    [[noreturn]] void fail(Finding::Reason reason, std::string_view reference,
                           const std::string& text, Node other = noNode) const;

    const ReferenceTargets targets_;
    LoadedModel& loaded_;
    const FeatureTable& features_;
    const OwnNames& ownNames_;
    const std::string ownFileName_;
    const bool leavesOut_;
    std::size_t leftOut_ = 0;
    std::vector<OutgoingReference>* outgoing_ = nullptr;
    FileFindings* findings_ = nullptr;
    /// How many elements the first so many XML elements stand for; see `valuesInFront`.
    Node countedNodes_ = 0;
    std::uint32_t countedElements_ = 0;
    /// By element; made when a path by names asks for it.
    std::vector<Node> nodes_;
    std::unordered_set<TextTable::Number> sharedAskedFor_;
    /// What is contained by reference.
    CrossFileContainment containment_;
    std::vector<std::pair<Index, Index>> containedRoots_;
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

}  // namespace nuv::zero::xmi
