// vellicor/model/field_type.cpp — a column's type and size, and the types that references force on it.
#include "vellicor/model/container.h"
#include "vellicor/model/export_dialect.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key_graph.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"
#include "vellicor/platform/text_format.h"
#include "vellicor/types/data_type.h"
#include "vellicor/types/type_matching.h"

namespace vellicor {

namespace {

SQLDataType parsed(std::string_view type) {
    return SQLDataType::dataTypeWithString(type, static_cast<TypeSizes*>(nullptr));
}

}  // namespace

// --- type and size

void SQLField::setType(const OptionalText& type, bool toUpperCase) {
    const SQLDataType parts = parsed(type ? std::string_view(*type) : std::string_view());
    const std::string base = toUpperCase ? uppercased(parts.baseType()) : parts.baseType();
    setDataType(std::string(trimmed(base)));
    setTypeSize(std::string(trimmed(parts.typeSize())));
    setTypeRest(parts.rest());
}

void SQLField::setTypeRest(const std::string& rest) {
    if (rest == typeRest()) return;
    registerUndo(this, [old = typeRest()](SQLField& field) { field.setTypeRest(old); });
    _typeRest = rest.empty() ? nullptr : std::make_unique<const std::string>(rest);
}

std::string SQLField::getDataTypeFromTypeString(std::string_view type) {
    return std::string(trimmed(parsed(type).baseType()));
}

std::string SQLField::getDataTypeSizeFromTypeString(std::string_view type) {
    return std::string(trimmed(parsed(type).typeSize()));
}

void SQLField::setDataType(const OptionalText& type) {
    registerUndo(this, [old = _type](SQLField& field) { field.setDataType(old); });
    willChangeValueForKey("type");
    willChangeValueForKey("typeSize");
    _type = type.value_or(std::string());
    didChangeValueForKey("typeSize");
    didChangeValueForKey("type");
}

void SQLField::setTypeSize(const OptionalText& size) {
    registerUndo(this, [old = _typeSize](SQLField& field) { field.setTypeSize(old); });
    willChangeValueForKey("typeSize");
    willChangeValueForKey("type");
    _typeSize = size.value_or(std::string());
    didChangeValueForKey("type");
    didChangeValueForKey("typeSize");
}

SQLExportDialect* SQLField::documentExporter() const {
    SQLContainer* document = topLevelContainer();
    return document ? document->dialectExporter() : nullptr;
}

bool SQLField::hasTypeSizeForDisplay(bool display) const {
    if (_typeSize.empty()) return false;
    SQLExportDialect* exporter = display ? documentExporter() : nullptr;
    return !exporter || exporter->typeHasSize(_type);
}

std::string SQLField::getFullTypeStringForDisplay(bool display) const {
    return hasTypeSizeForDisplay(display) ? text("%@(%@)", _type, _typeSize) : _type;
}

std::string SQLField::getTypeForDisplay(bool display) const {
    if (hasForeignKey() && shouldForceForeignKeyTypeMatching() && getFkTypeMismatch())
        if (OptionalText forced = graphType()) return *std::move(forced);
    return getFullTypeStringForDisplay(display);
}

std::string SQLField::getLabel() { return text("%@ %@", getName(), getType()); }

std::string SQLField::toString() const { return text("/*SQLField %@ */", getName()); }

// --- forced types

/// The type that the document's graph has for this column; null without a graph.
OptionalText SQLField::graphType() const {
    SQLContainer* document = topLevelContainer();
    if (!document || !document->fkObjectGraph()) return std::nullopt;
    return document->fkObjectGraph()->dataTypeForField(const_cast<SQLField&>(*this));
}

bool SQLField::shouldForceForeignKeyTypeMatching() const {
    return hasCocoa() && Preferences::shared().boolForKey(prefs::forceForeignKeyTypeMatching);
}

bool SQLField::isForcedUnsigned() const {
    const SQLField* target = getFkField();
    return target && shouldForceForeignKeyTypeMatching() &&
           target->getPropertyAsBoolean(keys::unsigned_) != getPropertyAsBoolean(keys::unsigned_);
}

bool SQLField::getForcedUnsigned() const {
    const SQLField* target = getFkField();
    return target && target->getPropertyAsBoolean(keys::unsigned_);
}

bool SQLField::getFkTypeMismatch() const {
    const SQLField* target = getFkField();
    if (!target || target->getFkField() == this) return false;
    return !fieldMatchesType(graphType(), *target);
}

bool SQLField::fieldMatchesType(const OptionalText& type, const SQLField& targetField) const {
    if (targetField.getPropertyAsBoolean(keys::unsigned_) != getPropertyAsBoolean(keys::unsigned_)) return false;
    if (!type) return false;
    const std::string own = getOriginalType();
    if (uppercased(*type) == uppercased(own)) return true;
    if (TypeMatchingManager::sharedTypeMatchingManager().isTypeEquivalent(*type, own)) return true;
    SQLContainer* document = topLevelContainer();
    const auto exporter = document ? document->currentDialectExporter() : nullptr;
    return exporter && exporter->isTypeEquivalent(*type, own);
}

bool SQLField::isCircularFK() const {
    const SQLContainer* document = topLevelContainer();
    const std::size_t mostSteps = document ? document->count() : 0;
    std::size_t steps = 0;
    for (const SQLField* field = getFkField(); field; field = field->getFkField())
        if (field == this || ++steps > mostSteps) return true;
    return false;
}

}  // namespace vellicor
