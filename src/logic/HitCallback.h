// Hands a body's touches on to several handlers.
#pragma once

#include <engine/physics/Body.h>

/// A contact callback that bodies may share. It outlives them, or is taken off them first.
class HitCallback final : public BodyContactCallbackBase {
public:
    void contact(Body* body, int shape) override {
        m_body = body;
        for (int i = 0; i < handlers.size() && m_body; ++i) {
            const Function<void(Body*, int)> handler = handlers[i];  // it may register others
            handler(body, shape);
        }
        m_body = nullptr;
    }
    /// The body goes: handlers that have not heard of its touch yet do not.
    void forget(const Body* body) {
        if (m_body == body) m_body = nullptr;
    }

    jVector<Function<void(Body*, int)>> handlers;  ///< called in order

private:
    const Body* m_body = nullptr;  ///< whose touch is being told
};
