// Which font the panels' texts are drawn in.
#pragma once

#include "engine/text/Containers.h"

/// A font file and which of its fonts.
struct FontFile {
    jString path;  ///< empty when there is none
    int index = 0;
};

/// The installed Chinese font; the first call asks the system's font list, which takes some 25 ms.
FontFile findFont();
