#pragma once

#include <memory>
#include <string>
#include <vector>

#include "traversal/AssociationSetting.h"

namespace nuv::zero::test {

/// Settings as `kids=1`: what a provider follows, and by which policy.
inline std::vector<std::string> named(
    const std::shared_ptr<std::vector<traversal::AssociationSetting>>& settings) {
    std::vector<std::string> names;
    for (traversal::AssociationSetting& setting : *settings) {
        names.push_back(access::toUtf8(access::nameOf(setting.getProperty())) + "=" +
                        std::to_string(static_cast<int>(setting.getPolicy())));
    }
    return names;
}

}  // namespace nuv::zero::test
