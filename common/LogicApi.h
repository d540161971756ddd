// What the plug-in's library shows of itself: everything else in it stays hidden.
#pragma once

#define LOGIC_API __attribute__((visibility("default")))
