// vellicor/database/placement.cpp — layers by references, groups in rows.
#include "vellicor/database/placement.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace vellicor {

namespace {

using Indexes = std::vector<std::size_t>;

constexpr double kGapX = 60;
constexpr double kGapY = 30;
constexpr double kBreadthToHeight = 1.6;

class Placement {
public:
    explicit Placement(std::vector<PlacedNode>& nodes) : _nodes(nodes), _referencing(nodes.size()) {
        for (std::size_t i = 0; i < nodes.size(); ++i)
            for (const std::size_t target : nodes[i].references)
                if (target != i) _referencing[target].push_back(i);
    }

    void run(Point origin) {
        setLayers();
        std::vector<Group> groups;
        Indexes single;
        for (Indexes& members : components()) {
            if (members.size() == 1)
                single.push_back(members.front());
            else
                groups.push_back(layered(std::move(members)));
        }
        for (const std::size_t node : single) {
            _nodes[node].location = {};
            groups.push_back({{node}, _nodes[node].size});
        }
        stack(groups, origin);
    }

private:
    struct Group {
        Indexes members;  // placed from (0, 0) on
        Size size;
    };

    /// Behind everything that is referenced; a circle is cut at its first node.
    void setLayers() {
        _layers.assign(_nodes.size(), 0);
        Indexes waiting(_nodes.size(), 0);
        std::vector<bool> done(_nodes.size(), false);
        for (std::size_t i = 0; i < _nodes.size(); ++i)
            for (const std::size_t node : _referencing[i]) ++waiting[node];
        Indexes ready;
        const auto settle = [&] {
            while (!ready.empty()) {
                const std::size_t node = ready.back();
                ready.pop_back();
                for (const std::size_t next : _referencing[node]) {
                    if (done[next]) continue;
                    _layers[next] = std::max(_layers[next], _layers[node] + 1);
                    if (--waiting[next] == 0) {
                        done[next] = true;
                        ready.push_back(next);
                    }
                }
            }
        };
        const auto start = [&](std::size_t node) {
            done[node] = true;
            ready.push_back(node);
        };
        for (std::size_t i = 0; i < _nodes.size(); ++i)
            if (waiting[i] == 0) start(i);
        settle();
        for (std::size_t i = 0; i < _nodes.size(); ++i) {
            if (done[i]) continue;
            start(i);
            settle();
        }
    }

    [[nodiscard]] std::vector<Indexes> components() const {
        std::vector<Indexes> components;
        std::vector<bool> seen(_nodes.size(), false);
        for (std::size_t i = 0; i < _nodes.size(); ++i) {
            if (seen[i]) continue;
            Indexes members{i};
            seen[i] = true;
            for (std::size_t k = 0; k < members.size(); ++k) {
                const auto visit = [&](const Indexes& next) {
                    for (const std::size_t node : next) {
                        if (seen[node]) continue;
                        seen[node] = true;
                        members.push_back(node);
                    }
                };
                const std::size_t member = members[k];  // the list moves while it grows
                visit(_nodes[member].references);
                visit(_referencing[member]);
            }
            components.push_back(std::move(members));
        }
        return components;
    }

    /// One column or more a layer, so that a group is not much higher than broad; in a layer, beside what is
    /// referenced.
    Group layered(Indexes members) {
        double area = 0;
        for (const std::size_t node : members)
            area += (_nodes[node].size.width + kGapX) * (_nodes[node].size.height + kGapY);
        const double height = std::sqrt(area / kBreadthToHeight);
        std::ranges::sort(members, {}, [this](std::size_t node) { return std::pair(_layers[node], node); });
        Group group;
        double x = 0;
        for (auto begin = members.begin(); begin != members.end();) {
            const std::size_t layer = _layers[*begin];
            const auto end = std::find_if(begin, members.end(), [&](std::size_t n) { return _layers[n] != layer; });
            std::stable_sort(begin, end,
                             [this](std::size_t a, std::size_t b) { return heightOfTargets(a) < heightOfTargets(b); });
            double y = 0;
            double width = 0;
            for (; begin != end; ++begin) {
                PlacedNode& node = _nodes[*begin];
                if (y > 0 && y + node.size.height > height) {
                    x += width + kGapX;
                    y = width = 0;
                }
                node.location = {x, y};
                width = std::max(width, node.size.width);
                y += node.size.height + kGapY;
                group.size.height = std::max(group.size.height, y - kGapY);
            }
            x += width + kGapX;
        }
        group.size.width = x - kGapX;
        group.members = std::move(members);
        return group;
    }

    /// The middle of what a node references on the layers before its own, which are placed already.
    [[nodiscard]] double heightOfTargets(std::size_t node) const {
        double sum = 0;
        std::size_t count = 0;
        for (const std::size_t target : _nodes[node].references) {
            if (_layers[target] >= _layers[node]) continue;
            sum += _nodes[target].location.y + _nodes[target].size.height / 2;
            ++count;
        }
        return count ? sum / static_cast<double>(count) : 0;
    }

    /// Rows of groups, the higher ones first.
    void stack(std::vector<Group>& groups, Point origin) {
        std::stable_sort(groups.begin(), groups.end(), [](const Group& a, const Group& b) {
            return (a.members.size() > 1) != (b.members.size() > 1) ? a.members.size() > 1
                                                                    : a.size.height > b.size.height;
        });
        double area = 0;
        double breadth = 0;
        for (const Group& group : groups) {
            area += (group.size.width + kGapX) * (group.size.height + kGapY);
            breadth = std::max(breadth, group.size.width);
        }
        breadth = std::max(breadth, std::sqrt(area * kBreadthToHeight));
        double x = 0;
        double y = 0;
        double rowHeight = 0;
        for (const Group& group : groups) {
            if (x > 0 && x + group.size.width > breadth) {
                y += rowHeight + kGapY;
                x = rowHeight = 0;
            }
            for (const std::size_t node : group.members) {
                _nodes[node].location.x += origin.x + x;
                _nodes[node].location.y += origin.y + y;
            }
            x += group.size.width + kGapX;
            rowHeight = std::max(rowHeight, group.size.height);
        }
    }

    std::vector<PlacedNode>& _nodes;
    std::vector<Indexes> _referencing;
    Indexes _layers;
};

}  // namespace

void placeNodes(std::vector<PlacedNode>& nodes, Point origin) { Placement(nodes).run(origin); }

}  // namespace vellicor
