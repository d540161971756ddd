// Plays a script of input events: each event is queued before the frame in which it is due.
#include "InputScript.h"

#include <algorithm>
#include <cstdio>

#include "engine/gui/UILayout.h"
#include "engine/gui/UIRoot.h"
#include "engine/gui/UIWidgets.h"
#include "engine/input/InputRouter.h"
#include "engine/text/Log.h"

namespace {

constexpr int NOTCH = 120;

constexpr std::pair<const char*, int> KEY_NAMES[] = {{"escape", ControlApp::KEY_ESCAPE},
                                                     {"tab", ControlApp::KEY_TAB},
                                                     {"backspace", ControlApp::KEY_BACKSPACE},
                                                     {"enter", ControlApp::KEY_ENTER},
                                                     {"insert", ControlApp::KEY_INSERT},
                                                     {"delete", ControlApp::KEY_DELETE},
                                                     {"page_up", ControlApp::KEY_PAGE_UP},
                                                     {"page_down", ControlApp::KEY_PAGE_DOWN},
                                                     {"home", ControlApp::KEY_HOME},
                                                     {"end", ControlApp::KEY_END},
                                                     {"right", ControlApp::KEY_RIGHT},
                                                     {"left", ControlApp::KEY_LEFT},
                                                     {"up", ControlApp::KEY_UP},
                                                     {"down", ControlApp::KEY_DOWN},
                                                     {"shift", ControlApp::KEY_SHIFT},
                                                     {"ctrl", ControlApp::KEY_CTRL},
                                                     {"alt", ControlApp::KEY_ALT},
                                                     {"space", ' '}};

constexpr std::pair<const char*, int> BUTTON_NAMES[] = {
    {"left", ControlApp::BUTTON_LEFT}, {"right", ControlApp::BUTTON_RIGHT}, {"wheel", ControlApp::BUTTON_WHEEL}};

constexpr struct {
    const char* prefix;
    int modifier;
    int key;
} MODIFIERS[] = {{"ctrl+", InputRouter::MOD_CTRL, ControlApp::KEY_CTRL},
                 {"shift+", InputRouter::MOD_SHIFT, ControlApp::KEY_SHIFT},
                 {"alt+", InputRouter::MOD_ALT, ControlApp::KEY_ALT}};

/// The value for a name, 0 when unknown.
template <class Names>
int valueOf(const Names& names, const std::string& name) {
    for (const auto& [known, value] : names) {
        if (name == known) return value;
    }
    return 0;
}

bool readPlace(const std::string& text, double& x, double& y) {
    int end = 0;
    return std::sscanf(text.c_str(), "%lf %lf%n", &x, &y, &end) == 2 && static_cast<std::size_t>(end) == text.size();
}

bool readNotches(const std::string& text, int& notches) {
    int end = 0;
    return std::sscanf(text.c_str(), "%d%n", &notches, &end) == 1 && static_cast<std::size_t>(end) == text.size() &&
           notches >= -100 && notches <= 100;
}

/// Text that keys can type: printable ASCII.
bool isTyped(const std::string& text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

/// The visible element with this text or name; null when there is none.
UIElement* findShown(UIElement& element, const jString& text) {
    if (element.isHidden()) return nullptr;
    const auto* const button = dynamic_cast<const UIButton*>(&element);
    if (element.getName() == text || (button && button->getText() == text)) return &element;
    const auto* const layout = dynamic_cast<const UILayout*>(&element);
    for (int i = 0; layout && i < layout->getNumChildren(); ++i) {
        if (UIElement* const found = findShown(*layout->getChild(i), text)) return found;
    }
    return nullptr;
}

UIElement* findShown(const UIRoot& panels, const jString& text) {
    for (int i = 0; i < panels.getNumChildren(); ++i) {
        if (UIElement* const found = findShown(*panels.getChild(i), text)) return found;
    }
    return nullptr;
}

}  // namespace

bool InputScript::readKey(const std::string& text, Key& key) {
    std::string name = text;
    for (bool found = true; found;) {
        found = false;
        for (const auto& modifier : MODIFIERS) {
            if (name.rfind(modifier.prefix, 0) != 0) continue;
            key.modifiers |= modifier.modifier;
            name.erase(0, std::string(modifier.prefix).size());
            found = true;
        }
    }
    int number = 0, end = 0;
    const bool is_function = std::sscanf(name.c_str(), "f%d%n", &number, &end) == 1 &&
                             static_cast<std::size_t>(end) == name.size() && number >= 1 && number <= 12;
    key.code = name.size() == 1 ? name[0] : is_function ? ControlApp::KEY_F1 + number - 1 : valueOf(KEY_NAMES, name);
    return key.code >= ' ';
}

bool InputScript::isGood(const TimedLine& line) {
    Key key;
    double x = 0.0, y = 0.0;
    int notches = 0;
    if (line.verb == "key" || line.verb == "key_down" || line.verb == "key_up") return readKey(line.rest, key);
    if (line.verb == "button_down" || line.verb == "button_up") return valueOf(BUTTON_NAMES, line.rest) != 0;
    if (line.verb == "mouse") return readPlace(line.rest, x, y);
    if (line.verb == "wheel") return readNotches(line.rest, notches);
    if (line.verb == "type") return isTyped(line.rest);
    return line.verb == "click" && !line.rest.empty();
}

bool InputScript::open(const std::string& file, std::string& error) {
    m_file = file;
    std::vector<TimedLine> lines;
    if (!readTimedLines(file, lines, error)) return false;
    for (const TimedLine& line : lines) {
        if (isGood(line)) continue;
        error = file + ":" + std::to_string(line.number) + ": \"" + line.verb + " " + line.rest +
                "\" is no input; docs/user_guide.md lists what is";
        return false;
    }
    m_queue.set(std::move(lines));
    return true;
}

void InputScript::play(InputRouter& input, UIRoot& panels, double time, long frame) {
    for (const Key& key : m_keys_down) {
        input.keyEvent(key.code, false, key.modifiers);
        for (const auto& modifier : MODIFIERS) {
            if (key.modifiers & modifier.modifier) input.keyEvent(modifier.key, false);
        }
    }
    m_keys_down.clear();
    // A click must not become a drag: the button is pressed one frame after the mouse moved and released one frame
    // later.
    if (m_click != NO_CLICK) input.mouseButton(ControlApp::BUTTON_LEFT, m_click == IS_THERE);
    m_click = m_click == IS_THERE ? IS_DOWN : NO_CLICK;
    while (const TimedLine* const line = m_queue.next(time, frame)) act(*line, input, panels);
}

void InputScript::act(const TimedLine& line, InputRouter& input, UIRoot& panels) {
    Key key;
    double x = 0.0, y = 0.0;
    int notches = 0;
    if (line.verb == "key" && readKey(line.rest, key)) {
        hit(key, input);
    } else if (line.verb == "key_down" || line.verb == "key_up") {
        readKey(line.rest, key);
        input.keyEvent(key.code, line.verb == "key_down", key.modifiers);
    } else if (line.verb == "type") {
        for (const char c : line.rest) input.textEvent(static_cast<char32_t>(c));
    } else if (line.verb == "mouse" && readPlace(line.rest, x, y)) {
        input.mouseMove(x, y);
    } else if (line.verb == "button_down" || line.verb == "button_up") {
        input.mouseButton(valueOf(BUTTON_NAMES, line.rest), line.verb == "button_down");
    } else if (line.verb == "wheel" && readNotches(line.rest, notches)) {
        input.wheel(notches * NOTCH);
    } else if (line.verb == "click") {
        click(line, input, panels);
    }
}

void InputScript::hit(const Key& key, InputRouter& input) {
    for (const auto& modifier : MODIFIERS) {
        if (key.modifiers & modifier.modifier) input.keyEvent(modifier.key, true, key.modifiers);
    }
    input.keyEvent(key.code, true, key.modifiers);
    m_keys_down.push_back(key);
}

void InputScript::click(const TimedLine& line, InputRouter& input, UIRoot& panels) {
    double x = 0.0, y = 0.0;
    if (!readPlace(line.rest, x, y)) {
        UIElement* const element = findShown(panels, line.rest);
        if (!element) {
            jLog::warning("%s:%d: no button \"%s\" is shown", m_file.c_str(), line.number, line.rest.c_str());
            return;
        }
        x = element->getX() + 0.5 * element->getWidth();
        y = element->getY() + 0.5 * element->getHeight();
    }
    input.mouseMove(x, y);
    m_click = IS_THERE;
}
