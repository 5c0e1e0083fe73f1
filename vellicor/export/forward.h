// vellicor/export/forward.h — the classes of SQL generation, declared.
#pragma once

#include <memory>

namespace vellicor {

class GenericCreateScript;
class GenericSQLExporter;
class GenericSQLExporterAppender;
class QVSourceNode;

/// Shared, since nodes move between trees and outlive the list that held them.
using SourceNodePtr = std::shared_ptr<QVSourceNode>;

}  // namespace vellicor
