// vellicor/migration/object_properties.cpp — everything that a document says of one object, as a list of texts.
#include "vellicor/migration/object_properties.h"

#include <algorithm>

#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/model/table.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

/// Stored properties that say where and how an object is drawn, or how the program last looked at it.
constexpr std::string_view kLayoutKeys[] = {keys::labelName,
                                            keys::labelColor,
                                            keys::labelWindowIndex,
                                            keys::hidden,
                                            keys::zorder,
                                            keys::isLocked,
                                            keys::fieldBackgroundColor,
                                            keys::connectorMidPoint,
                                            keys::connectorHidden,
                                            keys::shouldDrawFrame,
                                            keys::pageBoundariesVisible,
                                            keys::pageGridVisible,
                                            keys::snapToGrid,
                                            keys::autoSizeTablesOption,
                                            keys::documentScaleFactor,
                                            keys::cardinalityNotationStyle,
                                            keys::header,
                                            keys::footer,
                                            "tableIcon",
                                            "visualTheme",
                                            "sourceCardinality",
                                            "destinationCardinality"};
/// What names the file's writer, identifies objects, or stands in the members that are listed in their own way.
constexpr std::string_view kSilentKeys[] = {keys::uid,
                                            keys::labelUid,
                                            keys::generatorVersion,
                                            keys::generator,
                                            keys::fileFormatVersion,
                                            keys::refTableName,
                                            keys::refFieldName,
                                            keys::targetTableUid,
                                            keys::targetTableName,
                                            keys::indexNamePrefix,
                                            keys::forcedUnique,
                                            keys::sourceFieldUid,
                                            keys::targetFieldUid,
                                            keys::documentRecoveryOccurred,
                                            keys::allowsIndexRenamingOnInsert,
                                            keys::isVisibleCleanupPostImport};

template <std::size_t N>
bool contains(const std::string_view (&list)[N], std::string_view key) {
    return std::ranges::find(list, key) != std::end(list);
}

class Reader {
public:
    explicit Reader(const ReferenceName& nameOf) : _nameOf(nameOf) {}

    std::vector<ObjectProperty> read(const SQLObject& object) {
        if (const auto* table = as<const SQLTable>(&object))
            readTable(*table);
        else
            add("name", object.getName());
        if (const auto* field = as<const SQLField>(&object)) readField(*field);
        if (const auto* index = as<const SQLIndex>(&object)) readIndex(*index);
        if (const auto* key = as<const SQLForeignKey>(&object)) readKey(*key);
        for (const auto& [key, value] : object.propertiesAsDictionary())
            if (!contains(kSilentKeys, key) && !key.starts_with(keys::memoryPrefix))
                add(key, value.text(), contains(kLayoutKeys, key));
        if (!as<const SQLTableComponent>(&object)) {
            const Point place = object.getLocation();
            const Size size = object.getSize();
            add("location", jsonNumber(place.x) + "," + jsonNumber(place.y), true);
            add("size", jsonNumber(size.width) + "," + jsonNumber(size.height), true);
        }
        return std::move(_properties);
    }

private:
    static std::string jsonNumber(double number) { return PropertyValue::real(number).text(); }

    void add(std::string_view key, std::string value, bool isLayout = false) {
        const auto same = [&](const ObjectProperty& property) { return property.key == key; };
        if (!value.empty() && std::ranges::none_of(_properties, same))
            _properties.push_back({std::string(key), std::move(value), isLayout});
    }
    void addNumber(std::string_view key, std::uint64_t number, bool isLayout = false) {
        if (number) add(key, text("%lu", number), isLayout);
    }

    void readTable(const SQLTable& table) {
        add("name", table.getBaseName());
        add("schema", table.getSchemaName());
        add("tableType", table.getTableType());
        add("otherOptions", table.getOtherOptions());
    }
    void readField(const SQLField& field) {
        add("type", field.getType());
        if (field.getPrimaryKey()) add("primaryKey", "1");
        if (const SQLField* target = field.getFkField())
            add("references", _nameOf(*target));
        else
            add("references", field.getReferencesString().value_or(std::string()));
        addNumber("deleteAction", field.deleteAction());
        addNumber("updateAction", field.updateAction());
        addNumber("sourceCardinality", field.sourceCardinality(), true);
        addNumber("destinationCardinality", field.destinationCardinality(), true);
    }
    void readIndex(const SQLIndex& index) {
        std::vector<std::string> columns;
        for (const SQLIndex::Entry& entry : index.indexEntryList())
            if (const SQLField* column = entry.field.get())
                columns.push_back(columnName(*column) +
                                  (entry.size && !entry.size->empty() ? "(" + *entry.size + ")" : ""));
        add("columns", joined(columns, ", "));
    }
    void readKey(const SQLForeignKey& key) {
        std::vector<std::string> pairs;
        for (const auto& pair : key.fieldPairs())
            pairs.push_back((pair->source() ? columnName(*pair->source()) : "-") + " -> " +
                            (pair->target() ? columnName(*pair->target()) : "-"));
        add("columns", joined(pairs, ", "));
        add("references", key.targetTable() ? _nameOf(*key.targetTable()) : key.getProperty(keys::targetTableName));
        addNumber("deleteAction", key.deleteAction());
        addNumber("updateAction", key.updateAction());
        addNumber("sourceCardinality", key.sourceCardinality(), true);
        addNumber("destinationCardinality", key.destinationCardinality(), true);
    }
    /// Within a table the column's name says enough.
    std::string columnName(const SQLField& column) const {
        const std::string path = _nameOf(column);
        return path.substr(path.rfind('.') + 1);
    }

    const ReferenceName& _nameOf;
    std::vector<ObjectProperty> _properties;
};

}  // namespace

std::vector<ObjectProperty> propertiesOfObject(const SQLObject& object, const ReferenceName& nameOf) {
    return Reader(nameOf).read(object);
}

}  // namespace vellicor
