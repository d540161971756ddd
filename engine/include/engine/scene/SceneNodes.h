// Small node types: decals, lights, texts and trigger volumes.
#pragma once

#include "engine/Api.h"
#include "engine/scene/Object.h"

/// An image projected along the node's -Z onto the surface below.
class ENGINE_API DecalOrtho final : public Object {
public:
    DecalOrtho(float width, float height, float depth, const jString& texture)
        : m_width(width), m_height(height), m_depth(depth), m_texture(texture) {}

    int getType() const override { return DECAL_ORTHO; }
    float getWidth() const { return m_width; }  ///< along X, metres
    void setWidth(float metres);
    float getHeight() const { return m_height; }  ///< along Y, metres
    void setHeight(float metres);
    float getDepth() const { return m_depth; }  ///< range of the projection, metres
    const jString& getTexture() const { return m_texture; }
    BoundBox getBoundBox() const override;

private:
    float m_width, m_height, m_depth;
    jString m_texture;
};

struct LightSettings {
    enum Kind { POINT, SPOT } kind = POINT;
    vec3 color{1.0f, 1.0f, 1.0f};  ///< linear
    float intensity = 100.0f;      ///< candela
    float range = 50.0f;           ///< metres; 0: it illuminates no surface but is visible
    float angle = 45.0f;           ///< full cone of a spot along +Y, degrees
    float size = 0.0f;             ///< diameter of the visible lamp, metres; 0 for an invisible lamp
};

/// A lamp; a spot points along its +Y.
class ENGINE_API NodeLight final : public Node {
public:
    explicit NodeLight(const LightSettings& settings) : m_settings(settings), m_intensity(settings.intensity) {}

    int getType() const override { return LIGHT; }
    const LightSettings& getSettings() const { return m_settings; }
    float getIntensity() const { return m_intensity; }  ///< current, candela
    /// "brightness" scales the authored intensity.
    bool setParameter(const jString& parameter, float value) override;

private:
    LightSettings m_settings;
    float m_intensity;
};

/// A line of text in the node's XZ plane, readable from -Y.
class ENGINE_API NodeText final : public Node {
public:
    NodeText(const jString& text, float height, const vec4& color) : m_text(text), m_height(height), m_color(color) {}

    int getType() const override { return TEXT; }
    const jString& getText() const { return m_text; }
    void setText(const jString& text);
    float getHeight() const { return m_height; }  ///< of a capital letter, metres
    const vec4& getColor() const { return m_color; }

private:
    jString m_text;
    float m_height;
    vec4 m_color;
};

/// A box that reports sensors entering and leaving it, after the physics step, in order of the sensors' ids. A sensor
/// inside that is disabled or removed is reported as leaving.
class ENGINE_API NodeTrigger final : public Node {
public:
    explicit NodeTrigger(const vec3& size) : m_size(size) {}
    ~NodeTrigger() override;

    int getType() const override { return TRIGGER; }
    const vec3& getSize() const { return m_size; }  ///< full extents, centred on the node's origin, metres
    BoundBox getBoundBox() const override;

    jVector<Function<void(Node*)>> enter;  ///< called with the sensor, in order of connection
    jVector<Function<void(Node*)>> leave;

    /// Compares the overlapping sensors with those of the last call and reports the differences; called by the world.
    void update(const jVector<Node*>& sensors);

private:
    friend struct WorldState;

    struct Change {
        Node* sensor;
        int id;
        bool entered;
    };

    bool overlaps(const Node& sensor) const;
    void fire(const jVector<Change>& changes);

    vec3 m_size;
    jVector<Node*> m_inside;  ///< in order of their ids
    jVector<Node*> m_now;     ///< scratch of `update`: the next m_inside
};
