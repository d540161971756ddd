// Settings from the configuration: switches at the start of `init`, modes at its end.
#include "src/logic/AppData.h"
#include "src/logic/Logic_Test_Fly.h"

void Logic_Test_Fly::init_config() {
    AppData& data = AppData::get();
    data.open();
    m_ignore_order = data.isIgnoreOrder();
    m_show_recv = data.isShowRecvDataPrint();
    m_show_send = data.isShowSendDataPrint();
    m_key_controls = data.getKeyControls();
    local_data_init();
}

void Logic_Test_Fly::default_setting() {
    setAirportLightBrightness(0.0f);
    set_player_mode(THIRD_VIEW);
    set_fly_mode(static_cast<FLY_MODE>(AppData::get().getFlyMode()));
}
