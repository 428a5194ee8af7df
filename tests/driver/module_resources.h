// What resource modules hold, for tests that check their contents.
#pragma once

#include <windows.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace driver_test {

struct DialogItem {
    int id;  // -1: none that the driver names
    DWORD style;
    std::u16string windowClass;  // upper case, "BUTTON", whether the template gives the class by name or by number
    std::u16string text;
    RECT place;  // dialog units
};

struct Dialog {
    int width;  // dialog units
    int height;
    DWORD style;
    std::u16string title;
    int pointSize;
    int charSet;
    std::vector<DialogItem> items;  // in the order of the Tab key
};

struct ModuleResources {
    std::map<unsigned, std::u16string> strings;  // those that aren't empty
    std::map<unsigned, Dialog> dialogs;
    std::vector<std::string> others;  // all else but versions: "type 14, 101"
    std::vector<LANGID> languages;    // of each resource, versions included
};

// Throws std::runtime_error where the bytes are no compiled resources or a dialog isn't whole.
ModuleResources ReadModuleResources(std::string_view module);

}  // namespace driver_test
