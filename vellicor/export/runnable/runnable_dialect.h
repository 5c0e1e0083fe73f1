// vellicor/export/runnable/runnable_dialect.h — what a dialect's own server takes, and what scripts for it lose.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "vellicor/export/runnable/runnable_run.h"

namespace vellicor {

/// Whether the preference asks for runnable scripts rather than classic text. It is asked where an exporter is made,
/// and nowhere else.
[[nodiscard]] bool wantsRunnableScripts();

/// The answers that only runnable scripts ask for. Every exporter of runnable scripts is one of these too.
class RunnableDialect {
public:
    virtual ~RunnableDialect() = default;

    [[nodiscard]] virtual bool supportsDropIfExists() const { return false; }
    [[nodiscard]] virtual bool supportsTablesWithoutColumns() const { return false; }
    /// True when the script makes a schema of this name where there is none yet.
    [[nodiscard]] virtual bool createsSchema(std::string_view) const { return false; }
    /// The type is in upper case.
    [[nodiscard]] virtual bool supportsIndexType(std::string_view) const { return true; }
    /// True for a name that the server refuses without quotes.
    [[nodiscard]] virtual bool runsOnlyQuoted(std::string_view) const { return false; }
    /// The user's own statements as they stand in the script.
    [[nodiscard]] virtual std::string userBlock(std::string_view block) = 0;
    /// Statements that drop tables which reference each other in a circle.
    [[nodiscard]] virtual std::string withoutForeignKeyChecks(std::string_view statements) {
        return std::string(statements);
    }

    /// What the last script of a document does not carry; empty before the first one.
    [[nodiscard]] const ScriptLosses& losses() const { return *_losses; }

protected:
    /// "IF EXISTS " where the server has it.
    [[nodiscard]] std::string ifExists() const { return supportsDropIfExists() ? "IF EXISTS " : ""; }
    /// Forgets the losses of the script before.
    [[nodiscard]] std::shared_ptr<ScriptLosses> newLosses() { return _losses = std::make_shared<ScriptLosses>(); }

private:
    std::shared_ptr<ScriptLosses> _losses = std::make_shared<ScriptLosses>();
};

}  // namespace vellicor
