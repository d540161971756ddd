// Foam of ships: found, drawn into pictures and added to the sea's patches, once per frame after patch selection.
#include "sea/SeaWake.h"

#include <osg/BlendFunc>
#include <osg/Depth>

#include <algorithm>
#include <cstring>

#include "base/ShaderLibrary.h"
#include "base/Uniforms.h"
#include "engine/scene/SceneNodes.h"
#include "engine/scene/World.h"
#include "engine/text/Containers.h"
#include "sea/SeaGeometry.h"
#include "sea/SeaMesh.h"

namespace {

constexpr unsigned UNIT_SHEET = 4;
constexpr double MIN_SIDE = 128.0;  ///< minimum side of a picture in metres, so that discs are small in texels
const jString TAG = SeaWake::SEA_FOAM;

osg::Texture2D* makeTexture(osg::Image* image) {
    auto* const texture = new osg::Texture2D(image);
    texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR);
    texture->setWrap(osg::Texture::WRAP_S, osg::Texture::CLAMP_TO_EDGE);
    texture->setWrap(osg::Texture::WRAP_T, osg::Texture::CLAMP_TO_EDGE);
    return texture;
}

void setUpState(osg::StateSet& state, ShaderLibrary& shaders) {
    state.setAttributeAndModes(shaders.getProgram("wake"));
    state.setAttributeAndModes(new osg::BlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA));
    state.setAttributeAndModes(new osg::Depth(osg::Depth::GEQUAL, 0.0, 1.0, false));
    state.setRenderBinDetails(DRAW_SEA + 1, "RenderBin");
    state.addUniform(new osg::Uniform("u_sheet", static_cast<int>(UNIT_SHEET)));
}

/// A picture coordinate as a linear function of the local position.
osg::Vec4f rowOf(double x, double y, double z, double w) {
    return osg::Vec4f(osg::Vec4d(x, y, z, w));
}

float evaluate(const osg::Vec4f& row, const SeaVertex& at) {
    return row[0] * at.east + row[1] * at.north + row[2] * at.up + row[3];
}

}  // namespace

SeaWake::SeaWake(osg::MatrixTransform& local, osg::Vec3Array& places, osg::Vec3Array& rests, ShaderLibrary& shaders)
    : m_group(new osg::Group), m_places(&places), m_rests(&rests) {
    m_group->setCullingActive(false);
    setUpState(*m_group->getOrCreateStateSet(), shaders);
    local.addChild(m_group);
}

SeaWake::Sheet& SeaWake::getSheet(std::size_t i) {
    if (i < m_sheets.size()) return *m_sheets[i];
    m_sheets.push_back(std::make_unique<Sheet>());
    Sheet& sheet = *m_sheets.back();
    sheet.image = new osg::Image;
    sheet.image->allocateImage(FoamMap::SIDE, FoamMap::SIDE, 1, GL_RED, GL_UNSIGNED_BYTE);
    sheet.image->setInternalTextureFormat(GL_R8);
    sheet.image->setDataVariance(osg::Object::DYNAMIC);
    sheet.indices = new osg::DrawElementsUInt(GL_TRIANGLES);
    const osg::ref_ptr<osg::Geometry> geometry = makeSeaGeometry(m_places, m_rests, sheet.indices);
    osg::StateSet& state = *geometry->getOrCreateStateSet();
    state.setTextureAttribute(UNIT_SHEET, makeTexture(sheet.image));
    sheet.across = addUniform(state, "u_across", osg::Vec4f());
    sheet.along = addUniform(state, "u_along", osg::Vec4f());
    sheet.geode = new osg::Geode;
    sheet.geode->addDrawable(geometry);
    m_group->addChild(sheet.geode);
    return sheet;
}

void SeaWake::update(const FrameView& view, const World* world, const SeaMesh& mesh) {
    const Node* const wakes = world ? world->getNodeByTag(TAG) : nullptr;
    std::size_t used = 0;
    for (int i = 0; wakes && i < wakes->getNumChildren(); ++i) {
        Node& child = *wakes->getChild(i);
        if (child.getType() == Node::DECAL_ORTHO && child.isActive() && isFinite(child.getWorldTransform())) {
            draw(getSheet(used++), static_cast<DecalOrtho&>(child), view, mesh);
        }
    }
    for (; used < m_sheets.size(); ++used) m_sheets[used]->geode->setNodeMask(0u);
}

void SeaWake::draw(Sheet& sheet, const DecalOrtho& decal, const FrameView& view, const SeaMesh& mesh) {
    const double side =
        std::max({static_cast<double>(decal.getWidth()), static_cast<double>(decal.getHeight()), MIN_SIDE});
    const dmat4 shrink({1.0 / side, 0.0, 0.0}, {0.0, 1.0 / side, 0.0}, {0.0, 0.0, 1.0}, {0.5, 0.5, 0.0});
    const dmat4 to_picture = shrink * inverse(decal.getWorldTransform());
    sheet.map.draw(decal, to_picture, static_cast<float>(FoamMap::SIDE / side));
    if (!sheet.map.isEmpty()) {
        const dmat4 m = to_picture * view.local;
        const osg::Vec4f across = rowOf(m.x.x, m.y.x, m.z.x, m.t.x), along = rowOf(m.x.y, m.y.y, m.z.y, m.t.y);
        choosePatches(sheet, across, along, mesh);
        sheet.across->set(across);
        sheet.along->set(along);
    } else {
        sheet.indices->clear();
    }
    sheet.geode->setNodeMask(sheet.indices->empty() ? 0u : ~0u);
    if (sheet.indices->empty()) return;
    std::memcpy(sheet.image->data(), sheet.map.getTexels().data(), sheet.map.getTexels().size());
    sheet.image->dirty();
}

void SeaWake::choosePatches(Sheet& sheet, const osg::Vec4f& across, const osg::Vec4f& along, const SeaMesh& mesh) {
    constexpr std::size_t CORNERS[] = {0, SeaMesh::CELLS, SeaMesh::VERTICES - 1 - SeaMesh::CELLS,
                                       SeaMesh::VERTICES - 1};
    sheet.indices->clear();
    for (int patch = 0; patch < mesh.getNumPatches(); ++patch) {
        const SeaVertex* const first = &mesh.getVertices()[static_cast<std::size_t>(patch) * SeaMesh::VERTICES];
        float left = 1e9f, right = -1e9f, bottom = 1e9f, top = -1e9f;
        for (const std::size_t corner : CORNERS) {
            const float x = evaluate(across, first[corner]), y = evaluate(along, first[corner]);
            left = std::min(left, x), right = std::max(right, x);
            bottom = std::min(bottom, y), top = std::max(top, y);
        }
        // Waves move the sides of the patch.
        const float aside = 0.2f * std::max(right - left, top - bottom);
        if (!sheet.map.isFoamIn(left - aside, bottom - aside, right + aside, top + aside)) continue;
        for (const unsigned index : SeaMesh::getPatchIndices()) {
            sheet.indices->push_back(static_cast<unsigned>(patch * SeaMesh::VERTICES) + index);
        }
    }
    sheet.indices->dirty();
}
