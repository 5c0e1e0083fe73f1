// vellicor/export/dispatch.h — operations of exporters found by the class name of the model object.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <type_traits>

#include "vellicor/export/forward.h"
#include "vellicor/model/export_dialect.h"
#include "vellicor/model/object.h"

namespace vellicor {

/// The operation of one prefix for one model class. A dialect gains behaviour for a model class by adding a row.
template <class Result, class... Extra>
struct Operation {
    std::string_view type;  ///< what `getClassType` answers
    Result (*run)(GenericSQLExporter& exporter, SQLObject& object, Extra... extra);
};

using TextOperation = Operation<std::string>;
using StatementsOperation = Operation<Statements>;
using TableOperation = Operation<Statements, SQLTable&>;
/// The object's new state, its old one, and an object that may be null.
using AlterOperation = Operation<Statements, SQLObject&, SQLObject*>;

/// All operations of one exporter class, by prefix; rows of `base` apply where the class has none of its own.
struct DispatchTables {
    const DispatchTables* base = nullptr;
    std::span<const TextOperation> exportOperations{};
    std::span<const TextOperation> dropOperations{};
    std::span<const TextOperation> postLoadOperations{};
    std::span<const TextOperation> canonicalNameOperations{};
    std::span<const TextOperation> prologueOperations{};
    std::span<const StatementsOperation> postLoadAsVectorOperations{};
    std::span<const TableOperation> postLoadAsVectorInTableOperations{};
    std::span<const AlterOperation> alterOperations{};
    std::span<const AlterOperation> postLoadAlterOperations{};
};

/// The row for a class type, looked for in the class's table and then in those of its bases; null when there is none.
template <class Row>
const Row* findOperation(const DispatchTables& tables, std::span<const Row> DispatchTables::*family,
                         std::string_view type) {
    for (const DispatchTables* level = &tables; level; level = level->base)
        for (const Row& row : level->*family)
            if (row.type == type) return &row;
    return nullptr;
}

namespace detail {
template <class>
struct ExporterMethod;
template <class C, class R, class A, class... More>
struct ExporterMethod<R (C::*)(A&, More...)> {
    using Class = C;
    using Result = R;
    using Object = A;
};
}  // namespace detail

/// A row that calls a member function on the object cast to the function's parameter type.
template <auto M>
constexpr auto operation(std::string_view type) {
    using Method = detail::ExporterMethod<decltype(M)>;
    return Operation<typename Method::Result>{
        type, [](GenericSQLExporter& exporter, SQLObject& object) {
            return (static_cast<typename Method::Class&>(exporter).*M)(dynamic_cast<typename Method::Object&>(object));
        }};
}

/// The same for an object and its table.
template <auto M>
constexpr TableOperation tableOperation(std::string_view type) {
    using Method = detail::ExporterMethod<decltype(M)>;
    return {type, [](GenericSQLExporter& exporter, SQLObject& object, SQLTable& table) {
                return (static_cast<typename Method::Class&>(exporter).*M)(
                    dynamic_cast<typename Method::Object&>(object), table);
            }};
}

/// The same for an object's new and old state, both of the function's parameter type.
template <auto M>
constexpr AlterOperation alterOperation(std::string_view type) {
    using Method = detail::ExporterMethod<decltype(M)>;
    using Object = typename Method::Object;
    return {type, [](GenericSQLExporter& exporter, SQLObject& object, SQLObject& old, SQLObject* extra) {
                auto* now = dynamic_cast<Object*>(&object);
                auto* before = dynamic_cast<Object*>(&old);
                if (!now || !before) return Statements();  // objects of two kinds have no difference in words
                return (static_cast<typename Method::Class&>(exporter).*M)(*now, *before, extra);
            }};
}

}  // namespace vellicor
