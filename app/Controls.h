// What the application adds to the logic's own controls: its keys, the help overlay, the window's title.
#pragma once

#include <memory>

#include "HelpPanel.h"
#include "Texts.h"

class Engine;
class Logic_Test_Fly;
class Picture;

/// Lives no longer than the logic and the picture. Its panels belong to the engine.
class Controls {
public:
    /// `logic` and `picture` may be null: their keys and the title are off then.
    Controls(Engine& engine, Logic_Test_Fly* logic, Picture* picture, const std::string& language);
    Controls(const Controls&) = delete;
    Controls& operator=(const Controls&) = delete;

    /// Before each picture.
    void update();

private:
    void press(int key);
    void updateTitle();

    Logic_Test_Fly* m_logic;
    Picture* m_picture;
    Texts m_texts;
    HelpPanel m_help;
    int m_fly_mode = -1, m_player_mode = -1;  ///< as the title shows them
};
