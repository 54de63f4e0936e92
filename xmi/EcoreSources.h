#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "xmi/FragmentIndex.h"
#include "xmi/ReadOptions.h"
#include "xmi/XmlDocument.h"

namespace nuv::zero::xmi {

/// One place in one of several files.
struct SourceNode {
    std::size_t source = 0;
    Node node = noNode;
    friend auto operator<=>(const SourceNode&, const SourceNode&) = default;
};

/// What a reference leads to: a place in one of the files, or what another file is said to hold.
struct EcoreTarget {
    /// `noNode` when the target is not in one of the files.
    SourceNode place;
    /// The reference without its fragment; empty for the file itself.
    std::string file;
    std::string fragment;
    /// What stands in front of a reference in place of a type, such as `ecore:EClass`.
    std::string declaredType;

    bool isHere() const noexcept { return place.node != noNode; }
    /// The last part of the fragment.
    std::string_view name() const;
};

/// The files of a metamodel: their packages and classifiers, and references between them.
class EcoreSources {
  public:
    struct Package {
        SourceNode place;
        std::string qualifiedName;
        std::string nsUri;
        bool isExcluded = false;
    };
    struct Classifier {
        SourceNode place;
        std::size_t package = 0;
        std::string name;
    };
    static constexpr std::size_t noFile = static_cast<std::size_t>(-1);

    /// REQUIRES: the limits outlive the sources.
    explicit EcoreSources(const ReadLimits& limits) : limits_(limits) {}

    /// Takes a parsed file and says its number. A file that was given may be meant by any path that
    /// ends as its own does. Throws `ReadError` when it holds no Ecore package, and when another
    /// file has a package of the same namespace.
    ///
    /// Of packages that stand within another model only the first counts, which is the latest
    /// definition of a profile, unless another one has the wanted namespace.
    std::size_t add(XmlDocument document, bool isGiven, std::string_view wanted = {});
    /// Treats a file as if it were not there, since what it says cannot be.
    void exclude(std::size_t source);
    /// Forgets the last files, back to the first so many.
    void keepFirst(std::size_t files);
    /// Says which file a path in another one means.
    void link(std::size_t from, const std::string& path, std::size_t to);
    /// Says that a namespace means the package of another one.
    void addAlias(const std::string& nsUri, const std::string& meant) { aliases_[nsUri] = meant; }

    /// How many files there are.
    std::size_t size() const noexcept { return files_.size(); }
    const std::vector<Package>& packages() const noexcept { return packages_; }
    const std::vector<Classifier>& classifiers() const noexcept { return classifiers_; }
    const XmlDocument& document(std::size_t source) const noexcept {
        return files_[source].document;
    }
    /// The file with the package of a namespace; `noFile` where there is none.
    std::size_t fileWith(std::string_view nsUri) const;
    /// Whether a package of a file has the namespace.
    bool declares(std::size_t source, std::string_view nsUri) const;
    /// The package of a namespace, or of one that means it; null where there is none.
    const Package* packageNamed(std::string_view nsUri) const;
    /// The path to a package in its file, as references to it are written.
    std::string pathOf(const Package& package) const;
    /// The files, and the namespaces, that a file refers to, each as it is written and once.
    std::vector<std::string> filesReferredTo(std::size_t source) const;
    /// The file that a path or a namespace in a file means; `noFile` where there is none. Throws
    /// `ReadError` when it may mean two.
    std::size_t fileMeant(std::size_t from, std::string_view path) const;
    /// The namespaces of the outermost packages that the file would add.
    static std::vector<std::string> namespacesOf(const XmlDocument& document,
                                                 std::string_view wanted);
    /// Whether a file refers to a class of Ecore itself.
    bool needsEcore(std::size_t source) const;

    /// An attribute of the element at a place; empty where there is none.
    std::string_view attribute(SourceNode place, std::string_view name) const;
    bool flag(SourceNode place, std::string_view name) const {
        return attribute(place, name) == "true";
    }
    /// The type that an element is of: `EClass` for `xsi:type="ecore:EClass"`.
    std::string_view typeOf(SourceNode place) const;

    /// What a feature of the element at a place refers to, in order, whether the references stand
    /// in an attribute or in child elements. Throws `ReadError` for a reference to nothing.
    std::vector<EcoreTarget> references(SourceNode from, std::string_view feature) const;

    /// What an annotation of the element at a place says; null where it says nothing.
    const std::string_view* annotation(SourceNode place, std::string_view source,
                                       std::string_view key) const;

    [[noreturn]] void fail(SourceNode place, std::string_view reason) const;

  private:
    struct File {
        File(XmlDocument parsed, bool given);
        XmlDocument document;
        FragmentIndex fragments;
        std::vector<Node> roots;
        std::map<std::string_view, Node> ids;
        bool isGiven;
        bool isExcluded = false;
    };

    void collect(std::size_t source, std::string_view wanted);
    /// The outermost packages that stand within another model.
    static std::vector<Node> packagesWithin(const XmlDocument& document, std::string_view wanted);
    void countQualifiedName(SourceNode place, std::string_view package, std::string_view name);
    EcoreTarget resolve(SourceNode from, std::string_view reference) const;
    std::vector<Node> outermostPackages(std::size_t source) const;
    const SourceNode* packageWith(std::string_view nsUri) const;
    /// The given file whose path ends most as the path does.
    std::size_t givenFileNamed(std::size_t from, std::string_view path) const;

    const ReadLimits& limits_;
    /// Bytes, so far.
    std::size_t qualifiedNames_ = 0;
    /// Indices refer to their documents, so files must not move.
    std::deque<File> files_;
    std::vector<Package> packages_;
    std::vector<Classifier> classifiers_;
    std::map<std::string, SourceNode, std::less<>> byNsUri_;
    std::map<std::string, std::string, std::less<>> aliases_;
    /// By the file that refers, and the path there.
    std::map<std::pair<std::size_t, std::string>, std::size_t> links_;
};

/// Where metamodels say how they are written as XML.
inline constexpr std::string_view xmlAnnotation =
    "http:///org/eclipse/emf/ecore/util/ExtendedMetaData";

}  // namespace nuv::zero::xmi
