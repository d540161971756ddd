// Foam in plan view: drawn once per frame for each decal that carries foam.
#include "sea/FoamMap.h"

#include <algorithm>
#include <cmath>

#include "engine/scene/NodeWalk.h"
#include "engine/scene/ObjectParticles.h"

namespace {

constexpr float EDGE = 24.0f;  ///< texels over which foam fades out toward the picture's edges
constexpr float RISE = 25.0f;  ///< inverse of the share of its life in which a particle fades in

int clampTexel(float at) {
    return static_cast<int>(std::clamp(at, 0.0f, static_cast<float>(FoamMap::SIDE - 1)));
}

}  // namespace

void FoamMap::draw(const Node& decal, const dmat4& to_picture, float texels_per_metre) {
    if (!m_empty) {
        std::fill(m_thickness.begin(), m_thickness.end(), 0.0f);
        std::fill(m_texels.begin(), m_texels.end(), static_cast<unsigned char>(0));
        m_foamy.fill(false);
        m_empty = true;
    }
    forEachParticles(decal,
                     [&](const ObjectParticles& particles) { drawSystem(particles, to_picture, texels_per_metre); });
    for (int row = 0; row < CELLS && !m_empty; ++row) {
        for (int column = 0; column < CELLS; ++column) finishCell(column, row);
    }
}

void FoamMap::drawSystem(const ObjectParticles& particles, const dmat4& to_picture, float texels_per_metre) {
    const ParticleSettings& settings = particles.getSettings();
    for (const Particle& p : particles.getParticles()) {
        const dvec3 at = to_picture * p.position;
        const float passed = p.age / p.life;
        const float alpha = settings.color.w + (settings.end_color.w - settings.color.w) * passed;
        drawDisc(static_cast<float>(at.x * SIDE), static_cast<float>(at.y * SIDE), 0.5f * p.size * texels_per_metre,
                 alpha * std::min(RISE * passed, 1.0f));
    }
}

/// Thickest in the middle. A disc smaller than a texel is drawn as one texel with less thickness.
void FoamMap::drawDisc(float x, float y, float radius, float strength) {
    const float wide = std::max(radius, 1.0f);
    if (!(strength > 0.0f) || !(x > -wide && x < SIDE + wide && y > -wide && y < SIDE + wide)) return;
    strength *= radius * radius / (wide * wide);
    const float per_square = 1.0f / (wide * wide);
    const int left = clampTexel(x - wide), right = clampTexel(x + wide);
    const int bottom = clampTexel(y - wide), top = clampTexel(y + wide);
    for (int row = bottom; row <= top; ++row) {
        const float up = static_cast<float>(row) + 0.5f - y;
        float* const line = &m_thickness[static_cast<std::size_t>(row) * SIDE];
        for (int column = left; column <= right; ++column) {
            const float across = static_cast<float>(column) + 0.5f - x;
            const float inside = std::max(1.0f - (across * across + up * up) * per_square, 0.0f);
            line[column] += strength * inside * inside;
        }
    }
    for (int row = bottom / CELL; row <= top / CELL; ++row) {
        for (int column = left / CELL; column <= right / CELL; ++column) {
            m_foamy[static_cast<std::size_t>(row * CELLS + column)] = true;
        }
    }
    m_empty = false;
}

/// Converts thickness to coverage.
void FoamMap::finishCell(int column, int row) {
    if (!m_foamy[static_cast<std::size_t>(row * CELLS + column)]) return;
    const auto inward = [](int at) {
        return std::clamp((static_cast<float>(std::min(at, SIDE - 1 - at))) / EDGE, 0.0f, 1.0f);
    };
    for (int y = row * CELL; y < (row + 1) * CELL; ++y) {
        for (int x = column * CELL; x < (column + 1) * CELL; ++x) {
            const auto at = static_cast<std::size_t>(y * SIDE + x);
            const float hidden = 1.0f - std::exp(-m_thickness[at]);
            m_texels[at] = static_cast<unsigned char>(255.0f * hidden * inward(x) * inward(y));
        }
    }
}

bool FoamMap::isFoamIn(float left, float bottom, float right, float top) const {
    if (m_empty || !(right > 0.0f && left < 1.0f && top > 0.0f && bottom < 1.0f)) return false;
    const int first_column = clampTexel(left * SIDE) / CELL, last_column = clampTexel(right * SIDE) / CELL;
    const int first_row = clampTexel(bottom * SIDE) / CELL, last_row = clampTexel(top * SIDE) / CELL;
    for (int row = first_row; row <= last_row; ++row) {
        for (int column = first_column; column <= last_column; ++column) {
            if (m_foamy[static_cast<std::size_t>(row * CELLS + column)]) return true;
        }
    }
    return false;
}
