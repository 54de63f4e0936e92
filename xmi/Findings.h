#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "xmi/Finding.h"

namespace nuv::zero::xmi {

/// The findings of a model: all are counted, and so many are kept.
///
///     for (const auto& [where, count] : findings.counts()) {
///         std::cerr << where.second << ": " << count << ' ' << nameOf(where.first) << '\n';
///     }
class Findings {
  public:
    /// By reason and file.
    using Counts = std::map<std::pair<Finding::Reason, std::string>, std::size_t>;

    explicit Findings(std::size_t limit) : limit_(limit) {}

    void add(Finding finding);
    /// Adds those of others, kept or not, behind its own.
    void add(Findings others);

    /// Those that are kept, to iterate over: the first, in the order in which they were added.
    auto begin() const noexcept { return kept_.begin(); }
    auto end() const noexcept { return kept_.end(); }
    const std::vector<Finding>& kept() const noexcept { return kept_; }
    std::vector<Finding>& kept() noexcept { return kept_; }
    const Counts& counts() const noexcept { return counts_; }
    bool empty() const noexcept { return size_ == 0; }
    /// All, kept or not.
    std::size_t size() const noexcept { return size_; }
    std::size_t ofWeight(Finding::Weight weight) const noexcept {
        return weights_[static_cast<std::size_t>(weight)];
    }

  private:
    std::size_t limit_;
    std::size_t size_ = 0;
    std::array<std::size_t, static_cast<std::size_t>(Finding::Weight::Note) + 1> weights_ = {};
    std::vector<Finding> kept_;
    Counts counts_;
};

}  // namespace nuv::zero::xmi
