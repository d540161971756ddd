// Display texts by key.
#pragma once

#include <engine/text/Containers.h>

/// The text of a key in "config/string.txt". A key that is not there stands for itself, with one error logged; the text
/// returned for it is overwritten by the next such key. Without the file every call tries to read it again, logs an
/// error and returns the key. Other texts stay valid until the plug-in is unloaded.
const jString& tr(const char* key);
const jString& tr(const jString& key);
