// Display texts by key.
#pragma once

#include <engine/text/Containers.h>

/// The text of a key in "config/string.txt". For an unknown key returns the key and logs one error; that text
/// is overwritten by the next unknown key. Without the file every call tries to read it again, logs an error and
/// returns the key. Other texts are valid until the plug-in is unloaded.
const jString& tr(const char* key);
const jString& tr(const jString& key);
