// The list of attached nodes, and the dispatch.
#include "engine/core/Message.h"

#include "engine/text/Containers.h"

namespace {

jVector<MsgNode*>& attached() {
    static jVector<MsgNode*> nodes;
    return nodes;
}

}  // namespace

MsgNode::~MsgNode() {
    detach();
}

void MsgNode::processMsg(UiMsg*) {}

void MsgNode::attach() {
    if (attached().find(this) < 0) attached().append(this);
}

void MsgNode::detach() {
    const int i = attached().find(this);
    if (i >= 0) attached().removeAt(i);
}

void MsgNode::send(UiMsg* msg) {
    const jVector<MsgNode*> receivers = attached();
    for (MsgNode* node : receivers) {
        if (attached().find(node) >= 0) node->processMsg(msg);
    }
}
