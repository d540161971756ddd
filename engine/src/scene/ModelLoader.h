// The cache of loaded models.
#pragma once

/// Empties the cache of models; existing nodes keep their meshes. Called when the engine ends.
void clearModelCache();
