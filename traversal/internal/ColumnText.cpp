#include "traversal/internal/ColumnText.h"

#include <algorithm>
#include <utility>

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

namespace {

std::size_t widthOf(const std::string& text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char each) {
        // Every byte but those that continue a character.
        return (static_cast<unsigned char>(each) & 0xC0U) != 0x80U;
    }));
}

}  // namespace

ColumnText::ColumnText(std::vector<std::string> head, std::size_t textColumns)
    : widths_(head.size()), textColumns_(textColumns) {
    add(std::move(head));
}

void ColumnText::add(std::vector<std::string> cells) {
    for (std::size_t column = 0; column < cells.size(); ++column) {
        widths_[column] = std::max(widths_[column], widthOf(cells[column]));
    }
    lines_.push_back(std::move(cells));
}

std::string ColumnText::text() const {
    std::string text;
    for (const std::vector<std::string>& cells : lines_) {
        for (std::size_t column = 0; column < cells.size(); ++column) {
            const std::string filling(widths_[column] - widthOf(cells[column]), ' ');
            if (column != 0) text += "  ";
            text += column < textColumns_ ? cells[column] + filling : filling + cells[column];
        }
        text += '\n';
    }
    return text;
}

}  // namespace nuv::zero::traversal::internal
