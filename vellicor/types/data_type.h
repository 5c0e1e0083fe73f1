// vellicor/types/data_type.h — a column type split into its base and its size.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "vellicor/platform/text.h"
#include "vellicor/types/type_sizes.h"

namespace vellicor {

/// A base type such as "varchar" and a size such as "255" or "10,2"; both empty after creation. A dialect is given as
/// an exporter, which may be null, or by its name.
class SQLDataType {
public:
    SQLDataType() = default;
    virtual ~SQLDataType() = default;
    static SQLDataType dataTypeWithString(std::string_view type, TypeSizes* dialect);
    static SQLDataType dataTypeWithString(std::string_view type, std::string_view dialectName);
    static SQLDataType dataTypeWithString(std::string_view type, std::string_view size, TypeSizes* dialect);
    static SQLDataType dataTypeWithString(std::string_view type, std::string_view size, std::string_view dialectName);
    static SQLDataType initWithString(std::string_view type, std::string_view size, TypeSizes* dialect);
    static SQLDataType initWithString(std::string_view type, std::string_view size, std::string_view dialectName);

    /// The parts of a type text such as "decimal(10,2)" or "enum('a','b')".
    struct Parts {
        /// What stands before the first parenthesis, white space included.
        std::string dataType;
        /// What stands inside the outer parentheses, quotes included; empty without any. Null is for derived parsers.
        OptionalText dataTypeSize;
        /// The texts between apostrophes, backslashes included; only when the base is "enum" in any case.
        std::optional<std::vector<std::string>> enumElements;
        /// What stands behind the outer parentheses.
        std::string rest{};
    };
    [[nodiscard]] virtual Parts parseTypeStringB(std::string_view type) const;

    /// As the sized forms, with an empty size.
    void setFromType(std::string_view type, TypeSizes* dialect);
    void setFromType(std::string_view type, std::string_view dialectName);
    /// Takes both parts from the type text. The size in the text wins even when it is empty; only when parsing gives
    /// none at all does `size` count, and when that is empty the size that the dialect requires for the base type.
    void setFromType(std::string_view type, std::string_view size, TypeSizes* dialect);
    void setFromType(std::string_view type, std::string_view size, std::string_view dialectName);

    [[nodiscard]] const std::string& baseType() const { return _baseType; }
    void setBaseType(std::string_view type) { _baseType = type; }
    [[nodiscard]] const std::string& typeSize() const { return _typeSize; }
    void setTypeSize(std::string_view size) { _typeSize = size; }
    /// What the text that was taken last had behind its parentheses; no part of the type.
    [[nodiscard]] const std::string& rest() const { return _rest; }
    [[nodiscard]] bool hasTypeSize() const { return !_typeSize.empty(); }
    /// "base(size)", with empty parentheses when there is no size.
    [[nodiscard]] std::string typeString() const;

private:
    bool takeSize(std::string_view type, std::string_view size);

    std::string _baseType;
    std::string _typeSize;
    std::string _rest;
};

}  // namespace vellicor
