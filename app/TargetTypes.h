// The types of targets.
#pragma once

#include <vector>

#include "app/scene/SceneCommand.h"

class Texts;

/// The entries of "target_type" of the configuration, in the file's order. Their names are the display texts
/// "target_type.CODE".
std::vector<TargetType> readTargetTypes(const Texts& texts);
