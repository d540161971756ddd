// Who hears whom: the window's input to the logic, the logic's signals to the application.
#pragma once

class Engine;
class LogicBase;
class Logic_Test_Fly;
class Picture;

/// Connects all of them, before the logic is initialised. `fly_logic` and `picture` may be null: nothing draws fog
/// then. The logic and the picture outlive the connections.
void connectLogic(Engine& engine, LogicBase& logic, Logic_Test_Fly* fly_logic, Picture* picture);
/// Drops every input listener and every panel: their code and data may be part of the logic's library.
void disconnectInput(Engine& engine);
