#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "benchmarks/PlainGraph.h"

namespace nuv::zero::meta {
class Class;
}

/// The model of a host whose handles are pairs of a store and a number in it.
namespace nuv::zero::host {

/// What holds elements, for as long as somebody counts it. The numbers of its elements begin at
/// zero. It is not edited any more once it stands.
///
/// The elements of a schema are its classes, and behind them its properties; those of a model have
/// a schema, whose classes they are of.
class Store {
  public:
    using Graph = benchmarks::PlainGraph;

    /// A schema, and a model that keeps it.
    Store(std::vector<Graph::Class> classes, std::vector<Graph::Property> properties);
    Store(const Store& schema, std::vector<std::uint32_t> words, std::vector<std::uint32_t> where);
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;

    void retain() const noexcept { count_.fetch_add(1, std::memory_order_relaxed); }
    void release() const noexcept {
        if (count_.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
    }

    /// No two stores that live at one time share it.
    std::uint32_t number() const noexcept { return number_; }
    /// The elements' own store for the elements of a schema.
    const Store& schema() const noexcept { return schema_ != nullptr ? *schema_ : *this; }
    bool isSchema() const noexcept { return schema_ == nullptr; }

    const std::vector<Graph::Class>& classes() const noexcept { return classes_; }
    const std::vector<Graph::Property>& properties() const noexcept { return properties_; }
    /// A handle for each class, because handles are asked for by reference. They count nothing.
    const meta::Class* classHandles() const noexcept { return classHandles_.get(); }
    /// What an element of a model says; see `PlainGraph::words`.
    const std::uint32_t* wordsOf(std::uint32_t element) const noexcept {
        return words_.data() + where_[element];
    }

  private:
    ~Store();

    mutable std::atomic<std::uint64_t> count_ = 0;
    std::uint32_t number_;
    const Store* schema_ = nullptr;
    std::vector<Graph::Class> classes_;
    std::vector<Graph::Property> properties_;
    std::unique_ptr<meta::Class[]> classHandles_;
    std::vector<std::uint32_t> words_;
    std::vector<std::uint32_t> where_;
};

}  // namespace nuv::zero::host
