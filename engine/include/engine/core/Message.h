// Engine messages and their receivers.
#pragma once

#include "engine/Api.h"

/// A message with its identifier and one value.
struct UiMsg {
    int id = 0;
    double value = 0.0;
};

/// A receiver of engine messages. All attached nodes receive every message, in order of attachment, on the frame
/// thread.
class ENGINE_API MsgNode {
public:
    virtual ~MsgNode();
    /// The base does nothing.
    virtual void processMsg(UiMsg* msg);

    void attach();  ///< no effect when attached already
    void detach();  ///< no effect when not attached

    /// Sends a message to all attached nodes; a node may attach or detach nodes during the call.
    static void send(UiMsg* msg);
};
