// A hash index from a text (name or tag) to its nodes, in order of joining the world.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>

class Node;

class NodeIndex {
public:
    using Bearers = std::map<std::uint64_t, Node*>;  ///< by join order

    void add(const std::string& text, std::uint64_t order, Node* node) { m_bearers[text].emplace(order, node); }
    /// REQUIRES that the node was added.
    void remove(const std::string& text, std::uint64_t order) {
        const auto found = m_bearers.find(text);
        found->second.erase(order);
        if (found->second.empty()) m_bearers.erase(found);
    }
    /// The first node with this text, null when there is none.
    Node* getFirst(const std::string& text) const {
        const auto found = m_bearers.find(text);
        return found == m_bearers.end() ? nullptr : found->second.begin()->second;
    }
    /// All nodes with this text, null when there is none. Valid until a node is added or removed.
    const Bearers* getAll(const std::string& text) const {
        const auto found = m_bearers.find(text);
        return found == m_bearers.end() ? nullptr : &found->second;
    }

private:
    std::unordered_map<std::string, Bearers> m_bearers;
};
