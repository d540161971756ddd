// Writes notices of the scene graph as lines of the engine's log.
#include "base/NotifyLog.h"

#include <osg/Notify>

#include <algorithm>
#include <cstring>
#include <string>

#include "engine/text/Log.h"

namespace {

constexpr std::size_t MAX_LENGTH = 500;  // characters of a notice

struct LogHandler final : osg::NotifyHandler {
    void notify(osg::NotifySeverity severity, const char* message) override {
        std::string line(message, std::min(std::strlen(message), MAX_LENGTH));
        while (!line.empty() && line.back() == '\n') line.pop_back();
        std::replace(line.begin(), line.end(), '\n', '|');
        if (line.empty()) return;
        if (severity <= osg::FATAL) {
            jLog::error("picture: %s", line.c_str());
        } else {
            jLog::warning("picture: %s", line.c_str());
        }
    }
};

}  // namespace

void routeNotices() {
    osg::setNotifyLevel(osg::WARN);
    osg::setNotifyHandler(new LogHandler);
}
