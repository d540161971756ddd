// The overlay that lists all keys.
#pragma once

class Texts;
class UIElement;
class UIRoot;

/// A key and the text key of its description. Rows without a key are headings.
struct HelpRow {
    const char* key;
    const char* text;
};

/// Hidden at first. The element belongs to the panels.
class HelpPanel {
public:
    HelpPanel(UIRoot& panels, const Texts& texts);
    void toggle();
    /// Centres the panel in the window.
    void update();

private:
    UIRoot& m_panels;
    UIElement* m_panel;
};
