// vellicor/model/keys.h — the keys of properties that model objects own.
#pragma once

namespace vellicor::keys {

// every object
inline constexpr const char* uid = "uid";
inline constexpr const char* objectComment = "objectComment";
inline constexpr const char* labelName = "labelName";
inline constexpr const char* labelColor = "labelColor";
inline constexpr const char* labelUid = "labelUid";
inline constexpr const char* labelWindowIndex = "labelWindowIndex";
inline constexpr const char* hidden = "hidden";
inline constexpr const char* zorder = "zorder";
/// Keys with this prefix live in memory only.
inline constexpr const char* memoryPrefix = "MEM-";

// container
inline constexpr const char* allowsIndexRenamingOnInsert = "AllowsIndexRenamingOnInsert";
inline constexpr const char* isVisibleCleanupPostImport = "isVisibleCleanupPostImport";
inline constexpr const char* documentRecoveryOccurred = "documentRecoveryOccurred";

// table
inline constexpr const char* primaryKeyName = "PK_KEY_NAME";
inline constexpr const char* ignoreWhenExporting = "ignoreWhenExporting";
inline constexpr const char* cannotLinkToObject = "cannotLinkToObject";
inline constexpr const char* isLocked = "isLocked";
inline constexpr const char* tablespace = "tablespace";
inline constexpr const char* tableAutoIncrementStart = "table_auto_increment_start";
inline constexpr const char* tableCharacterSet = "table_character_set";
inline constexpr const char* tableCollation = "table_collation";

// table components
inline constexpr const char* fieldBackgroundColor = "FieldBackgroundColor";
inline constexpr const char* indexNamePrefix = "indexNamePrefix";
inline constexpr const char* incompleteReferenceTarget = "incompleteReferenceTarget";
inline constexpr const char* refTableName = "refTableName";
inline constexpr const char* refFieldName = "refFieldName";
inline constexpr const char* connectorMidPoint = "connectorMidPoint";
inline constexpr const char* deferrable = "deferrable";
inline constexpr const char* initiallyDeferred = "initiallyDeferred";
inline constexpr const char* referenceLinkName = "referenceLinkName";
inline constexpr const char* connectorHidden = "connectorHidden";

// field
inline constexpr const char* notNull = "notNull";
inline constexpr const char* unique = "unique";
inline constexpr const char* forcedUnique = "forcedUnique";
inline constexpr const char* uniqueIndexName = "uniqueIndexName";
inline constexpr const char* defaultValue = "defaultValue";
inline constexpr const char* noQuoteDefault = "noQuoteDefault";
inline constexpr const char* autoIncrement = "autoIncrement";
inline constexpr const char* unsigned_ = "unsigned";
inline constexpr const char* zeroFill = "zeroFill";
inline constexpr const char* binary = "binary";
inline constexpr const char* timezone = "timezone";
inline constexpr const char* indexed = "indexed";
inline constexpr const char* indexedKeyName = "indexedKeyName";
inline constexpr const char* indexSize = "indexSize";
inline constexpr const char* fieldCharacterSet = "field_character_set";
inline constexpr const char* fieldCollation = "field_collation";
inline constexpr const char* onUpdateFieldValue = "onUpdateFieldValue";
inline constexpr const char* foreignKeyName = "foreignKeyName";
inline constexpr const char* unknownReferenceType = "unknownReferenceType";

// constraints
inline constexpr const char* checkConstraint = "checkConstraint";
inline constexpr const char* checkConstraintName = "checkConstraintName";
inline constexpr const char* hideConstraintName = "hideConstraintName";
inline constexpr const char* indexType = "indexType";
inline constexpr const char* collapseUnique = "collapseUnique";
inline constexpr const char* collapseSimpleIndex = "collapseSimpleIndex";
inline constexpr const char* prefixSize = "prefixSize";
inline constexpr const char* fieldUid = "fieldUid";

// foreign key
inline constexpr const char* targetTableUid = "targetTableUid";
inline constexpr const char* targetTableName = "targetTableName";
inline constexpr const char* targetsPrimaryKey = "targetsPrimaryKey";
inline constexpr const char* sourceFieldName = "sourceFieldName";
inline constexpr const char* sourceFieldUid = "sourceFieldUid";
inline constexpr const char* targetFieldName = "targetFieldName";
inline constexpr const char* targetFieldUid = "targetFieldUid";
inline constexpr const char* entryIndex = "entryIndex";

// view
inline constexpr const char* queryString = "queryString";
inline constexpr const char* viewEntryType = "type";

// comment
inline constexpr const char* commentTitle = "commentTitle";
inline constexpr const char* shouldDrawFrame = "shouldDrawFrame";

// document info
inline constexpr const char* generatorVersion = "generatorVersion";
inline constexpr const char* generator = "generator";
inline constexpr const char* fileFormatVersion = "VellicorFileFormatVersion";
inline constexpr const char* pageBoundariesVisible = "pageBoundariesVisible";
inline constexpr const char* pageGridVisible = "PageGridVisible";
inline constexpr const char* snapToGrid = "snapToGrid";
inline constexpr const char* dropTableOption = "dropTableOption";
inline constexpr const char* autoSizeTablesOption = "autoSizeTablesOption";
inline constexpr const char* documentScaleFactor = "documentScaleFactor";
inline constexpr const char* exportDialect = "exportDialect";
inline constexpr const char* header = "header";
inline constexpr const char* footer = "footer";
inline constexpr const char* postExportSQL = "postExportSQL";
inline constexpr const char* prologueExportSQL = "prologueExportSQL";
inline constexpr const char* cardinalityNotationStyle = "cardinalityNotationStyle";

}  // namespace vellicor::keys
