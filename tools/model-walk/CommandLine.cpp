#include "CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>

#include "UsageError.h"

namespace model_walk {
namespace {

std::string knownWords(const OptionEntry& entry) {
    std::string known;
    for (const Choice& each : entry.choices) {
        known.append(known.empty() ? "" : ", ").append(each.word);
    }
    return known;
}

}  // namespace

CommandLine::CommandLine(const QuestionEntry& question, const std::vector<std::string>& arguments)
    : question_(&question) {
    parse(arguments);
    checkWords();
}

void CommandLine::parse(const std::vector<std::string>& arguments) {
    CLI::App parser;
    parser.set_help_flag();
    parser.add_option("operands", operands_);
    std::map<Option, std::pair<CLI::Option*, std::vector<std::string>>> given;
    for (const OptionEntry& entry : table::options()) {
        if (!table::takes(*question_, entry.id)) continue;
        auto& [option, values] = given[entry.id];
        const std::string names(entry.names);
        // One value each time, or they would swallow the operands behind them.
        option = entry.value.empty() ? parser.add_flag(names)
                                     : parser.add_option(names, values)->allow_extra_args(false);
    }
    try {
        // The parser takes them from the end.
        parser.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::ParseError& error) {
        throw UsageError(std::string(error.what()) + "; see model-walk help " +
                         std::string(question_->name));
    }
    for (auto& [id, found] : given) {
        if (found.first->count() > 0) values_[id] = std::move(found.second);
    }
}

void CommandLine::checkWords() const {
    for (const auto& [option, values] : values_) {
        const OptionEntry& entry = table::entryOf(option);
        if (entry.choices.empty()) continue;
        for (const std::string& word : values) {
            const bool isKnown = std::any_of(entry.choices.begin(), entry.choices.end(),
                                             [&](const Choice& each) { return each.word == word; });
            if (!isKnown) {
                throw UsageError("option " + std::string(table::nameOf(option)) +
                                 " does not know '" + word + "'; it knows " + knownWords(entry));
            }
        }
    }
}

const std::vector<std::string>& CommandLine::values(Option option) const {
    static const std::vector<std::string> none;
    const auto found = values_.find(option);
    return found == values_.end() ? none : found->second;
}

std::string CommandLine::value(Option option) const {
    const std::vector<std::string>& given = values(option);
    if (!given.empty()) return given.back();
    const OptionEntry& entry = table::entryOf(option);
    return entry.choices.empty() ? std::string() : std::string(entry.choices.front().word);
}

std::optional<std::size_t> CommandLine::number(Option option) const {
    if (!has(option)) return std::nullopt;
    const std::string text = value(option);
    std::size_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end) {
        throw UsageError("option " + std::string(table::nameOf(option)) + " wants a number, and '" +
                         text + "' is none");
    }
    return number;
}

std::vector<std::string> CommandLine::list(Option option) const {
    std::vector<std::string> all;
    for (const std::string& each : values(option)) {
        std::size_t begin = 0;
        while (begin <= each.size()) {
            const std::size_t comma = std::min(each.find(',', begin), each.size());
            if (comma > begin) all.push_back(each.substr(begin, comma - begin));
            begin = comma + 1;
        }
    }
    return all;
}

}  // namespace model_walk
