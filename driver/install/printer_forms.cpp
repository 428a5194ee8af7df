#include "driver/install/printer_forms.h"

#include <winspool.h>

#include "driver/base/handles.h"
#include "driver/devdesc/description_file.h"
#include "driver/devdesc/model_tables.h"
#include "driver/devdesc/paper_lookup.h"
#include "driver/entry/resource_module.h"

namespace velmora {
namespace {

constexpr int kFirstOwnPaper = 256;
constexpr LONG kMicrometresPerInch = 25400;
constexpr LONG kMicrometresPerTenth = 100;
constexpr size_t kNameCapacity = 128;

}  // namespace

void ReplacePrinterForm(HANDLE printer, const DeviceModel* model, int paperId, const WCHAR* name, LONG width,
                        LONG length) {
    if (*name == 0) {
        return;
    }
    auto* const formName = const_cast<WCHAR*>(name);
    DeleteFormW(printer, formName);
    const MarginPair leftTop = GetPrintableMargins(printer, model, paperId, kPortraitMargins, kMicrometresPerInch);
    const MarginPair rightBottom = GetPrintableMargins(printer, model, -paperId, kPortraitMargins, kMicrometresPerInch);
    FORM_INFO_1W form = {};
    form.Flags = FORM_PRINTER;
    form.pName = formName;
    form.Size = {width, length};
    form.ImageableArea = {leftTop.horizontal, leftTop.vertical, width - rightBottom.horizontal,
                          length - rightBottom.vertical};
    AddFormW(printer, 1, reinterpret_cast<BYTE*>(&form));
}

void AddDriverForms(HANDLE printer, HANDLE descriptionFile, const DeviceModel& model) {
    const OwnedModule module = LoadResourceModule(printer, nullptr);
    const WORD language = UserPrimaryLanguage();
    for (const PaperRecord& paper : RecordList(model.paperTable)) {
        if (paper.paperId < kFirstOwnPaper) {
            continue;
        }
        WCHAR name[kNameCapacity];
        ReadLocalizedString(descriptionFile, language, module.Get(), static_cast<int16_t>(paper.nameRef), name,
                            ARRAYSIZE(name));
        ReplacePrinterForm(printer, &model, paper.paperId, name, paper.width * kMicrometresPerTenth,
                           paper.length * kMicrometresPerTenth);
    }
}

}  // namespace velmora
