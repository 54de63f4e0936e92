#include "TreeAnswers.h"

#include <algorithm>
#include <iostream>

#include "EscapedText.h"
#include "LineAnswers.h"

namespace model_walk {
namespace {

/// Deeper than anybody can follow lines; without an end to them, a chain would cost its square.
constexpr std::size_t drawnDepth = 60;

/// The lines in front of an entry, given which of its ancestors and itself are last.
std::string linesOf(const std::vector<bool>& isLast, std::size_t depth) {
    if (depth == 0) return {};
    if (depth > drawnDepth) return "(" + std::to_string(depth) + " deep) ";
    std::string lines;
    for (std::size_t level = 1; level < depth; ++level) lines += isLast[level] ? "   " : "│  ";
    return lines + (isLast[depth] ? "└─ " : "├─ ");
}

}  // namespace

void TreeAnswers::onElement(const ElementAnswer& answer) {
    entries_.push_back({answer.depth,
                        shown(terminal_, labels_, answer.element) +
                            shownAttributes(labels_, answer.element) + '\t' +
                            terminal_.in(Terminal::Part::Address, labels_.address(answer.element)),
                        false});
}

void TreeAnswers::onLink(const LinkAnswer& answer) {
    std::string text;
    if (answer.link.getProperty()) {
        text = terminal_.in(Terminal::Part::Property, escaped(Labels::property(answer.link))) +
               (answer.isAboutSource ? " of " : ": ");
    }
    text += shown(terminal_, labels_, answer.subject());
    if (answer.isRepeated) text += " (*)";
    text += shownAttributes(labels_, answer.subject());
    if (!answer.note.empty()) text += '\t' + escaped(answer.note);
    text += '\t' + terminal_.in(Terminal::Part::Address, labels_.address(answer.subject()));
    entries_.push_back({answer.depth, text, answer.isRepeated});
}

void TreeAnswers::onFact(const FactAnswer& answer) {
    sink_.line(answer.line);
}

void TreeAnswers::findLastOnes() {
    // From the end: whether an entry of this depth comes before the next that is less deep.
    std::vector<bool> isFollowed(drawnDepth + 2, false);
    for (auto entry = entries_.rbegin(); entry != entries_.rend(); ++entry) {
        const std::size_t depth = std::min(entry->depth, drawnDepth + 1);
        entry->isLast = !isFollowed[depth];
        isFollowed[depth] = true;
        std::fill(isFollowed.begin() + static_cast<std::ptrdiff_t>(depth) + 1, isFollowed.end(),
                  false);
    }
}

void TreeAnswers::end() {
    findLastOnes();
    std::vector<bool> isLast(drawnDepth + 2, true);
    bool hasRepeats = false;
    for (const Entry& entry : entries_) {
        isLast[std::min(entry.depth, drawnDepth + 1)] = entry.isLast;
        sink_.line(linesOf(isLast, entry.depth) + entry.text);
        hasRepeats = hasRepeats || entry.isRepeated;
    }
    sink_.flush();
    if (hasRepeats) std::cerr << "(*) was shown before\n";
}

}  // namespace model_walk
