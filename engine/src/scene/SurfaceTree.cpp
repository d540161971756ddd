// Triangle trees with Embree: built when a mesh is loaded, used by intersection queries at any point of the frame.
#include "scene/SurfaceTree.h"

#include <embree3/rtcore.h>

#include <algorithm>
#include <cmath>
#include <numeric>

#include "engine/scene/MeshData.h"

namespace {

/// Metres; a segment that ends this close to a triangle touches it: the rounding of geocentric coordinates.
constexpr double TOUCH = 1e-8;

/// One device per process. Building on one thread makes the trees of equal meshes equal in every run.
RTCDevice getDevice() {
    struct Device {
        RTCDevice handle = rtcNewDevice("threads=1");
        ~Device() { rtcReleaseDevice(handle); }
    };
    static const Device device;
    return device.handle;
}

dvec3 toDouble(const std::array<float, 3>& p) {
    return {p[0], p[1], p[2]};
}

/// At least `count` consecutive numbers from 0: the corners are in order in every tree, so all trees share the longest
/// list.
std::shared_ptr<const std::vector<std::uint32_t>> countUp(std::size_t count) {
    static std::shared_ptr<const std::vector<std::uint32_t>> longest;
    if (!longest || longest->size() < count) {
        std::vector<std::uint32_t> numbers(count);
        std::iota(numbers.begin(), numbers.end(), 0u);
        longest = std::make_shared<const std::vector<std::uint32_t>>(std::move(numbers));
    }
    return longest;
}

/// The part of the segment inside the box, as fractions of it; false when it stays outside.
bool clip(const BoundBox& box, const dvec3& from, const dvec3& step, double& first, double& last) {
    first = 0.0;
    last = 1.0;
    for (int axis = 0; axis < 3; ++axis) {
        const double lo = box.min[axis] - from[axis], hi = box.max[axis] - from[axis];
        if (step[axis] == 0.0) {
            if (lo > 0.0 || hi < 0.0) return false;
            continue;
        }
        const double inverse = 1.0 / step[axis], a = lo * inverse, b = hi * inverse;
        first = std::max(first, std::min(a, b));
        last = std::min(last, std::max(a, b));
    }
    return first <= last;
}

}  // namespace

struct SurfaceTreeScene {
    RTCScene handle = rtcNewScene(getDevice());

    SurfaceTreeScene() { rtcSetSceneFlags(handle, RTC_SCENE_FLAG_ROBUST | RTC_SCENE_FLAG_COMPACT); }
    ~SurfaceTreeScene() { rtcReleaseScene(handle); }
    SurfaceTreeScene(const SurfaceTreeScene&) = delete;
    SurfaceTreeScene& operator=(const SurfaceTreeScene&) = delete;
};

SurfaceTree::SurfaceTree(const MeshSurface& surface) {
    const std::size_t count = surface.indices.size() / 3;
    if (count == 0) return;
    m_triangles.resize(count + 1);
    for (std::size_t i = 0; i < 3 * count; ++i) {
        const std::array<float, 3>& corner = surface.positions[surface.indices[i]];
        m_triangles[i / 3][i % 3] = corner;
        m_bounds.expand(toDouble(corner));
    }
    const dvec3 farthest(std::max(std::fabs(m_bounds.min.x), std::fabs(m_bounds.max.x)),
                         std::max(std::fabs(m_bounds.min.y), std::fabs(m_bounds.max.y)),
                         std::max(std::fabs(m_bounds.min.z), std::fabs(m_bounds.max.z)));
    m_slack = 4e-6 * length(farthest);
    const dvec3 slack(m_slack, m_slack, m_slack);
    m_reach = BoundBox(m_bounds.min - slack, m_bounds.max + slack);

    m_scene = std::make_unique<SurfaceTreeScene>();
    const RTCGeometry geometry = rtcNewGeometry(getDevice(), RTC_GEOMETRY_TYPE_TRIANGLE);
    rtcSetSharedGeometryBuffer(geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3, m_triangles.data(), 0,
                               3 * sizeof(float), 3 * count);
    m_indices = countUp(3 * count);
    rtcSetSharedGeometryBuffer(geometry, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3, m_indices->data(), 0,
                               3 * sizeof(std::uint32_t), count);
    rtcCommitGeometry(geometry);
    rtcAttachGeometry(m_scene->handle, geometry);
    rtcReleaseGeometry(geometry);
    rtcCommitScene(m_scene->handle);
}

SurfaceTree::~SurfaceTree() = default;

/// Single precision selects the triangle, from a start just outside the box or the segment's own start; the
/// intersection with that triangle's plane is then computed in double precision.
bool SurfaceTree::intersect(const dvec3& from, const dvec3& to, dvec3& hit) const {
    const dvec3 step = to - from;
    const double whole = length(step);
    double first, last;
    if (!m_scene || !(whole > 0.0) || !std::isfinite(whole) || !clip(m_reach, from, step, first, last)) return false;
    const dvec3 direction = step / whole;
    const dvec3 origin = from + step * first - direction * m_slack;
    const float reach = static_cast<float>((last - first) * whole + 2.0 * m_slack);

    RTCIntersectContext context;
    rtcInitIntersectContext(&context);
    float near = 0.0f;
    while (near < reach) {
        RTCRayHit ray;
        ray.ray = {float(origin.x),
                   float(origin.y),
                   float(origin.z),
                   near,
                   float(direction.x),
                   float(direction.y),
                   float(direction.z),
                   0.0f,
                   reach,
                   ~0u,
                   0,
                   0};
        ray.hit.geomID = RTC_INVALID_GEOMETRY_ID;
        ray.hit.instID[0] = RTC_INVALID_GEOMETRY_ID;
        rtcIntersect1(m_scene->handle, &context, &ray);
        if (ray.hit.geomID == RTC_INVALID_GEOMETRY_ID) return false;
        const double t = meet(ray.hit.primID, from, step, first + (ray.ray.tfar - m_slack) / whole);
        if ((t - 1.0) * whole > TOUCH) return false;
        if (t * whole >= -TOUCH) {
            hit = from + step * std::clamp(t, 0.0, 1.0);
            return true;
        }
        near = std::nextafter(ray.ray.tfar, reach);  // there may be a triangle just behind the segment's start
    }
    return false;
}

/// Fraction of the segment at its intersection with the triangle's plane. Undefined for a segment in the plane: then
/// the ray's own result is used, which is accurate to the slack.
double SurfaceTree::meet(unsigned triangle, const dvec3& from, const dvec3& step, double guess) const {
    const Corners& corners = m_triangles[triangle];
    const dvec3 a = toDouble(corners[0]), b = toDouble(corners[1]), c = toDouble(corners[2]);
    const dvec3 normal = cross(b - a, c - a);
    const double t = dot(normal, a - from) / dot(normal, step);
    const double slack = 10.0 * m_slack / length(step);
    return std::fabs(t - guess) <= slack ? t : guess;
}
