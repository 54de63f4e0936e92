#pragma once

#include <cstddef>
#include <functional>
#include <limits>
#include <string>
#include <unordered_map>

#include "tests/scenario/Workspace.h"

namespace nuv::zero::scenario {

/// What a statement of one name does, and how many arguments it takes.
struct StatementKind {
    std::size_t fewest;
    std::size_t most;
    std::function<void(Workspace&, Arguments&)> run;
};

/// For statements whose last argument may be repeated.
inline constexpr std::size_t anyNumber = std::numeric_limits<std::size_t>::max();

using StatementTable = std::unordered_map<std::string, StatementKind>;

/// Each adds one group of statements.
void addMetamodelStatements(StatementTable& table);
void addModelStatements(StatementTable& table);
void addBuilderStatements(StatementTable& table);
void addResultStatements(StatementTable& table);
void addIteratorStatements(StatementTable& table);
void addRuleStatements(StatementTable& table);
void addLinkStatements(StatementTable& table);
void addCursorStatements(StatementTable& table);
void addFrontierStatements(StatementTable& table);

}  // namespace nuv::zero::scenario
