// vellicor/migration/database_shape.cpp — what a create script makes, piece by piece.
#include "vellicor/migration/database_shape.h"

#include <algorithm>

namespace vellicor {

std::string ColumnShape::text(ColumnPart part) const {
    const auto found = std::ranges::find(words, part, &Words::part);
    return found == words.end() ? std::string() : found->text;
}

std::string ColumnShape::normal(ColumnPart part) const {
    const auto found = std::ranges::find(words, part, &Words::part);
    return found == words.end() ? std::string() : found->normal;
}

bool ColumnShape::has(ColumnPart part) const { return std::ranges::find(words, part, &Words::part) != words.end(); }

std::string ColumnShape::definition(std::initializer_list<ColumnPart> without) const {
    std::string definition;
    for (const Words& entry : words) {
        if (std::ranges::find(without, entry.part) != without.end()) continue;
        if (!definition.empty()) definition += ' ';
        definition += entry.text;
    }
    return definition;
}

bool ConstraintShape::mentions(const SQLName& column) const {
    return std::ranges::find(columns, column, &Column::name) != columns.end();
}

const ColumnShape* TableShape::columnNamed(const SQLName& name) const {
    const auto found = std::ranges::find(columns, name, &ColumnShape::name);
    return found == columns.end() ? nullptr : &*found;
}

const ConstraintShape* TableShape::primaryKey() const {
    const auto found = std::ranges::find(constraints, ConstraintKind::PrimaryKey, &ConstraintShape::kind);
    return found == constraints.end() ? nullptr : &*found;
}

std::string_view wordsFor(ConstraintKind kind) {
    switch (kind) {
        case ConstraintKind::PrimaryKey: return "primary key";
        case ConstraintKind::Unique: return "unique constraint";
        case ConstraintKind::Check: return "check constraint";
        case ConstraintKind::ForeignKey: return "foreign key";
        case ConstraintKind::Index: return "index";
    }
    return {};
}

}  // namespace vellicor
