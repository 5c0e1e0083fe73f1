// vellicor/model/connectable.h — the operations that columns, foreign keys and view rows share as ends of a link.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "vellicor/model/forward.h"
#include "vellicor/platform/text.h"

namespace vellicor {

/// Codes of referential actions. Documents may hold any number; only 1 to 5 have SQL words.
namespace action {
inline constexpr std::uint64_t none = 0;
inline constexpr std::uint64_t cascade = 1;
inline constexpr std::uint64_t restrict_ = 2;
inline constexpr std::uint64_t setNull = 3;
inline constexpr std::uint64_t noAction = 4;
inline constexpr std::uint64_t setDefault = 5;
}  // namespace action

/// Bits that say why a foreign key cannot be exported.
namespace foreignKeyError {
inline constexpr unsigned noTargetTable = 2;
inline constexpr unsigned mismatchedColumns = 4;
inline constexpr unsigned noColumns = 8;
}  // namespace foreignKeyError

/// What may be the source of a link to a table. All setters are undoable unless said otherwise.
class SQLConnectable {
public:
    virtual ~SQLConnectable() = default;

    /// The component that this is.
    [[nodiscard]] virtual SQLTableComponent& connectableComponent() = 0;
    /// Null when nothing is referenced or the reference is unresolved.
    [[nodiscard]] virtual SQLTable* targetTable() const = 0;
    [[nodiscard]] virtual SQLField* getFkField() const = 0;
    [[nodiscard]] virtual std::string foreignKeyName() const = 0;
    /// The constraint's name in the database; empty when unknown.
    [[nodiscard]] virtual std::string getReferenceId() const = 0;
    [[nodiscard]] virtual std::vector<std::string> sourceFieldNameList() const = 0;
    [[nodiscard]] virtual std::vector<std::string> targetFieldNameList() const = 0;
    /// True when no bit of `foreignKeyError` was set.
    virtual bool isFKFieldValid(unsigned& errorBits) const = 0;

    [[nodiscard]] virtual std::uint64_t deleteAction() const = 0;
    [[nodiscard]] std::uint64_t getDeleteAction() const { return deleteAction(); }
    virtual void setDeleteAction(std::uint64_t action) = 0;
    [[nodiscard]] virtual std::uint64_t updateAction() const = 0;
    [[nodiscard]] std::uint64_t getUpdateAction() const { return updateAction(); }
    virtual void setUpdateAction(std::uint64_t action) = 0;
    [[nodiscard]] virtual std::uint64_t sourceCardinality() const = 0;
    virtual void setSourceCardinality(std::uint64_t cardinality) = 0;
    [[nodiscard]] virtual std::uint64_t destinationCardinality() const = 0;
    virtual void setDestinationCardinality(std::uint64_t cardinality) = 0;
    virtual void setDefaultCardinalityForImport() = 0;
    virtual void setDefaultCardinalityForCreatedKey() = 0;

    [[nodiscard]] virtual bool linkIsDeferrable() const = 0;
    [[nodiscard]] virtual bool linkIsInitiallyDeferred() const = 0;
    /// Text shown for the reference; null when there is none.
    [[nodiscard]] virtual OptionalText referenceInformationString() = 0;
    [[nodiscard]] virtual std::string getReferenceName() const = 0;
    [[nodiscard]] virtual std::string getReferenceLinkName() const = 0;
    virtual void setReferenceLinkName(const OptionalText& name) = 0;
};

}  // namespace vellicor
