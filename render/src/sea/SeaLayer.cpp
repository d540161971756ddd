// The sea in the picture: waves, mesh and shader values are updated before the frame is drawn.
#include "sea/SeaLayer.h"

#include <osg/BlendFunc>
#include <osg/Geode>

#include <algorithm>
#include <cmath>

#include "base/Convert.h"
#include "base/ShaderLibrary.h"
#include "engine/globe/EllipsoidModel.h"
#include "engine/math/jMath.h"
#include "engine/scene/ObjectOcean.h"
#include "engine/scene/ObjectTerrain.h"
#include "mirror/LevelTop.h"
#include "sea/SeaFoam.h"
#include "sea/SeaGeometry.h"
#include "sea/SeaGround.h"
#include "sea/SeaUniforms.h"
#include "sea/SeaWake.h"

namespace {

enum SeaTextures { UNIT_LARGE, UNIT_SMALL, UNIT_FOAM, UNIT_GROUND };

constexpr std::size_t MAX_VERTICES = std::size_t(SeaMesh::MAX_PATCHES) * SeaMesh::VERTICES;

/// Planes through the sides of the view's frustum.
void setSides(SeaMeshView& eye, const osg::Matrixd& local_to_clip) {
    for (int i = 0; i < 4; ++i) {
        const double sign = i % 2 == 0 ? 1.0 : -1.0;
        const auto at = [&](int row) { return local_to_clip(row, 3) + sign * local_to_clip(row, i / 2); };
        eye.sides[static_cast<std::size_t>(i)] = {at(0), at(1), at(2), at(3)};
    }
}

}  // namespace

SeaLayer::SeaLayer(osg::Group& root, ShaderLibrary& shaders)
    : m_group(new osg::Group),
      m_local(new osg::MatrixTransform),
      m_places(new osg::Vec3Array(osg::Array::BIND_PER_VERTEX)),
      m_rests(new osg::Vec3Array(osg::Array::BIND_PER_VERTEX)),
      m_waves(new osg::Vec4Array(osg::Array::BIND_PER_VERTEX)),
      m_grounds(new osg::Vec2Array(osg::Array::BIND_PER_VERTEX)),
      m_ground_texture(new osg::Texture2D) {
    osg::ref_ptr<osg::VertexBufferObject> buffer = new osg::VertexBufferObject;
    buffer->setUsage(GL_STREAM_DRAW);
    for (osg::Array* array : getArrays()) {
        array->setVertexBufferObject(buffer);
        array->setDataVariance(osg::Object::DYNAMIC);
        array->reserveArray(MAX_VERTICES);
    }
    m_group->setCullingActive(false);
    m_uniforms = std::make_unique<SeaUniforms>(*m_local->getOrCreateStateSet());
    for (int band = 0; band < SeaMesh::NUM_BANDS; ++band) {
        m_open[static_cast<std::size_t>(band)] = makePart(band, false, shaders);
        m_shore[static_cast<std::size_t>(band)] = makePart(band, true, shaders);
    }
    setUpState();
    m_wake = std::make_unique<SeaWake>(*m_local, *m_places, *m_rests, shaders);
    m_group->addChild(m_local);
    root.addChild(m_group);
}

SeaLayer::~SeaLayer() = default;

void SeaLayer::setUpState() {
    osg::StateSet& state = *m_local->getOrCreateStateSet();
    state.setRenderBinDetails(DRAW_SEA, "RenderBin");
    m_ground_texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR);
    m_ground_texture->setWrap(osg::Texture::WRAP_S, osg::Texture::CLAMP_TO_EDGE);
    m_ground_texture->setWrap(osg::Texture::WRAP_T, osg::Texture::CLAMP_TO_EDGE);
    m_ground_texture->setResizeNonPowerOfTwoHint(false);
    const std::pair<const char*, osg::Texture2D*> textures[] = {{"u_large", m_slopes.getTexture(0)},
                                                                {"u_small", m_slopes.getTexture(1)},
                                                                {"u_foam", makeFoamTexture()},
                                                                {"u_ground", m_ground_texture}};
    int unit = 0;
    for (const auto& [name, texture] : textures) {
        state.addUniform(new osg::Uniform(name, unit));
        state.setTextureAttribute(static_cast<unsigned>(unit++), texture);
    }
}

SeaLayer::Part SeaLayer::makePart(int band, bool shore, ShaderLibrary& shaders) {
    Part part;
    part.indices = new osg::DrawElementsUInt(GL_TRIANGLES);
    const osg::ref_ptr<osg::Geometry> geometry = makeSeaGeometry(m_places, m_rests, part.indices);
    geometry->setTexCoordArray(1, m_waves);
    geometry->setTexCoordArray(2, m_grounds);
    osg::StateSet* const state = geometry->getOrCreateStateSet();
    std::vector<std::string> defines;
    if (band < SeaMesh::FINE_BANDS) defines.push_back("FINE");
    if (band < SeaMesh::NEAR_BANDS) defines.push_back("NEAR");
    if (band >= SeaMesh::MIDDLE_BANDS) defines.push_back("REMOTE");
    if (shore) {
        defines.push_back("SHORE");
        state->setAttributeAndModes(new osg::BlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA));
    }
    state->setAttributeAndModes(shaders.getProgram("sea", defines));
    m_uniforms->addBand(band, *state);
    part.geode = new osg::Geode;
    part.geode->addDrawable(geometry);
    m_local->addChild(part.geode);
    return part;
}

void SeaLayer::setOcean(const ObjectOcean* ocean) {
    m_ocean = ocean;
}

void SeaLayer::setTerrain(const ObjectTerrain* terrain) {
    if (terrain == m_terrain) return;
    m_terrain = terrain;
    m_ground = terrain && terrain->isLoaded() ? std::make_unique<SeaGround>(terrain->getRaster()) : nullptr;
    m_ground_texture->setImage(m_ground ? m_ground->getImage() : nullptr);
}

void SeaLayer::setVisible(bool visible) {
    m_visible = visible;
}

void SeaLayer::update(const FrameView& view, const Cover& cover) {
    const bool drawn = m_visible && m_ocean && m_ocean->isActive() && isFinite(view.local);
    m_group->setNodeMask(drawn ? ~0u : 0u);
    if (!drawn) return;
    const WaveField& field = m_ocean->getField();
    m_slopes.update(field);
    const SeaMeshView eye = lookAt(view, cover);
    m_mesh.update(eye, field, m_slopes, m_ground.get());
    takeMesh();
    m_wake->update(view, m_ocean->getWorld(), m_mesh);
    m_uniforms->update(view, eye, *m_ocean, m_slopes);
    m_local->setMatrix(toOsg(view.local));
}

SeaMeshView SeaLayer::lookAt(const FrameView& view, const Cover& cover) const {
    SeaMeshView eye;
    const double lon = view.geodetic.x, lat = view.geodetic.y;
    m_ocean->getFieldPlace(lon, lat, eye.east, eye.north);
    const double s = std::sin(lat * jMath::DEG2RAD), c = std::max(std::cos(lat * jMath::DEG2RAD), 0.02);
    const double w2 = 1.0 - EllipsoidModel::ECCENTRICITY_2 * s * s;
    eye.east_radius = EllipsoidModel::SEMI_MAJOR / std::sqrt(w2);
    eye.north_radius = eye.east_radius * (1.0 - EllipsoidModel::ECCENTRICITY_2) / w2;
    // The length of a degree in the wave field and on the ground.
    double east = 0.0, north = 0.0;
    const double degree = 0.001, lon_side = lon > 0.0 ? -degree : degree, lat_side = lat > 0.0 ? -degree : degree;
    m_ocean->getFieldPlace(lon + lon_side, lat + lat_side, east, north);
    const double east_per_degree = (east - eye.east) / lon_side, north_per_degree = (north - eye.north) / lat_side;
    eye.east_scale = eye.east_radius * c * jMath::DEG2RAD / east_per_degree;
    eye.north_scale = eye.north_radius * jMath::DEG2RAD / north_per_degree;
    eye.height = view.geodetic.z;
    eye.rise = static_cast<float>(jMath::getFadeOut(eye.height, 1000.0, 1000.0));
    eye.reach_sideways = m_slopes.getReachSideways();
    eye.reach_upward = m_slopes.getReachUpward();
    setSides(eye, toOsg(view.local) * view.view * view.projection);
    eye.cover = cover.top;
    if (cover.top) eye.to_cover = inverse(cover.place) * view.local;
    if (m_ground) {
        eye.ground_column = m_ground->getColumn(lon);
        eye.ground_row = m_ground->getRow(lat);
        eye.columns_per_metre = m_ground->getColumnsPerDegree() / east_per_degree;
        eye.rows_per_metre = m_ground->getRowsPerDegree() / north_per_degree;
    }
    return eye;
}

std::array<osg::Array*, 4> SeaLayer::getArrays() const {
    return {m_places.get(), m_rests.get(), m_waves.get(), m_grounds.get()};
}

void SeaLayer::takeMesh() {
    // Only the used vertices are sent to the device; the count grows in steps, so that the buffer keeps its layout over
    // many frames.
    constexpr int STEP = 128;
    const int room = std::min((m_mesh.getNumPatches() / STEP + 1) * STEP, SeaMesh::MAX_PATCHES);
    for (osg::Array* array : getArrays()) {
        array->resizeArray(static_cast<unsigned>(room * SeaMesh::VERTICES));
    }
    const std::size_t count = static_cast<std::size_t>(m_mesh.getNumPatches()) * SeaMesh::VERTICES;
    for (std::size_t i = 0; i < count; ++i) {
        const SeaVertex& vertex = m_mesh.getVertices()[i];
        (*m_places)[i].set(vertex.east, vertex.north, vertex.up);
        (*m_rests)[i].set(vertex.rest_east, vertex.rest_north, vertex.crest);
        (*m_waves)[i].set(vertex.slope_east, vertex.slope_north, vertex.foam, vertex.heave);
        (*m_grounds)[i].set(vertex.ground_column, vertex.ground_row);
    }
    for (osg::Array* array : getArrays()) array->dirty();
    for (std::size_t band = 0; band < SeaMesh::NUM_BANDS; ++band) {
        const SeaMesh::PatchList& patches = m_mesh.getPatches(static_cast<int>(band));
        fillPart(m_open[band], patches.open);
        fillPart(m_shore[band], patches.shore);
    }
}

void SeaLayer::fillPart(Part& part, const std::vector<int>& patches) {
    part.geode->setNodeMask(patches.empty() ? 0u : ~0u);
    if (patches.empty()) return;
    const auto& corners = SeaMesh::getPatchIndices();
    part.indices->resize(patches.size() * corners.size());
    unsigned* out = &part.indices->front();
    for (const int patch : patches) {
        const unsigned first = static_cast<unsigned>(patch * SeaMesh::VERTICES);
        for (const unsigned index : corners) *out++ = first + index;
    }
    part.indices->dirty();
}
