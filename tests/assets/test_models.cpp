// The models of the demonstration's aircraft and ship: unit normals on the side from which a face is drawn, and texture
// coordinates where there is a texture.
#include "support/DemoScene.h"

namespace {

struct Tally {
    std::size_t triangles = 0, inside_out = 0, bad_normals = 0, bad_uvs = 0;
};

void count(const MeshSurface& surface, Tally& tally) {
    const auto at = [](const std::array<float, 3>& v) { return dvec3(v[0], v[1], v[2]); };
    const std::size_t vertices = surface.positions.size();
    if (surface.normals.size() != vertices) ++tally.bad_normals;
    if (surface.material->base_texture && surface.uvs.size() != vertices) ++tally.bad_uvs;
    for (const auto& n : surface.normals) tally.bad_normals += std::abs(length(at(n)) - 1.0) > 1e-3;
    for (const auto& uv : surface.uvs) tally.bad_uvs += !std::isfinite(uv[0]) || !std::isfinite(uv[1]);
    tally.triangles += surface.indices.size() / 3;
    for (std::size_t i = 0; i + 2 < surface.indices.size(); i += 3) {
        const std::uint32_t* const c = &surface.indices[i];
        const dvec3 a = at(surface.positions[c[0]]);
        const dvec3 face = cross(at(surface.positions[c[1]]) - a, at(surface.positions[c[2]]) - a);
        for (int k = 0; k < 3; ++k) tally.inside_out += dot(face, at(surface.normals[c[k]])) < 0.0;
    }
}

void count(const ModelNode& node, Tally& tally) {
    if (node.mesh) {
        for (const MeshSurface& surface : node.mesh->surfaces) count(surface, tally);
    }
    for (const ModelNode& child : node.children) count(child, tally);
}

}  // namespace

TEST_F(DemoScene, FacesOfAircraftAndShipLookOutward) {
    for (const char* file : {"FJ_CN_J15/FJ_CN_J15.glb", "FJ_CN_J15/FJ_CN_J15_destroyed.glb", "EXTRA300S/EXTRA300S.glb",
                             "EXTRA300S/EXTRA300S_destroyed.glb", "HELICOPTER/HELICOPTER.glb",
                             "JT_CN_LNJ/JT_CN_LNJ.glb", "JT_CN_LNJ/JT_CN_LNJ_fittings.glb"}) {
        const auto model = loadModel(jString("data/assets/Targets/MODELS/") + file);
        ASSERT_TRUE(model) << file;
        Tally tally;
        for (const ModelNode& node : model->nodes) count(node, tally);
        EXPECT_GT(tally.triangles, 0u) << file;
        EXPECT_EQ(tally.bad_normals, 0u) << file;
        EXPECT_EQ(tally.bad_uvs, 0u) << file;
        EXPECT_EQ(tally.inside_out, 0u) << file;
    }
    EXPECT_TRUE(complaints().empty()) << complaints().front();
}
