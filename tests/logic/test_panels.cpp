// The logic's panels as a user has them: clicked at their positions on the screen, typed into, dragged.
#include <optional>

#include "LogicWorld.h"
#include "engine/camera/CameraControl.h"
#include "engine/gui/UIEditLine.h"
#include "engine/gui/UIRoot.h"
#include "engine/gui/UIWidgets.h"
#include "engine/input/InputRouter.h"
#include "engine/scene/ObjectPrefab.h"

namespace {

class PanelTest : public LogicTest {
protected:
    void begin(const TestJet& spec = {}) {
        writeJet(spec);
        addStart();
        beginWithoutAircraft();
    }
    void beginWithoutAircraft() {
        start();
        input().bindKeyRelease([this](const GUIEventKey& event) { logic().onKeyRelease(event, engine().getApp()); });
        frame();
    }

    UIRoot& panels() { return *engine().getUIRoot(); }
    InputRouter& input() { return *engine().getInput(); }
    /// The first element of a kind at the top of the tree.
    template <class T>
    T& top() {
        for (int i = 0; i < panels().getNumChildren(); ++i) {
            if (auto* const found = dynamic_cast<T*>(panels().getChild(i))) return *found;
        }
        throw std::runtime_error("no such panel");
    }
    UIHLayout& bar() { return top<UIHLayout>(); }
    UIVLayout& column() { return top<UIVLayout>(); }
    UIGridLayout& grid() { return top<UIGridLayout>(); }
    UILabel& label(const jString& text) {
        for (int i = 0; i < panels().getNumChildren(); ++i) {
            auto* const found = dynamic_cast<UILabel*>(panels().getChild(i));
            if (found && found->getText() == text) return *found;
        }
        throw std::runtime_error("no such label");
    }
    UIButton& button(int i) { return *static_cast<UIButton*>(column().getChild(i)); }
    template <class T = UIElement>
    T* cell(int row, int column) {
        return dynamic_cast<T*>(grid().getChild(3 * row + column));
    }

    void pointAt(UIElement& element, double share = 0.5) {
        input().mouseMove(element.getX() + share * element.getWidth(), element.getY() + 0.5 * element.getHeight());
    }
    void press(bool down) { input().mouseButton(ControlApp::BUTTON_LEFT, down); }
    void click(UIElement& element) {
        pointAt(element), press(true), press(false);
        printedBy([this] { frame(); });
    }
    void hit(int key, int modifiers = 0) {
        input().keyEvent(key, true, modifiers), input().keyEvent(key, false, modifiers);
    }
    void enter(UIElement& field, const char* text) {
        click(field);
        for (const char* c = text; *c; ++c) input().textEvent(static_cast<unsigned char>(*c));
        hit(ControlApp::KEY_ENTER);
        frame();
    }
    void switchTestMode() {
        hit('t', InputRouter::MOD_CTRL);
        printedBy([this] { frame(); });
    }
};

TEST_F(PanelTest, TheWarningShowsAFailedLinkInDataFlightAloneUntilARetrySucceeds) {
    std::optional<LoopbackSocket> other(ports().viewer);
    begin();
    UILabel& warning = label("数据接收异常\n");
    EXPECT_TRUE(warning.isVisible());
    for (const bool shown : {false, false, true}) {  // by hand, the recorded path, the host again
        click(button(1));
        EXPECT_EQ(warning.isVisible(), shown) << button(1).getText();
    }
    other.reset();
    logic().set_fly_mode(DATA_FLY);
    EXPECT_FALSE(warning.isVisible());
}

TEST_F(PanelTest, TestModeShowsTheControlsAndDraggingOneMovesItsPart) {
    begin();
    EXPECT_FALSE(grid().isVisible());
    switchTestMode();
    EXPECT_TRUE(grid().isVisible());
    EXPECT_EQ(cell<UILabel>(2, 0)->getText(), "part_2");

    auto& slider = *cell<UISlider>(2, 1);
    const dmat4 before = jet().getNode(2)->getTransform(), other = jet().getNode(3)->getTransform();
    pointAt(slider, 0.7), press(true), frame();
    const float held = slider.getValue();
    EXPECT_GT(held, 30.0f);
    EXPECT_GT(difference(jet().getNode(2)->getTransform(), before), 0.5);
    press(false), frame();
    EXPECT_EQ(slider.getValue(), std::trunc(held));
    EXPECT_EQ(cell<UILabel>(2, 2)->getText(), ToString(static_cast<int>(held)));
    EXPECT_LT(difference(jet().getNode(3)->getTransform(), other), 1e-9);

    // Rows below the window's end are reached with the wheel.
    UIElement& last = *cell(34, 0);
    for (int i = 0; i < 40; ++i) input().wheel(-120);
    frame();
    EXPECT_LT(last.getY() + last.getHeight(), bar().getY());
    switchTestMode();
    EXPECT_FALSE(grid().isVisible());
}

TEST_F(PanelTest, AHeldSliderHoldsTheFrameBackAndRecordsWait) {
    begin();
    deliver(packets::record(2), 1);
    switchTestMode();
    pointAt(*cell(0, 1)), press(true), frame();
    host().collectFeedback();
    ASSERT_TRUE(host().sendOrder(2));
    ASSERT_TRUE(host().sendOrder(0));
    for (int i = 0; i < 20; ++i) frame();
    EXPECT_EQ(logic().getLinkCounts().records, 1u);
    EXPECT_TRUE(host().collectFeedback().empty());
    press(false);
    for (int i = 0; i < 100000 && logic().getLinkCounts().records < 3; ++i) frame();
    EXPECT_EQ(logic().getLinkCounts().records, 3u);
    EXPECT_EQ(logic().getLastOrder(), 0);
}

TEST_F(PanelTest, EachKindOfPartHasItsControlAndEveryRowItsThreeCells) {
    std::string nodes;
    for (const char* const type : {"0", "1", "2", "3", "4", "9"}) {
        const std::string i = std::to_string(std::count(nodes.begin(), nodes.end(), '}'));
        nodes += ", \"n" + i + R"(": { "show_name": "控制)" + i + R"(", "node_name": "part_)" + i + R"(", "type": )" +
                 type + " }";
    }
    writeJet();
    write(TestJet::CONFIG, std::string(R"({ "path": ")") + TestJet::PREFAB +
                               R"(", "type": "PlaneJ15", "ctrl_nodes": { "none": 0)" + nodes + " } }");
    addStart();
    beginWithoutAircraft();
    switchTestMode();
    ASSERT_EQ(grid().getNumChildren(), 3 * 6);
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(cell<UILabel>(i, 0)->getText(), "控制" + ToString(i));
        auto* const slider = cell<UISlider>(i, 1);
        ASSERT_EQ(slider != nullptr, i != 1 && i != 5) << i;
        EXPECT_EQ(cell<UICheckBox>(i, 1) != nullptr, i == 1);
        if (!slider) continue;
        pointAt(*slider, 0.9), press(true), press(false), frame(), frame();
        EXPECT_EQ(slider->getValue() > 100.0f, i == 0) << i << ": what the jet does not do springs back";
    }
}

TEST_F(PanelTest, TypedValuesBeyondTheLimitsAreRefusedWithOneLine) {
    begin();
    printedBy([this] { logic().set_player_mode(FREE_VIEW); });
    auto& speed = *bar().getChild(1);
    auto& place = *static_cast<UIDVec3*>(bar().getChild(3));
    const struct {
        UIElement* field;
        const char* good;
        std::vector<const char*> bad;
    } rows[] = {{&speed, "500", {"-1", "1000001"}},
                {place.getField(0), "113.25", {"1e9"}},
                {place.getField(1), "-16", {"-90.5"}},
                {place.getField(2), "1e4", {"-12001", "1e99"}}};
    for (const auto& row : rows) {
        clearLines();
        enter(*row.field, row.good);
        EXPECT_TRUE(lines().empty()) << lines().front();
        for (const char* const bad : row.bad) {
            clearLines();
            enter(*row.field, bad);
            EXPECT_EQ(lines().size(), 1u) << bad;
        }
    }
    EXPECT_EQ(logic().getCamSpeed(), 500);
    const dvec3 geo = engine().getEllipsoid().toWGS(engine().getCameraControl()->getNode()->getWorldPosition());
    EXPECT_LT(length(geo - dvec3(113.25, -16.0, 10000.0)), 1e-4);
}

TEST_F(PanelTest, PanelsDoWithoutImagesAndAnAircraft) {
    beginWithoutAircraft();
    EXPECT_TRUE(panels().getImages().empty());
    switchTestMode();
    EXPECT_EQ(grid().getNumChildren(), 0);
    bool reset = false;
    logic().m_signal_2_reset.append([&](int) { reset = true; });
    for (int i = 0; i < 4; ++i) click(button(i));
    EXPECT_EQ(logic().getPlayerMode(), FREE_VIEW);
    EXPECT_EQ(logic().getFlyMode(), MANUAL_FLY);
    EXPECT_EQ(button(1).getText(), "手动飞行");
    EXPECT_FALSE(world().isEnabled()) << "no longer drawn";
    EXPECT_TRUE(reset);
}

}  // namespace
