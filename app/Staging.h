// What the command line sets up in the scene: the view, the weather, the date.
#pragma once

class Engine;
class LogicBase;
class Logic_Test_Fly;
struct CameraPlace;
struct Options;

/// Places the camera; REQUIRES a camera node.
void placeCamera(Engine& engine, const CameraPlace& place);
/// The same at the place where the world's view starts.
void placeCameraAtStart(Engine& engine);
/// Weather, time and date as the options ask for, through the logic's operations. Without the flight-test logic only
/// the date is set, and one log line tells what was left out.
void stageWeather(const Options& options, const Engine& engine, LogicBase& logic, Logic_Test_Fly* fly_logic);
