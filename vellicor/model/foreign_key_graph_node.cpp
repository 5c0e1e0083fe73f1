// vellicor/model/foreign_key_graph_node.cpp — one column in a reference tree, and lists of them.
#include <deque>
#include <unordered_set>

#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key_graph.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

// --- lists

bool FKGraphNodeList::contains(const FKGraphNode& node) const {
    const std::size_t place = node._places[static_cast<std::size_t>(_kind)];
    return place < _nodes.size() && _nodes[place].get() == &node;
}

std::vector<FKGraphNodeList::Node> FKGraphNodeList::nodes() const {
    std::vector<Node> nodes;
    nodes.reserve(_count);
    for (const Node& node : _nodes)
        if (node) nodes.push_back(node);
    return nodes;
}

void FKGraphNodeList::append(const Node& node) {
    if (!node || contains(*node)) return;
    node->_places[static_cast<std::size_t>(_kind)] = _nodes.size();
    _nodes.push_back(node);
    ++_count;
}

void FKGraphNodeList::remove(const FKGraphNode& node) {
    if (!contains(node)) return;
    const Node removed = std::move(_nodes[node._places[static_cast<std::size_t>(_kind)]]);
    --_count;
    if (_nodes.size() > 2 * _count + 8) close();
}

void FKGraphNodeList::moveTo(std::vector<Node>& out) {
    for (Node& node : _nodes)
        if (node) out.push_back(std::move(node));
    _nodes.clear();
    _count = 0;
}

/// Closes the gaps that removed nodes left.
void FKGraphNodeList::close() {
    std::erase(_nodes, nullptr);
    for (std::size_t place = 0; place < _nodes.size(); ++place)
        _nodes[place]->_places[static_cast<std::size_t>(_kind)] = place;
}

// --- nodes

FKGraphNode::Ptr FKGraphNode::initWithField(SQLField* field) {
    auto node = std::make_shared<FKGraphNode>();
    node->_field = field;
    return node;
}

FKGraphNode::~FKGraphNode() {
    // One after the other: a long chain of references must not nest as many destructors.
    std::vector<Ptr> released;
    moveChildrenTo(released);
    while (!released.empty()) {
        const Ptr node = std::move(released.back());
        released.pop_back();
        if (node.use_count() == 1) node->moveChildrenTo(released);
    }
}

FKGraphNode* FKGraphNode::rootNode() {
    FKGraphNode* stored = root();
    return stored ? stored : this;
}

FKGraphNode::Ptr FKGraphNode::addChildForField(SQLField* field) {
    Ptr node = initWithField(field);
    addChild(node);
    return node;
}

void FKGraphNode::addChild(const Ptr& node) {
    if (!node || node.get() == this || _children.contains(*node)) return;
    if (FKGraphNode* former = node->parent())
        former->removeChild(*node);  // a node moves: it is listed in one tree only
    node->_parent = this;
    node->_root = rootNode();
    _children.append(node);
    node->updateRoot();
}

void FKGraphNode::removeChild(FKGraphNode& node) {
    if (!_children.contains(node)) return;
    const Ptr keptAlive = node.shared_from_this();
    node._parent = nullptr;
    node._root = nullptr;
    _children.remove(node);
    node.updateRoot();
}

void FKGraphNode::updateRoot() {
    FKGraphNode* root = rootNode();
    for (const Ptr& child : children()) child->_root = root;
}

FKGraphNode* FKGraphNode::nodeForField(const SQLField* field) {
    std::unordered_set<const FKGraphNode*> visited{this};
    std::deque<FKGraphNode*> waiting{this};
    while (!waiting.empty()) {
        FKGraphNode* node = waiting.front();
        waiting.pop_front();
        if (node->field() == field) return node;
        for (const Ptr& child : node->children())
            if (visited.insert(child.get()).second) waiting.push_back(child.get());
    }
    return nullptr;
}

std::size_t FKGraphNode::depthFromRoot() const {
    std::unordered_set<const FKGraphNode*> visited;
    for (const FKGraphNode* node = this; node && visited.insert(node).second;) node = node->parent();
    return visited.size();
}

std::string FKGraphNode::dataType() {
    const SQLField* column = rootNode()->field();
    return column ? column->getType() : std::string();
}

namespace {

std::string line(const FKGraphNode& node) {
    const OptionalText column = node.field() ? OptionalText(node.field()->description()) : std::nullopt;
    return text("%@ Tree %@ \n", "<FKGraphNode>", column);
}

}  // namespace

std::string FKGraphNode::description() const {
    struct Step {
        const FKGraphNode* node;
        std::size_t depth;
        std::string lead;
    };
    std::string description;
    std::unordered_set<const FKGraphNode*> visited{this};
    std::vector<Step> waiting{{this, depthFromRoot(), {}}};
    while (!waiting.empty()) {
        const Step step = std::move(waiting.back());
        waiting.pop_back();
        description += step.lead + line(*step.node);
        const std::vector<Ptr> children = step.node->children();
        for (auto child = children.rbegin(); child != children.rend(); ++child)
            if (visited.insert(child->get()).second)
                waiting.push_back({child->get(), step.depth + 1, text(" %@", std::string(step.depth, '-'))});
    }
    return description;
}

}  // namespace vellicor
