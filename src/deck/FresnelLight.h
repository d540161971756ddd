// The carrier's optical landing aid.
#pragma once

#include <engine/math/Vec.h>

#include "common/LogicApi.h"

class Node;
class Object;

/// A lens unit of five lamps. An observer on the glide path sees the middle lamp with the green datum lights. The unit
/// is scaled up with distance to stay visible. The lamp is chosen for one observer. Nodes are not owned and must
/// outlive this; nodes that the model lacks are skipped.
class LOGIC_API FresnelLight {
public:
    enum State {
        OFF = 0,        ///< all dark
        FAR_ABOVE = 1,  ///< the top lamp blinks
        TOP = 2,        ///< 2..6: one lamp, from top to bottom; the middle one with the datum lights
        ON_PATH = 4,
        BOTTOM = 6,
        FAR_BELOW = 7,  ///< the bottom lamp blinks
        ALL = 100       ///< everything is lit
    };

    /// Finds the ship's direct child "Fresnel_light" with its lamps, and "deck_1" and "deck_2", two points that define
    /// the plane of the deck together with the lens. Both arguments may be null.
    void fresnelLightInit(Object* ship, Node* observer);

    /// Scales the lens from 2.5 times its size at distance 0 to 25 times at 6000 m and beyond, linearly.
    void updateScale();
    /// The observer's elevation above or below the plane of lens and deck points, degrees, never negative; NaN when it
    /// cannot be computed.
    float getGlideAngle() const;
    /// Sets the state for an elevation in degrees; NaN has no effect.
    void selectByAngle(float angle);
    /// Sets a state; for a value that is no state all lamps are dark.
    void setState(int state);
    /// Switches all lamps off if there is a green light, and restarts the blinking.
    void resetLamps();
    /// Advances the blinking of states 1 and 7 by dt seconds.
    void blink(float dt);

    int getState() const { return m_state; }
    bool isReady() const { return m_ready; }                          ///< a lens was found
    void setBlinkPeriod(float seconds) { m_blink_period = seconds; }  ///< time between two switches

private:
    static constexpr int LAMPS = 5;

    void darken();
    void lightSteady(int state);

    Node* m_lens = nullptr;
    Node* m_lamps[LAMPS] = {};  ///< top to bottom
    Node* m_green = nullptr;
    int m_state = OFF;
    float m_blink_time = 0.0f;  ///< seconds since the last switch
    float m_blink_period = 0.2f;
    bool m_ready = false;
    Node* m_deck_1 = nullptr;
    Node* m_deck_2 = nullptr;
    Node* m_observer = nullptr;
};
