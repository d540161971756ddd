// What kinds of targets there are.
#pragma once

#include <string>
#include <vector>

class Texts;

/// A type of the configuration's "target_type".
struct TargetType {
    int code = 0;
    std::string name;  ///< "target_type.CODE" of the display texts
};

/// All of them, in the file's order; none when the configuration cannot be read.
std::vector<TargetType> readTargetTypes(const Texts& texts);
