// Panels over the picture.
#include "PictureScene.h"
#include "engine/gui/UILayout.h"
#include "engine/gui/UIRoot.h"
#include "engine/gui/UIWidgets.h"
#include "support/TestScene.h"

namespace {

TEST(PanelPicture, IconsOfEitherFormatAreUpright) {
    constexpr int SIZE = 64;
    const TestFolder folder;
    PictureScene scene(folder.getPath().c_str());
    scene.open();
    auto* const bar = new UIHLayout;
    for (const char* const file : {"data/icon.png", "data/icon.dds"}) {
        writeImage(folder.getPath() / file,
                   {{{255, 0, 0, 255}, {0, 255, 0, 255}, {0, 0, 255, 255}, {255, 255, 255, 255}}});
        auto* const sprite = new UISprite(file);
        sprite->setSize(SIZE, SIZE);
        bar->addChild(sprite);
    }
    scene.engine.getUIRoot()->addChild(bar);
    scene.draw();  // hands the window's size out
    scene.engine.updateGui();
    scene.draw();
    const Snapshot shot = scene.capture();
    for (int i = 0; i < 2; ++i) {
        const auto at = [&](int x, int y) {
            return pixelAt(shot, bar->getChild(i)->getX() + x, bar->getChild(i)->getY() + y);
        };
        EXPECT_EQ(at(12, 12), (Color{1.0, 0.0, 0.0})) << i;
        EXPECT_EQ(at(SIZE - 12, 12), (Color{0.0, 1.0, 0.0})) << i;
        EXPECT_EQ(at(12, SIZE - 12), (Color{0.0, 0.0, 1.0})) << i;
    }
}

}  // namespace
