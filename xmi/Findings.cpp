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

}  // namespace nuv::zero::xmi
