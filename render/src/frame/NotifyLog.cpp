// Notices of the scene graph as lines of the engine's log.
#include "frame/NotifyLog.h"

#include <osg/Notify>

#include <cstring>

#include "engine/text/Log.h"

namespace {

struct LogHandler final : osg::NotifyHandler {
    void notify(osg::NotifySeverity severity, const char* message) override {
        const int length = static_cast<int>(std::strcspn(message, "\n"));
        if (length == 0) return;
        if (severity <= osg::FATAL) {
            jLog::error("picture: %.*s", length, message);
        } else {
            jLog::warning("picture: %.*s", length, message);
        }
    }
};

}  // namespace

void routeNotices() {
    osg::setNotifyLevel(osg::WARN);
    osg::setNotifyHandler(new LogHandler);
}
