// vellicor/model/container_document.cpp — the document as XML and JSON; copies and archives.
#include <algorithm>

#include "vellicor/model/archive_reading.h"
#include "vellicor/model/container.h"
#include "vellicor/model/document_info.h"
#include "vellicor/model/field.h"
#include "vellicor/model/label_manager.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"
#include "vellicor/platform/text_format.h"
#include "vellicor/platform/xml_export.h"

namespace vellicor {

namespace {

constexpr std::string_view kElement = "SQLContainer";
constexpr int kObjectDepth = 1;

bool hasDocumentLevelLabels() { return Preferences::shared().boolForKey(prefs::documentLevelLabels); }

/// The lines of a printed element between its tags; they stand one level in.
std::string_view linesInside(std::string_view element) {
    const std::size_t begin = element.find('\n') + 1;
    const std::size_t end = element.rfind("</");
    return end == element.npos || end < begin ? std::string_view() : element.substr(begin, end - begin);
}

}  // namespace

// --- XML

SQLContainer::Objects SQLContainer::objectsForDocument() const {
    Objects objects = objectListSortedByUid();
    std::erase_if(objects, [](const auto& object) {
        if (!as<SQLField>(object.get())) return false;
        log(text("removed stray SQLField from container\n%@\n", object->exportToXML()));
        return true;
    });
    return objects;
}

void SQLContainer::exportOwnPartsToXMLNode(const XMLElement& node) const {
    exportPropertiesToXMLNode(node);
    if (hasDocumentLevelLabels()) _objectLabelManager->exportLabelsToXMLNode(node);
}

XMLElement SQLContainer::exportToXMLNode(const XMLElement* parent) const {
    const XMLElement element = XMLExport::element(kElement, parent);
    auto list = _objectList.lock();
    for (const auto& object : objectsForDocument()) object->exportToXMLNode(&element);
    _documentInfo->exportToXMLNode(&element);
    exportOwnPartsToXMLNode(element);
    return element;
}

std::string SQLContainer::xmlDocument() const {
    std::string document;
    writeXML([&](std::string_view piece) { document += piece; });
    return document;
}

void SQLContainer::writeXML(const std::function<void(std::string_view)>& write) const {
    auto list = _objectList.lock();
    write(xmlDeclaration);
    bool isEmpty = true;
    auto writeInside = [&](std::string_view lines) {
        if (lines.empty()) return;
        if (isEmpty) write("<SQLContainer>\n");
        isEmpty = false;
        write(lines);
    };
    std::string lines;
    auto writeObject = [&](const SQLObject& object) {
        lines.clear();
        object.exportToXMLNode().appendText(lines, kObjectDepth);
        writeInside(lines);
    };
    for (const auto& object : objectsForDocument()) writeObject(*object);
    writeObject(*_documentInfo);
    const XMLElement ownParts(kElement);
    exportOwnPartsToXMLNode(ownParts);
    writeInside(linesInside(ownParts.text()));
    write(isEmpty ? "<SQLContainer />\n" : "</SQLContainer>\n");
}

// --- JSON

Value::Map SQLContainer::jsonDictionary() const {
    auto list = _objectList.lock();
    Value::Map json = SQLObjectPeer::jsonDictionary();
    json.insert_or_assign("ClassType", "SQLContainer");
    json.insert_or_assign("documentInfo", _documentInfo->jsonDictionary());
    Value::List objects;
    bool hasViews = false, hasTables = false;
    for (const auto& object : objectListSortedByUid()) {
        const bool isView = as<SQLView>(object.get()) != nullptr;
        hasViews |= isView;
        hasTables |= !isView && as<SQLTable>(object.get());
        objects.emplace_back(object->jsonDictionary());
    }
    json.insert_or_assign("objects", std::move(objects));
    if (hasViews) json.insert_or_assign("hasViews", Value::boolean(true));
    if (hasTables) json.insert_or_assign("hasTables", Value::boolean(true));
    json.insert_or_assign("properties", propertiesAsJson());
    return json;
}

// --- copies and archives

std::shared_ptr<SQLObject> SQLContainer::copyWithZone(void* zone) const {
    auto list = _objectList.lock();
    auto copy = as<SQLContainer>(SQLObjectPeer::copyWithZone(zone));
    for (const auto& object : list->snapshot()) copy->addObjectToContainer(copyOf(*object));
    copy->setDocumentInfo(*copyOf(*_documentInfo));
    copy->postLoadProcess();
    copy->_objectLabelManager->loadLabelsFromManager(*_objectLabelManager);
    return copy;
}

void SQLContainer::encodeWithCoder(KeyedArchiver& coder) const {
    auto list = _objectList.lock();
    coder.encode("SQLContainer", "name");
    Value::List objects;
    for (const auto& object : objectListSortedByUid()) objects.emplace_back(object->exportToXML());
    coder.encode(std::move(objects), "objectList");
    coder.encode(_documentInfo->exportToXML(), "documentInfo");
    if (!hasDocumentLevelLabels()) return;
    KeyedArchiver labels;
    _objectLabelManager->encodeWithCoder(labels);
    coder.encode(labels.entries(), "labelManager");
}

std::shared_ptr<SQLContainer> SQLContainer::initWithCoder(const KeyedUnarchiver& coder) {
    auto container = newContainer();
    Objects objects;
    if (const Value* list = coder.decode("objectList"); list && list->asList())
        for (const Value& element : *list->asList())
            if (const std::string* xml = element.asText())
                if (auto object = objectFromArchivedXML(*xml)) objects.push_back(std::move(object));
    if (const Value* uids = coder.decode("uidList"); uids && uids->asList())
        for (const Value& uid : *uids->asList())
            if (uid.asText()) container->_uidList.lock()->insert(*uid.asText());
    // The objects have no container to ask for their place, but bring it along.
    for (const auto& object : objects) {
        if (!object->hasProperty(keys::zorder)) {
            container->setZorderForObject(*object, -1);
            continue;
        }
        container->setZorderForObject(*object, integerValue(object->getProperty(keys::zorder)));
        object->removeProperty(keys::zorder);
    }
    container->setObjects(std::move(objects));
    return container;
}

}  // namespace vellicor
