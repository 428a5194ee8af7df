// What the panel sets: the user's international settings, the machine's identity, the environment, access to printers.
#pragma once

#include <windows.h>

#include <map>
#include <string>

namespace host {

struct CaseLess {
    bool operator()(const std::u16string& a, const std::u16string& b) const;
};

struct Settings {
    LANGID language = 0x0409;
    bool metric = true;
    std::u16string decimalSeparator = u".";
    UINT ansiCodePage = 1252;
    std::u16string computerName = u"VELMORA-PC";
    DWORD majorVersion = 10;
    DWORD minorVersion = 0;
    DWORD tickCount = 0x01000000;  // milliseconds
    // What every program starts with; a program's own changes are in the environment of the process.
    std::map<std::u16string, std::u16string, CaseLess> variables = {
        {u"APPDATA", u"C:\\Users\\User\\AppData\\Roaming"},
        {u"TEMP", u"C:\\Users\\User\\AppData\\Local\\Temp"},
        {u"TMP", u"C:\\Users\\User\\AppData\\Local\\Temp"},
        {u"USERPROFILE", u"C:\\Users\\User"},
    };
    DWORD grantedPrinterAccess = 0xFFFFFFFF;
    bool mayWritePrinterData = true;
};

// To be read and changed under MachineMutex(). A change of what is kept is followed by StoreChanged().
Settings& CurrentSettings();

// The environment of the process: begins as the settings' variables. Not kept.
std::map<std::u16string, std::u16string, CaseLess>& ProcessEnvironment();

inline constexpr char16_t kWindowsFolder[] = u"C:\\Windows";
inline constexpr char16_t kSystemFolder[] = u"C:\\Windows\\System32";

}  // namespace host
