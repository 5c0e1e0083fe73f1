// vellicor/migration/shape_comparison.h — two databases side by side, the old one under the new names.
#pragma once

#include <memory>
#include <unordered_map>
#include <vector>

#include "vellicor/migration/database_shape.h"
#include "vellicor/migration/migration_dialect.h"
#include "vellicor/migration/object_matcher.h"

namespace vellicor {

/// A table that stays. `renamed` is the old one as it stands once it and everything that it mentions has its new name.
struct TablePair {
    const TableShape* before = nullptr;
    const TableShape* after = nullptr;
    TableShape renamed;
    struct ColumnPair {
        const ColumnShape* before;   ///< under its old name
        const ColumnShape* renamed;  ///< in `renamed`
        const ColumnShape* after;
    };
    std::vector<ColumnPair> columns;          ///< that stay
    std::vector<const ColumnShape*> added;    ///< in `after`
    std::vector<const ColumnShape*> dropped;  ///< in `renamed`
    std::vector<ColumnChange> changes;        ///< of columns that stay, the name apart
    struct ConstraintPair {
        const ConstraintShape* before;  ///< in `renamed`
        const ConstraintShape* after;   ///< equal but perhaps for the name
    };
    std::vector<ConstraintPair> constraints;   ///< that stay
    std::vector<const ConstraintShape*> made;  ///< in `after`
    std::vector<const ConstraintShape*> gone;  ///< in `renamed`
    bool isRebuilt = false;                    ///< set by the plan

    [[nodiscard]] bool hasOtherColumns() const;
};

class ShapeComparison {
public:
    /// Both shapes and the matcher must outlive it.
    ShapeComparison(const DatabaseShape& before, const DatabaseShape& after, const ObjectMatcher& matcher,
                    const MigrationDialect& dialect);

    std::vector<std::unique_ptr<TablePair>> pairs;  ///< with any difference
    std::vector<const TableShape*> added;
    std::vector<const TableShape*> dropped;
    struct ViewPair {
        const ViewShape* before;  ///< null for a new one
        const ViewShape* after;   ///< null for one that is gone
    };
    std::vector<ViewPair> views;
    /// The pair of an old table that stays, made when it is not among the pairs; null when the table goes.
    TablePair* pairOf(const TableShape& before);
    /// The table's name by now: the new one when it stays.
    [[nodiscard]] QualifiedName presentName(const QualifiedName& before) const;

private:
    using ColumnNames = std::unordered_map<std::string, SQLName>;
    struct Successor {
        const TableShape* before;
        const TableShape* after;
        ColumnNames columns;  // by former key; only those that differ
    };
    void join(const DatabaseShape& before, const DatabaseShape& after);
    void joinColumns(Successor& successor);
    void rename(TablePair& pair) const;
    TablePair& addPair(const Successor& successor);
    void compareColumns(TablePair& pair) const;
    void compareConstraints(TablePair& pair) const;

    const ObjectMatcher& _matcher;
    const MigrationDialect& _dialect;
    std::unordered_map<const TableShape*, TablePair*> _pairs;  // by the old table
    std::unordered_map<std::string, Successor> _successors;    // by former key
};

/// Whether the table, whatever its name, is made by the same statements.
[[nodiscard]] bool isSameTable(const TableShape& before, const TableShape& after);

}  // namespace vellicor
