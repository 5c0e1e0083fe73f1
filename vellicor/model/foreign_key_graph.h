// vellicor/model/foreign_key_graph.h — which type a column must have: that of the root of its references.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "vellicor/model/forward.h"
#include "vellicor/platform/text.h"
#include "vellicor/platform/weak_ref.h"

namespace vellicor {

/// Nodes in order of arrival. Each node remembers its place, so that entering, leaving and asking take constant time.
class FKGraphNodeList {
public:
    using Node = std::shared_ptr<FKGraphNode>;
    /// A node may stand in one list of each kind.
    enum class Kind { Children, Trees };

    explicit FKGraphNodeList(Kind kind) : _kind(kind) {}
    [[nodiscard]] bool isEmpty() const { return _count == 0; }
    [[nodiscard]] bool contains(const FKGraphNode& node) const;
    [[nodiscard]] std::vector<Node> nodes() const;
    /// Nothing for a node that is listed already.
    void append(const Node& node);
    void remove(const FKGraphNode& node);
    /// Appends the nodes to `out` and is empty afterwards.
    void moveTo(std::vector<Node>& out);

private:
    void close();

    Kind _kind;
    std::vector<Node> _nodes;  // null where a node left
    std::size_t _count = 0;    // of nodes that are not null
};

/// One column in a reference tree. Children are kept alive by their parent; parent and root are not owned.
class FKGraphNode : public std::enable_shared_from_this<FKGraphNode> {
public:
    using Ptr = std::shared_ptr<FKGraphNode>;
    static Ptr nodeWithField(SQLField* field) { return initWithField(field); }
    static Ptr initWithField(SQLField* field);
    ~FKGraphNode();

    [[nodiscard]] FKGraphNode* parent() const { return _parent.get(); }
    /// In order of arrival.
    [[nodiscard]] std::vector<Ptr> children() const { return _children.nodes(); }
    [[nodiscard]] bool hasChildren() const { return !_children.isEmpty(); }
    /// Null once the column is gone.
    [[nodiscard]] SQLField* field() const { return _field.get(); }
    /// As last propagated; null for a root.
    [[nodiscard]] FKGraphNode* root() const { return _root.get(); }
    [[nodiscard]] FKGraphNode* rootNode();

    Ptr addChildForField(SQLField* field);
    /// Nothing for a child. A node has one parent at most: it leaves the one it had.
    void addChild(const Ptr& node);
    /// Nothing for what is no child.
    void removeChild(FKGraphNode& node);
    /// Kept: gives this node's root to its direct children only; deeper nodes keep the root they had.
    void updateRoot();
    /// Breadth-first below this node, itself included; null when absent.
    [[nodiscard]] FKGraphNode* nodeForField(const SQLField* field);
    /// 1 for a root. A ring is counted once round.
    [[nodiscard]] std::size_t depthFromRoot() const;
    /// `getType` of the root's column; empty once that is gone.
    [[nodiscard]] std::string dataType();
    [[nodiscard]] std::string description() const;
    /// Lets go of the children, which are appended to `out`.
    void moveChildrenTo(std::vector<Ptr>& out) { _children.moveTo(out); }

private:
    friend class FKGraphNodeList;

    WeakRef<FKGraphNode> _parent;
    WeakRef<FKGraphNode> _root;
    WeakRef<SQLField> _field;
    FKGraphNodeList _children{FKGraphNodeList::Kind::Children};
    std::size_t _places[2] = {};  // in the list of each kind; right only while the list contains the node
};

/// The document's forest of reference trees, kept current by the columns. Not locked: used on the editing thread.
class SQLForeignKeyObjectGraph : public std::enable_shared_from_this<SQLForeignKeyObjectGraph> {
public:
    explicit SQLForeignKeyObjectGraph(SQLContainer* container = nullptr) : _container(container) {}
    ~SQLForeignKeyObjectGraph();
    SQLForeignKeyObjectGraph(const SQLForeignKeyObjectGraph&) = delete;
    SQLForeignKeyObjectGraph& operator=(const SQLForeignKeyObjectGraph&) = delete;
    void init() {}
    [[nodiscard]] SQLContainer* container() const { return _container; }
    void setContainer(SQLContainer* container) { _container = container; }
    /// The roots, in order of arrival.
    [[nodiscard]] std::vector<FKGraphNode::Ptr> subgraphList() const { return _subgraphs.nodes(); }

    /// Null when the column is in no tree.
    [[nodiscard]] FKGraphNode::Ptr nodeForField(const SQLField* field) const;
    FKGraphNode::Ptr cachedNodeForField(SQLField* field);
    /// Nothing for a tree that is listed already.
    void addNewSubgraph(const FKGraphNode::Ptr& node) { _subgraphs.append(node); }
    /// After the column's target changed. Asserts "field should not be nil".
    void updateForeignKey(SQLField* field);
    /// The same for a column that is being destroyed: it has no target any more.
    void forgetField(const SQLField* field);
    /// The full type text of the column at the root; the column's own when it is in no tree.
    [[nodiscard]] OptionalText dataTypeForField(SQLField& field) const;
    [[nodiscard]] std::string description() const;
    void debug() const;

private:
    void attach(const FKGraphNode::Ptr& node, SQLField& target);
    void detach(const FKGraphNode::Ptr& node, const SQLField* field);

    SQLContainer* _container;  // not owned; null once the document is gone
    FKGraphNodeList _subgraphs{FKGraphNodeList::Kind::Trees};
    std::unordered_map<const SQLField*, std::weak_ptr<FKGraphNode>> _graphFieldMap;
};

/// The flat form of the same idea; no document creates it. It keeps the columns that it lists alive.
class SQLForeignKeyGraph {
public:
    using Column = std::shared_ptr<SQLField>;
    using Subgraph = std::vector<Column>;

    [[nodiscard]] SQLContainer* container() const { return _container; }
    void setContainer(SQLContainer* container) { _container = container; }
    /// Every column that had a target, in order of arrival.
    [[nodiscard]] const std::vector<Column>& graph() const { return _graph; }
    /// The root column of each list stands first.
    [[nodiscard]] const std::vector<Subgraph>& subgraphList() const { return _subgraphList; }

    /// The list that contains the column; null when none. Valid until the graph changes.
    [[nodiscard]] Subgraph* subgraphForField(const SQLField* field);
    Subgraph& addNewSubgraphForPair(SQLField* field, SQLField* target);
    /// The members of the column's list that reference it.
    [[nodiscard]] Subgraph dependendentFields(const SQLField* field);
    void updateForeignKey(SQLField* field);
    void removeForeignKeyEntry(SQLField* field);
    [[nodiscard]] std::string typeForField(SQLField& field);
    void updateAllForeignKeys() {}

private:
    SQLContainer* _container = nullptr;  // not owned
    std::vector<Column> _graph;
    std::vector<Subgraph> _subgraphList;
};

}  // namespace vellicor
