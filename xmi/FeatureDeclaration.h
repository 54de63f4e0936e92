#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace nuv::zero::xmi {

/// What a metamodel declares of a feature beyond the property of the in-memory metamodel.
struct FeatureDeclaration {
    /// What it holds while nothing is set, as files would write it.
    std::optional<std::string> defaultText;
    /// At least so many values are expected.
    std::int32_t lowerBound = 0;
    /// Whether "not set" is another state than "set to the default".
    bool isUnsettable = false;
    /// Whether files do not hold it.
    bool isTransient = false;

    bool isRequired() const noexcept { return lowerBound > 0; }
};

}  // namespace nuv::zero::xmi
