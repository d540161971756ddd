// Lists of handlers that a host application connects to, and the types of their arguments.
#pragma once

#include <engine/math/Transform.h>
#include <engine/text/Containers.h>

#include <cstdint>
#include <type_traits>

/// Handlers of one notification, called in order of connection on the frame thread. Connect one with `append`.
template <class... A>
using Signal = jVector<Function<void(A...)>>;

/// Calls every connected handler. A handler may connect further ones during the call; these are called too.
template <class... A>
void fire(const Signal<A...>& signal, std::type_identity_t<A>... args) {
    for (int i = 0; i < signal.size(); ++i) {
        const Function<void(A...)> handler = signal[i];
        handler(args...);
    }
}

// Codes. Their values are agreed between the code that fires a notification and the handler.
enum CMD_TYPE : std::int32_t {};
enum WEATHER_TYPE : std::int32_t {};
enum WEATHER_DETAIL : std::int32_t {};

/// A layer of clouds.
struct CloudInfo {
    float coverage = 0.0f;   ///< 0 clear to 1 overcast
    float base = 1000.0f;    ///< height of the lower side, metres
    float thickness = 0.0f;  ///< metres
};

namespace SynCoder {

/// A started effect that plays once.
struct CMDPlaySpeOnceInfo {
    jString path;           ///< path of its prefab
    float duration = 0.0f;  ///< seconds
    dmat4 transform;        ///< its pose, geocentric
};

}  // namespace SynCoder
