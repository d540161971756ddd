// What every model of the demonstration's aircraft and of its ship owes the picture: few triangles, faces that look the
// way their normals say, texture coordinates where there is a texture, a file that loads at once.
#include <cmath>
#include <filesystem>

#include "app/DemoScene.h"
#include "support/Paths.h"

namespace {

struct Tally {
    std::size_t triangles = 0, inside_out = 0, bad_normals = 0, bad_uvs = 0;
};

dvec3 at(const std::vector<std::array<float, 3>>& values, std::uint32_t i) {
    return {values[i][0], values[i][1], values[i][2]};
}

void count(const MeshSurface& surface, Tally& tally) {
    tally.triangles += surface.indices.size() / 3;
    for (const auto& n : surface.normals) {
        if (std::abs(std::hypot(n[0], n[1], n[2]) - 1.0) > 1e-3) ++tally.bad_normals;
    }
    if (surface.normals.size() != surface.positions.size()) ++tally.bad_normals;
    if (surface.material->base_texture && surface.uvs.size() != surface.positions.size()) ++tally.bad_uvs;
    for (const auto& uv : surface.uvs) {
        if (!std::isfinite(uv[0]) || !std::isfinite(uv[1])) ++tally.bad_uvs;
    }
    for (std::size_t i = 0; i + 2 < surface.indices.size(); i += 3) {
        const std::uint32_t* const c = &surface.indices[i];
        const dvec3 a = at(surface.positions, c[0]);
        const dvec3 face = cross(at(surface.positions, c[1]) - a, at(surface.positions, c[2]) - a);
        for (int k = 0; k < 3; ++k) {
            if (dot(face, at(surface.normals, c[k])) < 0.0) ++tally.inside_out;
        }
    }
}

void count(const ModelNode& node, Tally& tally) {
    if (node.mesh) {
        for (const MeshSurface& surface : node.mesh->surfaces) count(surface, tally);
    }
    for (const ModelNode& child : node.children) count(child, tally);
}

}  // namespace

TEST_F(DemoScene, AircraftAndShipAreLeanAndTheirFacesLookOutward) {
    for (const char* file : {"FJ_CN_J15/FJ_CN_J15.glb", "FJ_CN_J15/FJ_CN_J15_destroyed.glb", "EXTRA300S/EXTRA300S.glb",
                             "EXTRA300S/EXTRA300S_destroyed.glb", "HELICOPTER/HELICOPTER.glb",
                             "JT_CN_LNJ/JT_CN_LNJ.glb", "JT_CN_LNJ/JT_CN_LNJ_fittings.glb"}) {
        const jString path = jString("data/assets/Targets/MODELS/") + file;
        const auto model = loadModel(path);
        ASSERT_TRUE(model) << file;
        Tally tally;
        for (const ModelNode& node : model->nodes) count(node, tally);
        EXPECT_GT(tally.triangles, 5000u) << file;
        EXPECT_LT(tally.triangles, 60000u) << file;
        EXPECT_EQ(tally.bad_normals, 0u) << file;
        EXPECT_EQ(tally.bad_uvs, 0u) << file;
        EXPECT_EQ(tally.inside_out, 0u) << file;
        EXPECT_LT(std::filesystem::file_size(jString(DECKVIEW_ROOT) + "/" + path), 6000000u) << file;
    }
    EXPECT_TRUE(complaints().empty()) << complaints().front();
}
