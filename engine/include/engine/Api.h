// Export of symbols: libengine.so exports the classes and functions with this macro, and nothing else.
#pragma once

/// Position: before a class's name or a function's return type.
#define ENGINE_API __attribute__((visibility("default")))
