#include "Losses.h"

#include <algorithm>

#include "model/memory/Text.h"
#include "xmi/ElementAddress.h"

namespace model_walk {

using nuv::zero::ModelElement;
using nuv::zero::meta::Property;
using nuv::zero::xmi::Finding;

namespace {

/// The element that lacks something; null where it is not known.
ModelElement sourceOf(const Project& project, const Finding& finding) {
    const std::size_t colon = finding.file.find(':');
    if (finding.element.empty() || colon == std::string::npos) return {};
    const nuv::zero::xmi::ElementAddress address = {
        finding.file.substr(0, colon), finding.file.substr(colon + 1), finding.element};
    return project.find(address.text());
}

std::string lastStep(const std::string& path) {
    return path.substr(path.find_last_of("/:") + 1);
}

}  // namespace

Losses::Losses(const CommandLine& line, const Project& project) : project_(project) {
    const std::vector<std::string>& prefixes = line.values(Option::ExpectUnresolved);
    for (const Finding& each : project.findings()) {
        if (!each.isLoss()) continue;
        const bool isExpected =
            std::any_of(prefixes.begin(), prefixes.end(), [&](const std::string& prefix) {
                return each.reference.starts_with(prefix) ||
                       std::any_of(each.tried.begin(), each.tried.end(),
                                   [&](const auto& place) { return place.starts_with(prefix); });
            });
        if (isExpected) {
            ++expected_;
        } else {
            unexpected_.push_back(&each);
        }
    }
}

bool Losses::hasLostContents() const {
    return std::any_of(unexpected_.begin(), unexpected_.end(), [](const Finding* each) {
        return each->weight == Finding::Weight::ContentsLost;
    });
}

bool Losses::mayLeadTo(const std::unordered_set<ModelElement>& elements) const {
    std::unordered_set<std::string> names;
    for (const ModelElement& each : elements) names.insert(lastStep(project_.placeOf(each)));
    return hasLostContents() ||
           std::any_of(unexpected_.begin(), unexpected_.end(), [&](const Finding* each) {
               const std::string file = each->reference.substr(0, each->reference.find('#'));
               return each->reason == Finding::Reason::AmbiguousElement ||
                      (each->reason == Finding::Reason::MissingFile &&
                       names.contains(lastStep(file)));
           });
}

bool Losses::isLostFrom(
    const std::function<bool(const ModelElement&, const Property&)>& isGoneThrough) const {
    return std::any_of(unexpected_.begin(), unexpected_.end(), [&](const Finding* each) {
        const ModelElement source = sourceOf(project_, *each);
        if (!source) return true;
        const std::string name = each->property.substr(each->property.rfind('.') + 1);
        return isGoneThrough(source,
                             source->getClass()->getProperty(nuv::zero::text::toUtf16(name)));
    });
}

}  // namespace model_walk
