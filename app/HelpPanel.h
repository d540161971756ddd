// The overlay that lists all keys.
#pragma once

class Texts;
class UIElement;
class UIRoot;

/// A key and the key of the text that says what it does; rows without a key are headings.
struct HelpRow {
    const char* key;
    const char* text;
};

/// Hidden until it is switched on. Its element belongs to the panels.
class HelpPanel {
public:
    HelpPanel(UIRoot& panels, const Texts& texts);
    void toggle();
    /// Keeps it in the window's middle.
    void update();

private:
    UIRoot& m_panels;
    UIElement* m_panel;
};
