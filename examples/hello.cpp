// examples/hello.cpp — the smallest program: one table, written as SQL.
#include <iostream>
#include "vellicor/model/container.h"
#include "vellicor/model/field.h"
#include "vellicor/model/table.h"

int main() {
    auto books = vellicor::SQLTable::tableWithName("books");
    books->add(vellicor::SQLField::fieldWithName("title", "VARCHAR(200)"));
    auto design = vellicor::SQLContainer::newContainer();
    design->add(books);
    std::cout << design->exportToSQLWithDialect("SQLite");
}
