#include "tests/scenario/Runner.h"

#include <algorithm>
#include <sstream>

#include "tests/scenario/Failures.h"
#include "tests/scenario/Statements.h"

namespace nuv::zero::scenario {

namespace {

const StatementTable& statementTable() {
    static const StatementTable table = [] {
        StatementTable statements;
        addMetamodelStatements(statements);
        addModelStatements(statements);
        addBuilderStatements(statements);
        addResultStatements(statements);
        addIteratorStatements(statements);
        addRuleStatements(statements);
        addLinkStatements(statements);
        addCursorStatements(statements);
        addFrontierStatements(statements);
        return statements;
    }();
    return table;
}

std::string describeCount(const StatementKind& kind) {
    if (kind.most == anyNumber) return "at least " + std::to_string(kind.fewest);
    if (kind.fewest == kind.most) return std::to_string(kind.fewest);
    return std::to_string(kind.fewest) + " to " + std::to_string(kind.most);
}

void runStatement(Workspace& workspace, const Statement& statement) {
    Arguments arguments(statement);
    const Token& name = statement.tokens.front();
    const auto entry = statementTable().find(name.text);
    if (name.quoted || entry == statementTable().end()) {
        throw Malformed("there is no statement called " + name.text);
    }
    const StatementKind& kind = entry->second;
    if (arguments.left() < kind.fewest || arguments.left() > kind.most) {
        throw Malformed(name.text + " takes " + describeCount(kind) + " arguments, not " +
                        std::to_string(arguments.left()));
    }
    printingFailures(workspace.output, [&] { kind.run(workspace, arguments); });
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream input(text);
    for (std::string line; std::getline(input, line);) lines.push_back(line);
    return lines;
}

}  // namespace

void runScenario(const Scenario& scenario, std::ostream& transcript) {
    Workspace workspace(transcript);
    for (const Statement& statement : scenario.statements) {
        try {
            runStatement(workspace, statement);
        } catch (const Malformed& reason) {
            throw ScenarioError(scenario.file, statement.line, reason.what());
        } catch (const memory::ModelError& reason) {
            throw ScenarioError(scenario.file, statement.line, reason.what());
        }
    }
}

std::string differences(const Scenario& scenario, const std::string& transcript) {
    const std::vector<std::string>& expected = scenario.expected;
    const std::vector<std::string> actual = linesOf(transcript);
    if (expected == actual) return "";

    const auto first =
        std::mismatch(expected.begin(), expected.end(), actual.begin(), actual.end());
    const auto same = static_cast<std::size_t>(first.first - expected.begin());
    constexpr std::size_t context = 3;
    constexpr std::size_t shown = 8;
    std::ostringstream text;
    text << scenario.file << ": the transcript differs from line " << same + 1 << " on\n";
    for (std::size_t line = same - std::min(same, context); line < same; ++line) {
        text << "  " << expected[line] << '\n';
    }
    const auto show = [&](char mark, const std::vector<std::string>& lines) {
        const std::size_t end = std::min(lines.size(), same + shown);
        for (std::size_t line = same; line < end; ++line)
            text << mark << ' ' << lines[line] << '\n';
        if (end < lines.size()) text << mark << " ... " << lines.size() - end << " more\n";
    };
    show('-', expected);
    show('+', actual);
    return text.str();
}

}  // namespace nuv::zero::scenario
