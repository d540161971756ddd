// What kinds of targets there are.
#pragma once

#include <vector>

#include "app/scene/SceneCommand.h"

class Texts;

/// The types of the configuration's "target_type" in the file's order, named by "target_type.CODE" of the display
/// texts.
std::vector<TargetType> readTargetTypes(const Texts& texts);
