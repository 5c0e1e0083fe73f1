// vellicor/dialects/mysql_index_exporter.cpp — index statements of MySQL.
#include "vellicor/dialects/mysql_index_exporter.h"

#include "vellicor/dialects/mysql_exporter.h"
#include "vellicor/model/field.h"
#include "vellicor/model/index.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

/// What both forms end in: type, keyword, name and, in the CREATE form, the table.
void addIndexWords(QVSourceNode& node, SQLIndex& index, SQLTable& table, MySQLExporter& exporter) {
    if (const std::string type = exporter.indexTypeInScript(index); !type.empty()) node.addChildWithValue(type);
    node.addChildWithValue(exporter.getIndexKeyword(index));
    node.addChildWithValue(exporter.getNameForIndexWithIndex(table, index));
}

}  // namespace

SourceNodePtr MySQLIndexExporter::indexFieldBlock(SQLIndex& index, MySQLExporter& exporter) {
    auto block = QVSourceNode::bracketBlock();
    for (SQLField* field : index.fieldList()) {
        std::string entry = exporter.quoteIdentifier(field->getName());
        if (const std::string size = exporter.indexSizeStringForField(*field, &index); !size.empty())
            entry += text("(%@)", size);
        block->addChildWithValue(entry, "");
    }
    return block;
}

SourceNodePtr MySQLIndexExporter::createIndexTreeForindex(SQLIndex& index, SQLTable& table, MySQLExporter& exporter) {
    auto node = QVSourceNode::node();
    node->addChildWithValue("CREATE");
    addIndexWords(*node, index, table, exporter);
    node->addChildWithValue("ON");
    node->addChildWithValue(exporter.getCanonicalName(table));
    node->addChild(indexFieldBlock(index, exporter));
    return node;
}

std::string MySQLIndexExporter::createIndexStringForindex(SQLIndex& index, SQLTable& table, MySQLExporter& exporter) {
    return createIndexTreeForindex(index, table, exporter)->string();
}

SourceNodePtr MySQLIndexExporter::alterTableAddIndexTreeForindex(SQLIndex& index, SQLTable& table,
                                                                 MySQLExporter& exporter) {
    auto node = QVSourceNode::node();
    for (const std::string& word :
         {std::string("ALTER"), std::string("TABLE"), exporter.getCanonicalName(table), std::string("ADD")})
        node->addChildWithValue(word);
    addIndexWords(*node, index, table, exporter);
    node->addChild(indexFieldBlock(index, exporter));
    return node;
}

std::string MySQLIndexExporter::alterTableAddIndexStringForindex(SQLIndex& index, SQLTable& table,
                                                                 MySQLExporter& exporter) {
    return alterTableAddIndexTreeForindex(index, table, exporter)->string();
}

std::string MySQLIndexExporter::addIndexTableExporter(SQLIndex& index, SQLTable& table, MySQLExporter& exporter) {
    std::string sql = exporter.shouldUseAlterTableForIndex() ? alterTableAddIndexStringForindex(index, table, exporter)
                                                             : createIndexStringForindex(index, table, exporter);
    sql += exporter.getInstructionSeparator() + "\n";
    return index.indexListCount() == 0 ? "/*" + exporter.commentText(sql) + "*/\n" : sql;
}

}  // namespace vellicor
