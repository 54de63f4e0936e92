#pragma once

#include <vector>

#include "model/Framework.h"

namespace nuv::zero::test {

/// The elements that a property designates, read and converted one by one.
inline std::vector<ModelElement> elementsIn(const ModelElement& element,
                                            const meta::Property& property) {
    const Value value = access::read(element, property);
    if (!access::isSingleValued(property)) return access::toElements(value);
    std::vector<ModelElement> single;
    if (access::isSet(value)) {
        if (const ModelElement target = access::toElement(value)) single.push_back(target);
    }
    return single;
}

}  // namespace nuv::zero::test
