// The scene graph's notices.
#pragma once

/// Sends warnings of the scene graph, shader errors among them, to the engine's log instead of standard error.
void routeNotices();
