// vellicor/export/alter_run.h — one run of an exporter over the differences of two documents.
#pragma once

#include "vellicor/export/generic_exporter.h"
#include "vellicor/model/primary_key_references.h"

namespace vellicor {

/// Begins with no key recorded as dropped. While it lives, the exporter finds the keys that reference a primary key of
/// the database's document by an index made once, so that document must not change meanwhile. Alter operations work
/// without a run too, and then look through the whole document for each changed primary key. Runs do not nest.
class AlterRun {
public:
    AlterRun(GenericSQLExporter& exporter, const SQLContainer& database) : _exporter(exporter), _references(database) {
        _exporter.beginAlterRun(database, _references);
    }
    ~AlterRun() { _exporter.endAlterRun(); }
    AlterRun(const AlterRun&) = delete;
    AlterRun& operator=(const AlterRun&) = delete;

private:
    GenericSQLExporter& _exporter;
    PrimaryKeyReferences _references;
};

}  // namespace vellicor
