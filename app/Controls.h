// The application's own controls beside the logic's: keys, panels, window title.
#pragma once

#include <optional>

#include "HelpPanel.h"
#include "InstructorPanel.h"
#include "Texts.h"

class Engine;
class Logic_Test_Fly;
class Picture;
class SceneCommandQueue;
class SceneQuery;

/// The logic and the picture outlive this object. Its panels belong to the engine.
class Controls {
public:
    /// `logic` with its `query`, and `picture`, may be null: their keys, panel and title are then off.
    Controls(Engine& engine, SceneCommandQueue& commands, const Logic_Test_Fly* logic, const SceneQuery* query,
             Picture* picture, const std::string& language);
    Controls(const Controls&) = delete;
    Controls& operator=(const Controls&) = delete;

    /// Call it before each picture.
    void update();

private:
    void press(int key);
    void updateTitle();

    SceneCommandQueue& m_commands;
    const Logic_Test_Fly* m_logic;
    const SceneQuery* m_query;
    Picture* m_picture;
    Texts m_texts;
    HelpPanel m_help;
    std::optional<InstructorPanel> m_panel;
    int m_fly_mode = -1, m_player_mode = -1;  ///< as shown in the title
};
