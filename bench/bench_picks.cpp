// Segment picks and terrain lookups compared with their minimum cost: a bare ray in the pick library's own tree, a bare
// array access.
#include <embree3/rtcore.h>

#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include "Bench.h"
#include "engine/core/Engine.h"
#include "engine/memory/Allocator.h"
#include "engine/scene/ElevationRaster.h"
#include "engine/scene/MeshData.h"
#include "engine/scene/ObjectMeshStatic.h"
#include "engine/scene/ObjectTerrain.h"
#include "engine/scene/World.h"
#include "scene/ModelLoader.h"
#include "scene/TerrainPick.h"
#include "src/logic/Logic_Test_Fly.h"

namespace {

constexpr int QUERIES = 10000;
constexpr int ROUNDS = 31;

/// An uneven sheet of cells x cells x 2 triangles, `width` by `length` metres around the origin.
MeshSurface makeSheet(int columns, int rows, double width, double length, Random& r) {
    MeshSurface surface;
    for (int y = 0; y <= rows; ++y) {
        for (int x = 0; x <= columns; ++x) {
            surface.positions.push_back({float((double(x) / columns - 0.5) * width),
                                         float((double(y) / rows - 0.5) * length), r.getFloat(0.0f, 0.3f)});
        }
    }
    for (int y = 0; y < rows; ++y) {
        for (int x = 0; x < columns; ++x) {
            const auto a = static_cast<std::uint32_t>(y * (columns + 1) + x),
                       c = a + static_cast<std::uint32_t>(columns) + 1;
            surface.indices.insert(surface.indices.end(), {a, a + 1, c + 1, a, c + 1, c});
        }
    }
    return surface;
}

std::shared_ptr<const MeshData> makeMesh(const MeshSurface& surface) {
    return std::make_shared<MeshData>(std::vector<MeshSurface>{surface});
}

/// The floor: the same triangles in a tree of the library, queried with rays in its own frame and precision.
class BareTree {
public:
    explicit BareTree(const MeshSurface& surface) {
        const RTCGeometry geometry = rtcNewGeometry(m_device, RTC_GEOMETRY_TYPE_TRIANGLE);
        void* const vertices = rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3, 12,
                                                       surface.positions.size());
        std::memcpy(vertices, surface.positions.data(), surface.positions.size() * 12);
        void* const indices = rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3, 12,
                                                      surface.indices.size() / 3);
        std::memcpy(indices, surface.indices.data(), surface.indices.size() * 4);
        rtcCommitGeometry(geometry);
        rtcAttachGeometry(m_scene, geometry);
        rtcReleaseGeometry(geometry);
        rtcSetSceneFlags(m_scene, RTC_SCENE_FLAG_ROBUST);
        rtcCommitScene(m_scene);
    }
    ~BareTree() {
        rtcReleaseScene(m_scene);
        rtcReleaseDevice(m_device);
    }

    float pick(float x, float y) const {
        RTCIntersectContext context;
        rtcInitIntersectContext(&context);
        RTCRayHit ray;
        ray.ray = {x, y, 20.0f, 0.0f, 0.0f, 0.0f, -1.0f, 0.0f, 40.0f, ~0u, 0, 0};
        ray.hit.geomID = RTC_INVALID_GEOMETRY_ID;
        rtcIntersect1(m_scene, &context, &ray);
        return ray.ray.tfar;
    }

private:
    RTCDevice m_device = rtcNewDevice(nullptr);
    RTCScene m_scene = rtcNewScene(m_device);
};

struct Segment {
    dvec3 from, to;
    float x, y;
};

int g_failures = 0;
double g_sum = 0.0;  ///< sum of the results: prevents removal of the calls by the optimiser

bench::Costs row(const char* what, double limit, const bench::Costs& costs) {
    bench::printRow(what, costs, limit);
    if (costs.ours > limit * costs.floor) ++g_failures;
    return costs;
}

/// A ship's deck of 100,000 triangles at sea, and deck probes like those of the terrain feedback, through the logic.
class Deck {
public:
    Deck(const MeshSurface& surface, const dmat4& place)
        : m_logic(static_cast<Logic_Test_Fly*>(CreateLogic(&m_world, Engine::get()->getCameraControl()))) {
        add(makeMesh(surface), place);
    }
    ~Deck() { jDelete<LogicBase>(m_logic); }

    void add(const std::shared_ptr<const MeshData>& mesh, const dmat4& place) {
        auto object = std::make_unique<ObjectMeshStatic>(mesh);
        object->setTransform(place);
        m_world.addChild(std::move(object));
    }
    void probe(const std::vector<Segment>& segments) {
        for (const Segment& s : segments) {
            dvec3 hit;
            if (m_logic->select_object(s.from, s.to, &hit) == nullptr) ++g_failures;
            g_sum += hit.x;
        }
    }

private:
    World m_world;
    Logic_Test_Fly* m_logic;
};

void benchPicks() {
    Engine engine;
    Random r(1);
    const MeshSurface surface = makeSheet(250, 200, 70.0, 300.0, r);
    const dvec3 place = engine.getEllipsoid().toWorld({112.35, 16.84, 20.0});
    const dmat4 frame(engine.getEllipsoid().fromWgsHPR(place, {67.0, 0.4, -0.7}), place);
    std::vector<Segment> segments;
    for (int i = 0; i < QUERIES; ++i) {
        const double x = r.getDouble(-34.0, 34.0), y = r.getDouble(-149.0, 149.0);
        segments.push_back({frame * dvec3(x, y, 20.0), frame * dvec3(x, y, -20.0), float(x), float(y)});
    }
    Deck alone(surface, frame), among(surface, frame);
    const auto part = makeMesh(makeSheet(30, 15, 20.0, 20.0, r));
    for (int i = 0; i < 999; ++i) {
        among.add(part, frame * dmat4::translation({r.getDouble(-3e3, 3e3), r.getDouble(-3e3, 3e3), -40.0}));
    }
    const BareTree bare(surface);
    row("pick down 100,000 triangles / bare tree", 2.0,
        bench::compare(
            ROUNDS, QUERIES, [&] { alone.probe(segments); },
            [&] {
                for (const Segment& s : segments) g_sum += bare.pick(s.x, s.y);
            }));
    row("the same among 1,000 objects, 1,000,000 triangles / alone", 3.0,
        bench::compare(
            ROUNDS, QUERIES, [&] { among.probe(segments); }, [&] { alone.probe(segments); }));
}

/// A folder for the files to read, removed with this object.
struct Folder {
    std::filesystem::path path = std::filesystem::temp_directory_path() / "deckview_bench_picks";

    Folder() { std::filesystem::create_directories(path); }
    ~Folder() { std::filesystem::remove_all(path); }
};

template <class T>
void append(std::string& bytes, const T* values, std::size_t count) {
    bytes.append(reinterpret_cast<const char*>(values), count * sizeof(T));
}

/// A binary model of one sheet without normals, so that the loader also computes them.
std::string makeModel(const MeshSurface& sheet) {
    const std::size_t vertices = sheet.positions.size(), indices = sheet.indices.size(), first = vertices * 12;
    const auto number = [](std::size_t n) { return std::to_string(n); };
    std::string json =
        R"({"asset":{"version":"2.0"},"scenes":[{"nodes":[0]}],"nodes":[{"mesh":0}],"meshes":[{"primitives":[{)"
        R"("attributes":{"POSITION":0},"indices":1}]}],"accessors":[{)"
        R"("bufferView":0,"componentType":5126,"type":"VEC3","count":)" +
        number(vertices) + R"(},{"bufferView":1,"componentType":5125,"type":"SCALAR","count":)" + number(indices) +
        R"(}],"bufferViews":[{"buffer":0,"byteLength":)" + number(first) + R"(},{"buffer":0,"byteOffset":)" +
        number(first) + R"(,"byteLength":)" + number(indices * 4) + R"(}],"buffers":[{"byteLength":)" +
        number(first + indices * 4) + "}]}";
    json.resize((json.size() + 3) / 4 * 4, ' ');
    const std::uint32_t data = static_cast<std::uint32_t>(first + indices * 4),
                        text = static_cast<std::uint32_t>(json.size());
    const std::uint32_t head[] = {0x46546C67, 2, 28 + text + data, text, 0x4E4F534A}, next[] = {data, 0x004E4942};
    std::string out;
    append(out, head, 5);
    out += json;
    append(out, next, 2);
    append(out, sheet.positions.data(), vertices);
    append(out, sheet.indices.data(), indices);
    return out;
}

void benchLoading() {
    const Folder folder;
    Random r(3);
    const std::string bytes = makeModel(makeSheet(200, 150, 60.0, 60.0, r));
    std::ofstream(folder.path / "model.glb", std::ios::binary) << bytes;
    std::vector<double> times;
    for (int i = 0; i < 9; ++i) {
        clearModelCache();
        times.push_back(bench::seconds([&] {
            if (!loadModel((folder.path / "model.glb").string())) ++g_failures;
        }));
    }
    clearModelCache();
    const double time = bench::median(times);
    std::printf("a model of 60,000 triangles is loaded in %.1f ms (limit 100)\n", time * 1e3);
    if (time > 0.1) ++g_failures;
}

/// A raster of hills in a file in the engine's format, and the same posts in an array.
class Hills {
public:
    static constexpr int POSTS = 1500;
    static constexpr double STEP = 0.0003, WEST = 112.0, NORTH = 17.0;

    Hills() {
        std::vector<float> from_north(static_cast<std::size_t>(POSTS) * POSTS);
        posts.resize(from_north.size());
        for (int i = 0; i < POSTS * POSTS; ++i) {
            const int c = i % POSTS, row_from_north = i / POSTS;
            const double h =
                150.0 * std::sin(c * 0.03) * std::cos(row_from_north * 0.02) + 3.0 * std::sin(c * 1.7 + row_from_north);
            from_north[static_cast<std::size_t>(i)] = float(h);
            posts[static_cast<std::size_t>((POSTS - 1 - row_from_north) * POSTS + c)] = float(h);
        }
        std::ofstream(m_folder.path / "hills.raw", std::ios::binary)
            .write(reinterpret_cast<const char*>(from_north.data()),
                   static_cast<std::streamsize>(from_north.size() * 4));
        std::ofstream(m_folder.path / "hills.vrt")
            << "<VRTDataset rasterXSize=\"1500\" rasterYSize=\"1500\"><SRS>EPSG:4326</SRS>"
               "<GeoTransform>111.99985,0.0003,0,17.00015,0,-0.0003</GeoTransform>"
               "<VRTRasterBand dataType=\"Float32\" band=\"1\" subClass=\"VRTRawRasterBand\">"
               "<SourceFilename relativetoVRT=\"1\">hills.raw</SourceFilename><PixelOffset>4</PixelOffset>"
               "<LineOffset>6000</LineOffset><ByteOrder>LSB</ByteOrder></VRTRasterBand></VRTDataset>";
    }

    jString getFile() const { return (m_folder.path / "hills.vrt").string(); }

    double bilinear(double lon, double lat) const {
        const double c = (lon - WEST) / STEP, r = (lat - NORTH) / STEP + (POSTS - 1);
        const int i = static_cast<int>(c), j = static_cast<int>(r);
        const double u = c - i, v = r - j;
        const float* const p = &posts[static_cast<std::size_t>(j * POSTS + i)];
        return (p[0] * (1 - u) + p[1] * u) * (1 - v) + (p[POSTS] * (1 - u) + p[POSTS + 1] * u) * v;
    }

    std::vector<float> posts;  ///< south row first

private:
    Folder m_folder;
};

void benchTerrain() {
    const Hills hills;
    const ObjectTerrain terrain(hills.getFile(), "");
    if (!terrain.isLoaded()) std::exit(1);
    Random r(2);
    const EllipsoidModel globe;
    std::vector<dvec3> places;
    std::vector<Segment> down, near, slanted, skimming;
    for (int i = 0; i < QUERIES; ++i) {
        const dvec3 p(r.getDouble(112.01, 112.44), r.getDouble(16.56, 16.99), 0.0);
        places.push_back(p);
        down.push_back({globe.toWorld({p.x, p.y, 100e3}), globe.toWorld({p.x, p.y, -500.0}), 0, 0});
        near.push_back({globe.toWorld({p.x, p.y, 500.0}), globe.toWorld({p.x + 1e-6, p.y, -500.0}), 0, 0});
        slanted.push_back({globe.toWorld({p.x + 0.9, p.y, 10e3}), globe.toWorld({p.x, p.y, -500.0}), 0, 0});
        skimming.push_back({globe.toWorld({112.0, p.y, 180.0}), globe.toWorld({112.44, p.y, 180.0}), 0, 0});
    }
    row("height at a place / bilinear look into an array", 30.0,
        bench::compare(
            ROUNDS, QUERIES,
            [&] {
                for (const dvec3& p : places) {
                    double height = 0.0;
                    if (!terrain.getAltitudeByLonLat(p.x, p.y, height)) ++g_failures;
                    g_sum += height;
                }
            },
            [&] {
                for (const dvec3& p : places) g_sum += hills.bilinear(p.x, p.y);
            }));
    const auto picks = [&](const char* what, const std::vector<Segment>& segments, double limit) {
        row(what, limit,
            bench::compare(
                ROUNDS, QUERIES,
                [&] {
                    for (const Segment& s : segments) {
                        dvec3 hit;
                        pickGround(terrain.getRaster(), s.from, s.to, hit);
                        g_sum += hit.x;
                    }
                },
                [&] {
                    for (const Segment& s : segments) g_sum += globe.toWGS(s.from).x;
                }));
    };
    picks("ground pick straight down 100 km / one geodetic conversion", down, 15.0);
    picks("ground pick within a cell, 1 km / the same", near, 15.0);
    picks("ground pick slanted, 100 km / the same", slanted, 150.0);
    picks("ground pick skimming the tops, 47 km / the same", skimming, 300.0);
}

}  // namespace

int main() {
    bench::printHeader();
    benchPicks();
    benchTerrain();
    benchLoading();
    std::printf("check sum %.6g\n", g_sum);
    if (g_failures > 0) std::printf("%d outside their limits\n", g_failures);
    return g_failures > 0 ? 1 : 0;
}
