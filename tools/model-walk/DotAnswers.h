#pragma once

#include <cstddef>
#include <set>
#include <tuple>
#include <unordered_map>

#include "Answers.h"
#include "Labels.h"
#include "Picture.h"
#include "Sink.h"

namespace model_walk {

/// Draws the answers: a node for each element and an edge for each link. Elements with the same
/// neighbours are merged before anything is left out.
class DotAnswers final : public Answers {
  public:
    enum class Merging { Yes, No };

    /// REQUIRES: labels and sink outlive the answers.
    DotAnswers(const Labels& labels, PictureOptions options, Merging merging, Sink& sink)
        : labels_(labels), options_(options), merging_(merging), sink_(sink) {}

    void end() override;

  private:
    void onElement(const ElementAnswer& answer) override { nodeOf(answer.element); }
    void onLink(const LinkAnswer& answer) override;
    void onFact(const FactAnswer& answer) override;
    std::size_t nodeOf(const nuv::zero::ModelElement& element);
    void findContainers();

    const Labels& labels_;
    PictureOptions options_;
    Merging merging_;
    Sink& sink_;
    Picture picture_;
    std::unordered_map<nuv::zero::ModelElement, std::size_t> nodes_;
    std::set<std::tuple<std::size_t, std::size_t, std::string>> edges_;
};

}  // namespace model_walk
