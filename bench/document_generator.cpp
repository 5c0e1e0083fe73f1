// bench/document_generator.cpp — documents of any size, the same ones every time.
#include "bench/document_generator.h"

#include <string>
#include <vector>

#include "vellicor/model/document_info.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/model/table.h"
#include "vellicor/platform/text_format.h"

namespace vellicor::bench {

std::shared_ptr<SQLTable> makeTable(std::size_t number) {
    static constexpr const char* kTypes[] = {"INTEGER", "VARCHAR(255)", "DECIMAL(10,2)", "TIMESTAMP", "TEXT"};
    auto table = SQLTable::tableWithName(text("table_%lu", number));
    if (number % 4 == 0) table->setComment(text("Table number %lu", number));
    for (std::size_t i = 0; i < kFieldsPerTable; ++i) {
        auto field = SQLField::fieldWithName(i == 0 ? "id" : text("column_%lu", i), kTypes[i % std::size(kTypes)]);
        if (i == 0) {
            field->setPrimaryKey(true);
            field->setAutoIncrement(true);
        }
        if (i % 3 == 0) field->setNotNull(true);
        if (i % 7 == 2) field->setDefaultValue("0");
        table->add(field);
    }
    auto index = SQLIndex::indexWithName(text("index_%lu", number));
    index->addIndexField(*table->getFieldByName("column_1"));
    table->add(index);
    return table;
}

std::shared_ptr<SQLContainer> makeDocument(std::size_t tables) {
    auto container = SQLContainer::newContainer();
    container->documentInfo()->setDefaultExportDialect("SQLite");
    std::vector<std::shared_ptr<SQLTable>> made;
    made.reserve(tables);
    for (std::size_t number = 0; number < tables; ++number) {
        auto table = makeTable(number);
        container->add(table);
        if (number > 0) {
            SQLTable& target = *made[(number - 1) / 2];
            auto key = SQLForeignKey::initWithName(text("fk_%lu", number));
            key->setTargetTable(&target);
            key->addFieldPair(table->getFieldByName("column_5"), target.getFieldByName("id"));
            table->add(key);
            if (number % 2 == 0) table->getFieldByName("column_10")->setFkField(made[number - 1]->getFieldByName("id"));
        }
        made.push_back(std::move(table));
    }
    return container;
}

}  // namespace vellicor::bench
