// vellicor/model/constraint.cpp — a table constraint: UNIQUE over columns, or CHECK with an expression.
#include "vellicor/model/index.h"
#include "vellicor/model/table.h"
#include "vellicor/platform/regular_expression.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

constexpr std::string_view kIsCheckConstraint = "isCheckConstraint";

std::string onOneLine(std::string_view text) {
    return replacingAll(replacingAll(replacingAll(text, "\r\n", " "), "\n", " "), "\r", " ");
}

}  // namespace

void SQLConstraint::init() {
    SQLIndex::init();
    setName("cons");
    setIndexType("UNIQUE");
}

void SQLConstraint::setCheckConstraintExpression(const OptionalText& expression) {
    setIndexType("CHECK");
    setProperty(keys::checkConstraint, expression);
}

void SQLConstraint::setCheckConstraintExpressionFromSQL(const OptionalText& sql) {
    setCheckConstraintExpression(extractCheckConstraintExpression(sql.value_or(std::string())));
}

std::string SQLConstraint::extractCheckConstraintExpression(std::string_view sql) {
    static const RegularExpression pattern(R"(CHECK\s+\((.*)\))");
    const auto match = pattern.firstMatch(sql);
    return match ? std::string(match->group(1, sql)) : std::string();
}

bool SQLConstraint::isEqualToConstraint(const SQLConstraint* other) const {
    if (!other) return false;
    if (other == this) return true;
    if (parentTable() != other->parentTable()) return false;
    if (checkConstraintExpression() != other->checkConstraintExpression()) return false;
    if (getName() == other->getName()) return false;  // Kept: equal names make two constraints different
    return getFieldNameListWithPrefixes(true) == other->getFieldNameListWithPrefixes(true);
}

std::string SQLConstraint::labelForDisplay(bool) const {
    const std::string type = text("%@ ", trimmed(constraintType()));
    if (isCheckConstraint()) return type + text("(%@)", onOneLine(checkConstraintExpression()));
    return type + fieldListForDisplay();
}

void SQLConstraint::propertyWillChange(std::string_view key, const PropertyValue* current, const PropertyValue* next) {
    if (key == keys::indexType) willChangeValueForKey(kIsCheckConstraint);
    SQLIndex::propertyWillChange(key, current, next);
}

void SQLConstraint::propertyDidChange(std::string_view key) {
    SQLIndex::propertyDidChange(key);
    if (key == keys::indexType) didChangeValueForKey(kIsCheckConstraint);
}

namespace {

constexpr Setter kConstraintSetters[] = {
    setter<&SQLConstraint::setConstraintType>("constraintType"),
    setter<&SQLConstraint::setCheckConstraintExpression>("checkConstraintExpression"),
    setter<&SQLConstraint::setCheckConstraintExpressionFromSQL>("checkConstraintExpressionFromSQL"),
};

}  // namespace

const ClassInfo SQLConstraint::kClassInfo{"SQLConstraint", &SQLIndex::kClassInfo, kConstraintSetters,
                                          makeLoadable<SQLConstraint>};

}  // namespace vellicor
