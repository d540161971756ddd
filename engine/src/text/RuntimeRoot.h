// The runtime root: the folder that all paths of the contract are relative to.
#pragma once

#include "engine/text/Containers.h"

/// Set by the engine at its start, relative to the working directory or absolute. Empty without an engine: paths are
/// then used unchanged.
void setRuntimeRoot(const jString& folder);
/// Same as Engine::resolvePath.
jString resolvePath(const jString& path);
