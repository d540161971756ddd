// Conversion between UTF-8 and ImGui's characters.
#pragma once

#include <imgui.h>

#include "engine/text/Containers.h"

/// Characters that ImGui cannot represent become U+FFFD.
std::vector<ImWchar> fromUtf8(const jString& text);
jString toUtf8(const std::vector<ImWchar>& text);
