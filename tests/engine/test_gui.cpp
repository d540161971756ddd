// Panels without a picture: where things stand, what clicks and typing do.
#include <filesystem>
#include <fstream>

#include "PanelScene.h"

namespace {

using Panels = PanelScene;

TEST_F(Panels, ColumnIsFlushWithItsCornerInTheFrameItIsAskedIn) {
    auto* const column = add<UIVLayout>();
    for (const char* text : {"第三视角", "手动飞行", "世界渲染", "场景重置"}) addTo<UIButton>(*column, text);
    const int width = column->getWidth(), height = column->getHeight();
    EXPECT_GT(width, 4 * 16);  // four characters of 16 pixels
    EXPECT_GT(height, 4 * 16);
    for (const auto& [w, h] : {std::pair(1280, 720), std::pair(1920, 1080)}) {
        input.resize(w, h);
        frame();
        column->setPosition(root.getWidth() - column->getWidth(), root.getHeight() - column->getHeight());
        EXPECT_EQ(column->getX() + width, w);
        EXPECT_EQ(column->getY() + height, h);
        UIElement& last = *column->getChild(3);
        EXPECT_GT(last.getX(), w - width);
        EXPECT_LT(last.getY() + last.getHeight(), h);
    }
    static_cast<UIButton*>(column->getChild(0))->setText("第三视角第三视角");
    EXPECT_GT(column->getWidth(), width);
    column->getChild(0)->setHidden(true);
    EXPECT_EQ(column->getWidth(), width);
    EXPECT_LT(column->getHeight(), height);
}

TEST_F(Panels, LayoutsPlaceByPaddingSpaceAndRatio) {
    auto* const bar = add<UIHLayout>();
    auto* const grid = add<UIGridLayout>();
    bar->setPosition(100, 50);
    grid->setPosition(10, 200);
    bar->setPadding(5);
    bar->setSpace(1, 0);
    for (const int width : {16, 64, 16}) addTo<UISprite>(*bar)->setSize(width, width);
    EXPECT_EQ(bar->getWidth(), 2 * 5 + 96 + 2);
    EXPECT_EQ(bar->getHeight(), 2 * 5 + 64);
    EXPECT_EQ(bar->getChild(2)->getX(), 100 + 5 + 16 + 1 + 64 + 1);
    EXPECT_EQ(bar->getChild(2)->getY(), 50 + 5 + (64 - 16) / 2);

    grid->setPadding(0);
    grid->setSpace(10, 2);
    grid->setNumColumns(3);
    grid->setColumnRatio(1, 1.0f);
    grid->setColumnRatio(2, 1.0f);
    for (const int width : {120, 150, 100, 20, 30, 40, 50}) addTo<UISprite>(*grid)->setSize(width, 16);
    EXPECT_EQ(grid->getWidth(), 120 + 10 + 150 + 10 + 150);  // the third is as wide as the second
    EXPECT_EQ(grid->getHeight(), 3 * 16 + 2 * 2);
    EXPECT_EQ(grid->getChild(5)->getX(), 10 + 120 + 10 + 150 + 10);
    EXPECT_EQ(grid->getChild(6)->getY(), 200 + 2 * 18);
    EXPECT_GE(add<UIGridLayout>()->getWidth(), 0);  // an aircraft without control nodes
}

TEST_F(Panels, ClicksReachTheButtonThatStandsThere) {
    auto* const column = add<UIVLayout>();
    jVector<jString> clicked;
    for (const char* text : {"世界渲染", "场景重置"}) {
        addTo<UIButton>(*column, text)->bindClick([&](const GUIEventMouse& event, UIElement* element) {
            EXPECT_EQ(event.button, 1);
            clicked.append(static_cast<UIButton*>(element)->getText());
        });
    }
    column->setPosition(1280 - column->getWidth(), 720 - column->getHeight());
    UIElement& reset = *column->getChild(1);
    click(reset);
    EXPECT_EQ(clicked.size(), 1);
    pointAt(reset), press(), frame();
    EXPECT_TRUE(reset.isFocused());
    release(), frame();
    ASSERT_EQ(clicked.size(), 2);
    EXPECT_EQ(clicked[1], "场景重置");
    EXPECT_FALSE(reset.isFocused());

    // None of these is a click on it.
    pointAt(reset), press(), input.mouseMove(10, 10), release(), frame();
    input.mouseMove(10, 10), press(), pointAt(reset), release(), frame();
    pointAt(reset), input.mouseButton(ControlApp::BUTTON_RIGHT, true);
    input.mouseButton(ControlApp::BUTTON_RIGHT, false), frame();
    auto* const cover = add<UIVLayout>();
    cover->setSize(300, 300);
    cover->setPosition(column->getX(), column->getY());
    click(reset);
    root.removeChild(cover);
    pointAt(reset);
    column->setHidden(true);
    press(), release(), frame();
    EXPECT_EQ(clicked.size(), 2);
    column->setHidden(false);
    click(reset);
    EXPECT_EQ(clicked.size(), 3);
}

TEST_F(Panels, HandlersMayEndTheirOwnPanel) {
    const int before = memGetInfos().size();
    auto* const column = jNew<UIVLayout>({"test", "test"});
    auto* const button = jNew<UIButton>({"test", "test"}, "关");
    column->addChild(button);
    root.addChild(column);
    EXPECT_EQ(memGetInfos().size(), before + 2);
    int clicks = 0;
    button->bindClick([&](const GUIEventMouse&, UIElement*) { root.clear(); });
    button->bindClick([&](const GUIEventMouse&, UIElement*) { ++clicks; });
    click(*button);
    EXPECT_EQ(clicks, 1);
    EXPECT_EQ(root.getNumChildren(), 0);
    EXPECT_EQ(memGetInfos().size(), before);
}

TEST_F(Panels, SliderFollowsTheMouseWhileHeld) {
    auto* const slider = add<UISlider>();
    slider->setMinValue(-180);
    slider->setMaxValue(180);
    slider->setPosition(100, 100);
    jVector<double> changes;
    slider->bindChange([&](const GUIEventChange& event, UIElement*) { changes.append(event.value); });
    for (const float value : {12.0f, 500.0f, NAN}) slider->setValue(value);
    EXPECT_EQ(slider->getValue(), 180.0f);
    EXPECT_TRUE(changes.empty());

    pointAt(*slider), press(), frame();
    EXPECT_NEAR(slider->getValue(), 0.0f, 3.0f);
    EXPECT_TRUE(slider->isFocused());
    const auto held = static_cast<double>(slider->getValue());
    slider->setValue(std::trunc(slider->getValue()));  // as a logic shows it back
    frame();
    EXPECT_EQ(changes.size(), 1);
    input.mouseMove(5000, -40), frame();
    EXPECT_EQ(slider->getValue(), 180.0f);
    input.mouseMove(-5000, 4000), release(), frame();
    EXPECT_EQ(slider->getValue(), -180.0f);
    EXPECT_FALSE(slider->isFocused());
    ASSERT_EQ(changes.size(), 3);
    EXPECT_EQ(changes[0], held);
    EXPECT_EQ(changes[2], -180.0);

    pointAt(*slider), press(), frame();
    slider->setHidden(true);
    EXPECT_FALSE(slider->isFocused());
    slider->setHidden(false);
    input.focusLost(), frame();
    EXPECT_FALSE(slider->isFocused());
}

TEST_F(Panels, CheckBoxTurnsOverByClicksAlone) {
    auto* const box = add<UICheckBox>();
    box->setPosition(20, 20);
    int clicks = 0, changes = 0;
    box->bindClick([&](const GUIEventMouse&, UIElement*) { ++clicks; });
    box->bindChange([&](const GUIEventChange& event, UIElement*) { changes += event.value == 0.0 ? 1 : 100; });
    box->setChecked(true);
    EXPECT_EQ(changes, 0);
    click(*box);
    EXPECT_FALSE(box->isChecked());
    EXPECT_EQ(changes, 1);
    click(*box);
    EXPECT_TRUE(box->isChecked());
    EXPECT_EQ(changes, 101);
    EXPECT_EQ(clicks, 2);
}

TEST_F(Panels, TypedIntegersAreTakenOverOrDropped) {
    const struct {
        const char32_t* typed;
        int value;  ///< afterwards
        int log;    ///< lines
    } cases[] = {
        {U"200", 200, 0}, {U" +7 ", 7, 0}, {U"-3", 100, 1},          {U"12x", 100, 1},
        {U"1.5", 100, 1}, {U"", 100, 0},   {U"99999999999", 100, 1}, {U"速度", 100, 1},
    };
    for (const auto& c : cases) {
        log.clear();
        int value = 100, changes = 0;
        auto* const field = add<UIInt>(
            123456, [&] { return value; }, [&](int v) { return v >= 0 ? (value = v, true) : false; });
        field->setSize(64, 16);
        field->bindChange([&](const GUIEventChange& event, UIElement*) { changes += event.value == value; });
        click(*field);
        EXPECT_TRUE(field->isFocused());
        type(c.typed);
        frame();
        EXPECT_EQ(value, 100);
        hit(ControlApp::KEY_ENTER), frame();
        EXPECT_FALSE(field->isFocused());
        EXPECT_EQ(value, c.value) << jString(log.empty() ? "" : log[0]);
        EXPECT_EQ(changes, c.value != 100);
        EXPECT_EQ(log.size(), c.log);
        root.removeChild(field);
    }
}

TEST_F(Panels, TypedVectorsKeepTheOtherComponents) {
    dvec3 place(112.35, 16.84, 200.0);
    auto* const bar = add<UIHLayout>();
    auto* const field = addTo<UIDVec3>(
        *bar, 654321, [&] { return place; },
        [&](const dvec3& v) { return std::fabs(v.x) <= 180.0 && std::fabs(v.y) <= 90.0 ? (place = v, true) : false; });
    field->setSize(156, 16);
    EXPECT_GT(field->getWidth(), 3 * 156);
    EXPECT_EQ(field->getField(1)->getText(), "16.8400000");
    const struct {
        int component;
        const char32_t* typed;
        dvec3 expected;
        int log;
    } cases[] = {
        {0, U"113", {113, 16.84, 200}, 0},  {2, U"-1.5e2", {113, 16.84, -150}, 0}, {0, U"1e9", {113, 16.84, -150}, 1},
        {1, U"nan", {113, 16.84, -150}, 1}, {1, U"1e999", {113, 16.84, -150}, 1},  {1, U"17", {113, 17, -150}, 0},
    };
    for (const auto& c : cases) {
        log.clear();
        click(*field->getField(c.component));
        EXPECT_TRUE(field->isFocused());
        type(c.typed);
        click(*bar->getChild(0));  // the gap between the fields: it ends the editing
        input.mouseMove(640, 600), press(), release(), frame();
        EXPECT_FALSE(field->isFocused());
        EXPECT_EQ(place, c.expected);
        EXPECT_EQ(log.size(), c.log);
    }
}

TEST_F(Panels, LinesAreEditedWithTheUsualKeys) {
    auto* const line = add<UIEditLine>("abc");
    int changes = 0;
    line->bindChange([&](const GUIEventChange&, UIElement*) { ++changes; });
    click(*line);
    hit(ControlApp::KEY_END), hit(ControlApp::KEY_BACKSPACE), type(U"飞"), hit(ControlApp::KEY_HOME);
    hit(ControlApp::KEY_DELETE), type(U"xy"), hit('z', InputRouter::MOD_CTRL), frame();
    EXPECT_EQ(line->getText(), "abc");
    line->setText("set meanwhile");
    hit(ControlApp::KEY_ENTER), frame();
    EXPECT_EQ(line->getText(), "xb飞");
    EXPECT_EQ(changes, 1);

    click(*line);
    type(U"dropped"), hit(ControlApp::KEY_ESCAPE), frame();
    EXPECT_EQ(line->getText(), "xb飞");
    click(*line);
    hit(ControlApp::KEY_RIGHT), hit(ControlApp::KEY_LEFT, InputRouter::MOD_SHIFT), type(U"Z");
    input.focusLost(), frame();
    EXPECT_EQ(line->getText(), "xbZ");
    click(*line);
    for (int i = 0; i < 300; ++i) type(U"长");
    root.update();
    line->setHidden(true);  // nobody types into what is not there
    hit('w'), frame();
    EXPECT_TRUE(control.isKeyClick('w'));
    EXPECT_EQ(line->getText(), "xbZ");
    EXPECT_EQ(changes, 2);
}

TEST_F(Panels, GlyphsAreBuiltOnlyForNewOnes) {
    EXPECT_EQ(root.getDrawData(), nullptr);
    auto* const label = add<UILabel>("高度");
    root.update();
    const std::uint32_t first = root.getFontAtlas().revision;
    const struct {
        const char* text;
        int size;
        unsigned builds;
    } cases[] = {{"度高", 16, 0}, {"123.45 km/h", 16, 0}, {"速度", 16, 1},
                 {"速度", 20, 1}, {"度高\xff", 20, 1},    {"高\xe9\xab", 20, 0}};
    std::uint32_t expected = first;
    for (const auto& c : cases) {
        label->setText(c.text);
        label->setFontSize(c.size);
        for (int i = 0; i < 3; ++i) root.update();
        expected += c.builds;
        EXPECT_EQ(root.getFontAtlas().revision, expected) << c.text;
    }
    const UIFontAtlas& atlas = root.getFontAtlas();
    EXPECT_EQ(atlas.pixels.size(), static_cast<std::size_t>(atlas.width) * static_cast<std::size_t>(atlas.height));
    EXPECT_TRUE(log.empty());
}

TEST_F(Panels, DrawingIsSoundInEveryWindow) {
    auto* const panel = add<UIGridLayout>();
    panel->setNumColumns(3);
    panel->setPosition(0, 216);
    for (int i = 0; i < 35; ++i) {
        addTo<UILabel>(*panel, "左副翼")->setWidth(120);
        addTo<UISlider>(*panel);
        addTo<UILabel>(*panel, "0");
    }
    addTo<UISprite>(*panel, "data/no_such_image.png");
    UIElement& last = *panel->getChild(103);
    const std::uint64_t hash = engine.getStateHash();
    for (const auto& [w, h] : {std::pair(1280, 720), std::pair(1, 1), std::pair(-3, 0), std::pair(20000, 20000)}) {
        input.resize(w, h);
        frame();
        input.mouseMove(0, 0), press(), release(), frame();
        root.update();
        EXPECT_NE(root.getDrawData(), nullptr);
    }
    EXPECT_EQ(engine.getStateHash(), hash);
    ASSERT_EQ(log.size(), 1);
    EXPECT_NE(log[0].find("data/no_such_image.png"), jString::npos);
    EXPECT_TRUE(root.getImages().empty());

    // What does not fit into the window is reached with the wheel, and covers nothing meanwhile.
    input.resize(1280, 720), frame();
    EXPECT_GT(last.getY(), 720);
    auto bar = std::make_unique<UIHLayout>();
    auto* const field = addTo<UIEditLine>(*bar);
    bar->setPosition(0, 680);
    root.addChild(std::move(bar), UIRoot::EXPAND_NONE, 0);
    click(*field);
    EXPECT_TRUE(field->isFocused());
    pointAt(*panel->getChild(4));
    for (int i = 0; i < 50; ++i) input.wheel(-120);
    frame();
    EXPECT_LT(last.getY() + last.getHeight(), 680);
    for (int i = 0; i < 50; ++i) input.wheel(120);
    frame();
    EXPECT_GT(panel->getChild(0)->getY(), 216);
}

TEST(PanelFont, MissingFontsFallBackWithOneLine) {
    const std::filesystem::path text = std::filesystem::path(testing::TempDir()) / "no_font.ttf";
    std::ofstream(text) << "this is no font";
    for (const std::string& font : {std::string("/no/such/font.ttc"), text.string()}) {
        EngineSettings settings;
        settings.font = font;
        Engine engine(settings);
        int lines = 0;
        jLog::setSink([&](jLog::Level, const jString& line) { lines += line.find(font) != jString::npos; });
        auto* const button = new UIButton("场景 reset");
        engine.getUIRoot()->addChild(button);
        for (int i = 0; i < 3; ++i) {
            button->setText("视角 view " + ToString(i));
            engine.updateGui();
        }
        EXPECT_GT(button->getWidth(), 40);
        EXPECT_EQ(lines, 1);
        jLog::setSink({});
    }
    std::filesystem::remove(text);
}

}  // namespace
