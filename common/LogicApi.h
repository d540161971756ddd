// Marks what the plug-in's library exports; every other symbol is hidden.
#pragma once

#define LOGIC_API __attribute__((visibility("default")))
