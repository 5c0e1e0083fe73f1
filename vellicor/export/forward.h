// vellicor/export/forward.h — the classes of SQL generation, declared.
#pragma once

#include <memory>

namespace vellicor {

class FKGraphNode;
class GenericSQLExporter;
class GenericSQLExporterAppender;
class QVSourceNode;
class SQLExportDialect;
class SQLForeignKeyGraph;
class SQLForeignKeyObjectGraph;

/// Shared, since nodes move between trees and outlive the list that held them.
using SourceNodePtr = std::shared_ptr<QVSourceNode>;

}  // namespace vellicor
