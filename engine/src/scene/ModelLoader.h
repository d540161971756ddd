// The models kept while an engine runs.
#pragma once

/// Forgets every model loaded so far; nodes made from them keep theirs. Called when the engine ends.
void clearModelCache();
