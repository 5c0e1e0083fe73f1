// vellicor/dialects/runnable/sybase_style_runnable.h — what scripts of SQL Server and Sybase both need to run.
#pragma once

#include <algorithm>
#include <array>

#include "vellicor/dialects/sybase_style_exporter.h"
#include "vellicor/export/runnable/runnable_exporter.h"
#include "vellicor/platform/regular_expression.h"

namespace vellicor {

template <class Classic>
class RunnableSybaseStyle : public RunnableExporter<Classic> {
public:
    [[nodiscard]] std::string quotedColumnName(const std::string& name) override {
        return this->quoteForSQL(name, this->objectNameRequiresQuoting(name) || this->useQuotedIdentifier());
    }
    [[nodiscard]] std::string defaultInColumn(std::string_view value, SQLField& field) override {
        return this->quoteDefaultValue(value, field);
    }
    /// Numbers, calls and words such as CURRENT_TIMESTAMP stay bare.
    [[nodiscard]] bool shouldQuoteDefaultFieldValue(std::string_view value, SQLField& field) override {
        static constexpr std::array<std::string_view, 5> kWords{"CURRENT_TIMESTAMP", "CURRENT_USER", "SESSION_USER",
                                                                "SYSTEM_USER", "USER"};
        static const RegularExpression number(R"([-+]?[0-9]+(\.[0-9]*)?)");
        if (!RunnableExporter<Classic>::shouldQuoteDefaultFieldValue(value, field)) return false;
        const bool isWord = std::ranges::find(kWords, uppercased(value)) != kWords.end();
        const bool isCall = value.ends_with(')') && !value.starts_with('\'');
        return !isWord && !isCall && !number.firstMatchCovers(value);
    }
};

}  // namespace vellicor
