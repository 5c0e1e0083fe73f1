// vellicor/model/document_info.cpp — a document's settings and their form in documents.
#include "vellicor/model/document_info.h"

#include "vellicor/model/container.h"
#include "vellicor/platform/base64.h"
#include "vellicor/platform/main_thread.h"
#include "vellicor/platform/notifications.h"
#include "vellicor/platform/xml_export.h"

namespace vellicor {

void SQLDocumentInfo::init() {
    SQLObjectPeer::init();
    setProperty(keys::generatorVersion, kGeneratorVersion);
    setProperty(keys::generator, kGenerator);
    setProperty(keys::fileFormatVersion, kFileFormatVersion);
}

const SQLDocumentInfo::UndoProperties& SQLDocumentInfo::undoProperties() {
    static const UndoProperties keys{keys::cardinalityNotationStyle};
    return keys;
}

void SQLDocumentInfo::setDropTableOption(bool flag) {
    registerUndo(this, [old = getDropTableOption()](SQLDocumentInfo& info) { info.setDropTableOption(old); });
    setUndoActionName("change table drop setting");
    setPropertyAsBoolean(keys::dropTableOption, flag);
}

float SQLDocumentInfo::getDocumentScaleFactor() const { return floatValue(getProperty(keys::documentScaleFactor)); }

void SQLDocumentInfo::setDocumentScaleFactor(float factor) { setDocumentScaleFactorAsString(numberText(factor)); }

void SQLDocumentInfo::setDocumentScaleFactorAsString(const OptionalText& factor) {
    setProperty(keys::documentScaleFactor, factor);
}

void SQLDocumentInfo::setHeader(const OptionalText& text) { setProperty(keys::header, text.value_or(std::string())); }

void SQLDocumentInfo::setFooter(const OptionalText& text) { setProperty(keys::footer, text.value_or(std::string())); }

void SQLDocumentInfo::setPostExportSQL(const OptionalText& sql) {
    registerUndo(this, [old = postExportSQL()](SQLDocumentInfo& info) { info.setPostExportSQL(old); });
    setUndoActionName("change appended SQL");
    setProperty(keys::postExportSQL, sql.value_or(std::string()));
}

void SQLDocumentInfo::setPrologueExportSQL(const OptionalText& sql) {
    registerUndo(this, [old = prologueExportSQL()](SQLDocumentInfo& info) { info.setPrologueExportSQL(old); });
    setUndoActionName("change SQL prologue");
    setProperty(keys::prologueExportSQL, sql.value_or(std::string()));
}

// --- print settings

void SQLDocumentInfo::setDocumentPrintInfo(std::string_view data) { setEncodedPrintInfo(base64Text(data)); }

std::string SQLDocumentInfo::getDocumentPrintInfo() const {
    return bytesFromBase64(_encodedPrintInfo.value_or(std::string()));
}

// --- dialect

void SQLDocumentInfo::setDefaultExportDialect(const OptionalText& name) { setProperty(keys::exportDialect, name); }

void SQLDocumentInfo::setExportDialect(const OptionalText& name) {
    registerUndo(this, [old = getExportDialect()](SQLDocumentInfo& info) { info.setExportDialect(old); });
    setUndoActionName("change export dialect");
    setProperty(keys::exportDialect, name);
    performOnMainThreadAndWait([this] { notifyObservers(); });
}

void SQLDocumentInfo::notifyObservers() {
    NotificationCenter::post(notifications::exportDialectChanged, this);
    if (SQLContainer* owner = as<SQLContainer>(container())) owner->updateExportDialect();
}

// --- documents

void SQLDocumentInfo::setSafePropertyValue(const LoadedValue& value, std::string_view key) {
    if (key != "encodedPrintInfo")
        SQLObjectPeer::setSafePropertyValue(value, key);
    else if (!value.object)
        setEncodedPrintInfo(std::string(value.text));
}

XMLElement SQLDocumentInfo::exportToXMLNode(const XMLElement* parent) const {
    XMLElement node = XMLExport::element("SQLDocumentInfo", parent);
    node.addCDataElement("encodedPrintInfo", _encodedPrintInfo.value_or(std::string()));
    exportPropertiesToXMLNode(node);
    return node;
}

Value::Map SQLDocumentInfo::jsonDictionary() const {
    Value::Map json = SQLObjectPeer::jsonDictionary();
    json.insert_or_assign("ClassType", getClassType());
    json.insert_or_assign("encodedPrintInfo", _encodedPrintInfo.value_or(std::string()));
    json.insert_or_assign("properties", propertiesAsJson());
    return json;
}

std::shared_ptr<SQLObject> SQLDocumentInfo::copyWithZone(void* zone) const {
    auto copy = as<SQLDocumentInfo>(SQLObjectPeer::copyWithZone(zone));
    copy->_encodedPrintInfo = _encodedPrintInfo;
    copy->_lastExportFileNameStem = _lastExportFileNameStem;
    copy->_lastExportFileName = _lastExportFileName;
    copy->_visualTheme = _visualTheme;
    return copy;
}

namespace {

constexpr Setter kDocumentInfoSetters[] = {
    propertySetter<&SQLDocumentInfo::setPageBoundariesVisible>("pageBoundariesVisible"),
    propertySetter<&SQLDocumentInfo::setPageGridVisible>("pageGridVisible"),
    propertySetter<&SQLDocumentInfo::setSnapToGrid>("snapToGrid"),
    propertySetter<&SQLDocumentInfo::setDropTableOption>("dropTableOption"),
    propertySetter<&SQLDocumentInfo::setAutoSizeTablesOption>("autoSizeTablesOption"),
    propertySetter<&SQLDocumentInfo::setDocumentScaleFactor>("documentScaleFactor"),
    setter<&SQLDocumentInfo::setDocumentScaleFactorAsString>("documentScaleFactorAsString"),
    propertySetter<&SQLDocumentInfo::setExportDialect>("exportDialect"),
    setter<&SQLDocumentInfo::setDefaultExportDialect>("defaultExportDialect"),
    propertySetter<&SQLDocumentInfo::setHeader>("header"),
    propertySetter<&SQLDocumentInfo::setFooter>("footer"),
    propertySetter<&SQLDocumentInfo::setPostExportSQL>("postExportSQL"),
    propertySetter<&SQLDocumentInfo::setPrologueExportSQL>("prologueExportSQL"),
    setter<&SQLDocumentInfo::setEncodedPrintInfo>("encodedPrintInfo"),
    setter<&SQLDocumentInfo::setLastExportFileName>("lastExportFileName"),
    setter<&SQLDocumentInfo::setLastExportFileNameStem>("lastExportFileNameStem"),
};

}  // namespace

const ClassInfo SQLDocumentInfo::kClassInfo{"SQLDocumentInfo", &SQLObjectPeer::kClassInfo, kDocumentInfoSetters,
                                            makeLoadable<SQLDocumentInfo>};

}  // namespace vellicor
