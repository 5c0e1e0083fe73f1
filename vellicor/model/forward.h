// vellicor/model/forward.h — the model's classes by name.
#pragma once

#include <memory>
#include <type_traits>
#include <utility>

namespace vellicor {

class Loadable;
struct ClassInfo;
class SQLValue;
class SQLPoint;
class SQLSize;
class QVMutableNotifyingPropertyDictionary;
class SQLObject;
class SQLObjectPeer;
class SQLContainer;
class SQLTable;
class SQLTableComponent;
class SQLField;
class SQLIndex;
class SQLConstraint;
class SQLComparisonIndex;
class SQLIndexEntry;
class SQLForeignKey;
class SQLForeignKeyEntry;
class SQLConnectable;
class SQLView;
class SQLViewEntry;
class SQLComment;
class SQLCanvasArea;
class SQLDocumentInfo;
class SQLSchema;
class SQLObjectLabel;
class SQLObjectLabelManager;
class QVObjectStyle;
class FKGraphNode;
class SQLForeignKeyGraph;
class SQLForeignKeyObjectGraph;
class SQLExportDialect;

/// What the constructors of model objects ask for, so that `create` alone calls them. A class of your own takes its
/// base's constructors over: `using SQLTable::SQLTable;`.
class Creation {
    explicit Creation(int) {}
    template <class T, class... Arguments>
    friend std::shared_ptr<T> create(Arguments&&... arguments);
};

/// Makes an object in two steps: construction, then the virtual `init`, so that overrides run. Every object of the
/// model is made this way.
template <class T, class... Arguments>
[[nodiscard]] std::shared_ptr<T> create(Arguments&&... arguments) {
    std::shared_ptr<T> object;
    if constexpr (std::is_constructible_v<T, Creation, Arguments...>)
        object = std::make_shared<T>(Creation(0), std::forward<Arguments>(arguments)...);
    else
        object = std::make_shared<T>(std::forward<Arguments>(arguments)...);
    object->init();
    return object;
}

/// The same for an object that takes a name.
template <class T, class Name>
[[nodiscard]] std::shared_ptr<T> createNamed(const Name& name) {
    auto object = create<T>();
    object->setName(name);
    return object;
}

/// `object` as a T when it is one, otherwise null. Null stays null.
template <class T, class From>
[[nodiscard]] T* as(From* object) {
    return dynamic_cast<T*>(object);
}
template <class T, class From>
[[nodiscard]] std::shared_ptr<T> as(const std::shared_ptr<From>& object) {
    return std::dynamic_pointer_cast<T>(object);
}

}  // namespace vellicor
