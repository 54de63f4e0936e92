#include "Names.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "Options.h"
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

Names::Names(const nuv::zero::xmi::LoadedMetamodel& metamodel,
             const nuv::zero::xmi::LoadedModel& model)
    : metamodel_(metamodel), model_(model) {}

Class Names::classNamed(const std::string& name) const {
    const std::vector<Class> found = metamodel_.classesNamed(name);
    if (found.size() == 1) return found.front();
    std::vector<std::string> candidates;
    if (found.empty()) {
        const bool isQualified = name.find("::") != std::string::npos;
        for (const Class& each : metamodel_.classes()) {
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

ModelElement Names::elementNamed(const std::string& idOrPath) const {
    ModelElement found = model_.find(idOrPath);
    if (found) return found;
    std::vector<std::string> candidates;
    if (idOrPath.starts_with('/')) {
        // What stands where the path goes astray.
        std::string path = idOrPath;
        ModelElement parent;
        while (!parent && path.rfind('/') != std::string::npos) {
            path.resize(path.rfind('/'));
            parent = model_.find(path == "" ? "/" : path);
        }
        for (const ModelElement& each : parent ? model_.contents(parent) : model_.roots()) {
            candidates.push_back(model_.path(each));
        }
    } else {
        candidates = model_.ids();
    }
    if (candidates.empty()) candidates.push_back(model_.path(model_.roots().front()));
    throw UsageError("there is no element '" + idOrPath + "' in the model" +
                     nearest(idOrPath, std::move(candidates)));
}

std::string Names::nameOf(const Class& type) const {
    std::string name = toUtf8(type->getName());
    return metamodel_.classesNamed(name).size() == 1 ? name : toUtf8(type->getQualifiedName());
}

}  // namespace model_walk
