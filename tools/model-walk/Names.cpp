#include "Names.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "UsageError.h"
#include "model/memory/Text.h"

namespace model_walk {
namespace {

using nuv::zero::ModelElement;
using nuv::zero::meta::Class;
using nuv::zero::meta::Property;
using nuv::zero::text::toUtf16;
using nuv::zero::text::toUtf8;

/// Comparing costs the product of the lengths, and ids may be as long as somebody likes.
constexpr std::size_t comparedLength = 200;

}  // namespace

std::size_t editDistance(std::string_view one, std::string_view other) {
    std::vector<std::size_t> row(other.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= one.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i);
        for (std::size_t j = 1; j <= other.size(); ++j) {
            const std::size_t replaced = diagonal + (one[i - 1] == other[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({replaced, row[j] + 1, row[j - 1] + 1});
        }
    }
    return row.back();
}

std::string nearest(std::string_view word, std::vector<std::string> candidates) {
    constexpr std::size_t shown = 3;
    std::vector<std::pair<std::size_t, std::string>> ranked;
    for (std::string& candidate : candidates) {
        if (candidate.size() > comparedLength) continue;
        const std::size_t distance = editDistance(word.substr(0, comparedLength), candidate);
        ranked.emplace_back(distance, std::move(candidate));
    }
    std::sort(ranked.begin(), ranked.end());
    ranked.erase(std::unique(ranked.begin(), ranked.end()), ranked.end());
    if (ranked.size() > shown) ranked.resize(shown);
    std::string text;
    for (const auto& [distance, candidate] : ranked) {
        text += (text.empty() ? "; nearest: " : ", ") + candidate;
    }
    return text;
}

std::vector<std::string> nearbyFragments(const nuv::zero::xmi::LoadedModel& model,
                                         const std::string& fragment) {
    std::vector<std::string> candidates;
    if (fragment.starts_with('/')) {
        // What stands where the path goes astray.
        std::string path = fragment;
        ModelElement parent;
        while (!parent && path.rfind('/') != std::string::npos) {
            path.resize(path.rfind('/'));
            parent = model.find(path == "" ? "/" : path);
        }
        for (const ModelElement& each : parent ? model.contents(parent) : model.roots()) {
            candidates.push_back(model.path(each));
        }
    } else {
        candidates = model.ids();
    }
    if (candidates.empty()) candidates.push_back(model.path(model.roots().front()));
    return candidates;
}

Names::Names(const nuv::zero::xmi::LoadedMetamodel& metamodel) : metamodel_(metamodel) {}

Class Names::classNamed(const std::string& name) const {
    const std::vector<Class> found = metamodel_.classesNamed(name);
    if (found.size() == 1) return found.front();
    std::vector<std::string> candidates;
    if (found.empty()) {
        const bool isQualified = name.find("::") != std::string::npos;
        for (const Class& each : classes()) {
            candidates.push_back(isQualified ? toUtf8(each->getQualifiedName()) : nameOf(each));
        }
        throw UsageError("there is no class '" + name + "'" + nearest(name, std::move(candidates)));
    }
    for (const Class& each : found) candidates.push_back(toUtf8(each->getQualifiedName()));
    throw UsageError("several classes are called '" + name + "'" +
                     nearest(name, std::move(candidates)));
}

Property Names::propertyNamed(const Class& type, const std::string& name) const {
    const Property found = type->getProperty(toUtf16(name));
    if (found) return found;
    std::vector<std::string> candidates;
    for (const Property& each : type->getAllClassProperties()) {
        candidates.push_back(toUtf8(each->getName()));
    }
    throw UsageError("the class " + nameOf(type) + " has no property '" + name + "'" +
                     nearest(name, std::move(candidates)));
}

std::vector<Class> Names::classes() const {
    return metamodel_.classes();
}

std::string Names::nameOf(const Class& type) const {
    std::string name = toUtf8(type->getName());
    return metamodel_.classesNamed(name).size() == 1 ? name : toUtf8(type->getQualifiedName());
}

std::string Names::nameOf(const Property& property) const {
    return nameOf(Class(property->getOwningType())) + "." + toUtf8(property->getName());
}

}  // namespace model_walk
