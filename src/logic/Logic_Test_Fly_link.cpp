// The host link: opens the sockets, receives the host's records at the start of each frame in data flight, stores the
// host's order.
#include <engine/memory/Allocator.h>
#include <engine/text/Log.h>

#include <cstdio>

#include "src/kit/UdpDataKit.h"
#include "src/logic/AppData.h"
#include "src/logic/Logic_Test_Fly.h"

namespace {

constexpr std::int32_t ORDER_RESET = 1;
constexpr const char* NOTICE_GROUP = "224.255.255.255";
constexpr int NOTICE_PORT = 10021;
constexpr int NOTICE_SIZE = 72;  ///< bytes, all zero

constexpr int ANY_PORT = -1;  ///< configuration value: the host may send from any port

/// Whether an IPv4 address is in the loopback network.
bool isLoopback(const jString& address) {
    return address.starts_with("127.");
}

constexpr const char* KIT_SOURCE = "src\\kit\\UdpDataKit";

}  // namespace

void Logic_Test_Fly::init_udp() {
    if (m_fly_mode != DATA_FLY) return;
    const AppData& data = AppData::get();
    const jString host_ip = data.getFlightSimulationIp();
    const jString local_ip = data.getLocalIp();
    const int host_port = data.getRecvFromFlightSimulationPort();
    const int local_port = data.getLocalPort();

    if (isLoopback(local_ip) && !isLoopback(host_ip)) {
        jLog::warning(
            "no record can arrive: \"local_ip\" %s is a loopback address and \"flightSimulation_ip\" %s is not; set "
            "\"local_ip\" to this machine's address in the host's network",
            local_ip.c_str(), host_ip.c_str());
    }
    m_receiver = jNew<UdpRecvKit>({KIT_SOURCE, "Logic_Test_Fly::init_udp"});
    m_recv_ready = m_receiver->init(local_ip, local_port, host_ip, host_port == ANY_PORT ? 0 : host_port);
    show_warning(!m_recv_ready);
    m_sender = jNew<UdpSendKit>({KIT_SOURCE, "Logic_Test_Fly::init_udp"});
    m_send_ready = m_sender->init(host_ip, data.getSendToFlightSimulationPort());
    m_multicast_sender = jNew<UdpSendKit>({KIT_SOURCE, "Logic_Test_Fly::init_udp"});
    m_multicast_sender->init(NOTICE_GROUP, NOTICE_PORT, local_ip);

    std::printf("local IP:%s\n", local_ip.c_str());
    std::printf("local port:%d\n", local_port);
    std::printf("from port:%d\n", host_port);
    std::printf("send to console IP：%s\n", host_ip.c_str());
    std::printf("send to console port:%d\n", data.getSendToFlightSimulationPort());
}

void Logic_Test_Fly::receive_data() {
    if (m_fly_mode != DATA_FLY || !m_receiver || m_receiver->receive() == 0) return;
    // Moved out of the kit: a handler of the reset may release it.
    std::swap(m_records, static_cast<jVector<UdpRecvData>&>(*m_receiver));
    use_recv_data(m_records);
    m_records.clear();
}

void Logic_Test_Fly::use_recv_data(jVector<UdpRecvData>& records) {
    if (records.empty()) return;
    static constexpr unsigned char NOTICE[NOTICE_SIZE] = {};
    for (UdpRecvData& record : records) {
        apply_status(record);
        apply_plane(record);
        print_recv_data(record);
    }
    m_link_counts.records += static_cast<std::uint64_t>(records.size());
    if (m_multicast_sender) m_multicast_sender->write(NOTICE, NOTICE_SIZE);
}

void Logic_Test_Fly::apply_status(const UdpRecvData& record) {
    if (record.nSimOrder == m_last_order) return;
    m_last_order = record.nSimOrder;
    if (m_last_order == ORDER_RESET) reset();
}

void Logic_Test_Fly::apply_plane(UdpRecvData&) {}
void Logic_Test_Fly::apply_lights(UdpRecvData&) {}
void Logic_Test_Fly::apply_ships(UdpRecvData&) {}
void Logic_Test_Fly::apply_targets(UdpRecvData&) {}

void Logic_Test_Fly::print_recv_data(const UdpRecvData& record) {
    if (!m_show_recv) return;
    std::printf("---recv start---\n");
    std::printf("nSimOrder:%d\n", static_cast<int>(record.nSimOrder));
    std::printf("---recv end---\n");
}
