// tests/package/main.cpp — makes a document and prints its script; fails when the script is empty.
#include <iostream>

#include "vellicor/model/container.h"
#include "vellicor/model/field.h"
#include "vellicor/model/table.h"

int main() {
    auto document = vellicor::SQLContainer::newContainer();
    auto table = vellicor::SQLTable::tableWithName("orders");
    table->add(vellicor::SQLField::fieldWithName("id", "INTEGER"));
    document->add(table);
    const std::string script = document->exportToSQLWithDialect("SQLite");
    std::cout << script;
    return script.find("CREATE TABLE orders") == std::string::npos;
}
