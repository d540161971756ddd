// The carrier's optical landing aid.
#pragma once

#include <engine/math/Vec.h>

#include "common/LogicApi.h"

class Node;
class Object;

/// A lens unit of five lamps, of which an eye on the glide path sees the middle one with the green datum lights, and
/// which grows with distance so that it stays visible. The lamp is chosen for one observer. Nodes are not owned and
/// must outlive this; what the model lacks is left out.
class LOGIC_API FresnelLight {
public:
    enum State {
        OFF = 0,        ///< all dark
        FAR_ABOVE = 1,  ///< the top lamp blinks
        TOP = 2,        ///< 2..6: one lamp from the top down, the middle one with the datum lights
        ON_PATH = 4,
        BOTTOM = 6,
        FAR_BELOW = 7,  ///< the bottom lamp blinks
        ALL = 100       ///< everything is lit
    };

    /// Looks up the ship's direct child "Fresnel_light" with its lamps, and "deck_1" and "deck_2", two points that span
    /// the plane of the deck with the lens. Either may be null.
    void fresnelLightInit(Object* ship, Node* observer);

    /// Draws the lens 2.5 times its size close by and 25 times at 6000 m and beyond.
    void updateScale();
    /// The observer's elevation over the plane of lens and deck points, degrees, on either side of it alike; NaN when
    /// it cannot be formed.
    float getGlideAngle() const;
    /// Lights what an elevation in degrees calls for; NaN changes nothing.
    void selectByAngle(float angle);
    /// The same for a state; values that are none darken the lens.
    void setState(int state);
    /// All dark, where there is a green light; the blinking begins anew.
    void resetLamps();
    /// dt seconds more of the blinking of states 1 and 7.
    void blink(float dt);

    int getState() const { return m_state; }
    bool isReady() const { return m_ready; }                          ///< there is a lens
    void setBlinkPeriod(float seconds) { m_blink_period = seconds; }  ///< between two switches

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
