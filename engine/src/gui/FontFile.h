// Selection of the panels' font.
#pragma once

#include "engine/text/Containers.h"

/// A font file and the index of the font in it.
struct FontFile {
    jString path;  ///< empty when there is none
    int index = 0;
};

/// The installed Chinese font; the first call reads the system's font list, about 25 ms.
FontFile findFont();
