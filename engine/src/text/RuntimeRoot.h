// The runtime root: the folder that all paths of the contract are relative to.
#pragma once

#include "engine/text/Containers.h"

/// Set by the engine at its start, relative to the working directory or absolute. Empty, as before the first engine and
/// after the last: paths are then used as they are.
void setRuntimeRoot(const jString& folder);
/// See Engine::resolvePath.
jString resolvePath(const jString& path);
