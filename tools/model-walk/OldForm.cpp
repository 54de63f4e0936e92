#include "OldForm.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>

#include "CommandLine.h"
#include "CountAnswers.h"
#include "LineAnswers.h"
#include "Question.h"
#include "Sink.h"
#include "UsageError.h"
#include "xmi/EscapedText.h"
#include "xmi/ReadError.h"

namespace model_walk {

using nuv::zero::xmi::escaped;
namespace {

void tellLeftOut(const std::string& file, std::size_t count) {
    if (count == 0) return;
    std::cerr << file << ": " << count
              << (count == 1 ? " reference into another file is"
                             : " references into other files are")
              << " left out\n";
}

std::string inShell(const std::string& word) {
    constexpr std::string_view safe =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_./=,:@%+";
    if (!word.empty() && word.find_first_not_of(safe) == std::string::npos) return word;
    std::string quoted = "'";
    for (const char each : word)
        quoted += each == '\'' ? std::string("'\\''") : std::string(1, each);
    return quoted + "'";
}

/// The same in the form that there is now: the files but the last are metamodels.
std::vector<std::string> newForm(const CommandLine& line,
                                 const std::vector<std::string>& arguments) {
    std::vector<std::string> files = line.operands();
    std::vector<std::string> all = arguments;
    // Files from the end: an option's value may be called as a file is.
    for (auto file = files.rbegin(); file != files.rend(); ++file) {
        const auto found = std::find(all.rbegin(), all.rend(), *file);
        if (found != all.rend()) all.erase(std::next(found).base());
    }
    const std::string model = files.back();
    files.pop_back();
    for (const std::string& each : files) all.insert(all.end(), {"-m", each});
    all.push_back(model);
    return all;
}

void warn(const std::vector<std::string>& arguments) {
    std::string now = "model-walk walk";
    for (const std::string& each : arguments) now += " " + inShell(each);
    std::cerr
        << "model-walk: without a question it is understood for this release only; now it is: "
        << escaped(now) << '\n';
}

void answer(const std::vector<std::string>& arguments) {
    const QuestionEntry& entry = table::entryOf(Question::Walk);
    const CommandLine given(entry, arguments);
    const std::string format = given.value(Option::Format);
    if (format != "text" && format != "tsv" && format != "count") {
        throw UsageError("option --format does not know '" + format +
                         "' without a question; it knows text, tsv, count");
    }
    if (given.operands().empty()) {
        throw UsageError("the model file is missing; see model-walk --help");
    }
    if (given.operands().size() < 2 && !given.has(Option::Metamodel)) {
        throw UsageError("a metamodel and a model are needed; see model-walk --help");
    }
    const std::vector<std::string> now = newForm(given, arguments);
    const CommandLine line(entry, now);
    const Project project(line, Project::Strictly);
    const Names names(project.metamodel());
    const Labels labels(project, names, {}, Labels::Naming::Plain);
    Sink sink;
    std::unique_ptr<Answers> answers;
    if (format == "tsv") {
        answers = std::make_unique<TsvAnswers>(labels, sink, Addresses::Hidden);
    } else if (format == "count") {
        answers = std::make_unique<CountAnswers>(labels, sink);
    } else {
        answers = std::make_unique<TextAnswers>(labels, Terminal(), sink, Addresses::Hidden);
    }
    const Rules checked(line, names);
    warn(now);
    tellLeftOut("the metamodel", project.metamodel().leftOut());
    tellLeftOut(line.operands().front(), project.leftOut());
    walk({line, project, names, labels, *answers});
    answers->end();
    sink.flush();
}

}  // namespace

bool isOldForm(const std::vector<std::string>& arguments) {
    if (arguments.empty()) return false;
    const std::string& first = arguments.front();
    std::error_code ignored;
    return first.starts_with('-') || std::filesystem::exists(first, ignored) ||
           first.ends_with(".ecore") || first.ends_with(".xmi");
}

int runOldForm(const std::vector<std::string>& arguments) {
    constexpr int fileFailed = 1;
    constexpr int wrongUsage = 2;
    try {
        answer(arguments);
        return 0;
    } catch (const UsageError& error) {
        std::cerr << "model-walk: " << nuv::zero::xmi::onOneLine(error.what()) << '\n';
        return wrongUsage;
    } catch (const nuv::zero::xmi::ReadError& error) {
        std::cerr << error.what() << '\n';
        return fileFailed;
    } catch (const std::exception& error) {
        std::cerr << "model-walk: " << nuv::zero::xmi::onOneLine(error.what()) << '\n';
        return fileFailed;
    }
}

}  // namespace model_walk
