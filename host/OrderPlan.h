// The order of each datagram.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// A list of orders, one item for one or more datagrams, separated by commas:
///
///     1        order 1 in one datagram
///     2x100    order 2 in a hundred datagrams
///     2*       order 2 until the run ends; at most once
///
/// Items after the one with the star are sent when the run ends. Without a star the run ends with the list.
/// Example: "1,2*,0", a reset, running until the end, then a stop.
class OrderPlan {
public:
    /// False when the text is not such a list; the plan is then unchanged.
    bool parse(const std::string& text);

    /// True while there is a datagram to send; `order` is set to its order.
    bool next(std::int32_t& order);
    /// Continues after the item with the star, or at the end of the list if there is none left: the run is then over.
    void finish();

private:
    struct Item {
        std::int32_t order = 0;
        std::int64_t count = 1;  ///< datagrams; negative: until the run ends
    };

    static bool parseItem(const std::string& text, Item& out);

    std::vector<Item> m_items;
    std::size_t m_at = 0;
    std::int64_t m_sent = 0;  ///< datagrams of the current item
};
