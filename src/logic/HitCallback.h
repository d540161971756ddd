// Hands a body's touches on to several handlers.
#pragma once

#include <engine/physics/Body.h>

/// A contact callback that bodies may share. It outlives them, or is taken off them first.
class HitCallback final : public BodyContactCallbackBase {
public:
    void contact(Body* body, int shape) override {
        for (int i = 0; i < handlers.size(); ++i) {
            const Function<void(Body*, int)> handler = handlers[i];  // it may register others
            handler(body, shape);
        }
    }

    jVector<Function<void(Body*, int)>> handlers;  ///< called in order
};
