// vellicor/dialects/column_changes.h — whether a column must be altered, as SQL Server and Oracle see it.
#pragma once

#include "vellicor/model/field.h"

namespace vellicor {

/// What differs between a column's new and current state.
struct ColumnChanges {
    ColumnChanges(const SQLField& field, const SQLField& current)
        : notNull(field.getNotNull() != current.getNotNull() && (!field.getPrimaryKey() || field.getNotNull())),
          primaryKey(field.getPrimaryKey() != current.getPrimaryKey()),
          type(field.getType() != current.getType()),
          wasNotNull(current.getNotNull()) {}

    /// A column that joins or leaves the primary key changes unless it was not null before.
    [[nodiscard]] bool needAlter() const { return type || notNull || (primaryKey && !wasNotNull); }
    [[nodiscard]] bool nullability() const { return notNull || (primaryKey && !wasNotNull); }

    bool notNull;  ///< the flags differ in a way that matters
    bool primaryKey;
    bool type;
    bool wasNotNull;
};

}  // namespace vellicor
