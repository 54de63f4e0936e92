#include "Command.h"

#include <algorithm>
#include <iostream>
#include <memory>
#include <stdexcept>

#include "Completion.h"
#include "CountAnswers.h"
#include "DotAnswers.h"
#include "ExitStatus.h"
#include "HelpPages.h"
#include "LineAnswers.h"
#include "ManPage.h"
#include "OldForm.h"
#include "Question.h"
#include "Sink.h"
#include "TreeAnswers.h"
#include "UsageError.h"
#include "xmi/EscapedText.h"
#include "xmi/ReadError.h"

namespace model_walk {

using nuv::zero::xmi::escaped;
namespace {

using Words = std::vector<std::string>;

Outcome answer(const Asked& asked) {
    switch (asked.line.question()) {
        case Question::Info:
            return info(asked);
        case Question::Find:
            return find(asked);
        case Question::Contents:
            return contents(asked);
        case Question::Depends:
            return depends(asked);
        case Question::Incoming:
            return incoming(asked);
        case Question::Path:
            return path(asked);
        case Question::Near:
            return near(asked);
        case Question::Impact:
            return impact(asked);
        case Question::Walk:
            return walk(asked);
        case Question::Why:
            return why(asked);
        case Question::WhyNot:
            return whyNot(asked);
        case Question::Explain:
            return explain(asked);
        case Question::Check:
            return check(asked);
        case Question::Resolve:
            return resolve(asked);
        case Question::Findings:
            return findings(asked);
    }
    return {};
}

std::unique_ptr<Answers> answersIn(const CommandLine& line, const Labels& labels, Sink& sink) {
    const std::string format = line.value(Option::Format);
    if (format == "tsv") return std::make_unique<TsvAnswers>(labels, sink);
    if (format == "json") return std::make_unique<JsonAnswers>(labels, sink);
    if (format == "count") return std::make_unique<CountAnswers>(labels, sink);
    if (format == "tree") return std::make_unique<TreeAnswers>(labels, Terminal(line), sink);
    if (format == "dot") {
        const PictureOptions options = {line.number(Option::Nodes).value_or(200),
                                        line.has(Option::Clusters)};
        const auto merging =
            line.has(Option::NoMerge) ? DotAnswers::Merging::No : DotAnswers::Merging::Yes;
        return std::make_unique<DotAnswers>(labels, options, merging, sink);
    }
    return std::make_unique<TextAnswers>(labels, Terminal(line), sink);
}

/// Over how much the answer was found, and what of it could not be resolved.
void summarise(const CommandLine& line, const Project& project, const Losses& losses) {
    if (line.has(Option::ShowFindings)) {
        for (const auto& each : project.findings()) std::cerr << escaped(each.text()) << '\n';
    }
    if (line.has(Option::Quiet)) return;
    const auto number = [](std::size_t count, const char* one) {
        return std::to_string(count) + " " + one + (count == 1 ? "" : "s");
    };
    std::cerr << "model-walk: " << number(project.elements().size(), "element") << " in "
              << number(project.files().size(), "file");
    if (project.leftOut() > 0) {
        std::cerr << "; " << number(project.leftOut(), "reference") << " into other files left out";
    }
    if (losses.count() > 0) {
        std::cerr << "; " << losses.count() << " unresolved, see model-walk findings";
    }
    if (losses.expectedCount() > 0) {
        std::cerr << "; " << losses.expectedCount() << " unresolved as expected";
    }
    std::cerr << '\n';
}

ExitStatus ask(const CommandLine& line) {
    const Project project(line);
    const Names names(project.metamodel());
    const Labels labels(project, names, line.list(Option::Attributes));
    Sink sink;
    const std::unique_ptr<Answers> answers = answersIn(line, labels, sink);
    const Outcome outcome = answer({line, project, names, labels, *answers});
    answers->end();
    sink.flush();
    summarise(line, project, Losses(line, project));
    if (outcome.canNeverMatch) return ExitStatus::WrongUsage;
    if (outcome.isAffected) return ExitStatus::Incomplete;
    return answers->count() == 0 || outcome.isNothing ? ExitStatus::NothingFound
                                                      : ExitStatus::Answered;
}

void print(const std::string& page) {
    Sink sink;
    sink.line(std::string_view(page).substr(0, page.size() - 1));
    sink.flush();
}

/// The page that the words behind `help` ask for.
std::string pageOf(const Words& topics) {
    if (topics.empty()) return helpPage();
    if (const QuestionEntry* question = table::questionNamed(topics.front())) {
        return helpPage(*question);
    }
    if (const GroupEntry* group = table::groupNamed(topics.front())) return helpPage(*group);
    Words known;
    for (const QuestionEntry& each : table::questions()) known.emplace_back(each.name);
    for (const GroupEntry* each : table::groups()) known.emplace_back(each->name);
    throw UsageError("there is no page '" + topics.front() + "'" +
                     nearest(topics.front(), std::move(known)));
}

/// Where there is no question, the user may have asked for a page.
bool printPage(const Words& arguments) {
    const std::string& first = arguments.front();
    const Words rest(arguments.begin() + 1, arguments.end());
    if (first == "--version") {
        print("model-walk " MODEL_WALK_VERSION "\n");
    } else if (first == "help" || first == "--help" || first == "-h") {
        print(pageOf(rest));
    } else if (first == "pages" && rest == Words{"man"}) {
        print(manPage());
    } else if (first == "pages" && rest == Words{"completion"}) {
        print(bashCompletion());
    } else {
        return false;
    }
    return true;
}

ExitStatus runQuestion(const Words& arguments) {
    const QuestionEntry* const entry = table::questionNamed(arguments.front());
    if (entry == nullptr) {
        Words known = {"help"};
        for (const QuestionEntry& each : table::questions()) known.emplace_back(each.name);
        throw UsageError("there is no question '" + arguments.front() + "'" +
                         nearest(arguments.front(), std::move(known)));
    }
    const CommandLine line(*entry, Words(arguments.begin() + 1, arguments.end()));
    if (line.has(Option::Help)) {
        print(helpPage(*entry));
        return ExitStatus::Answered;
    }
    return ask(line);
}

ExitStatus fail(ExitStatus status, const std::string& text) {
    std::cerr << "model-walk: " << escaped(text) << '\n';
    return status;
}

ExitStatus answerOrFail(const Words& arguments) {
    try {
        if (arguments.empty()) throw UsageError("a question is missing; see model-walk --help");
        if (printPage(arguments)) return ExitStatus::Answered;
        return runQuestion(arguments);
    } catch (const UsageError& error) {
        return fail(ExitStatus::WrongUsage, error.what());
    } catch (const WriteError& error) {
        return fail(ExitStatus::Unwritable, error.what());
    } catch (const nuv::zero::xmi::ReadError& error) {
        return fail(ExitStatus::Unreadable, error.what());
    } catch (const std::invalid_argument& error) {
        // What a file root may be called, and where a prefix may lead.
        return fail(ExitStatus::WrongUsage, error.what());
    } catch (const std::bad_alloc&) {
        return fail(ExitStatus::Unreadable, "there is not enough memory");
    } catch (const std::exception& error) {
        return fail(ExitStatus::Unreadable, error.what());
    }
}

}  // namespace

int run(const Words& arguments) {
    const bool hasPage =
        !arguments.empty() && (arguments.front() == "--help" || arguments.front() == "-h" ||
                               arguments.front() == "--version");
    const bool hasQuestion =
        !arguments.empty() && table::questionNamed(arguments.front()) != nullptr;
    if (!hasPage && !hasQuestion && isOldForm(arguments)) return runOldForm(arguments);
    return static_cast<int>(answerOrFail(arguments));
}

}  // namespace model_walk
