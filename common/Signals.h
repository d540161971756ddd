// Notification lists that a host application connects to, and the types that they carry.
#pragma once

#include <engine/math/Transform.h>
#include <engine/text/Containers.h>

#include <cstdint>
#include <type_traits>

/// Handlers of one notification, called in order of connection on the frame thread. Connect with `append`.
template <class... A>
using Signal = jVector<Function<void(A...)>>;

/// Calls every handler connected so far; a handler may connect further ones meanwhile, which are then called too.
template <class... A>
void fire(const Signal<A...>& signal, std::type_identity_t<A>... args) {
    for (int i = 0; i < signal.size(); ++i) {
        const Function<void(A...)> handler = signal[i];
        handler(args...);
    }
}

// Codes whose values are settled between whoever fires and whoever connects.
enum CMD_TYPE : std::int32_t {};
enum WEATHER_TYPE : std::int32_t {};
enum WEATHER_DETAIL : std::int32_t {};

/// A layer of clouds.
struct CloudInfo {
    float coverage = 0.0f;   ///< 0 clear to 1 overcast
    float base = 1000.0f;    ///< height of its lower side, metres
    float thickness = 0.0f;  ///< metres
};

namespace SynCoder {

/// An effect that was started once.
struct CMDPlaySpeOnceInfo {
    jString path;           ///< its prefab
    float duration = 0.0f;  ///< seconds
    dmat4 transform;        ///< where it plays, geocentric
};

}  // namespace SynCoder
