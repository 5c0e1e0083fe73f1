// vellicor/model/container.h — the model of one open document.
#pragma once

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "vellicor/model/foreign_key_names.h"
#include "vellicor/model/forward.h"
#include "vellicor/model/name_match.h"
#include "vellicor/model/name_scope.h"
#include "vellicor/model/object_list.h"
#include "vellicor/model/object_peer.h"
#include "vellicor/model/schema_register.h"
#include "vellicor/platform/guarded.h"
#include "vellicor/platform/keyed_archive.h"
#include "vellicor/platform/weak_ref.h"
#include "vellicor/util/sparse_array.h"

namespace vellicor {

class QVVisualTheme;

/// Selects objects in look-ups: `isKindOf<SQLTable>`, or anything that can be called with an object.
using ClassFilter = std::function<bool(SQLObject&)>;
template <class T>
bool isKindOf(SQLObject& object) {
    return as<T>(&object) != nullptr;
}

/// What became of an object that was given to a document.
struct AddResult {
    bool taken = false;  ///< false for null, for what is contained already, and for what the document keeps a copy of
    std::string name;    ///< the name that the object has now
    explicit operator bool() const { return taken; }
};

/// How `getObjectByName` compares.
struct NameOptions {
    bool caseSensitive = true;
    ClassFilter ofClass = nullptr;    ///< null: any class
    bool stripQuotes = false;         ///< drop every quote character from the name first
    bool baseNamesForTables = false;  ///< compare tables by base name with the name's base part
};

/// Owns the document's objects in one ordered list, the uids in use, the stacking order, the schemas, the document
/// info, the labels and the foreign-key graph. List operations hold the list's re-entrant lock for their whole
/// duration.
class SQLContainer : public SQLObjectPeer, public NameScope {
public:
    using Objects = std::vector<std::shared_ptr<SQLObjectPeer>>;

    explicit SQLContainer(Creation creation);
    ~SQLContainer() override;
    void init() override;
    /// A new empty document.
    static std::shared_ptr<SQLContainer> newContainer() { return create<SQLContainer>(); }

    // --- overrides: a document has no name, place or holder
    [[nodiscard]] std::string getName() const override { return {}; }
    void setName(const OptionalText&) override {}
    [[nodiscard]] Point getLocation() const override { return {}; }
    [[nodiscard]] Size getSize() const override { return {}; }
    void setLocation(Point) override {}
    void setSize(Size) override {}
    void setContainer(SQLObject*) override {}
    [[nodiscard]] SQLObject* container() const override { return nullptr; }
    [[nodiscard]] SQLContainer* topLevelContainer() const override { return nullptr; }
    [[nodiscard]] SQLContainer* asContainer() override { return this; }
    [[nodiscard]] SQLContainer* getModel() { return this; }
    void updateLinksWithNewUid() override {}
    [[nodiscard]] std::string toString() const { return "/*SQLContainer*/"; }
    [[nodiscard]] std::string description() const override;
    [[nodiscard]] std::string_view getClassType() const override { return "SQLContainer"; }

    // --- adding
    /// Peers are added with renaming, labels go to the label manager. Raises "unknown type exception" for anything
    /// else.
    AddResult add(const std::shared_ptr<SQLObject>& object);
    /// The same for each; other types are logged and skipped.
    void addObjects(const std::vector<std::shared_ptr<SQLObject>>& objects);
    /// Gives the object a free name when its own is taken (a comment of that name yields instead) and adds it. Errors
    /// are logged and the object is dropped. Nothing for an object that is contained already and for the document
    /// itself.
    AddResult addWithRenaming(const std::shared_ptr<SQLObjectPeer>& object);
    /// Adds without renaming: replaces a uid in use, places the object by its property `zorder`. Always true; nothing
    /// for an object that is contained already and for documents.
    bool addObjectToContainer(const std::shared_ptr<SQLObjectPeer>& object) {
        AddResult result;
        return addObjectToContainer(object, result);
    }
    bool addObjectToContainer(const std::shared_ptr<SQLObjectPeer>& object, AddResult& result);
    void setAllowsFieldObject(bool flag) { _allowsFieldObjects = flag; }
    [[nodiscard]] bool allowsFieldObjects() const { return _allowsFieldObjects; }
    /// Copies the given info's properties and print settings into the document's own info.
    void setDocumentInfo(const SQLDocumentInfo& info);
    [[nodiscard]] SQLDocumentInfo* documentInfo() const { return _documentInfo.get(); }

    // --- removing
    void remove(SQLObjectPeer& object);
    void removeAll();

    // --- lists and counts
    [[nodiscard]] Objects objectList() const;
    [[nodiscard]] Objects getObjects() const { return objectList(); }
    /// Calls `visit(T&)` for each object of a kind, in order, under the list's lock and without a copy of the list,
    /// which must not change meanwhile.
    template <class T = SQLObjectPeer, class Visit>
    void forEachObject(Visit visit) const {
        auto list = _objectList.lock();
        list->forEach([&](const auto& object) {
            if (T* ofKind = as<T>(object.get())) visit(*ofKind);
        });
    }
    /// Replaces the list's content only; uids, stacking order, schemas and labels stay.
    void setObjects(Objects objects);
    [[nodiscard]] std::size_t count() const;
    [[nodiscard]] bool isEmpty() const { return count() == 0; }
    [[nodiscard]] bool contains(const SQLObject& object) const;
    /// By the text that `getClassType` answers.
    [[nodiscard]] std::size_t countOfObjectOfClass(std::string_view classType) const;
    [[nodiscard]] Objects objectsOfClass(std::string_view classType) const;
    [[nodiscard]] Objects objectListSortedByUid() const;
    [[nodiscard]] Objects objectListSortedByZOrder() const;
    /// Without regard to case, digits by number, in the user's locale.
    [[nodiscard]] Objects objectListSortedByName() const;
    /// Tables by sort position, in the places that tables have by stacking order.
    [[nodiscard]] Objects objectListSortedByForeignKeyOrder() const;
    /// The stacking order without its gaps.
    [[nodiscard]] Objects objectListByZOrder() const;
    [[nodiscard]] Objects objectsByZorder() const { return objectListByZOrder(); }
    [[nodiscard]] Objects reverseObjectList() const;
    /// Every object below the container, by name, each followed by what it holds.
    [[nodiscard]] std::vector<std::shared_ptr<SQLObject>> flatObjectList() override;
    /// Null when empty.
    [[nodiscard]] SQLObjectPeer* firstElement() const;
    [[nodiscard]] bool firstObjectIsTable() const;
    [[nodiscard]] SQLObjectPeer* getFirstObject() const { return firstElement(); }
    /// Cyclic; null for an object that is not in the list.
    [[nodiscard]] SQLObjectPeer* getNextObject(const SQLObject& object) const;
    [[nodiscard]] SQLObjectPeer* getPreviousObject(const SQLObject& object) const;

    // --- lookup; the first match in list order, null when none
    [[nodiscard]] SQLObjectPeer* getObjectByName(const OptionalText& name) const;
    [[nodiscard]] SQLObjectPeer* getObjectByName(const OptionalText& name, bool caseSensitive) const;
    SQLObjectPeer* getObjectByName(const OptionalText& name, const char*) const = delete;
    [[nodiscard]] SQLObjectPeer* getObjectByName(const OptionalText& name, const NameOptions& options) const;
    /// The same among objects of one kind, as that kind: `objectNamed<SQLView>("totals")`.
    template <class T>
    [[nodiscard]] T* objectNamed(std::string_view name, NameOptions options = {}) const {
        if (!options.ofClass) options.ofClass = isKindOf<T>;
        return as<T>(getObjectByName(std::string(name), options));
    }
    [[nodiscard]] SQLTable* tableNamed(std::string_view name, const NameOptions& options = {}) const;
    /// Among tables, without regard to case or quotes: the qualified name first, then the bare name.
    [[nodiscard]] SQLObjectPeer* getObjectWithSchema(std::string_view name, const OptionalText& schema) const;
    [[nodiscard]] SQLObjectPeer* getObjectWithUID(std::string_view uid) const;
    /// Also finds fields of tables.
    [[nodiscard]] SQLObject* objectWithUid(std::string_view uid) const;
    /// Every table component that can reference a table, resolved or not, in list order.
    [[nodiscard]] std::vector<SQLConnectable*> foreignKeyList() const;
    [[nodiscard]] SQLConnectable* foreignKeyWithName(std::string_view name) const;
    [[nodiscard]] static SQLConnectable* foreignKeyWithName(std::string_view name,
                                                            const std::vector<SQLConnectable*>& fkList);

    // --- uids
    void addUidForObject(const SQLObject& object);
    void removeUidForObject(const SQLObject& object);
    [[nodiscard]] bool uidInContainer(std::string_view uid) const;
    void uidChanged(std::string_view newUid, SQLObject& object) override;
    /// A fresh uid for every object in the list, none for the container.
    void createNewUid() override;

    // --- naming
    [[nodiscard]] std::string getValidNameForObject(const SQLObject& object, const OptionalText& originalName) const;
    [[nodiscard]] std::string getValidName(const OptionalText& name) const;
    [[nodiscard]] bool isObjectNamePresent(std::string_view name) const;
    /// The proposal itself unless the preference "forceForeignKeyUnique" is on and the name is taken.
    [[nodiscard]] std::string validNameForForeignKey(const SQLObject& foreignKey, std::string_view proposedName,
                                                     bool isFKObject) const;
    [[nodiscard]] bool holdsName(std::string_view lowercasedName, const SQLObject* except) const override;
    [[nodiscard]] std::size_t siblingCount(const SQLObject* except) const override;
    /// A component of a table of this document has come, or its key has another name or target.
    void foreignKeyMayHaveChanged(SQLObject& component) { _foreignKeyNames.note(component); }
    [[nodiscard]] LockedHandle<NumberHints> numberHints() const override;
    void memberUidDidChange(SQLObject& member) override;
    void memberNameDidChange(SQLObject& member) override;

    // --- stacking
    /// Index in the stacking order; 0 when absent.
    [[nodiscard]] std::int64_t zorderForObject(const SQLObjectPeer& object) const;
    /// A negative index means the end.
    void setZorderForObject(SQLObjectPeer& object, std::int64_t zorder);
    static constexpr std::size_t kEnd = static_cast<std::size_t>(-1);
    /// Moves a contained object that stands elsewhere. Kept: it is removed and inserted again, and stays without
    /// container, uid entry, stacking place, label group and schema.
    void moveElementToPosition(SQLObjectPeer& object, std::size_t index);
    void sortByZOrder();
    void reorderByZOrder() { sortByZOrder(); }
    void reorderByUID();
    virtual void updateZOrder() {}
    void containerChanged() { updateZOrder(); }

    // --- geometry
    /// Smallest x and smallest y of all locations; plus infinity for an empty container.
    [[nodiscard]] Point origin() const;
    [[nodiscard]] Rect minimumRectForContainer() const;
    void relocateAll(Point offset);
    void relocateAllToBase(Point base);

    // --- schemas
    /// A copy.
    [[nodiscard]] std::vector<std::shared_ptr<SQLSchema>> schemaList() const {
        auto list = _objectList.lock();
        return _schemaList.schemas();
    }
    [[nodiscard]] std::vector<std::shared_ptr<SQLSchema>> listOfSchema() const { return schemaList(); }
    [[nodiscard]] SQLSchema* defaultSchema() const { return _defaultSchema.get(); }
    /// Undoable, "add schema".
    void addSchema(std::shared_ptr<SQLSchema> schema);
    /// Moves its objects to the default schema. Undoable, "delete schema". Nothing for one that is not listed.
    void removeSchema(std::shared_ptr<SQLSchema> schema);
    /// Default schemas stay, empty or not.
    void removeEmptySchema();
    /// Default schemas stay, and those that are not to be deleted when empty. Without undo.
    void removeAllSchema();
    /// The listed schema of exactly that name, or a new one appended (without undo).
    [[nodiscard]] std::shared_ptr<SQLSchema> schemaForName(std::string_view name);
    [[nodiscard]] Objects objectsWithSchema(const SQLSchema& schema) const;
    void updateSchemaForObject(SQLObject& object);
    void removeObjectFromSchema(SQLObject& object);
    /// `exceptSchema` null: from every schema.
    void removeObjectFromSchema(SQLObject& object, const SQLSchema* exceptSchema);

    // --- merging and loading
    void merge(SQLContainer& other) { merge(other, false); }
    /// Adds the other document's objects under free names and fresh uids where needed. The flag is not read.
    void merge(SQLContainer& other, bool flag);
    void postLoadProcess() override;
    void updateTargetTableLists();
    /// Tables after the tables they reference, views behind all tables.
    void reorderByForeignKeys();

    // --- dialect and SQL
    void updateExportDialect();
    /// With plug-ins asked.
    [[nodiscard]] std::shared_ptr<SQLExportDialect> currentDialectExporter() const;
    [[nodiscard]] SQLExportDialect* dialectExporter() const { return _dialectExporter.get(); }
    void setDialectExporter(std::shared_ptr<SQLExportDialect> exporter) { _dialectExporter = std::move(exporter); }
    /// By the default exporter; an exception is logged and gives the empty text.
    [[nodiscard]] std::string exportToSQL() override;
    [[nodiscard]] std::string exportToSQL(SQLExportDialect& exporter);
    [[nodiscard]] std::string exportToSQLWithDialect(std::string_view dialect);
    [[nodiscard]] std::string exportToSQLWithDocumentInfo(const std::shared_ptr<SQLDocumentInfo>& info);
    /// A null info takes the default exporter.
    [[nodiscard]] std::string exportObjectToSQLWithDocumentInfo(SQLObject& object,
                                                                const std::shared_ptr<SQLDocumentInfo>& info);
    /// The container's own simple script, without an exporter.
    [[nodiscard]] std::string exportToSQLInternal();
    [[nodiscard]] std::string export_() { return exportToSQL(); }
    void debug();

    // --- document, JSON, copying, archiving
    XMLElement exportToXMLNode(const XMLElement* parent = nullptr) const override;
    /// The whole document as pretty-printed text.
    [[nodiscard]] std::string xmlDocument() const;
    [[nodiscard]] std::string exportToXML() const override { return xmlDocument(); }
    [[nodiscard]] std::string xmlData() const { return xmlDocument(); }
    /// The same in pieces, so that only one object's element is in memory at a time.
    void writeXML(const std::function<void(std::string_view)>& write) const;
    [[nodiscard]] Value::Map jsonDictionary() const override;
    [[nodiscard]] std::shared_ptr<SQLObject> copyWithZone(void* zone = nullptr) const override;
    [[nodiscard]] std::shared_ptr<SQLObject> newInstance() const override { return create<SQLContainer>(); }
    void encodeWithCoder(KeyedArchiver& coder) const;
    /// Kept: reads neither document info nor labels, and does not set the objects' container.
    static std::shared_ptr<SQLContainer> initWithCoder(const KeyedUnarchiver& coder);

    // --- plain accessors
    [[nodiscard]] void* document() const { return _document; }
    void setDocument(void* document) { _document = document; }
    [[nodiscard]] bool isTempContainer() const { return _isTempContainer; }
    void setIsTempContainer(bool flag) { _isTempContainer = flag; }
    [[nodiscard]] SQLObjectPeer* lastObjectAdded() const;
    void setLastObjectAdded(SQLObjectPeer* object);
    [[nodiscard]] std::shared_ptr<void> importErrors() const { return _importErrors; }
    void setImportErrors(std::shared_ptr<void> errors) { _importErrors = std::move(errors); }
    [[nodiscard]] SQLForeignKeyObjectGraph* fkObjectGraph() const { return _fkObjectGraph.get(); }
    void setFkObjectGraph(std::shared_ptr<SQLForeignKeyObjectGraph> graph);
    [[nodiscard]] const std::shared_ptr<SQLForeignKeyObjectGraph>& sharedFkObjectGraph() const {
        return _fkObjectGraph;
    }
    [[nodiscard]] const std::shared_ptr<QVVisualTheme>& svgExportVisualTheme() const { return _svgExportVisualTheme; }
    void setSvgExportVisualTheme(std::shared_ptr<QVVisualTheme> theme) { _svgExportVisualTheme = std::move(theme); }
    [[nodiscard]] std::shared_ptr<void> scriptContainerSpecifier() const { return _scriptContainerSpecifier; }
    void setScriptContainerSpecifier(std::shared_ptr<void> specifier) {
        _scriptContainerSpecifier = std::move(specifier);
    }
    [[nodiscard]] SQLObjectLabelManager* objectLabelManager() const { return _objectLabelManager.get(); }
    /// Null is ignored: a document always has one.
    void setObjectLabelManager(std::shared_ptr<SQLObjectLabelManager> manager);
    [[nodiscard]] std::int32_t getDebug() const { return _debug; }
    void setDebug(std::int32_t debug) { _debug = debug; }

    const ClassInfo& classInfo() const override { return kClassInfo; }
    static const ClassInfo kClassInfo;

private:
    using List = Guarded<ObjectList>::Handle<ObjectList>;
    /// Objects whose names or uids changed since the list was last read: addresses, for comparing only. It has a lock
    /// of its own, since objects report while their properties are locked, which comes behind the list's lock.
    struct StaleKeys {
        std::unordered_set<const SQLObject*> names;
        std::unordered_set<const SQLObject*> uids;
    };
    /// Objects by stacking index, kept alive.
    struct Stacking {
        QVSparseMutableArray<SQLObjectPeer> order;
        std::unordered_map<const SQLObjectPeer*, std::shared_ptr<SQLObjectPeer>> owned;
        void place(SQLObjectPeer& object, std::int64_t index);  // negative: at the end
        void remove(const SQLObjectPeer& object);
    };
    class GuestWatch;

    /// The list, its indexes up to date.
    [[nodiscard]] List lockedList() const;
    /// The lists of the documents and of those that hold what `objects()` answers, in one order everywhere, so that two
    /// threads that take objects from each other's document do not wait for each other.
    template <class Objects>
    [[nodiscard]] static std::vector<List> lockedWithHolders(std::set<const SQLContainer*> documents, Objects objects) {
        while (true) {
            std::vector<List> locks;
            for (const SQLContainer* document : documents) locks.push_back(document->lockedList());
            const std::size_t known = documents.size();
            for (const auto& object : objects()) {
                SQLObject* holder = object ? object->container() : nullptr;
                if (const SQLContainer* document = holder ? holder->asContainer() : nullptr) documents.insert(document);
            }
            if (documents.size() == known) return locks;  // otherwise anew, in order
        }
    }
    /// Takes the object over, or watches one that stays with its holder, whose list is locked.
    void adopt(SQLObjectPeer& object);
    /// The other way round.
    void release(SQLObjectPeer& object);
    void watchGuest(SQLObject& object);
    [[nodiscard]] Objects objectsForDocument() const;
    void exportOwnPartsToXMLNode(const XMLElement& node) const;

    mutable Guarded<ObjectList> _objectList;
    mutable Guarded<StaleKeys> _staleKeys;
    std::int32_t _debug = 0;
    WeakRef<SQLObjectPeer> _lastObjectAdded;
    bool _isTempContainer = false;  // objects keep their own container
    bool _allowsFieldObjects = false;
    std::shared_ptr<SQLDocumentInfo> _documentInfo;
    Guarded<std::unordered_set<std::string, TextHash, std::equal_to<>>> _uidList;
    void* _document = nullptr;  // the application's document object; not owned
    Guarded<Stacking> _zorderArray;
    std::shared_ptr<void> _importErrors;
    SchemaRegister _schemaList;
    std::shared_ptr<SQLSchema> _defaultSchema;
    std::shared_ptr<SQLForeignKeyObjectGraph> _fkObjectGraph;
    std::shared_ptr<QVVisualTheme> _svgExportVisualTheme;
    std::shared_ptr<void> _scriptContainerSpecifier;
    std::shared_ptr<SQLObjectLabelManager> _objectLabelManager;
    std::shared_ptr<SQLExportDialect> _dialectExporter;
    std::unique_ptr<GuestWatch> _guests;                  // listed objects that another document, or none, holds
    mutable ForeignKeyNames _foreignKeyNames{*this};      // guarded by the list's lock
    std::vector<std::weak_ptr<SQLObjectPeer>> _departed;  // left a scratch document with their reference to it
};

}  // namespace vellicor
