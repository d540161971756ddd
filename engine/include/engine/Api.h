// What libengine.so exports: classes and functions with this mark, and nothing else.
#pragma once

/// Before a class's name or a function's return type.
#define ENGINE_API __attribute__((visibility("default")))
