#include "xmi/CrossFileContainment.h"

#include <utility>

namespace nuv::zero::xmi {

ModelElement CrossFileContainment::containerOf(const ModelElement& content) const {
    const auto found = containers_.find(content);
    return found == containers_.end() ? ModelElement() : found->second;
}

ModelElement CrossFileContainment::outermost(const ModelElement& top) {
    ModelElement last = top;
    for (auto up = above_.find(last); up != above_.end(); up = above_.find(last)) {
        last = up->second;
    }
    for (ModelElement each = top; each != last;) each = std::exchange(above_.at(each), last);
    return last;
}

void CrossFileContainment::add(const ModelElement& content, const ModelElement& container,
                               const ModelElement& outermost) {
    containers_.emplace(content, container);
    above_.emplace(content, outermost);
}

}  // namespace nuv::zero::xmi
