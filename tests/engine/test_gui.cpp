// Panels without a picture: layout, clicks, typing, fonts.
#include "PanelScene.h"
#include "support/TestScene.h"

namespace {

using Panels = PanelScene;

TEST_F(Panels, LayoutsUsePaddingSpaceAndRatio) {
    auto* const bar = add<UIHLayout>();
    bar->setPosition(100, 50);
    bar->setPadding(5);
    bar->setSpace(1, 0);
    for (const int width : {16, 64, 16}) addTo<UISprite>(*bar)->setSize(width, width);
    EXPECT_EQ(bar->getChild(2)->getX(), 100 + 5 + 16 + 1 + 64 + 1);
    EXPECT_EQ(bar->getChild(2)->getY(), 50 + 5 + (64 - 16) / 2);
    bar->getChild(1)->setHidden(true);
    EXPECT_EQ(bar->getWidth(), 2 * 5 + 32 + 1);
    EXPECT_EQ(bar->getHeight(), 2 * 5 + 16);

    auto* const grid = add<UIGridLayout>();
    grid->setPosition(10, 200);
    grid->setPadding(0);
    grid->setSpace(10, 2);
    grid->setNumColumns(3);
    grid->setColumnRatio(1, 1.0f);
    grid->setColumnRatio(2, 1.0f);
    for (const int width : {120, 150, 100, 20, 30, 40, 50}) addTo<UISprite>(*grid)->setSize(width, 16);
    EXPECT_EQ(grid->getWidth(), 120 + 10 + 150 + 10 + 150);  // columns 1 and 2 have the same width
    EXPECT_EQ(grid->getChild(5)->getX(), 10 + 120 + 10 + 150 + 10);
    EXPECT_EQ(grid->getChild(6)->getY(), 200 + 2 * 18);
}

TEST_F(Panels, AClickIsPressAndReleaseOnTheSameVisibleButton) {
    auto* const column = add<UIVLayout>();
    jString clicked;
    for (const char* text : {"a", "b"}) {
        addTo<UIButton>(*column, text)->bindClick([&](const GUIEventMouse& event, UIElement* element) {
            EXPECT_EQ(event.button, 1);
            clicked += static_cast<UIButton*>(element)->getText();
        });
    }
    column->setPosition(1280 - column->getWidth(), 720 - column->getHeight());
    UIElement& b = *column->getChild(1);
    pointAt(b), press(), frame();
    EXPECT_TRUE(b.isFocused());
    release(), frame();
    EXPECT_FALSE(b.isFocused());
    EXPECT_EQ(clicked, "b");

    pointAt(b), press(), input.mouseMove(10, 10), release(), frame();
    input.mouseMove(10, 10), press(), pointAt(b), release(), frame();
    pointAt(b), press(), frame(), input.focusLost(), frame();
    pointAt(b), input.mouseButton(ControlApp::BUTTON_RIGHT, true);
    input.mouseButton(ControlApp::BUTTON_RIGHT, false), frame();
    auto* const cover = add<UIVLayout>();
    cover->setSize(300, 300);
    cover->setPosition(column->getX(), column->getY());
    click(b);
    cover->setHidden(true);
    column->setHidden(true);
    click(b);
    EXPECT_EQ(clicked, "b");
    column->setHidden(false);
    click(b);
    EXPECT_EQ(clicked, "bb");
}

TEST_F(Panels, HandlersMayEndTheirOwnPanel) {
    const int before = memGetInfos().size();
    auto* const column = jNew<UIVLayout>({"test", "test"});
    auto* const button = jNew<UIButton>({"test", "test"}, "关");
    column->addChild(button);
    root.addChild(column);
    int clicks = 0;
    button->bindClick([&](const GUIEventMouse&, UIElement*) { root.clear(); });
    button->bindClick([&](const GUIEventMouse&, UIElement*) { ++clicks; });
    click(*button);
    EXPECT_EQ(clicks, 1);
    EXPECT_EQ(memGetInfos().size(), before);
}

TEST_F(Panels, SlidersAndCheckBoxesChangeByTheMouseAndBySetters) {
    auto* const slider = add<UISlider>();
    auto* const box = add<UICheckBox>();
    slider->setMinValue(-180);
    slider->setMaxValue(180);
    slider->setPosition(100, 100);
    std::vector<double> changes, checks;
    slider->bindChange([&](const GUIEventChange& event, UIElement*) { changes.push_back(event.value); });
    box->bindChange([&](const GUIEventChange& event, UIElement*) { checks.push_back(event.value); });
    box->setChecked(true);
    for (const float value : {12.0f, 500.0f, NAN}) slider->setValue(value);
    EXPECT_EQ(slider->getValue(), 180.0f);
    EXPECT_TRUE(changes.empty() && checks.empty()) << "a setter is no change by the user";
    for (int i = 0; i < 2; ++i) click(*box);
    EXPECT_EQ(checks, (std::vector<double>{0.0, 1.0}));

    pointAt(*slider), press(), frame();
    EXPECT_NEAR(slider->getValue(), 0.0f, 3.0f);
    const auto held = static_cast<double>(slider->getValue());
    slider->setValue(std::trunc(slider->getValue()));  // a logic may set it while it is held
    frame();
    input.mouseMove(5000, -40), frame();
    input.mouseMove(-5000, 4000), release(), frame();
    EXPECT_EQ(changes, (std::vector<double>{held, 180.0, -180.0}));

    pointAt(*slider), press(), frame();
    EXPECT_TRUE(slider->isFocused());
    input.focusLost(), frame();
    EXPECT_FALSE(slider->isFocused());
}

TEST_F(Panels, TypedIntegersAreTakenOverOrDropped) {
    const struct {
        const char32_t* typed;
        int value;  ///< afterwards
        int log;    ///< lines
    } cases[] = {
        {U"200", 200, 0}, {U" +7 ", 7, 0}, {U"-3", 100, 1}, {U"1.5", 100, 1}, {U"", 100, 0}, {U"99999999999", 100, 1},
    };
    for (const auto& c : cases) {
        log.clear();
        int value = 100, changes = 0;
        auto* const field = add<UIInt>(
            123456, [&] { return value; }, [&](int v) { return v >= 0 ? (value = v, true) : false; });
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
    type(U"lost");
    line->setHidden(true);
    hit('w'), frame();
    EXPECT_TRUE(control.isKeyClick('w')) << "a hidden field takes no keys";
    EXPECT_EQ(line->getText(), "xbZ");
    EXPECT_EQ(changes, 2);
}

TEST_F(Panels, TheAtlasIsBuiltAgainOnlyForNewGlyphs) {
    auto* const label = add<UILabel>("高度");
    root.update();
    std::uint32_t expected = root.getFontAtlas().revision;
    const struct {
        const char* text;
        int size;
        unsigned builds;
    } cases[] = {{"度高 123.45 km/h", 16, 0}, {"速度", 16, 1}, {"速度", 20, 1}, {"高\xe9\xab", 16, 1}};
    for (const auto& c : cases) {
        label->setText(c.text);
        label->setFontSize(c.size);
        for (int i = 0; i < 3; ++i) root.update();
        expected += c.builds;
        EXPECT_EQ(root.getFontAtlas().revision, expected) << c.text;
    }
    EXPECT_TRUE(log.empty());
}

TEST(PanelFont, MissingFontsFallBackWithOneLine) {
    const TestFolder folder;
    folder.write("no_font.ttf", "this is no font");
    for (const std::string font : {folder.getPath() / "missing.ttc", folder.getPath() / "no_font.ttf"}) {
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
}

}  // namespace
