#pragma once

#include <memory>
#include <string>
#include <vector>

#include "traversal/Traversal.h"

namespace host {

/// A whole walk, link by link.
inline std::vector<std::string> linesOf(
    const std::shared_ptr<nuv::zero::traversal::TraversalResult>& result) {
    std::vector<std::string> lines;
    for (const auto& link : nuv::zero::traversal::links(result)) {
        lines.push_back(dumpLink(link) + (link.shouldCascade() ? "" : " (no cascade)"));
    }
    return lines;
}

}  // namespace host
