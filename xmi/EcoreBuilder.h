#pragma once

#include <cstddef>
#include <map>
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

/// Builds the in-memory metamodel of parsed Ecore files, in one go: `EcoreBuilder(...).build()`.
class EcoreBuilder {
  public:
    /// REQUIRES: there is at least one file; sources and options outlive the builder.
    EcoreBuilder(const EcoreSources& sources, const ReadOptions& options);

    LoadedMetamodel build();

  private:
    using Classifier = EcoreSources::Classifier;

    void addDataTypes();
    void addClasses();
    void addWrittenNames();
    void addProperties();
    void checkFeatureCounts() const;
    void addOpposites();

    /// The numbers of the superclasses of a class, among the classifiers; those that stand for
    /// classes without a file are made at once.
    struct Superclasses {
        std::vector<std::size_t> here;
        std::vector<meta::Class> others;
    };
    Superclasses superclassesOf(std::size_t classifier);
    void addClass(std::size_t classifier, const Superclasses& superclasses);
    void addProperty(const meta::Class& owner, SourceNode feature);

    meta::Type typeOfFeature(SourceNode feature, bool isReference);
    meta::Type typeAt(SourceNode feature, const EcoreTarget& target, bool isReference);
    meta::Type typeInOtherFile(SourceNode feature, const EcoreTarget& target, bool isReference);
    meta::Class ecoreClass(std::string_view name);
    meta::Type dataType(const std::string& qualifiedName, DataKind kind);
    int upperBound(SourceNode feature) const;
    void countParts(SourceNode place, std::size_t parts);

    std::string qualifiedName(const Classifier& classifier) const;
    bool isClass(const Classifier& classifier) const;
    bool isEObject(const Classifier& classifier) const;
    /// Leaves a reference into a file that was not given out, or fails.
    void leaveOut(SourceNode from, const EcoreTarget& target);

    const EcoreSources& sources_;
    const ReadOptions& options_;
    LoadedMetamodel loaded_;
    memory::Metamodel& metamodel_;
    /// The number of a classifier by its place.
    std::map<SourceNode, std::size_t> classifierAt_;
    /// By the number of the classifier; null for the other kind.
    std::vector<meta::Class> classes_;
    std::vector<meta::Type> dataTypes_;
    std::map<std::pair<std::string, DataKind>, meta::Type> otherDataTypes_;
    std::map<std::string, meta::Class, std::less<>> otherClasses_;
    /// Classes that files call by another name, with that name.
    std::vector<std::pair<std::size_t, std::string>> writtenNames_;
    std::map<SourceNode, meta::Property> propertyAt_;
    /// How many classes, itself included, have the properties of a class.
    std::unordered_map<const memory::ClassObject*, std::size_t> heirs_;
    std::size_t inheritedParts_ = 0;
};

}  // namespace nuv::zero::xmi
