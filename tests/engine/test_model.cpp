// Model files: axes, geometry, materials, and everything that can be wrong with a file.
#include <array>
#include <cmath>
#include <cstring>
#include <filesystem>

#include "engine/scene/MeshData.h"
#include "engine/scene/ObjectMeshStatic.h"
#include "scene/ModelLoader.h"
#include "support/TestScene.h"

namespace {

template <class T>
void append(std::string& bytes, std::initializer_list<T> values) {
    for (const T v : values) bytes.append(reinterpret_cast<const char*>(&v), sizeof v);
}

std::string replaced(std::string text, const std::string& what, const std::string& with) {
    const std::size_t at = text.find(what);
    if (at == std::string::npos) throw std::logic_error("the test's text does not hold " + what);
    return text.replace(at, what.size(), with);
}

std::string toGlb(std::string json, std::string bin) {
    json.resize((json.size() + 3) / 4 * 4, ' ');
    bin.resize((bin.size() + 3) / 4 * 4, '\0');
    std::string out = "glTF";
    append<std::uint32_t>(out, {2, static_cast<std::uint32_t>(28 + json.size() + bin.size()),
                                static_cast<std::uint32_t>(json.size()), 0x4E4F534A});
    out += json;
    append<std::uint32_t>(out, {static_cast<std::uint32_t>(bin.size()), 0x004E4942});
    return out + bin;
}

/// Four vertices without symmetry, at 0: positions, 48: normals, 96: a strip of indices (16 bits), 104: an image.
std::string makeBin() {
    std::string bin;
    append<float>(bin, {1, 0, 0, 1, 2, 0, 4, 0, 0, 4, 2, 3});
    append<float>(bin, {0, 1, 0, 0, 0, 1, 0, 1, 0, 0, 1, 0});
    append<std::uint16_t>(bin, {0, 1, 2, 3});
    return bin + "PNG?";
}

const std::string JSON = R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[0]}],
"nodes":[{"name":"hull","translation":[1,2,3],"rotation":[0,0.70710678118654752,0,0.70710678118654752],"scale":[2,3,4],
"mesh":0,"children":[1]},{"name":"mast","translation":[0,10,0]}],
"meshes":[{"primitives":[{"attributes":{"POSITION":0,"NORMAL":1},"indices":2,"mode":5,"material":0}]}],
"accessors":[{"bufferView":0,"componentType":5126,"count":4,"type":"VEC3"},
{"bufferView":0,"byteOffset":48,"componentType":5126,"count":4,"type":"VEC3"},
{"bufferView":1,"componentType":5123,"count":4,"type":"SCALAR"}],
"bufferViews":[{"buffer":0,"byteLength":96},{"buffer":0,"byteOffset":96,"byteLength":8},
{"buffer":0,"byteOffset":104,"byteLength":4}],
"materials":[{"name":"paint","pbrMetallicRoughness":{"baseColorFactor":[0.1,0.2,0.3,0.4],"metallicFactor":0.5,
"baseColorTexture":{"index":0}},"emissiveFactor":[1,0.5,0],"emissiveTexture":{"index":1},"alphaMode":"MASK",
"alphaCutoff":0.25,"doubleSided":true,"extensions":{"KHR_materials_emissive_strength":{"emissiveStrength":4}}}],
"textures":[{"source":0},{"source":0}],"images":[{"bufferView":2,"mimeType":"image/png"}],
"buffers":[{"byteLength":108}]})";

void expectNear(const dvec3& a, const dvec3& b) {
    EXPECT_LT(length(a - b), 1e-5) << a.x << " " << a.y << " " << a.z;
}
void expectNear(const std::array<float, 3>& a, const dvec3& b) {
    expectNear(dvec3(a[0], a[1], a[2]), b);
}

class ModelTest : public SceneTest {
protected:
    std::shared_ptr<const Model> load(const std::string& bytes) {
        std::filesystem::remove(root() / "data/m/model.glb");  // a new file: some file systems flush rewritten ones
        write("data/m/model.glb", bytes);
        clearModelCache();
        return loadModel("data/m/model.glb");
    }
    std::shared_ptr<const Model> load(const std::string& json, const std::string& bin) {
        return load(toGlb(json, bin));
    }
    /// The sample with indices of its own kind behind the image.
    std::shared_ptr<const Model> loadIndexed(std::string json, const std::string& bin, int mode, int component,
                                             std::size_t count, const std::string& indices) {
        json = replaced(json, R"("mode":5)", "\"mode\":" + std::to_string(mode));
        json = replaced(json, R"("componentType":5123,"count":4)",
                        "\"componentType\":" + std::to_string(component) + ",\"count\":" + std::to_string(count));
        json = replaced(json, R"("byteOffset":96,"byteLength":8)",
                        "\"byteOffset\":108,\"byteLength\":" + std::to_string(indices.size()));
        json = replaced(json, R"("byteLength":108)", "\"byteLength\":" + std::to_string(108 + indices.size()));
        return load(json, bin + indices);
    }
    static const MeshSurface& surfaceOf(const Model& model) { return model.nodes.at(0).mesh->surfaces.at(0); }
    /// Whatever was loaded must be fit to be drawn and picked.
    static void expectSound(const ModelNode& node) {
        EXPECT_TRUE(isFinite(node.transform));
        for (const ModelNode& child : node.children) expectSound(child);
        if (!node.mesh) return;
        for (const MeshSurface& s : node.mesh->surfaces) {
            EXPECT_EQ(s.indices.size() % 3, 0u);
            for (const std::uint32_t index : s.indices) ASSERT_LT(index, s.positions.size());
            for (const std::size_t size : {s.normals.size(), s.tangents.size(), s.uvs.size()}) {
                EXPECT_TRUE(size == 0 || size == s.positions.size());
            }
            ASSERT_TRUE(s.material);
        }
    }
};

TEST_F(ModelTest, GeometryAndNodesAreReadWithZUpAndMaterialsWithTheirImages) {
    const auto model = load(JSON, makeBin());
    ASSERT_TRUE(model) << (lines().empty() ? "" : lines()[0]);
    const MeshSurface& s = surfaceOf(*model);
    expectNear(s.positions[3], {4, -3, 2});
    expectNear(s.normals[0], {0, 0, 1});
    expectNear(s.normals[1], {0, -1, 0});

    Node* const parent = addNode("parent");
    instantiateModel(*model, *parent);
    Node* const hull = parent->getChildByName("hull");
    ASSERT_TRUE(hull);
    // In the file the vertex (4, 2, 3) is scaled to (8, 6, 12), a quarter turn about Y makes that (12, 6, -8), the
    // translation (13, 8, -5).
    expectNear(hull->getWorldTransform() * dvec3(4, -3, 2), {13, 5, 8});
    Node* const mast = hull->getChildByName("mast");
    ASSERT_TRUE(mast);
    expectNear(mast->getWorldPosition(), {1, -3, 32});
    EXPECT_EQ(lines().size(), 0u);

    const Material& m = *surfaceOf(*model).material;
    EXPECT_EQ(m.base_color, vec4(0.1f, 0.2f, 0.3f, 0.4f));
    EXPECT_EQ(m.emission.x, 4.0f);
    EXPECT_EQ(m.emission.y, 2.0f);
    EXPECT_EQ(m.alpha, Material::MASK);
    EXPECT_EQ(m.alpha_cutoff, 0.25f);
    EXPECT_TRUE(m.double_sided);
    ASSERT_TRUE(m.base_texture);
    EXPECT_EQ(m.base_texture, m.emission_texture);
    const std::vector<unsigned char> image = m.base_texture->read();
    EXPECT_EQ(std::string(image.begin(), image.end()), "PNG?");

    const auto matrix = load(
        replaced(JSON,
                 R"("translation":[1,2,3],"rotation":[0,0.70710678118654752,0,0.70710678118654752],"scale":[2,3,4])",
                 R"("matrix":[0,0,-2,0, 0,3,0,0, 4,0,0,0, 1,2,3,1])"),
        makeBin());
    ASSERT_TRUE(matrix);
    EXPECT_LT(difference(model->nodes[0].transform, matrix->nodes[0].transform), 1e-9);
}

TEST_F(ModelTest, TrianglesFromEveryKindOfIndex) {
    struct Case {
        const char* what;
        int mode, component;
        std::string bytes;
        std::size_t count;
        std::vector<std::uint32_t> expected;
    };
    std::string small, wide;
    append<std::uint8_t>(small, {3, 1, 2, 0, 1, 2});
    append<std::uint32_t>(wide, {3, 1, 2, 2, 1, 0});
    for (const Case& c : {Case{"strip of bytes", 5, 5121, small.substr(0, 4), 4, {3, 1, 2, 2, 1, 0}},
                          Case{"fan", 6, 5121, small.substr(0, 4), 4, {3, 1, 2, 3, 2, 0}},
                          Case{"words, one triangle incomplete", 4, 5125, wide, 5, {3, 1, 2}}}) {
        const auto model = loadIndexed(JSON, makeBin(), c.mode, c.component, c.count, c.bytes);
        ASSERT_TRUE(model) << c.what;
        EXPECT_EQ(surfaceOf(*model).indices, c.expected) << c.what;
    }
}

TEST_F(ModelTest, MissingNormalsAreSmoothWhereTheSurfaceIsAndSharpWhereItIsNot) {
    // Two triangles over a shared edge along X: the first is level, the second at an angle to it.
    for (const double angle : {20.0, 90.0}) {
        const float y = static_cast<float>(std::sin(angle * jMath::DEG2RAD)),
                    z = static_cast<float>(std::cos(angle * jMath::DEG2RAD));
        std::string bin, indices;
        append<float>(bin, {0, 0, 0, 1, 0, 0, 0, 0, 1, 0, y, -z});
        append<std::uint16_t>(indices, {2, 1, 0, 0, 1, 3});
        const auto model =
            loadIndexed(replaced(JSON, R"(,"NORMAL":1)", ""), bin + makeBin().substr(48), 4, 5123, 6, indices);
        ASSERT_TRUE(model);
        const MeshSurface& s = surfaceOf(*model);
        ASSERT_EQ(s.normals.size(), s.positions.size());
        const auto normal = [&](std::size_t corner) { return s.normals[s.indices[corner]]; };
        const bool sharp = angle > 45.0;
        const double lean = sharp ? 0.0 : 0.5 * angle * jMath::DEG2RAD;
        EXPECT_NEAR(std::abs(normal(1)[2]), std::cos(lean), 1e-5) << angle;
        EXPECT_EQ(s.indices[1] == s.indices[4], !sharp) << angle;
    }
}

TEST_F(ModelTest, FilesAreReadFromTheModelsOwnFolderOnly) {
    const std::string bin = makeBin();
    write("data/bin", bin);
    write("data/m/geometry/bin", bin);
    write("data/m/name with space", bin);
    std::filesystem::create_symlink(root() / "data/bin", root() / "data/m/link");
    const std::pair<std::string, bool> cases[] = {{"geometry/../geometry/bin", true},
                                                  {"name%20with%20space", true},
                                                  {"../bin", false},
                                                  {"%2e%2e/bin", false},
                                                  {(root() / "data/bin").string(), false},
                                                  {"link", false},
                                                  {"missing", false}};
    for (const auto& [name, good] : cases) {
        const std::string uri = "\"uri\":\"" + name + "\"";
        clearLines();
        EXPECT_EQ(load(replaced(JSON, R"({"byteLength":108)", "{" + uri + ",\"byteLength\":108"), bin) != nullptr, good)
            << name;
        EXPECT_EQ(countLines("model.glb"), good ? 0 : 1) << name;
        clearLines();
        const auto textured = load(replaced(JSON, R"("bufferView":2,"mimeType":"image/png")", uri), bin);
        EXPECT_EQ(countLines("model.glb"), good ? 0 : 1) << name;
        EXPECT_EQ(textured && surfaceOf(*textured).material->base_texture, good) << name;
    }
}

TEST_F(ModelTest, WildFilesAreRefusedWholeWithOneLine) {
    const std::string nested = "\"extras\":" + std::string(100000, '[') + std::string(100000, ']') + ",\"scene\":0";
    const std::pair<const char*, std::string> cases[] = {
        {R"("count":4,"type":"VEC3")", R"("count":18446744073709551615,"type":"VEC3")"},
        {R"("count":4,"type":"VEC3")", R"("count":4,"type":"VEC2")"},
        {R"("byteOffset":48)", R"("byteOffset":18446744073709551600)"},
        {R"({"buffer":0,"byteLength":96)", R"({"buffer":0,"byteLength":1000)"},
        {R"("byteOffset":104,"byteLength":4)", R"("byteOffset":104,"byteLength":5000000)"},
        {R"("indices":2)", R"("indices":0)"},
        {R"("POSITION":0,)", ""},
        {R"("source":0)", R"("source":5)"},
        {R"("children":[1])", R"("children":[0])"},
        {R"("children":[1])", R"("children":[1,1])"},
        {R"([1,2,3])", R"([1e308,1e308,1e999])"},
        {R"("scene":0)", R"("scene":0,"extensionsRequired":["KHR_draco_mesh_compression"])"},
        {R"("scene":0)", nested},
        {R"({"asset")", R"([{"asset")"}};
    for (const auto& [what, with] : cases) {
        clearLines();
        EXPECT_FALSE(load(replaced(JSON, what, with), makeBin())) << with.substr(0, 80);
        ASSERT_EQ(lines().size(), 1u) << with.substr(0, 80);
        EXPECT_NE(lines()[0].find("model.glb"), std::string::npos) << lines()[0];
    }
    std::string bin = makeBin();
    bin[96] = 4;  // an index beyond the four vertices
    EXPECT_FALSE(load(JSON, bin));
    // A triangle that cannot be used is left out, with one line.
    bin = makeBin();
    const float nan = NAN;
    std::memcpy(&bin[0], &nan, 4);
    clearLines();
    const auto model = load(JSON, bin);
    ASSERT_TRUE(model);
    EXPECT_EQ(surfaceOf(*model).indices.size(), 3u);
    EXPECT_EQ(countLines("model.glb: 1 triangles"), 1);
}

TEST_F(ModelTest, AFileCutOffAnywhereIsRefused) {
    const std::string glb = toGlb(JSON, makeBin());
    for (std::size_t size = 0; size < glb.size(); ++size) {
        clearLines();
        ASSERT_FALSE(load(glb.substr(0, size))) << size;
        ASSERT_EQ(lines().size(), 1u) << size;
    }
    EXPECT_TRUE(load(glb));
}

TEST_F(ModelTest, NoChangeOfItsBytesBreaksTheLoader) {
    const std::string glb = toGlb(JSON, makeBin());
    Random r(4);
    int loaded = 0;
    for (int i = 0; i < 6000; ++i) {
        std::string bytes = glb;
        for (std::uint32_t n = 1 + r.getInt() % 4; n > 0; --n) {
            const std::size_t at = r.getInt() % bytes.size();
            bytes[at] = r.getInt() % 2 ? static_cast<char>(r.getInt()) : "0123456789-,:[]{}\""[r.getInt() % 18];
        }
        clearLines();
        const auto model = load(bytes);
        if (!model) {
            EXPECT_EQ(lines().size(), 1u);
            continue;
        }
        ++loaded;
        for (const ModelNode& node : model->nodes) expectSound(node);
    }
    EXPECT_GT(loaded, 500);
    EXPECT_LT(loaded, 5500);
}

}  // namespace
