// vellicor/migration/rename_order.cpp — renaming one after the other what changes names at once.
#include "vellicor/migration/rename_order.h"

#include <deque>
#include <unordered_map>

#include "vellicor/platform/text.h"

namespace vellicor {

std::string nameInScope(const std::string& scope, const SQLName& name) { return scope + "\n" + caseFolded(name.key); }

std::vector<Rename> orderedRenames(std::vector<Rename> renames, std::unordered_set<std::string> taken,
                                   const std::function<SQLName(const SQLName&)>& freeName) {
    std::vector<Rename> ordered;
    std::unordered_map<std::string, std::size_t> waiting;  // for a name in scope; no two renames want the same
    std::vector<bool> done(renames.size());
    std::deque<std::size_t> ready;
    const auto isFree = [&](const Rename& rename) { return !taken.contains(nameInScope(rename.scope, rename.to)); };
    const auto release = [&](const Rename& rename) {
        const std::string name = nameInScope(rename.scope, rename.from);
        taken.erase(name);
        if (const auto waiter = waiting.find(name); waiter != waiting.end()) ready.push_back(waiter->second);
    };
    for (std::size_t i = 0; i < renames.size(); ++i) {
        waiting.emplace(nameInScope(renames[i].scope, renames[i].to), i);
        if (isFree(renames[i])) ready.push_back(i);
    }
    const auto runReady = [&] {
        while (!ready.empty()) {
            const std::size_t i = ready.front();
            ready.pop_front();
            if (done[i] || !isFree(renames[i])) continue;
            done[i] = true;
            ordered.push_back(renames[i]);
            taken.insert(nameInScope(renames[i].scope, renames[i].to));
            release(renames[i]);
        }
    };
    runReady();
    for (std::size_t i = 0; i < renames.size(); ++i) {
        if (done[i]) continue;
        // A ring: one of it steps aside.
        Rename& rename = renames[i];
        SQLName aside = rename.to;
        do aside = freeName(aside);
        while (taken.contains(nameInScope(rename.scope, aside)));
        ordered.push_back({rename.scope, rename.from, aside, rename.subject});
        taken.insert(nameInScope(rename.scope, aside));
        const Rename freed = rename;
        rename.from = aside;
        release(freed);
        runReady();
        if (done[i]) continue;
        done[i] = true;  // what holds the name does not move: the server will say so
        ordered.push_back(rename);
    }
    return ordered;
}

}  // namespace vellicor
