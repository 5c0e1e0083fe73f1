// vellicor/dialects/mysql_index_exporter.h — index statements of MySQL.
#pragma once

#include "vellicor/export/exporter_common.h"
#include "vellicor/export/source_node.h"

namespace vellicor {

class MySQLExporter;

/// Writes an index as CREATE or as ALTER TABLE, with prefix sizes. An index without columns is written commented out.
class MySQLIndexExporter : public ExporterCommon {
public:
    [[nodiscard]] static SourceNodePtr indexFieldBlock(SQLIndex& index, MySQLExporter& exporter);
    [[nodiscard]] static SourceNodePtr createIndexTreeForindex(SQLIndex& index, SQLTable& table,
                                                               MySQLExporter& exporter);
    [[nodiscard]] static std::string createIndexStringForindex(SQLIndex& index, SQLTable& table,
                                                               MySQLExporter& exporter);
    [[nodiscard]] static SourceNodePtr alterTableAddIndexTreeForindex(SQLIndex& index, SQLTable& table,
                                                                      MySQLExporter& exporter);
    [[nodiscard]] static std::string alterTableAddIndexStringForindex(SQLIndex& index, SQLTable& table,
                                                                      MySQLExporter& exporter);
    /// The statement with its separator and a line feed, in the form that the exporter asks for.
    [[nodiscard]] static std::string addIndexTableExporter(SQLIndex& index, SQLTable& table, MySQLExporter& exporter);
};

}  // namespace vellicor
