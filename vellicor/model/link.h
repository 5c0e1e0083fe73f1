// vellicor/model/link.h — what columns and foreign keys hold alike as sources of a link: its actions and cardinalities.
#pragma once

#include <cstdint>
#include <string_view>

#include "vellicor/model/connectable.h"

namespace vellicor {

/// A link's four numbers, whose setters are undoable, and the checks that its ends allow.
class SQLLink : public SQLConnectable {
public:
    bool isFKFieldValid(unsigned& errorBits) const override;

    [[nodiscard]] std::uint64_t deleteAction() const override { return _deleteAction; }
    void setDeleteAction(std::uint64_t action) override;
    [[nodiscard]] std::uint64_t updateAction() const override { return _updateAction; }
    void setUpdateAction(std::uint64_t action) override;
    [[nodiscard]] std::uint64_t sourceCardinality() const override { return _sourceCardinality; }
    void setSourceCardinality(std::uint64_t cardinality) override;  ///< "set Source cardinality"
    [[nodiscard]] std::uint64_t destinationCardinality() const override { return _destinationCardinality; }
    void setDestinationCardinality(std::uint64_t cardinality) override;  ///< "set Destination cardinality"
    void setDefaultCardinalityForImport() override;
    void setDefaultCardinalityForCreatedKey() override;

private:
    using Number = std::uint64_t SQLLink::*;
    void setNumber(Number number, std::uint64_t value, std::string_view actionName);

    std::uint64_t _deleteAction = 0;
    std::uint64_t _updateAction = 0;
    std::uint64_t _sourceCardinality = 0;
    std::uint64_t _destinationCardinality = 0;
};

/// The cardinalities that new links start with.
class SQLConnectableCardinality {
public:
    static void setDefaultCardinalityForImport(SQLConnectable& object);
    static void setDefaultCardinalityForCreatedKey(SQLConnectable& object);
};

}  // namespace vellicor
