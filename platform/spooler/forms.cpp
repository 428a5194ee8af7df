// Forms: the machine's list of paper sizes by name.
#include "platform/spooler/forms.h"

#include <windows.h>
#include <winspool.h>

#include "platform/kernel/faults.h"
#include "platform/kernel/objects.h"
#include "platform/kernel/text.h"
#include "platform/spooler/failures.h"
#include "platform/spooler/info_buffer.h"
#include "platform/spooler/printer_handle.h"

namespace host {
namespace {

struct BuiltInForm {
    const char16_t* name;
    LONG width;   // thousandths of a millimetre
    LONG length;  // thousandths of a millimetre
};

// Sizes of the published DMPAPER_ constants, in their order.
constexpr BuiltInForm kBuiltInForms[] = {
    {u"Letter", 215900, 279400},
    {u"Letter Small", 215900, 279400},
    {u"Tabloid", 279400, 431800},
    {u"Ledger", 431800, 279400},
    {u"Legal", 215900, 355600},
    {u"Statement", 139700, 215900},
    {u"Executive", 184150, 266700},
    {u"A3", 297000, 420000},
    {u"A4", 210000, 297000},
    {u"A4 Small", 210000, 297000},
    {u"A5", 148000, 210000},
    {u"B4 (JIS)", 257000, 364000},
    {u"B5 (JIS)", 182000, 257000},
    {u"Folio", 215900, 330200},
    {u"Quarto", 215000, 275000},
    {u"10x14", 254000, 355600},
    {u"11x17", 279400, 431800},
    {u"Note", 215900, 279400},
    {u"Envelope #9", 98425, 225425},
    {u"Envelope #10", 104775, 241300},
    {u"Envelope #11", 114300, 263525},
    {u"Envelope #12", 120650, 279400},
    {u"Envelope #14", 127000, 292100},
    {u"C size sheet", 431800, 558800},
    {u"D size sheet", 558800, 863600},
    {u"E size sheet", 863600, 1117600},
    {u"Envelope DL", 110000, 220000},
    {u"Envelope C5", 162000, 229000},
    {u"Envelope C3", 324000, 458000},
    {u"Envelope C4", 229000, 324000},
    {u"Envelope C6", 114000, 162000},
    {u"Envelope C65", 114000, 229000},
    {u"Envelope B4", 250000, 353000},
    {u"Envelope B5", 176000, 250000},
    {u"Envelope B6", 176000, 125000},
    {u"Envelope", 110000, 230000},
    {u"Envelope Monarch", 98425, 190500},
    {u"6 3/4 Envelope", 92075, 165100},
    {u"US Std Fanfold", 377825, 279400},
    {u"German Std Fanfold", 215900, 304800},
    {u"German Legal Fanfold", 215900, 330200},
    {u"B4 (ISO)", 250000, 353000},
    {u"Japanese Postcard", 100000, 148000},
    {u"9x11", 228600, 279400},
    {u"10x11", 254000, 279400},
    {u"15x11", 381000, 279400},
    {u"Envelope Invite", 220000, 220000},
    {u"A2", 420000, 594000},
    {u"Japanese Double Postcard", 200000, 148000},
    {u"A6", 105000, 148000},
    {u"Letter Rotated", 279400, 215900},
    {u"A3 Rotated", 420000, 297000},
    {u"A4 Rotated", 297000, 210000},
    {u"A5 Rotated", 210000, 148000},
    {u"B6 (JIS)", 128000, 182000},
};

bool IsValidSize(const FORM_INFO_1W& form) {
    const RECTL& area = form.ImageableArea;
    return form.Size.cx > 0 && form.Size.cy > 0 && area.left >= 0 && area.top >= 0 && area.left < area.right &&
           area.top < area.bottom && area.right <= form.Size.cx && area.bottom <= form.Size.cy;
}

}  // namespace

std::vector<Form> BuiltInForms() {
    std::vector<Form> forms;
    for (const BuiltInForm& form : kBuiltInForms) {
        forms.push_back({form.name, FORM_BUILTIN, {form.width, form.length}, {0, 0, form.width, form.length}});
    }
    return forms;
}

}  // namespace host

using namespace host;

extern "C" {

BOOL WINAPI EnumFormsW(HANDLE hPrinter, DWORD Level, LPBYTE pForm, DWORD cbBuf, LPDWORD pcbNeeded, LPDWORD pcReturned) {
    if (FaultAsked("EnumFormsW")) {
        return FALSE;
    }
    const MachineLock lock;
    if (!OpenedPrinter(hPrinter) || !IsSupportedLevel("EnumFormsW", Level, 1, 2)) {
        return FALSE;
    }
    InfoBuffer<FORM_INFO_1W> buffer;
    for (const Form& form : Spooler().forms) {
        FORM_INFO_1W& info = buffer.Add();
        info.Flags = form.flags;
        info.Size = form.size;
        info.ImageableArea = form.imageableArea;
        buffer.Text(&FORM_INFO_1W::pName, form.name);
    }
    return buffer.CopyTo(pForm, cbBuf, pcbNeeded, pcReturned, true);
}

BOOL WINAPI AddFormW(HANDLE hPrinter, DWORD Level, LPBYTE pForm) {
    if (FaultAsked("AddFormW")) {
        return FALSE;
    }
    const MachineLock lock;
    if (!OpenedPrinter(hPrinter, PRINTER_ACCESS_ADMINISTER) || !IsSupportedLevel("AddFormW", Level, 1, 2)) {
        return FALSE;
    }
    if (!pForm) {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    const FORM_INFO_1W& info = *reinterpret_cast<const FORM_INFO_1W*>(pForm);
    if (!info.pName || !*info.pName) {
        return Fail(ERROR_INVALID_FORM_NAME);
    }
    if (info.Flags != FORM_USER && info.Flags != FORM_PRINTER) {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    if (!IsValidSize(info)) {
        return Fail(ERROR_INVALID_FORM_SIZE);
    }
    if (FindForm(info.pName)) {
        return Fail(ERROR_FILE_EXISTS);
    }
    auto more = Spooler().forms;
    more.push_back({info.pName, info.Flags, info.Size, info.ImageableArea});
    return Replace(Spooler().forms, std::move(more));
}

BOOL WINAPI DeleteFormW(HANDLE hPrinter, LPWSTR pFormName) {
    if (FaultAsked("DeleteFormW")) {
        return FALSE;
    }
    const MachineLock lock;
    if (!OpenedPrinter(hPrinter, PRINTER_ACCESS_ADMINISTER)) {
        return FALSE;
    }
    const Form* const form = pFormName ? FindForm(pFormName) : nullptr;
    if (!form) {
        return Fail(ERROR_INVALID_FORM_NAME);
    }
    if (form->flags == FORM_BUILTIN) {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    auto left = Spooler().forms;
    left.erase(left.begin() + (form - Spooler().forms.data()));
    return Replace(Spooler().forms, std::move(left));
}

}  // extern "C"
