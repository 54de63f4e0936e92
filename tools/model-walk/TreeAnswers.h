#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "Answers.h"
#include "Labels.h"
#include "Sink.h"
#include "Terminal.h"

namespace model_walk {

/// Draws the answers as a tree with lines: a link below the element that it comes from, wherever
/// that one was shown. An element that was shown before is marked and not drawn again. Which
/// sibling is the last is known only when all were told, so it keeps them until then.
class TreeAnswers final : public Answers {
  public:
    /// REQUIRES: labels and sink outlive the answers.
    TreeAnswers(const Labels& labels, const Terminal& terminal, Sink& sink)
        : labels_(labels), terminal_(terminal), sink_(sink) {}

    void end() override;

  private:
    struct Entry {
        std::string text;
        std::vector<std::size_t> below;
    };
    /// The entry that is drawn next, and what stands in front of it.
    struct Turn {
        std::size_t entry;
        std::size_t depth;
        std::string lines;
        bool isLast;
    };

    void onElement(const ElementAnswer& answer) override;
    void onLink(const LinkAnswer& answer) override;
    void onFact(const FactAnswer& answer) override;
    /// The entry of an element; it gets one at the top where it has none.
    std::size_t entryOf(const nuv::zero::ModelElement& element);
    std::string textOf(const nuv::zero::ModelElement& element, const std::string& front,
                       const std::string& behind) const;
    void draw(const Turn& turn);

    const Labels& labels_;
    Terminal terminal_;
    Sink& sink_;
    std::vector<Entry> entries_;
    std::vector<std::size_t> top_;
    std::unordered_map<nuv::zero::ModelElement, std::size_t> shown_;
    bool hasRepeats_ = false;
};

}  // namespace model_walk
