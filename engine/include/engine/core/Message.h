// Engine messages and who receives them.
#pragma once

#include "engine/Api.h"

/// A message with its identifier and one value of the sender's.
struct UiMsg {
    int id = 0;
    double value = 0.0;
};

/// A receiver of engine messages. Attached nodes get every message that is sent, in order of attachment, on the frame
/// thread.
class ENGINE_API MsgNode {
public:
    virtual ~MsgNode();
    /// The base does nothing.
    virtual void processMsg(UiMsg* msg);

    void attach();  ///< no effect when attached already
    void detach();  ///< no effect when not attached

    /// Hands a message to all attached nodes; a node may attach or detach others meanwhile.
    static void send(UiMsg* msg);
};
