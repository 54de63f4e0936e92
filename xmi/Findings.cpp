#include "xmi/Findings.h"

namespace nuv::zero::xmi {

void Findings::add(Finding finding) {
    // Counts come first: when keeping it fails, it has been counted.
    std::size_t& count = counts_[{finding.reason, finding.file}];
    ++count;
    ++size_;
    ++weights_[static_cast<std::size_t>(finding.weight)];
    if (kept_.size() < limit_) kept_.push_back(std::move(finding));
}

void Findings::add(Findings others) {
    for (const auto& [where, count] : others.counts_) counts_[where] += count;
    size_ += others.size_;
    for (std::size_t i = 0; i < weights_.size(); ++i) weights_[i] += others.weights_[i];
    for (Finding& each : others.kept_) {
        if (kept_.size() >= limit_) break;
        kept_.push_back(std::move(each));
    }
}

}  // namespace nuv::zero::xmi
