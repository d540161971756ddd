// Routing of the scene graph's notices.
#pragma once

/// Sends warnings of the scene graph, including shader errors, to the engine's log instead of standard error.
void routeNotices();
