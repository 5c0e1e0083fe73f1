// vellicor/export/export_run.h — what belongs to one export of a document.
#pragma once

#include "vellicor/model/forward.h"

namespace vellicor {

/// Made when an export begins and gone when it ends, whatever ends it, so that an exporter keeps nothing of a document
/// behind. A form of scripts that has more to remember derives from it (`newRun` of the exporter).
class ExportRun {
public:
    explicit ExportRun(SQLContainer& container) : _container(container) {}
    virtual ~ExportRun() = default;
    ExportRun(const ExportRun&) = delete;
    ExportRun& operator=(const ExportRun&) = delete;

    [[nodiscard]] SQLContainer& container() const { return _container; }

private:
    SQLContainer& _container;
};

}  // namespace vellicor
