// vellicor/export/exporter_common.h — statements that several dialects share.
#pragma once

#include <string>

#include "vellicor/export/forward.h"
#include "vellicor/model/forward.h"

namespace vellicor {

/// What a stand-alone index statement holds besides the index itself.
struct IndexStatementForm {
    bool addSeparator = true;          ///< the exporter's separator and a line break at the end
    bool addCreateInstruction = true;  ///< "CREATE " at the start
    bool withTableName = true;         ///< "ON" and the table's canonical name
};

/// Operations without state of their own; dialects that share them pass themselves.
class ExporterCommon {
public:
    /// "CREATE <type> INDEX <name> ON <table> (<columns>)", the separator and a line break. Empty when the exporter
    /// refuses the index; inside a comment when the index has no columns.
    static std::string addIndex(SQLIndex& index, SQLTable& table, GenericCreateScript& exporter);
    static std::string addIndex(SQLIndex& index, SQLTable& table, GenericCreateScript& exporter, bool addSeparator,
                                bool addCreateInstruction);
    static std::string addIndex(SQLIndex& index, SQLTable& table, GenericCreateScript& exporter,
                                const IndexStatementForm& form);
    /// "TIMESTAMP WITH TIMEZONE " for a time stamp with a time zone, otherwise the column's type.
    static std::string fieldTypeWithTimeZone(SQLField& field);
    /// Drops a key by its name, which is not quoted. Empty, with a line in the log, when the key has no name.
    static std::string dropForeignKey(SQLTable& table, SQLConnectable& key, GenericCreateScript& exporter);
    /// The same with the table's name as the dialect of its document writes it.
    static std::string dropForeignKey(SQLTable& table, SQLConnectable& key);
};

}  // namespace vellicor
