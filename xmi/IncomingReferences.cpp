#include "xmi/IncomingReferences.h"

#include "model/memory/ModelAccess.h"

namespace nuv::zero::xmi {
namespace {

/// The properties of a class that hold elements.
const std::vector<meta::Property>& linksOf(
    std::unordered_map<meta::Class, std::vector<meta::Property>>& known, const meta::Class& type) {
    const auto [found, isNew] = known.try_emplace(type);
    if (isNew) {
        for (const meta::Property& each : type->getAllClassProperties()) {
            if (each->isAssociation()) found->second.push_back(each);
        }
    }
    return found->second;
}

/// Calls `visit(source, property, target)` for each link of a set.
template <class Visit>
void forEachLink(const ModelSet& set, const Visit& visit) {
    std::unordered_map<meta::Class, std::vector<meta::Property>> known;
    for (std::size_t file = 0; file < set.fileCount(); ++file) {
        for (const ModelElement& source : set.model(file).elements()) {
            for (const meta::Property& property : linksOf(known, source->getClass())) {
                const Value value = access::read(source, property);
                if (!property->isSingleValued()) {
                    for (const ModelElement& each : access::toElements(value)) {
                        visit(source, property, each);
                    }
                } else if (access::isSet(value)) {
                    visit(source, property, access::toElement(value));
                }
            }
        }
    }
}

}  // namespace

IncomingReferences::IncomingReferences(const ModelSet& set) {
    // Counted first, so that the references to one element can stand one behind the other.
    std::size_t count = 0;
    forEachLink(set, [&](const ModelElement&, const meta::Property&, const ModelElement& target) {
        ++ranges_[target].end;
        ++count;
    });
    std::size_t begin = 0;
    for (auto& [target, range] : ranges_) {
        const std::size_t size = range.end;
        range = {begin, begin};
        begin += size;
    }
    references_.resize(count);
    forEachLink(set, [&](const ModelElement& source, const meta::Property& property,
                         const ModelElement& target) {
        references_[ranges_[target].end++] = {source, property.get()};
    });
}

std::span<const IncomingReferences::Reference> IncomingReferences::of(
    const ModelElement& target) const {
    const auto found = ranges_.find(target);
    if (found == ranges_.end()) return {};
    const auto& [begin, end] = found->second;
    return std::span(references_).subspan(begin, end - begin);
}

}  // namespace nuv::zero::xmi
