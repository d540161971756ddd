// The string table; read at the first call.
#include "src/logic/StringTable.h"

#include <engine/text/Log.h>
#include <engine/text/Package.h>

#include <set>

namespace {

const jString PATH = "config/string.txt";

struct Table {
    Package texts;
    bool loaded = false;
    jString unknown;             ///< the last key that was not found
    std::set<jString> untabled;  ///< keys requested while there was no file
};

Table& table() {
    static Table instance;
    return instance;
}

}  // namespace

const jString& tr(const char* key) {
    Table& t = table();
    if (!t.loaded) t.loaded = mjl::open(PATH, t.texts, false);
    if (!t.loaded) {
        jLog::error("%s:string file not found:%s", "tr", PATH.c_str());
        return *t.untabled.insert(key).first;
    }
    if (const Item* const item = t.texts.getItem(key)) return item->getString();
    jLog::error("%s:key[%s] not found in string file", "tr", key);
    return t.unknown = key;
}

const jString& tr(const jString& key) {
    return tr(key.c_str());
}
