// Combines the parts of the ground: its tree of tiles, its textures, its decals.
#include "terrain/TerrainLayer.h"

#include <cmath>

#include "base/ShaderLibrary.h"
#include "base/Uniforms.h"
#include "engine/globe/EllipsoidModel.h"
#include "engine/math/jMath.h"
#include "engine/scene/ObjectTerrain.h"
#include "terrain/GroundTextures.h"

namespace {

enum Units { UNIT_IMAGERY = 0, UNIT_DETAIL = 1, UNIT_TREE = 2 };

/// Size of the imagery, metres.
osg::Vec2f extentOf(const ImageryPlace& place) {
    constexpr double METRES = EllipsoidModel::SEMI_MAJOR * jMath::DEG2RAD;
    const double middle = 0.5 * (place.south + place.north) * jMath::DEG2RAD;
    return osg::Vec2f(
        osg::Vec2d((place.east - place.west) * METRES * std::cos(middle), (place.north - place.south) * METRES));
}

}  // namespace

TerrainLayer::TerrainLayer(osg::Group& root, ShaderLibrary& shaders)
    : m_group(new osg::Group), m_tiles(new osg::Group), m_decals(shaders) {
    m_group->setCullingActive(false);
    m_group->addChild(m_tiles);
    m_group->addChild(m_decals.getGroup());
    root.addChild(m_group);

    osg::StateSet& state = *m_group->getOrCreateStateSet();
    m_weather = addUniform(state, "u_ground", osg::Vec3f());
    m_extent = addUniform(state, "u_extent", osg::Vec2f());
    m_pixel = addUniform(state, "u_pixel", 0.001f);
    state.addUniform(new osg::Uniform("u_imagery", static_cast<int>(UNIT_IMAGERY)));
    state.addUniform(new osg::Uniform("u_image", static_cast<int>(UNIT_IMAGERY)));
    state.addUniform(new osg::Uniform("u_detail", static_cast<int>(UNIT_DETAIL)));
    state.addUniform(new osg::Uniform("u_tree", static_cast<int>(UNIT_TREE)));
    state.setTextureAttribute(UNIT_DETAIL, makeGroundDetail());
    state.setTextureAttribute(UNIT_TREE, makeTreeTexture());
    const auto makeState = [&](const std::vector<std::string>& defines) {
        osg::ref_ptr<osg::StateSet> made = new osg::StateSet;
        made->setAttributeAndModes(shaders.getProgram("terrain", defines));
        return made;
    };
    m_states = {makeState({"NEAR", "CLOSE"}), makeState({"NEAR"}), makeState({}), new osg::StateSet};
    m_states.trees->setAttributeAndModes(shaders.getProgram("terrain_tree"));
    // After the meshes, from near to far.
    m_tiles->getOrCreateStateSet()->setRenderBinDetails(DRAW_OPAQUE + 1, "TraversalOrderBin");
}

void TerrainLayer::setTerrain(const ObjectTerrain* terrain) {
    if (terrain == m_terrain) return;
    m_terrain = terrain;
    m_decals.setGround(nullptr, nullptr);
    m_tiles->removeChildren(0, m_tiles->getNumChildren());
    m_tree.reset();
    osg::StateSet& state = *m_tiles->getStateSet();
    state.removeTextureAttribute(UNIT_IMAGERY, osg::StateAttribute::TEXTURE);
    state.removeDefine("IMAGERY");
    if (m_terrain && m_terrain->isLoaded()) makeTree();
}

void TerrainLayer::makeTree() {
    const ElevationRaster& raster = m_terrain->getRaster();
    ImageryPlace place{raster.getWest(), raster.getSouth(), raster.getLongitude(raster.getNumColumns() - 1),
                       raster.getLatitude(raster.getNumRows() - 1)};
    const osg::ref_ptr<osg::Image> imagery = loadImagery(m_terrain->getImagery(), place);
    if (imagery) {
        m_tiles->getStateSet()->setDefine("IMAGERY");
        m_tiles->getStateSet()->setTextureAttribute(UNIT_IMAGERY, makeImageryTexture(*imagery));
    }
    m_extent->set(extentOf(place));
    const osg::ref_ptr<osg::Image> overview = imagery ? makeOverview(*imagery) : nullptr;
    m_tree = std::make_unique<TerrainTree>(raster, overview, place, m_states);
    m_tiles->addChild(m_tree->getGroup());
    m_tiles->addChild(m_tree->getTrees());
    m_decals.setGround(&raster, &m_tree->getBuilder());
}

void TerrainLayer::updateDecal(const DecalOrtho& decal) {
    m_decals.update(decal);
}

void TerrainLayer::removeDecal(int id) {
    m_decals.remove(id);
}

void TerrainLayer::update(const FrameView& view) {
    if (!m_tree) return;
    const bool is_drawn = m_visible && m_terrain->isActive();
    m_group->setNodeMask(is_drawn ? ~0u : 0u);
    if (!is_drawn) return;
    const osg::Vec3f weather(m_terrain->getWetness(), m_terrain->getSnow(), m_terrain->getAutumn());
    m_weather->set(weather);
    setDefine("GROUND_WEATHER", weather != osg::Vec3f(), m_has_weather);
    setDefine("GROUND_WET", weather.x() > 0.0f, m_is_wet);
    m_pixel->set(static_cast<float>(1.0 / view.focal));
    m_tree->update(view);
}

void TerrainLayer::setDefine(const char* name, bool on, bool& was_on) {
    if (on == was_on) return;
    was_on = on;
    m_group->getStateSet()->setDefine(name, on ? osg::StateAttribute::ON : osg::StateAttribute::OFF);
}

void TerrainLayer::setVisible(bool visible) {
    m_visible = visible;
    m_group->setNodeMask(visible ? ~0u : 0u);
}
