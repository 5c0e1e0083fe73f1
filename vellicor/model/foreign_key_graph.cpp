// vellicor/model/foreign_key_graph.cpp — a document's forest of reference trees.
#include "vellicor/model/foreign_key_graph.h"

#include "vellicor/model/field.h"
#include "vellicor/platform/exception.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

SQLForeignKeyObjectGraph::~SQLForeignKeyObjectGraph() {
    // Stored roots may be out of date and let a ring of nodes form, which would keep itself alive.
    std::vector<FKGraphNode::Ptr> nodes;
    _subgraphs.moveTo(nodes);
    for (const auto& [field, weakNode] : _graphFieldMap)
        if (auto node = weakNode.lock()) nodes.push_back(std::move(node));
    for (std::size_t i = 0; i < nodes.size(); ++i) nodes[i]->moveChildrenTo(nodes);
}

FKGraphNode::Ptr SQLForeignKeyObjectGraph::nodeForField(const SQLField* field) const {
    const auto found = _graphFieldMap.find(field);
    auto node = found == _graphFieldMap.end() ? nullptr : found->second.lock();
    // The node of a column that is gone may be listed under the address of a newer one.
    return node && node->field() == field ? node : nullptr;
}

FKGraphNode::Ptr SQLForeignKeyObjectGraph::cachedNodeForField(SQLField* field) {
    auto node = FKGraphNode::nodeWithField(field);
    _graphFieldMap.insert_or_assign(field, node);
    return node;
}

void SQLForeignKeyObjectGraph::updateForeignKey(SQLField* field) {
    if (!field) throw AssertionFailure("field should not be nil");
    SQLField* target = field->getFkField();
    auto node = nodeForField(field);
    if (!target) {
        if (node) detach(node, field);
        return;
    }
    if (!node) node = cachedNodeForField(field);
    attach(node, *target);
}

void SQLForeignKeyObjectGraph::attach(const FKGraphNode::Ptr& node, SQLField& target) {
    auto targetNode = nodeForField(&target);
    if (!targetNode) {
        targetNode = cachedNodeForField(&target);
        _subgraphs.remove(*node);
        targetNode->addChild(node);
        addNewSubgraph(targetNode);
        return;
    }
    if (FKGraphNode* parent = node->parent()) parent->removeChild(*node);
    if (targetNode == node || targetNode->root() == node.get()) return;  // it would close a cycle: stays detached
    targetNode->addChild(node);                                          // Kept: a former root stays listed as a tree
}

void SQLForeignKeyObjectGraph::detach(const FKGraphNode::Ptr& node, const SQLField* field) {
    FKGraphNode* parent = node->parent();
    if (!parent) return;
    parent->removeChild(*node);
    if (!parent->hasChildren() && !parent->parent()) {
        if (const SQLField* column = parent->field()) _graphFieldMap.erase(column);
        _subgraphs.remove(*parent);
    }
    if (node->hasChildren())
        addNewSubgraph(node);
    else
        _graphFieldMap.erase(field);
}

void SQLForeignKeyObjectGraph::forgetField(const SQLField* field) {
    const auto found = _graphFieldMap.find(field);
    if (found == _graphFieldMap.end()) return;
    if (const auto node = found->second.lock()) {
        detach(node, field);
        if (!node->hasChildren()) _subgraphs.remove(*node);
    }
    _graphFieldMap.erase(field);
}

OptionalText SQLForeignKeyObjectGraph::dataTypeForField(SQLField& field) const {
    const auto node = nodeForField(&field);
    const FKGraphNode* root = node ? node->root() : nullptr;
    const SQLField* column = root ? root->field() : nullptr;
    return (column ? *column : field).getFullTypeString();
}

namespace {

std::string treeText(FKGraphNode& root) {
    return text("\nRoot [type: %@] :\n  %@", root.dataType(), root.description());
}

}  // namespace

std::string SQLForeignKeyObjectGraph::description() const {
    const std::string base = "<SQLForeignKeyObjectGraph>";
    if (_subgraphs.isEmpty()) return text("%@ no subgraphs", base);
    std::string description = base;
    for (const auto& root : subgraphList()) description += treeText(*root);
    return description;
}

void SQLForeignKeyObjectGraph::debug() const {
    if (_subgraphs.isEmpty()) log("no subgraphs");
    for (const auto& root : subgraphList()) log(treeText(*root));
}

}  // namespace vellicor
