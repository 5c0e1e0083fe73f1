// vellicor/types/data_type.cpp — splitting type texts.
#include "vellicor/types/data_type.h"

#include <utility>

#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

std::string requiredSize(TypeSizes* dialect, const std::string& baseType) {
    return dialect ? dialect->requiredSizeForType(baseType).value_or("") : "";
}

}  // namespace

SQLDataType SQLDataType::dataTypeWithString(std::string_view type, TypeSizes* dialect) {
    return initWithString(type, "", dialect);
}

SQLDataType SQLDataType::dataTypeWithString(std::string_view type, std::string_view dialectName) {
    return initWithString(type, "", dialectName);
}

SQLDataType SQLDataType::dataTypeWithString(std::string_view type, std::string_view size, TypeSizes* dialect) {
    return initWithString(type, size, dialect);
}

SQLDataType SQLDataType::dataTypeWithString(std::string_view type, std::string_view size,
                                            std::string_view dialectName) {
    return initWithString(type, size, dialectName);
}

SQLDataType SQLDataType::initWithString(std::string_view type, std::string_view size, TypeSizes* dialect) {
    SQLDataType made;
    made.setFromType(type, size, dialect);
    return made;
}

SQLDataType SQLDataType::initWithString(std::string_view type, std::string_view size, std::string_view dialectName) {
    SQLDataType made;
    made.setFromType(type, size, dialectName);
    return made;
}

SQLDataType::Parts SQLDataType::parseTypeStringB(std::string_view type) const {
    // Only ASCII characters decide, so the bytes of others pass as they are.
    enum class State { Base, Size, Nested, Quoted, Escaped, Done } state = State::Base;
    int depth = 0;
    std::string base, size, element, rest;
    std::vector<std::string> elements;
    for (std::size_t i = 0; i < type.size(); ++i) {
        const char c = type[i];
        switch (state) {
            case State::Base:
                if (c == '(')
                    state = State::Size;
                else
                    base += c;
                break;
            case State::Size:
            case State::Nested:
                if (c == ')' && state == State::Size) {
                    state = State::Done;
                    break;
                }
                if (c == ')') {
                    --depth;
                    if (i + 1 == type.size()) {
                        state = State::Done;
                        break;
                    }
                    if (depth == 0) state = State::Size;
                } else if (c == '(') {
                    ++depth;
                    state = State::Nested;
                } else if (c == '\'') {
                    state = State::Quoted;
                }
                size += c;
                break;
            case State::Quoted:
                size += c;
                if (c == '\'') {
                    elements.push_back(std::exchange(element, {}));
                    state = State::Size;  // Kept: also from inside nested parentheses.
                } else {
                    element += c;
                    if (c == '\\') state = State::Escaped;
                }
                break;
            case State::Escaped:
                size += c;
                element += c;
                state = State::Quoted;
                break;
            case State::Done: rest += c; break;
        }
    }
    Parts parts{std::move(base), std::move(size), std::nullopt, std::move(rest)};
    if (lowercased(parts.dataType) == "enum") {
        if (!element.empty()) elements.push_back(std::move(element));
        parts.enumElements = std::move(elements);
    }
    return parts;
}

void SQLDataType::setFromType(std::string_view type, TypeSizes* dialect) { setFromType(type, "", dialect); }

void SQLDataType::setFromType(std::string_view type, std::string_view dialectName) {
    setFromType(type, "", dialectName);
}

void SQLDataType::setFromType(std::string_view type, std::string_view size, TypeSizes* dialect) {
    if (!takeSize(type, size)) _typeSize = requiredSize(dialect, _baseType);
}

void SQLDataType::setFromType(std::string_view type, std::string_view size, std::string_view dialectName) {
    if (!takeSize(type, size)) _typeSize = requiredSize(typeSizesOfDialect(dialectName).get(), _baseType);
}

/// Takes the base type, and the size when the text or the argument gives one; false when the dialect has to.
bool SQLDataType::takeSize(std::string_view type, std::string_view size) {
    Parts parts = parseTypeStringB(type);
    _baseType = std::move(parts.dataType);
    _rest = std::move(parts.rest);
    if (!parts.dataTypeSize && size.empty()) return false;
    // Kept: a text without parentheses has an empty size, and that one wins over the argument.
    _typeSize = parts.dataTypeSize ? std::move(*parts.dataTypeSize) : std::string(size);
    return true;
}

std::string SQLDataType::typeString() const { return text("%@(%@)", _baseType, _typeSize); }

}  // namespace vellicor
