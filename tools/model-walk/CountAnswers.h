#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include "Answers.h"
#include "Labels.h"
#include "Sink.h"

namespace model_walk {

/// Counts the elements of each class, and the links of each property. An element counts once,
/// however often it is told.
class CountAnswers final : public Answers {
  public:
    /// REQUIRES: labels and sink outlive the answers.
    CountAnswers(const Labels& labels, Sink& sink) : labels_(labels), sink_(sink) {}

    void entered(const nuv::zero::ModelElement& element) override { elements_.insert(element); }
    void end() override;

  private:
    using Rows = std::map<std::string, std::size_t>;

    void onElement(const ElementAnswer& answer) override { elements_.insert(answer.element); }
    void onLink(const LinkAnswer& answer) override;
    void onFact(const FactAnswer& answer) override { ++facts_[std::string(answer.kind)]; }
    void print(const std::string& title, const Rows& rows);

    const Labels& labels_;
    Sink& sink_;
    std::unordered_set<nuv::zero::ModelElement> elements_;
    std::unordered_map<nuv::zero::meta::Property, std::size_t> links_;
    Rows facts_;
};

}  // namespace model_walk
