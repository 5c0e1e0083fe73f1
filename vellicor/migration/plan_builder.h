// vellicor/migration/plan_builder.h — puts the steps of a migration into phases; part of `MigrationPlan`.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "vellicor/migration/migration_plan.h"
#include "vellicor/migration/rename_order.h"
#include "vellicor/migration/shape_comparison.h"

namespace vellicor {

/// In the order in which they run.
enum class Phase {
    SchemasMade,
    ViewsDropped,
    KeysDropped,
    ConstraintsDropped,
    TablesDroppedEarly,  ///< whose names are wanted
    TablesRenamed,
    ColumnsRenamed,
    ConstraintsRenamed,
    TablesMade,
    ColumnsAdded,
    ColumnsChanged,
    ConstraintsMade,
    ColumnsCount,  ///< once they lead a key
    ColumnsDropped,
    TablesRebuilt,
    IndexesMade,
    KeysMade,
    OptionsChanged,
    ViewsMade,
    TablesDropped,
    SchemasDropped,
};
inline constexpr std::size_t kPhaseCount = static_cast<std::size_t>(Phase::SchemasDropped) + 1;

class PlanBuilder {
public:
    PlanBuilder(const DatabaseShape& before, const DatabaseShape& after, const ObjectMatcher& matcher,
                const MigrationDialect& dialect, bool rebuild);
    void build();

    std::array<std::vector<MigrationStatement>, kPhaseCount> phases;
    std::vector<MigrationGap> gaps;
    bool isRebuild = false;
    bool pausesKeys = false;

private:
    // --- plan_builder.cpp
    void addSchemas();
    void dropTables();
    void makeTables();
    void addViews();
    void addOthers();
    [[nodiscard]] std::unordered_set<std::string> touchedNames() const;
    // --- plan_builder_renames.cpp
    void renameTables();
    void renameColumns();
    void renameConstraints();
    [[nodiscard]] std::function<SQLName(const SQLName&)> freeName() const;
    // --- plan_builder_tables.cpp
    void chooseRebuilds();
    /// What the dialect cannot change in place; what it is about and why.
    [[nodiscard]] std::vector<MigrationGap> reasonsToRebuild(const TablePair& pair) const;
    [[nodiscard]] static std::string reasonNotToAdd(const ColumnShape& column);
    void addTable(TablePair& pair);
    void addColumns(TablePair& pair);
    void changeColumns(TablePair& pair);
    void rebuildTable(TablePair& pair);
    // --- plan_builder_constraints.cpp
    /// Moves what stands in the way of other changes from those that stay to those that go and come back.
    void openConstraints();
    void openKeys();
    [[nodiscard]] bool isInTheWay(const TablePair& pair, const TablePair::ConstraintPair& constraints) const;
    template <class Condition>
    bool open(TablePair& pair, Condition condition);
    void dropConstraints(const TablePair& pair);
    void dropConstraint(const TableShape& table, const ConstraintShape& constraint, bool columnsGo);
    void dropKeysOfTables();
    void makeConstraint(const TableShape& table, const ConstraintShape& constraint);
    /// Whether the key brought its index along.
    [[nodiscard]] bool ownsIndex(const TableShape& table, const ConstraintShape& key) const;

    void add(Phase phase, const MigrationSteps& steps);
    void add(Phase phase, std::string about, std::string sql, Verdict verdict = Verdict::Safe, std::string reason = {});

    const DatabaseShape& _before;
    const DatabaseShape& _after;
    const MigrationDialect& _dialect;
    const bool _mayRebuild;
    ShapeComparison _comparison;
    std::unordered_map<std::string, const TableShape*> _droppedTables;  // by key
    std::unordered_set<std::string> _movedSchemas;                      // new keys of schemas that were renamed
    std::unordered_set<const void*> _skipped;  // columns and constraints that are gaps, or made with something else
    std::unordered_map<const ColumnShape*, SQLName> _parked;  // columns that are to go, under a free name
};

}  // namespace vellicor
