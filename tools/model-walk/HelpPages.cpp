#include "HelpPages.h"

#include <algorithm>

#include "ExitStatus.h"

namespace model_walk {
namespace {

constexpr std::size_t optionColumn = 30;

std::string padded(std::string text, std::size_t width) {
    text.resize(std::max(text.size() + 1, width), ' ');
    return text;
}

std::string namesOf(const OptionEntry& entry) {
    std::string names(entry.names);
    const std::size_t comma = names.find(',');
    names = comma == std::string::npos ? "    " + names
                                       : names.substr(0, comma) + ", " + names.substr(comma + 1);
    return entry.value.empty() ? names : names + " " + std::string(entry.value);
}

std::string optionText(Option option) {
    const OptionEntry& entry = table::entryOf(option);
    const std::string names = namesOf(entry);
    std::string text = "  " + padded(names, optionColumn - 2);
    if (names.size() + 3 > optionColumn) text += "\n" + std::string(optionColumn, ' ');
    text += wrapped(std::string(entry.help) + (entry.mayBeRepeated ? "; may be repeated" : ""),
                    optionColumn) +
            "\n";
    for (const Choice& each : entry.choices) {
        const std::size_t column = optionColumn + 13;
        text += std::string(optionColumn, ' ') + padded(std::string(each.word), 13) +
                wrapped(each.meaning, column) + "\n";
    }
    return text;
}

/// The names of a group's options, and where they are explained.
std::string groupText(const GroupEntry& group) {
    std::string names;
    for (const Option each : group.options) {
        names.append(names.empty() ? "" : ", ").append(table::nameOf(each));
    }
    return std::string(group.title) + " (model-walk help " + std::string(group.name) + ")\n  " +
           wrapped(names, 2) + "\n";
}

std::string examplesText(const QuestionEntry& question) {
    std::string text;
    for (const Example& each : question.examples) {
        text += "  model-walk " + std::string(each.command) + "\n      " +
                std::string(each.meaning) + "\n";
    }
    return text;
}

}  // namespace

std::string wrapped(std::string_view text, std::size_t indent, std::size_t width) {
    std::string result;
    std::size_t column = indent;
    while (!text.empty()) {
        const std::size_t blank = std::min(text.find(' '), text.size());
        const std::string_view word = text.substr(0, blank);
        text.remove_prefix(std::min(blank + 1, text.size()));
        const bool isFirst = result.empty();
        if (!isFirst && column + 1 + word.size() > width) {
            result += "\n" + std::string(indent, ' ');
            column = indent;
        } else if (!isFirst) {
            result += ' ';
            ++column;
        }
        result.append(word);
        column += word.size();
    }
    return result;
}

std::string helpPage() {
    std::string page =
        "model-walk - asks models questions: what is in them, and how it hangs together\n\n"
        "Usage: model-walk QUESTION [OPTIONS] MODEL [ELEMENT...]\n\n";
    for (const QuestionEntry& each : table::questions()) {
        page += "  " + padded(std::string(each.name), 11) + std::string(each.summary) + "\n";
    }
    page +=
        "\n"
        "  MODEL      a file, or - for standard input\n"
        "  ELEMENT    an address as answers have it (model:drone.xmi#rotor), or in the model's "
        "own\n"
        "             file an id or a path (rotor, //@blocks.0); - for those on standard input:\n"
        "             model-walk find drone.xmi -c Port | model-walk incoming drone.xmi -\n\n"
        "More: model-walk help QUESTION";
    for (const GroupEntry* each : table::groups()) page += ", help " + std::string(each->name);
    page += "; --version\n\nExit status\n";
    for (const StatusEntry& each : exitStatuses) {
        page += "  " + std::to_string(static_cast<int>(each.status)) + "  " +
                wrapped(each.meaning, 5) + "\n";
    }
    return page;
}

std::string helpPage(const QuestionEntry& question) {
    std::string page = "model-walk " + std::string(question.name) + " - " +
                       std::string(question.summary) + "\n\nUsage: model-walk " +
                       std::string(question.name) + " [OPTIONS] " + std::string(question.operands) +
                       "\n\n" + wrapped(question.description, 0) + "\n\n";
    for (const Option each : question.options) page += optionText(each);
    if (!question.options.empty()) page += "\n";
    // A walk is its rules; to the other questions they are an aside.
    if (question.id == Question::Walk) {
        for (const Option each : table::rules().options) page += optionText(each);
        page += "\n";
    } else if (question.hasRules) {
        page += groupText(table::rules());
    }
    page += groupText(table::loading()) + groupText(table::answering()) + "\nExamples\n" +
            examplesText(question);
    return page;
}

std::string helpPage(const GroupEntry& group) {
    std::string page = std::string(group.title) + "\n\n";
    for (const Option each : group.options) page += optionText(each);
    return page;
}

}  // namespace model_walk
