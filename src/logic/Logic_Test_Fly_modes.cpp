// Flight modes: switched by the configuration at the end of `init` and by the host application.
#include "src/logic/Logic_Test_Fly.h"

void Logic_Test_Fly::set_fly_mode(FLY_MODE mode) {
    m_fly_mode = mode;
    if (mode == DATA_FLY) {
        m_fly_stopwatch.stop();
        if (!m_recv_ready) init_udp();
    } else if (mode == AUTO_FLY) {
        reset();
    }
}
