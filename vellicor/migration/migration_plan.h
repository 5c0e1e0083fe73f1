// vellicor/migration/migration_plan.h — the way from the database of one document to that of another.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "vellicor/migration/migration_statement.h"
#include "vellicor/migration/object_matcher.h"
#include "vellicor/model/container.h"

namespace vellicor {

class GenericSQLExporter;

struct MigrationOptions {
    MatchMode match = MatchMode::Automatic;
    bool rebuild = false;  ///< new tables in the place of those that the dialect cannot change (SQLite)
};

/// How a plan is written.
struct MigrationScriptOptions {
    bool annotate = false;     ///< the verdict above each statement
    bool transaction = false;  ///< one transaction around all, where the server can undo such statements
    bool idempotent = false;   ///< IF EXISTS and the like, where the dialect has the words
};

/// The statements in the order in which they run, what each does to the data, and what stays undone. Both documents are
/// exported in the exporter's dialect, with the preferences as they are; equal scripts make an empty plan. Exporting
/// may reorder the documents' objects, nothing else.
class MigrationPlan {
public:
    MigrationPlan(SQLContainer& before, SQLContainer& after, GenericSQLExporter& exporter,
                  const MigrationOptions& options = {});

    [[nodiscard]] const std::vector<MigrationStatement>& statements() const { return _statements; }
    [[nodiscard]] const std::vector<MigrationGap>& gaps() const { return _gaps; }
    /// A line for each table, view or column that only its name joined.
    [[nodiscard]] const std::vector<std::string>& matchesByName() const { return _matchesByName; }
    [[nodiscard]] bool isEmpty() const { return _statements.empty() && _gaps.empty(); }
    [[nodiscard]] bool isComplete() const { return _gaps.empty(); }
    [[nodiscard]] bool losesData() const;
    /// Empty for an empty plan. Gaps stand in it as remarks.
    [[nodiscard]] std::string script(const MigrationScriptOptions& options = {}) const;

private:
    std::vector<MigrationStatement> _statements;
    std::vector<MigrationGap> _gaps;
    std::vector<std::string> _matchesByName;
    GenericSQLExporter& _exporter;
    bool _isRebuild = false;   // a transaction of its own, without the checks of keys
    bool _pausesKeys = false;  // without the checks of keys
};

}  // namespace vellicor
