#include "TreeAnswers.h"

#include <iostream>
#include <utility>

#include "LineAnswers.h"
#include "xmi/EscapedText.h"

namespace model_walk {

using nuv::zero::xmi::escaped;

using nuv::zero::ModelElement;

namespace {

/// Deeper than anybody can follow lines; without an end to them, a chain would cost its square.
constexpr std::size_t drawnDepth = 60;

}  // namespace

std::string TreeAnswers::textOf(const ModelElement& element, const std::string& front,
                                const std::string& behind) const {
    return front + shown(terminal_, labels_, element) + shownAttributes(labels_, element) + behind +
           '\t' + terminal_.in(Terminal::Part::Address, labels_.address(element));
}

std::size_t TreeAnswers::entryOf(const ModelElement& element) {
    const auto [known, isNew] = shown_.emplace(element, entries_.size());
    if (isNew) {
        top_.push_back(entries_.size());
        entries_.push_back({textOf(element, {}, {}), {}});
    }
    return known->second;
}

void TreeAnswers::onElement(const ElementAnswer& answer) {
    entryOf(answer.element);
}

void TreeAnswers::onLink(const LinkAnswer& answer) {
    if (!answer.link.getProperty()) {
        entryOf(answer.subject());
        return;
    }
    const std::size_t above =
        entryOf(answer.isAboutSource ? answer.link.getTarget() : answer.link.getSource());
    const bool isNew = shown_.emplace(answer.subject(), entries_.size()).second;
    hasRepeats_ = hasRepeats_ || !isNew;
    const std::string front =
        terminal_.in(Terminal::Part::Property, escaped(Labels::property(answer.link))) +
        (answer.isAboutSource ? " of " : ": ");
    const std::string behind =
        (isNew ? "" : " (*)") + (answer.note.empty() ? "" : '\t' + escaped(answer.note));
    entries_[above].below.push_back(entries_.size());
    entries_.push_back({textOf(answer.subject(), front, behind), {}});
}

void TreeAnswers::onFact(const FactAnswer& answer) {
    sink_.line(answer.line);
}

void TreeAnswers::draw(const Turn& turn) {
    const std::string& text = entries_[turn.entry].text;
    if (turn.depth == 0) {
        sink_.line(text);
    } else if (turn.depth > drawnDepth) {
        sink_.line("(" + std::to_string(turn.depth) + " deep) " + text);
    } else {
        sink_.line(turn.lines + (turn.isLast ? "└─ " : "├─ ") + text);
    }
}

void TreeAnswers::end() {
    std::vector<Turn> turns;
    const auto take = [&](const std::vector<std::size_t>& entries, std::size_t depth,
                          const std::string& lines) {
        for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
            turns.push_back({*entry, depth, lines, entry == entries.rbegin()});
        }
    };
    take(top_, 0, {});
    while (!turns.empty()) {
        const Turn turn = std::move(turns.back());
        turns.pop_back();
        draw(turn);
        const bool hasLines = turn.depth > 0 && turn.depth < drawnDepth;
        take(entries_[turn.entry].below, turn.depth + 1,
             hasLines ? turn.lines + (turn.isLast ? "   " : "│  ") : std::string());
    }
    sink_.flush();
    if (hasRepeats_) std::cerr << "(*) was shown before\n";
}

}  // namespace model_walk
