#include "traversal/internal/Ways.h"

#include <algorithm>

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

std::vector<Link> Ways::to(const ModelElement& element) const {
    std::vector<Link> path;
    const ModelElement* target = &element;
    for (const Way* way = ways_.find(element); way != nullptr;) {
        const bool isInput = way->setting == nullptr;
        path.emplace_back(way->source.get(), *target,
                          isInput ? meta::Property() : way->setting->property());
        target = &way->source.get();
        way = isInput ? nullptr : ways_.find(*target);
    }
    std::reverse(path.begin(), path.end());
    return path;
}

}  // namespace nuv::zero::traversal::internal
