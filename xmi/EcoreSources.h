#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <string_view>
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
    };
    struct Classifier {
        SourceNode place;
        std::size_t package = 0;
        std::string name;
    };

    /// REQUIRES: the limits outlive the sources.
    explicit EcoreSources(const ReadLimits& limits) : limits_(limits) {}

    /// Takes a parsed file. Throws `ReadError` when it holds no Ecore package.
    void add(XmlDocument document);

    bool empty() const noexcept { return files_.empty(); }
    const std::vector<Package>& packages() const noexcept { return packages_; }
    const std::vector<Classifier>& classifiers() const noexcept { return classifiers_; }
    const XmlDocument& document(std::size_t source) const noexcept {
        return files_[source].document;
    }
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

    /// How files write the name of the class or feature at a place, where an annotation says so;
    /// else empty.
    std::string_view writtenName(SourceNode place) const;

    [[noreturn]] void fail(SourceNode place, std::string_view reason) const;

  private:
    struct File {
        explicit File(XmlDocument parsed);
        XmlDocument document;
        FragmentIndex fragments;
        std::vector<Node> roots;
        std::map<std::string_view, Node> ids;
    };

    void collect(std::size_t source);
    void countQualifiedName(SourceNode place, std::string_view package, std::string_view name);
    EcoreTarget resolve(SourceNode from, std::string_view reference) const;
    /// The given file that a path in another one means; `noFile` where there is none.
    std::size_t fileNamed(std::size_t from, std::string_view path) const;
    static constexpr std::size_t noFile = static_cast<std::size_t>(-1);

    const ReadLimits& limits_;
    /// Bytes, so far.
    std::size_t qualifiedNames_ = 0;
    /// Indices refer to their documents, so files must not move.
    std::deque<File> files_;
    std::vector<Package> packages_;
    std::vector<Classifier> classifiers_;
    std::map<std::string, SourceNode, std::less<>> byNsUri_;
};

}  // namespace nuv::zero::xmi
