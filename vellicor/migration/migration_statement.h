// vellicor/migration/migration_statement.h — one step of a migration, and what it does to the data.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vellicor {

/// From harmless to worst.
enum class Verdict {
    Safe,
    Rewrites,  ///< touches every row, or locks the table while it runs
    MayFail,   ///< on data that is there
    LosesData,
};
[[nodiscard]] std::string_view wordsFor(Verdict verdict);

struct MigrationStatement {
    std::string sql;    ///< without separator
    std::string about;  ///< "column orders.total"
    Verdict verdict = Verdict::Safe;
    std::string reason;  ///< empty when safe
};

/// A difference that the dialect, or this program for it, has no statement for.
struct MigrationGap {
    std::string about;
    std::string reason;
};

/// Collects the steps about one object.
class MigrationSteps {
public:
    explicit MigrationSteps(std::string about) : _about(std::move(about)) {}
    void add(std::string sql, Verdict verdict = Verdict::Safe, std::string reason = {}) {
        if (!sql.empty()) _statements.push_back({std::move(sql), _about, verdict, std::move(reason)});
    }
    void addGap(std::string reason) { _gaps.push_back({_about, std::move(reason)}); }
    /// The statement, or a gap where there is none.
    void addOrGap(std::string sql, std::string_view difference, Verdict verdict = Verdict::Safe,
                  std::string reason = {}) {
        if (sql.empty())
            addGap(std::string(difference) + " has no statement in this dialect");
        else
            add(std::move(sql), verdict, std::move(reason));
    }
    [[nodiscard]] const std::vector<MigrationStatement>& statements() const { return _statements; }
    [[nodiscard]] const std::vector<MigrationGap>& gaps() const { return _gaps; }

private:
    std::string _about;
    std::vector<MigrationStatement> _statements;
    std::vector<MigrationGap> _gaps;
};

}  // namespace vellicor
