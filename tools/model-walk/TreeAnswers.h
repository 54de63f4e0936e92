#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Answers.h"
#include "Labels.h"
#include "Sink.h"
#include "Terminal.h"

namespace model_walk {

/// Draws the answers as a tree with lines. Which of its siblings is the last is known only when all
/// were told, so it keeps them until then.
class TreeAnswers final : public Answers {
  public:
    /// REQUIRES: labels and sink outlive the answers.
    TreeAnswers(const Labels& labels, const Terminal& terminal, Sink& sink)
        : labels_(labels), terminal_(terminal), sink_(sink) {}

    void end() override;

  private:
    struct Entry {
        std::size_t depth;
        std::string text;
        bool isRepeated;
        bool isLast = true;
    };

    void onElement(const ElementAnswer& answer) override;
    void onLink(const LinkAnswer& answer) override;
    void onFact(const FactAnswer& answer) override;
    void findLastOnes();

    const Labels& labels_;
    Terminal terminal_;
    Sink& sink_;
    std::vector<Entry> entries_;
};

}  // namespace model_walk
