// Animation tracks: read once, applied to the scene when the logic sets their position.
#include "engine/track/Track.h"

#include <cmath>

#include "engine/text/Log.h"
#include "scene/DataReader.h"
#include "scene/WorldState.h"

namespace {

struct Key {
    float position;
    float value;
};

struct Channel {
    enum Target { NODE, TAG, ENVIRONMENT } target = NODE;
    jString bearer;  ///< name or tag
    jString parameter;
    std::vector<Key> keys;  ///< in order of position, at least one
    bool is_raise = false;  ///< lower bound of a value of the environment; the highest of all bounds is used
    bool was_written = false;
    bool was_refused = false;  ///< a node has no such parameter; logged once
    float last_value = 0.0f;
    std::vector<int> last_nodes;  ///< ids of the nodes that have the last value

    float getValue(float position) const;
};

float Channel::getValue(float position) const {
    const auto after =
        std::upper_bound(keys.begin(), keys.end(), position, [](float p, const Key& k) { return p < k.position; });
    if (after == keys.begin()) return keys.front().value;
    if (after == keys.end()) return keys.back().value;
    const Key& before = *std::prev(after);
    const float t = (position - before.position) / (after->position - before.position);
    return before.value + (after->value - before.value) * t;
}

float* findEnvironment(Environment& environment, const jString& parameter) {
    if (parameter == "time_of_day") return &environment.time_of_day;
    if (parameter == "wind_east") return &environment.wind.x;
    if (parameter == "wind_north") return &environment.wind.y;
    if (parameter == "wetness") return &environment.wetness;
    if (parameter == "snow_cover") return &environment.snow;
    if (parameter == "cloudiness") return &environment.cloudiness;
    return nullptr;
}

/// The highest bound for `target`. REQUIRES that there is one.
float getHighest(const std::vector<EnvironmentRaise>& raises, const float& target) {
    float highest = -INFINITY;
    for (const EnvironmentRaise& r : raises) {
        if (r.target == &target) highest = std::max(highest, r.value);
    }
    return highest;
}

void raise(std::vector<EnvironmentRaise>& raises, float& target, const void* by, float value) {
    const auto find = [&](const void* whose) {
        return std::find_if(raises.begin(), raises.end(),
                            [&](const EnvironmentRaise& r) { return r.target == &target && r.by == whose; });
    };
    if (find(nullptr) == raises.end()) raises.push_back({&target, nullptr, target});
    if (const auto known = find(by); known != raises.end())
        known->value = value;
    else
        raises.push_back({&target, by, value});
    target = getHighest(raises, target);
}

bool readKey(const Item& item, Key& key) {
    float values[2];
    if (item.getArray().size() != 2 || item.getFloats(values, 2) != 2) return false;
    key = {values[0], values[1]};
    return std::isfinite(key.position) && std::isfinite(key.value);
}

bool readKeys(const DataReader& in, Channel& channel) {
    for (const Item& item : in.getArray("keys")) {
        Key key;
        if (!readKey(item, key)) {
            in.complain(item, "a key must be [ position, value ]; the channel is left out");
            return false;
        }
        channel.keys.push_back(key);
    }
    std::stable_sort(channel.keys.begin(), channel.keys.end(),
                     [](const Key& a, const Key& b) { return a.position < b.position; });
    return true;
}

bool readTarget(const DataReader& in, Channel& channel) {
    bool environment = false;
    if (in.read("node", channel.bearer))
        channel.target = Channel::NODE;
    else if (in.read("tag", channel.bearer))
        channel.target = Channel::TAG;
    else if (in.read("environment", environment) && environment)
        channel.target = Channel::ENVIRONMENT;
    else
        return false;
    if (!in.read("parameter", channel.parameter)) return false;
    if (channel.target == Channel::ENVIRONMENT) in.read("raise", channel.is_raise);
    Environment any;
    return channel.target != Channel::ENVIRONMENT || findEnvironment(any, channel.parameter);
}

}  // namespace

struct TrackState {
    jString name;
    World* world = nullptr;
    float position = 0.0f;
    std::vector<Channel> channels;
    std::vector<Node*> nodes;  ///< kept for its memory

    void write(Channel& channel, float value);
    void listNodes(const Channel& channel);
    void writeNodes(Channel& channel, float value);
    void writeEnvironment(const Channel& channel, float value);
    void takeBackRaises();
};

void TrackState::listNodes(const Channel& channel) {
    nodes.clear();
    const WorldState& state = world->getState();
    if (channel.target == Channel::NODE) {
        if (Node* const node = state.names.getFirst(channel.bearer)) nodes.push_back(node);
    } else if (const NodeIndex::Bearers* const bearers = state.tags.getAll(channel.bearer)) {
        for (const auto& [order, node] : *bearers) nodes.push_back(node);
    }
}

void TrackState::writeNodes(Channel& channel, float value) {
    listNodes(channel);
    auto& known = channel.last_nodes;
    const bool is_new_value = !channel.was_written || value != channel.last_value;
    const bool same_nodes = std::equal(nodes.begin(), nodes.end(), known.begin(), known.end(),
                                       [](const Node* node, int id) { return node->getId() == id; });
    if (!is_new_value && same_nodes) return;
    for (Node* node : nodes) {
        if (!is_new_value && std::find(known.begin(), known.end(), node->getId()) != known.end()) continue;
        if (node->setParameter(channel.parameter, value) || channel.was_refused) continue;
        channel.was_refused = true;
        jLog::error("%s: node \"%s\" has no parameter \"%s\"", name.c_str(), node->getName().c_str(),
                    channel.parameter.c_str());
    }
    known.clear();
    for (const Node* node : nodes) known.push_back(node->getId());
}

void TrackState::writeEnvironment(const Channel& channel, float value) {
    float& target = *findEnvironment(world->getEnvironment(), channel.parameter);
    if (channel.is_raise)
        raise(world->getState().raises, target, &channel, value);
    else
        target = value;
}

void TrackState::takeBackRaises() {
    for (const Channel& channel : channels) {
        if (!channel.is_raise || !channel.was_written) continue;
        auto& raises = world->getState().raises;
        std::erase_if(raises, [&](const EnvironmentRaise& r) { return r.by == &channel; });
        float& target = *findEnvironment(world->getEnvironment(), channel.parameter);
        target = getHighest(raises, target);
    }
}

void TrackState::write(Channel& channel, float value) {
    if (channel.target != Channel::ENVIRONMENT)
        writeNodes(channel, value);
    else if (!channel.was_written || value != channel.last_value)
        writeEnvironment(channel, value);
    channel.was_written = true;
    channel.last_value = value;
}

Track::Track() : m_state(std::make_unique<TrackState>()) {}
Track::~Track() = default;
const jString& Track::getName() const {
    return m_state->name;
}
float Track::get() const {
    return m_state->position;
}

bool Track::load(const jString& path, World* world) {
    Package package;
    if (!world || !mjl::open(path, package, true)) return false;
    const DataReader in(package, path);
    if (!in.has("channels")) {
        jLog::error("%s:1: no \"channels\" in it", path.c_str());
        return false;
    }
    auto state = std::make_unique<TrackState>();
    state->name = path;
    state->world = world;
    for (const Item& item : in.getArray("channels")) {
        const Package* const part = in.asPackage(item, "a channel");
        if (!part) continue;
        const DataReader channel_in(*part, path);
        Channel channel;
        if (!readTarget(channel_in, channel) || channel_in.getArray("keys").empty()) {
            in.complain(item, "a channel needs a target, its parameter and keys; it is left out");
        } else if (readKeys(channel_in, channel)) {
            state->channels.push_back(std::move(channel));
        }
    }
    release();
    m_state = std::move(state);
    return true;
}

void Track::set(float position) {
    if (std::isnan(position)) return;
    m_state->position = std::clamp(position, 0.0f, 1.0f);
    for (Channel& channel : m_state->channels) m_state->write(channel, channel.getValue(m_state->position));
}

void Track::release() {
    m_state->takeBackRaises();
    m_state->channels.clear();
}
