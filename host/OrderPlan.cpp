// Parses the list of orders and iterates over it, one datagram at a time.
#include "OrderPlan.h"

#include <algorithm>
#include <charconv>

namespace {

/// Parses a number; the whole text must be the number.
template <class T>
bool parseNumber(const std::string& text, T& out) {
    const char* end = text.data() + text.size();
    const auto [at, error] = std::from_chars(text.data(), end, out);
    return error == std::errc() && at == end;
}

}  // namespace

bool OrderPlan::parseItem(const std::string& text, Item& out) {
    if (text.empty()) return false;
    if (text.back() == '*') {
        out.count = -1;
        return parseNumber(text.substr(0, text.size() - 1), out.order);
    }
    const std::size_t cross = text.find('x');
    if (cross == std::string::npos) return parseNumber(text, out.order);
    return parseNumber(text.substr(0, cross), out.order) && parseNumber(text.substr(cross + 1), out.count) &&
           out.count > 0;
}

bool OrderPlan::parse(const std::string& text) {
    std::vector<Item> items;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find(',', begin), text.size());
        Item item;
        if (!parseItem(text.substr(begin, end - begin), item)) return false;
        items.push_back(item);
        begin = end + 1;
    }
    if (std::count_if(items.begin(), items.end(), [](const Item& item) { return item.count < 0; }) > 1) return false;
    m_items = items;
    m_at = 0;
    m_sent = 0;
    return true;
}

bool OrderPlan::next(std::int32_t& order) {
    if (m_at == m_items.size()) return false;
    const Item& item = m_items[m_at];
    order = item.order;
    if (item.count >= 0 && ++m_sent == item.count) {
        ++m_at;
        m_sent = 0;
    }
    return true;
}

void OrderPlan::finish() {
    while (m_at < m_items.size() && m_items[m_at].count >= 0) ++m_at;
    if (m_at < m_items.size()) ++m_at;
    m_sent = 0;
}
