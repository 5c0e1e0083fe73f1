// vellicor/platform/preference_keys.h — the keys of user preferences that the library reads.
#pragma once

namespace vellicor::prefs {

// model
inline constexpr const char* defaultSourceCardinality = "defaultSourceCardinality";
inline constexpr const char* defaultDestinationCardinality = "defaultDestinationCardinality";
inline constexpr const char* defaultImportSourceCardinality = "defaultImportSourceCardinality";
inline constexpr const char* defaultImportDestinationCardinality = "defaultImportDestinationCardinality";
inline constexpr const char* forceForeignKeyUnique = "forceForeignKeyUnique";
inline constexpr const char* forceForeignKeyTypeMatching = "forceForeignKeyTypeMatching";
inline constexpr const char* documentLevelLabels = "documentLevelLabels";
inline constexpr const char* addTablePrefixToIndexNamesAtCreation = "AddTablePrefixToIndexNamesAtCreation";
inline constexpr const char* convertExistingCompoundForeignKeys = "convertExistingCompoundForeignKeys";
inline constexpr const char* useNewColoring = "UseNewColoring";
inline constexpr const char* collapseSingleEntryIndices = "collapseSingleEntryIndices";
inline constexpr const char* useNewXMLFileLoader = "useNewXMLFileLoader";
/// Ours: writes the few places of a document that would not come back when read so that they do.
inline constexpr const char* losslessDocuments = "losslessDocuments";

// SQL scripts
inline constexpr const char* quoteIdentifiersOnExport = "quoteIdentifiersOnExport";
inline constexpr const char* addTablePrefixToIndexNamesInExport = "AddTablePrefixToIndexNamesInExport";
inline constexpr const char* autoQuoteIdentifiersWithWhitespace = "autoQuoteIdentifiersWithWhitespace";
inline constexpr const char* autoQuoteIdentifiersWithInvalidCharacters = "autoQuoteIdentifiersWithInvalidCharacters";
inline constexpr const char* includeTitleHeaderInExport = "IncludeTitleHeaderInExport";
inline constexpr const char* exportObjectSortOrder = "exportObjectSortOrder";
inline constexpr const char* canIgnoreObjectsOnExport = "canIgnoreObjectsOnExport";
inline constexpr const char* useIfNotExistsOnTableExport = "useIfNotExistsOnTableExport";
inline constexpr const char* quoteReservedWords = "quoteReservedWords";
/// Ours: writes the few places of a script that the dialect's own server would refuse so that it accepts them.
inline constexpr const char* runnableScripts = "runnableScripts";

// single dialects
inline constexpr const char* useAlterTableForMySQLIndexCreation = "useAlterTableForMySQLIndexCreation";
inline constexpr const char* limitSQLCommentLength = "limitSQLCommentLength";
inline constexpr const char* preventTypeSizeUpdateWhenNil = "preventTypeSizeUpdateWhenNil";
inline constexpr const char* postgresTypesUppercase = "postgresTypesUppercase";
inline constexpr const char* usePostgresComments = "usePostgresComments";
inline constexpr const char* postgresQuoteSolelyUppercaseIdentifiers = "postgresQuoteSolelyUppercaseIdentifiers";
inline constexpr const char* sqlServerAddNullable = "SQLServerAddNullable";
inline constexpr const char* sqlServerFindPKNameForDrop = "SQLServerFindPKNameForDrop";
inline constexpr const char* sybaseUseGo = "sybaseUseGo";

// colours
inline constexpr const char* tableNotSelectedColor = "TableNotSelectedColor";
inline constexpr const char* tableSelectedColor = "TableSelectedColor";
inline constexpr const char* tableBackgroundColor = "TableBackgroundColor";
inline constexpr const char* fieldBackgroundColor = "FieldBackgroundColor";
inline constexpr const char* commentBackgroundColor = "CommentBackgroundColor";
inline constexpr const char* commentSelectedColor = "CommentSelectedColor";
inline constexpr const char* commentNotSelectedColor = "CommentNotSelectedColor";
inline constexpr const char* connectorDefault = "ConnectorDefault";

// files
inline constexpr const char* disableNavigationPanelFix = "disableNavigationPanelFix";
inline constexpr const char* navLastRootDirectory = "NSNavLastRootDirectory";

}  // namespace vellicor::prefs
