// The records exchanged with the flight-simulation host. docs/protocol.md describes them byte for byte.
#pragma once

#include <engine/text/Containers.h>

#include <cstddef>
#include <cstdint>
#include <type_traits>

#pragma pack(push, 1)

/// Host to plug-in. The first 108 bytes are the wire bytes in order, little-endian and unpadded; the
/// members after them have no wire field and stay zero. Members may be misaligned for their type: copy them, never
/// take references or pointers to them.
struct UdpRecvData {
    std::int32_t nSimOrder = 0;  ///< 1 resets the scene on a change, 2 enables the feedback, others are stored
    // Received from the host, not interpreted:
    std::int32_t recvWord1 = 0;
    float recvFloat1 = 0.0f;
    float recvFloat2 = 0.0f;
    float recvFloat3 = 0.0f;
    double recvDouble1 = 0.0;
    double recvDouble2 = 0.0;
    float recvFloat4 = 0.0f;
    double recvDoubles[7] = {};
    std::int32_t recvWord2 = 0;
    std::int32_t recvWord3 = 0;
    std::int32_t recvWord4 = 0;
    // Not on the wire:
    std::int32_t targets[2] = {};
    std::int32_t lights = 0;
    std::int32_t ships[2] = {};
};

/// Plug-in to host: all 60 bytes are wire bytes. Gear indices: 0 nose, 1 left main, 2 right main. Angles are in
/// degrees in the geodetic heading-pitch-roll convention.
struct UdpSendData {
    std::int32_t nCounter = 0;          ///< the engine's frame counter at the time of sending
    float fTerrainHeightLG[3] = {};     ///< height of ground or deck under each gear, metres above the ellipsoid
    float fThetaLG[3] = {};             ///< pitch of each gear node
    float fPhiLG[3] = {};               ///< roll of each gear node
    float fPsiLG[3] = {};               ///< heading of the aircraft, the same value three times
    float fTerrainHeightCG = 0.0f;      ///< terrain height under the aircraft's reference point, the same unit
    std::int32_t nCollisionDetect = 0;  ///< 1 while the aircraft's body is inside a collision trigger, else 0
};

#pragma pack(pop)

inline constexpr int UDP_RECV_WIRE_SIZE = 108;  ///< bytes of a UdpRecvData on the wire
inline constexpr int UDP_SEND_WIRE_SIZE = 60;   ///< bytes of a UdpSendData on the wire

static_assert(std::is_trivially_copyable_v<UdpRecvData> && std::is_standard_layout_v<UdpRecvData>);
static_assert(sizeof(UdpRecvData) == 128);
static_assert(offsetof(UdpRecvData, nSimOrder) == 0);
static_assert(offsetof(UdpRecvData, recvWord1) == 4);
static_assert(offsetof(UdpRecvData, recvFloat1) == 8);
static_assert(offsetof(UdpRecvData, recvFloat2) == 12);
static_assert(offsetof(UdpRecvData, recvFloat3) == 16);
static_assert(offsetof(UdpRecvData, recvDouble1) == 20);
static_assert(offsetof(UdpRecvData, recvDouble2) == 28);
static_assert(offsetof(UdpRecvData, recvFloat4) == 36);
static_assert(offsetof(UdpRecvData, recvDoubles) == 40);
static_assert(offsetof(UdpRecvData, recvWord2) == 96);
static_assert(offsetof(UdpRecvData, recvWord3) == 100);
static_assert(offsetof(UdpRecvData, recvWord4) == 104);
static_assert(offsetof(UdpRecvData, targets) == UDP_RECV_WIRE_SIZE);

static_assert(std::is_trivially_copyable_v<UdpSendData> && std::is_standard_layout_v<UdpSendData>);
static_assert(sizeof(UdpSendData) == UDP_SEND_WIRE_SIZE);
static_assert(offsetof(UdpSendData, nCounter) == 0);
static_assert(offsetof(UdpSendData, fTerrainHeightLG) == 4);
static_assert(offsetof(UdpSendData, fThetaLG) == 16);
static_assert(offsetof(UdpSendData, fPhiLG) == 28);
static_assert(offsetof(UdpSendData, fPsiLG) == 40);
static_assert(offsetof(UdpSendData, fTerrainHeightCG) == 52);
static_assert(offsetof(UdpSendData, nCollisionDetect) == 56);

/// One target to show. In memory only, never on the wire.
struct TargetInfo {
    jString name;            ///< the target's identifier, such as "001"
    std::uint16_t type = 0;  ///< selects the model: key "_" + decimal code in the configuration's "target_type"
    std::uint16_t code = 0;  ///< second code
    std::uint8_t flag1 = 0;
    std::uint8_t flag2 = 0;
    /// Longitude and latitude (degrees), height (metres), then five more values; index 4 is the heading (degrees).
    double pose[8] = {};
    jString path;              ///< path of the model's prefab
    std::uint64_t world = 0;   ///< world handle
    std::uint64_t handle = 0;  ///< second handle of the logic
};
