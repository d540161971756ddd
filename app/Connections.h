// Connections: input events to the logic, signals of the logic to the application.
#pragma once

class Engine;
class LogicBase;
class Logic_Test_Fly;
class Picture;

/// Makes all connections, before the logic is initialised. `fly_logic` and `picture` may be null: fog is then not
/// drawn. The logic and the picture outlive the connections.
void connectLogic(Engine& engine, LogicBase& logic, Logic_Test_Fly* fly_logic, Picture* picture);
/// Removes all input listeners and all panels: their code and data may be part of the logic's library.
void disconnectInput(Engine& engine);
