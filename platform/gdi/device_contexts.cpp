// Device contexts of the display: what they tell of its fonts.
#include <windows.h>

#include <algorithm>

#include "platform/gdi/fonts.h"
#include "platform/kernel/failures.h"
#include "platform/kernel/faults.h"
#include "platform/kernel/objects.h"
#include "platform/kernel/text.h"

namespace host {
namespace {

class DisplayContext : public Object {
  public:
    DisplayContext() : Object(Resource::kGdiObject) {}
    std::string Describe() const override { return "display context"; }
};

void Describe(const Font& font, LOGFONTW* logFont, NEWTEXTMETRICW* metric) {
    *logFont = {};
    *metric = {};
    font.face.copy(logFont->lfFaceName, LF_FACESIZE - 1);
    logFont->lfCharSet = font.charSet;
    metric->tmCharSet = font.charSet;
}

}  // namespace
}  // namespace host

using namespace host;

extern "C" {

HDC WINAPI CreateDCW(LPCWSTR driver, LPCWSTR, LPCWSTR, const DEVMODEW*) {
    if (FaultAsked("CreateDCW")) {
        return nullptr;
    }
    if (!driver || !EqualsIgnoringCase(driver, u"DISPLAY")) {
        FailUnsupported("CreateDCW (a device context of anything but the display)");
        return nullptr;
    }
    return static_cast<HDC>(AddObject(std::make_unique<DisplayContext>()));
}

BOOL WINAPI DeleteDC(HDC context) {
    return RemoveObject(context, Resource::kGdiObject);
}

int WINAPI EnumFontFamiliesW(HDC context, LPCWSTR family, FONTENUMPROCW proc, LPARAM parameter) {
    if (FaultAsked("EnumFontFamiliesW") || !FindObject(context, Resource::kGdiObject)) {
        return 0;
    }
    int result = 1;
    for (const Font& font : DisplayFonts()) {
        if (family && !EqualsIgnoringCase(font.face, family)) {
            continue;
        }
        ENUMLOGFONTW logFont = {};
        NEWTEXTMETRICW metric;
        Describe(font, &logFont.elfLogFont, &metric);
        result = proc(&logFont.elfLogFont, reinterpret_cast<const TEXTMETRICW*>(&metric), font.type, parameter);
        if (result == 0) {
            break;
        }
    }
    return result;
}

}  // extern "C"
