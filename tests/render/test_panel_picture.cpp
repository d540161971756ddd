// Panels over the picture.
#include "PictureScene.h"
#include "engine/gui/UILayout.h"
#include "engine/gui/UIRoot.h"
#include "engine/gui/UIWidgets.h"

namespace {

/// Mean luminance over a rectangle of pixels.
double meanOf(const Snapshot& shot, int left, int top, int width, int height) {
    double sum = 0.0;
    for (int y = top; y < top + height; ++y) {
        for (int x = left; x < left + width; ++x) sum += luminanceAt(shot, x, y);
    }
    return sum / (width * height);
}

TEST(PanelPicture, IconsOfEitherFormatStandUpright) {
    constexpr int SIZE = 64;
    PictureScene scene;
    scene.open();
    auto* const bar = new UIHLayout;
    bar->setBackgroundColor({0.0f, 0.0f, 0.0f, 1.0f});
    const struct {
        const char* image;
        bool is_heavy_above;  ///< near the left edge
    } icons[] = {{"data/core/editor/gui/run.dds", true},
                 {"data/core/editor/gui/position.dds", true},
                 {"data/core/editor/gui/thr.png", false}};
    for (const auto& icon : icons) {
        auto* const sprite = new UISprite(icon.image);
        sprite->setSize(SIZE, SIZE);
        bar->addChild(sprite);
    }
    scene.engine.getUIRoot()->addChild(bar);
    scene.draw();  // hands the window's size out
    scene.engine.updateGui();
    scene.draw();
    const Snapshot shot = scene.capture();
    for (int i = 0; i < 3; ++i) {
        UIElement& sprite = *bar->getChild(i);
        const double above = meanOf(shot, sprite.getX(), sprite.getY(), SIZE * 3 / 8, SIZE / 2);
        const double below = meanOf(shot, sprite.getX(), sprite.getY() + SIZE / 2, SIZE * 3 / 8, SIZE / 2);
        if (i == 0) {
            EXPECT_NEAR(above, below, 0.01) << icons[i].image;
            EXPECT_GT(above, 0.1);
        } else {
            EXPECT_EQ(above > below, icons[i].is_heavy_above) << icons[i].image;
            EXPECT_GT(std::fabs(above - below), 0.03) << icons[i].image;
        }
    }
}

}  // namespace
