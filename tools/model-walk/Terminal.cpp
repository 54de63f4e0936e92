#include "Terminal.h"

#include <unistd.h>

#include <cstdlib>

namespace model_walk {
namespace {

bool isWanted() {
    const char* const refused = std::getenv("NO_COLOR");
    const char* const terminal = std::getenv("TERM");
    const bool isRefused = refused != nullptr && *refused != '\0';
    const bool isDumb = terminal == nullptr || std::string_view(terminal) == "dumb";
    return !isRefused && !isDumb && isatty(STDOUT_FILENO) != 0;
}

std::string_view codeOf(Terminal::Part part) {
    switch (part) {
        case Terminal::Part::Class:
            return "36";
        case Terminal::Part::Property:
            return "33";
        case Terminal::Part::Address:
            return "2";
        case Terminal::Part::Name:
        case Terminal::Part::Title:
            break;
    }
    return "1";
}

}  // namespace

Terminal::Terminal(const CommandLine& line) {
    const std::string when = line.value(Option::Color);
    isColoured_ = when == "always" || (when == "auto" && isWanted());
}

std::string Terminal::in(Part part, std::string_view text) const {
    if (!isColoured_ || text.empty()) return std::string(text);
    std::string coloured = "\x1b[";
    return coloured.append(codeOf(part)).append("m").append(text).append("\x1b[0m");
}

}  // namespace model_walk
