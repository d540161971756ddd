// Forwards the contacts of a body to several handlers.
#pragma once

#include <engine/physics/Body.h>

/// A contact callback that bodies may share. It must outlive them or be removed from them before its destruction.
class HitCallback final : public BodyContactCallbackBase {
public:
    void contact(Body* body, int shape) override {
        m_body = body;
        for (int i = 0; i < handlers.size() && m_body; ++i) {
            const Function<void(Body*, int)> handler = handlers[i];  // a copy: it may append others
            handler(body, shape);
        }
        m_body = nullptr;
    }
    /// Call before a body is removed: the remaining handlers are then not called for its current contact.
    void forget(const Body* body) {
        if (m_body == body) m_body = nullptr;
    }

    jVector<Function<void(Body*, int)>> handlers;  ///< called in order

private:
    const Body* m_body = nullptr;  ///< body of the current contact, else null
};
