// vellicor/model/document_info.h — a document's settings.
#pragma once

#include "vellicor/model/object_peer.h"

namespace vellicor {

class QVVisualTheme;

/// Settings kept as properties. A new one carries the version keys of the file format.
class SQLDocumentInfo : public SQLObjectPeer {
public:
    using SQLObjectPeer::SQLObjectPeer;
    static constexpr const char* kGeneratorVersion = "4.0.3";
    static constexpr const char* kFileFormatVersion = "4";
    static constexpr const char* kGenerator = "org.vellicor.designer";

    void init() override;
    static const UndoProperties& undoProperties();
    [[nodiscard]] const UndoProperties& classUndoProperties() const override { return undoProperties(); }
    [[nodiscard]] std::string_view getClassType() const override { return "SQLDocumentInfo"; }

    [[nodiscard]] bool getPageBoundariesVisible() const { return getPropertyAsBoolean(keys::pageBoundariesVisible); }
    void setPageBoundariesVisible(bool flag) { setPropertyAsBoolean(keys::pageBoundariesVisible, flag); }
    [[nodiscard]] bool getPageGridVisible() const { return getPropertyAsBoolean(keys::pageGridVisible); }
    void setPageGridVisible(bool flag) { setPropertyAsBoolean(keys::pageGridVisible, flag); }
    [[nodiscard]] bool getSnapToGrid() const { return getPropertyAsBoolean(keys::snapToGrid); }
    void setSnapToGrid(bool flag) { setPropertyAsBoolean(keys::snapToGrid, flag); }
    [[nodiscard]] bool getDropTableOption() const { return getPropertyAsBoolean(keys::dropTableOption); }
    [[nodiscard]] bool dropTableOption() const { return getDropTableOption(); }
    void setDropTableOption(bool flag);  ///< undoable, "change table drop setting"
    [[nodiscard]] bool getAutoSizeTablesOption() const { return getPropertyAsBoolean(keys::autoSizeTablesOption); }
    void setAutoSizeTablesOption(bool flag) { setPropertyAsBoolean(keys::autoSizeTablesOption, flag); }
    [[nodiscard]] float getDocumentScaleFactor() const;
    void setDocumentScaleFactor(float factor);
    void setDocumentScaleFactorAsString(const OptionalText& factor);
    [[nodiscard]] std::string header() const { return getProperty(keys::header); }
    [[nodiscard]] std::string getHeader() const { return header(); }
    void setHeader(const OptionalText& text);  ///< null stores the empty text
    [[nodiscard]] std::string footer() const { return getProperty(keys::footer); }
    [[nodiscard]] std::string getFooter() const { return footer(); }
    void setFooter(const OptionalText& text);  ///< null stores the empty text
    [[nodiscard]] std::string postExportSQL() const { return getProperty(keys::postExportSQL); }
    void setPostExportSQL(const OptionalText& sql);  ///< undoable, "change appended SQL"
    [[nodiscard]] std::string prologueExportSQL() const { return getProperty(keys::prologueExportSQL); }
    void setPrologueExportSQL(const OptionalText& sql);  ///< undoable, "change SQL prologue"

    // --- print settings: opaque data of the platform, kept as Base64
    void setDocumentPrintInfo(std::string_view data);
    [[nodiscard]] std::string getDocumentPrintInfo() const;
    [[nodiscard]] const OptionalText& encodedPrintInfo() const { return _encodedPrintInfo; }
    void setEncodedPrintInfo(const OptionalText& base64) { _encodedPrintInfo = base64; }

    // --- dialect
    [[nodiscard]] std::string exportDialect() const { return getProperty(keys::exportDialect); }
    [[nodiscard]] std::string getExportDialect() const { return exportDialect(); }
    void setDefaultExportDialect(const OptionalText& name);  ///< without undo
    /// Undoable, "change export dialect"; then `notifyObservers` on the main thread.
    void setExportDialect(const OptionalText& name);
    /// Posts "exportDialectChanged" about this object and lets the document take the dialect's exporter.
    void notifyObservers();

    // --- plain accessors
    [[nodiscard]] void* document() const { return _document; }
    void setDocument(void* document) { _document = document; }
    [[nodiscard]] const std::string& lastExportFileNameStem() const { return _lastExportFileNameStem; }
    void setLastExportFileNameStem(const OptionalText& name) { _lastExportFileNameStem = name.value_or(std::string()); }
    [[nodiscard]] const std::string& lastExportFileName() const { return _lastExportFileName; }
    void setLastExportFileName(const OptionalText& name) { _lastExportFileName = name.value_or(std::string()); }
    [[nodiscard]] const std::shared_ptr<QVVisualTheme>& visualTheme() const { return _visualTheme; }
    void setVisualTheme(std::shared_ptr<QVVisualTheme> theme) { _visualTheme = std::move(theme); }

    void setSafePropertyValue(const LoadedValue& value, std::string_view key) override;
    XMLElement exportToXMLNode(const XMLElement* parent = nullptr) const override;
    [[nodiscard]] Value::Map jsonDictionary() const override;
    [[nodiscard]] std::shared_ptr<SQLObject> copyWithZone(void* zone = nullptr) const override;
    [[nodiscard]] std::shared_ptr<SQLObject> newInstance() const override { return create<SQLDocumentInfo>(); }
    const ClassInfo& classInfo() const override { return kClassInfo; }
    static const ClassInfo kClassInfo;

private:
    OptionalText _encodedPrintInfo;  // null when none
    void* _document = nullptr;       // the application's document object; not owned
    std::string _lastExportFileNameStem;
    std::string _lastExportFileName;
    std::shared_ptr<QVVisualTheme> _visualTheme;
};

}  // namespace vellicor
