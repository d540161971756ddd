// Lamps as point sprites: batches are written again when a lamp changed, the shader does the rest.
#include "effects/LampPoints.h"

#include <osg/PointSprite>

#include <algorithm>
#include <cmath>

#include "base/Convert.h"
#include "base/ShaderLibrary.h"
#include "engine/math/jMath.h"

namespace {

constexpr double CELL = 2048.0;   // metres: small enough for float positions, wide enough for an airfield
constexpr float MARGIN = 400.0f;  // metres added to a batch's bounds, so that a single lamp is not culled for its size

double backgroundOf(const SkyLight& light) {
    const double klx = std::max({light.ambient_above.x, light.ambient_above.y, light.ambient_above.z});
    return klx * 1000.0 / jMath::PI;
}

}  // namespace

double getVisibleIlluminance(double background) {
    // ICAO Annex 3, attachment D, the smooth relation; below 0.01 cd/m^2 the threshold is constant.
    const double b = std::log10(std::clamp(background, 0.01, 40000.0));
    return std::pow(10.0, 0.57 * b + 0.05 * b * b - 6.66);
}

LampPoints::Batch::Batch(const dvec3& cell_origin)
    : origin(cell_origin),
      place(new osg::MatrixTransform),
      geometry(new SpriteGeometry),
      places(new osg::Vec4Array(osg::Array::BIND_PER_VERTEX)),
      axes(new osg::Vec3Array(osg::Array::BIND_PER_VERTEX)),
      colors(new osg::Vec4Array(osg::Array::BIND_PER_VERTEX)),
      points(new osg::DrawArrays(GL_POINTS, 0, 0)) {
    geometry->setVertexArray(places);
    geometry->setNormalArray(axes);
    geometry->setTexCoordArray(0, colors);
    geometry->addPrimitiveSet(points);
    geometry->expectChanges();
    place->setMatrix(osg::Matrixd::translate(toOsg(origin)));
    place->addChild(geometry);
}

void LampPoints::Batch::write(std::size_t at, const Lamp& lamp) {
    (*places)[at] = osg::Vec4f(osg::Vec3f(toOsg(lamp.position - origin)), lamp.size);
    (*axes)[at] = toOsg(lamp.axis);
    (*colors)[at] = osg::Vec4f(toOsg(lamp.color) * lamp.intensity, lamp.cone);
    changed = true;
}

void LampPoints::Batch::refresh() {
    changed = false;
    osg::BoundingBox box;
    for (std::size_t i = 0; i < ids.size(); ++i) {
        const osg::Vec4f& p = (*places)[i];
        box.expandBy(p.x(), p.y(), p.z());
    }
    const osg::Vec3f margin(MARGIN, MARGIN, MARGIN);
    geometry->setBox(osg::BoundingBox(box._min - margin, box._max + margin));
    places->dirty();
    axes->dirty();
    colors->dirty();
    points->setCount(static_cast<int>(ids.size()));
}

LampPoints::LampPoints(osg::Group& parent, ShaderLibrary& shaders) : m_group(new osg::Group) {
    osg::StateSet& state = *m_group->getOrCreateStateSet();
    state.setAttributeAndModes(shaders.getProgram("lamp"));
    state.setMode(GL_VERTEX_PROGRAM_POINT_SIZE, osg::StateAttribute::ON);
    state.setTextureAttributeAndModes(0, new osg::PointSprite);
    setPremultiplied(state, DRAW_LAMPS);
    m_sight = new osg::Uniform("u_sight", osg::Vec3f());
    m_sight->setDataVariance(osg::Object::DYNAMIC);
    state.addUniform(m_sight);
    parent.addChild(m_group);
}

LampPoints::CellKey LampPoints::cellOf(const dvec3& position) {
    const auto index = [](double v) {
        return static_cast<std::int64_t>(std::floor(std::clamp(v / CELL, -1e15, 1e15)));
    };
    return {index(position.x), index(position.y), index(position.z)};
}

LampPoints::Batch& LampPoints::batchOf(const CellKey& cell) {
    const auto found = m_batches.find(cell);
    if (found != m_batches.end()) return found->second;
    const auto middle = [](std::int64_t i) { return (static_cast<double>(i) + 0.5) * CELL; };
    const dvec3 origin(middle(cell[0]), middle(cell[1]), middle(cell[2]));
    Batch& batch = m_batches.try_emplace(cell, origin).first->second;
    m_group->addChild(batch.place);
    return batch;
}

void LampPoints::set(int id, const Lamp& lamp) {
    const CellKey cell = cellOf(lamp.position);
    const auto found = m_slots.find(id);
    const bool is_drawn = lamp.intensity > 0.0f && lamp.size > 0.0f;
    if (found != m_slots.end() && (!is_drawn || found->second.cell != cell)) remove(id);
    if (!is_drawn) return;
    Batch& batch = batchOf(cell);
    const auto [slot, is_new] = m_slots.try_emplace(id, Slot{cell, batch.ids.size()});
    if (is_new) {
        batch.ids.push_back(id);
        if (batch.places->size() < batch.ids.size()) {
            const std::size_t capacity = std::max<std::size_t>(2 * batch.places->size(), 16);
            batch.places->resize(capacity);
            batch.axes->resize(capacity);
            batch.colors->resize(capacity);
        }
    }
    batch.write(slot->second.at, lamp);
}

void LampPoints::remove(int id) {
    const auto found = m_slots.find(id);
    if (found == m_slots.end()) return;
    const auto [cell, at] = found->second;
    m_slots.erase(found);
    Batch& batch = m_batches.at(cell);
    const std::size_t last = batch.ids.size() - 1;
    if (at != last) {
        batch.ids[at] = batch.ids[last];
        (*batch.places)[at] = (*batch.places)[last];
        (*batch.axes)[at] = (*batch.axes)[last];
        (*batch.colors)[at] = (*batch.colors)[last];
        m_slots.at(batch.ids[at]).at = at;
    }
    batch.ids.pop_back();
    batch.changed = true;
    if (!batch.ids.empty()) return;
    m_group->removeChild(batch.place);
    m_batches.erase(cell);
}

void LampPoints::update(const FrameView& view) {
    for (auto& [cell, batch] : m_batches) {
        if (batch.changed) batch.refresh();
    }
    m_sight->set(osg::Vec3f(static_cast<float>(1.0 / getVisibleIlluminance(backgroundOf(view.light))),
                            static_cast<float>(view.focal), static_cast<float>(view.height / 720.0)));
}
