// Forms: the built-in ones, adding and deleting.
#include <map>

#include "tests/platform/spooler_fixture.h"

namespace host {
namespace {

using FormsTest = SpoolerTest;

// Flags, width, length, imageable area.
std::map<std::u16string, std::vector<LONG>> Forms(HANDLE printer) {
    std::map<std::u16string, std::vector<LONG>> forms;
    const auto block = Read<FORM_INFO_1W>(printer, "EnumFormsW");
    for (const FORM_INFO_1W& form : block) {
        const RECTL& area = form.ImageableArea;
        forms[form.pName] = {
            static_cast<LONG>(form.Flags), form.Size.cx, form.Size.cy, area.left, area.top, area.right, area.bottom};
    }
    EXPECT_EQ(forms.size(), block.count);
    return forms;
}

TEST_F(FormsTest, BuiltInFormsAndAddedOnes) {
    const auto before = Forms(printer_);
    for (const auto& [name, form] : before) {
        EXPECT_EQ(form[0], FORM_BUILTIN) << Shown(name);
    }
    auto expected = before;
    expected[u"A4"] = {FORM_BUILTIN, 210000, 297000, 0, 0, 210000, 297000};
    expected[u"Letter"] = {FORM_BUILTIN, 215900, 279400, 0, 0, 215900, 279400};
    EXPECT_EQ(before, expected);
    EXPECT_TRUE(AddForm(printer_, u"Mine", FORM_USER, {100000, 200000}, {1000, 2000, 99000, 198000}));
    EXPECT_TRUE(AddForm(printer_, u"Drivers", FORM_PRINTER, {50000, 50000}, {0, 0, 50000, 50000}));
    expected[u"Mine"] = {FORM_USER, 100000, 200000, 1000, 2000, 99000, 198000};
    expected[u"Drivers"] = {FORM_PRINTER, 50000, 50000, 0, 0, 50000, 50000};
    EXPECT_EQ(Forms(printer_), expected);
    EXPECT_TRUE(DeleteForm(printer_, u"mine") && DeleteForm(printer_, u"Drivers"));
    EXPECT_EQ(Forms(printer_), before);
}

TEST_F(FormsTest, RefusedForms) {
    const SIZEL size = {1000, 2000};
    const struct {
        const char16_t* name;
        DWORD flags;
        SIZEL size;
        RECTL area;
        LONG error;
    } cases[] = {
        {u"", FORM_USER, size, {0, 0, 1000, 2000}, ERROR_INVALID_FORM_NAME},
        {u"a4", FORM_USER, size, {0, 0, 1000, 2000}, ERROR_FILE_EXISTS},
        {u"x", FORM_BUILTIN, size, {0, 0, 1000, 2000}, ERROR_INVALID_PARAMETER},
        {u"x", FORM_USER, {0, 2000}, {0, 0, 1000, 2000}, ERROR_INVALID_FORM_SIZE},
        {u"x", FORM_USER, {1000, -1}, {0, 0, 1000, 2000}, ERROR_INVALID_FORM_SIZE},
        {u"x", FORM_USER, size, {0, 0, 1001, 2000}, ERROR_INVALID_FORM_SIZE},
        {u"x", FORM_USER, size, {0, 0, 1000, 2001}, ERROR_INVALID_FORM_SIZE},
        {u"x", FORM_USER, size, {-1, 0, 1000, 2000}, ERROR_INVALID_FORM_SIZE},
        {u"x", FORM_USER, size, {500, 0, 500, 2000}, ERROR_INVALID_FORM_SIZE},
        {u"x", FORM_PRINTER, size, {0, 900, 1000, 800}, ERROR_INVALID_FORM_SIZE},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(FailureOf([&] { return AddForm(printer_, c.name, c.flags, c.size, c.area); }), c.error)
            << "row " << &c - cases;
    }
    EXPECT_EQ(FailureOf([&] { return DeleteForm(printer_, u"x"); }), ERROR_INVALID_FORM_NAME);
    EXPECT_EQ(FailureOf([&] { return DeleteForm(printer_, u"A4"); }), ERROR_INVALID_PARAMETER);
}

}  // namespace
}  // namespace host
