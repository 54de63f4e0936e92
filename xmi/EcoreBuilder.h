#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "xmi/EcoreDataTypes.h"
#include "xmi/EcoreSources.h"
#include "xmi/LoadedMetamodel.h"
#include "xmi/ReadOptions.h"

namespace nuv::zero::xmi {

/// Builds the in-memory metamodel of parsed Ecore files: all at once, or some now and some later.
///
///     EcoreBuilder builder(sources, options);
///     sources.add(...);
///     builder.extend();
class EcoreBuilder {
  public:
    /// REQUIRES: sources and options outlive the builder.
    EcoreBuilder(const EcoreSources& sources, const ReadOptions& options);

    /// Adds the files that the sources have got since the last time. Classes that are there stay as
    /// they are. Throws `ReadError` and `std::bad_alloc`; nothing of the new files is then there.
    void extend();

    /// Says that a namespace means the package of another one.
    void addAlias(const std::string& nsUri, const std::string& meant);

    const LoadedMetamodel& loaded() const noexcept { return loaded_; }
    LoadedMetamodel take() && { return std::move(loaded_); }

  private:
    using Classifier = EcoreSources::Classifier;
    using DeclaredType = std::shared_ptr<const DataType>;
    /// What an attribute or a reference may hold; references have no data type.
    struct FeatureType {
        meta::Type type;
        DeclaredType declared;
    };

    void build();
    void addDataTypes();
    DataType::Kind addLiterals(SourceNode place, std::vector<DataType::Literal>& literals) const;
    void addClasses();
    void addWrittenNames();
    void addProperties();
    void checkFeatureCounts() const;
    void addOpposites();

    /// The numbers of the superclasses of a class, among the classifiers.
    std::vector<std::size_t> superclassesOf(std::size_t classifier);
    void addClass(std::size_t classifier, const std::vector<std::size_t>& superclasses);
    void addProperty(const meta::Class& owner, SourceNode feature);
    void declare(const meta::Property& property, SourceNode feature, DeclaredType type);

    FeatureType typeOfFeature(SourceNode feature, bool isReference);
    FeatureType typeAt(SourceNode feature, const EcoreTarget& target, bool isReference);
    FeatureType typeInOtherFile(SourceNode feature, const EcoreTarget& target, bool isReference);
    FeatureType dataType(const std::string& qualifiedName, DataKind kind);
    meta::Type simpleType(const std::string& qualifiedName, DataKind kind);
    int bound(SourceNode feature, std::string_view name, int otherwise) const;
    void countParts(SourceNode place, std::size_t parts);

    std::string_view writtenName(SourceNode place) const;
    std::string qualifiedName(const Classifier& classifier) const;
    const std::string& namespaceOf(const Classifier& classifier) const;
    bool isClass(const Classifier& classifier) const;
    bool isEObject(const Classifier& classifier) const;
    /// Leaves a reference into a file that was not given out, or fails.
    void leaveOut(SourceNode from, const EcoreTarget& target);

    /// What is kept from one time to the next, to lead from later files into earlier ones.
    struct State {
        /// How many files and classifiers are built.
        std::size_t files = 0;
        std::size_t classifiers = 0;
        /// The number of a classifier by its place.
        std::map<SourceNode, std::size_t> classifierAt;
        /// By the number of the classifier; null for the other kind.
        std::vector<meta::Class> classes;
        std::vector<FeatureType> dataTypes;
        std::map<std::pair<std::string, DataKind>, FeatureType> otherDataTypes;
        std::map<SourceNode, meta::Property> propertyAt;
        /// How many classes, itself included, have the properties of a class.
        std::unordered_map<const memory::ClassObject*, std::size_t> heirs;
        std::size_t inheritedParts = 0;
    };

    const EcoreSources& sources_;
    const ReadOptions& options_;
    LoadedMetamodel loaded_;
    State state_;
    /// That of the files that are being added.
    memory::Metamodel* metamodel_ = nullptr;
    /// Classes that files call by another name, with that name.
    std::vector<std::pair<std::size_t, std::string>> writtenNames_;
};

}  // namespace nuv::zero::xmi
