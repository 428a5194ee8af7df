// Forms: the built-in ones, adding and deleting.
#include <map>

#include "tests/platform/spooler_fixture.h"

namespace host {
namespace {

struct FormData {
    DWORD flags;
    std::vector<LONG> sizes;  // width, length, imageable area
    bool operator==(const FormData&) const = default;
};

class FormsTest : public SpoolerTest {
  protected:
    std::map<std::u16string, FormData> Forms() {
        DWORD count = 0;
        const auto list =
            ReadSized([this](LPBYTE buffer, DWORD size, LPDWORD needed,
                             LPDWORD returned) { return EnumFormsW(printer_, 1, buffer, size, needed, returned); },
                      &count);
        std::map<std::u16string, FormData> forms;
        for (DWORD i = 0; i < count; ++i) {
            const FORM_INFO_1W& form = reinterpret_cast<const FORM_INFO_1W*>(list->data())[i];
            const RECTL& area = form.ImageableArea;
            forms[form.pName] = {form.Flags,
                                 {form.Size.cx, form.Size.cy, area.left, area.top, area.right, area.bottom}};
        }
        EXPECT_EQ(forms.size(), count);
        return forms;
    }

    DWORD Add(std::u16string name, DWORD flags, SIZEL size, RECTL area) {
        FORM_INFO_1W form = {flags, name.data(), size, area};
        return AddFormW(printer_, 1, reinterpret_cast<BYTE*>(&form)) ? ERROR_SUCCESS : GetLastError();
    }

    DWORD Delete(std::u16string name) { return DeleteFormW(printer_, name.data()) ? ERROR_SUCCESS : GetLastError(); }
};

TEST_F(FormsTest, BuiltInFormsHavePublishedSizes) {
    const auto forms = Forms();
    for (const auto& [name, form] : forms) {
        EXPECT_EQ(form.flags, DWORD{FORM_BUILTIN});
    }
    EXPECT_EQ(forms.at(u"A4"), (FormData{FORM_BUILTIN, {210000, 297000, 0, 0, 210000, 297000}}));
    EXPECT_EQ(forms.at(u"Letter"), (FormData{FORM_BUILTIN, {215900, 279400, 0, 0, 215900, 279400}}));
}

TEST_F(FormsTest, AddedFormsAreListedAsAdded) {
    const auto before = Forms();
    EXPECT_EQ(Add(u"Mine", FORM_USER, {100000, 200000}, {1000, 2000, 99000, 198000}), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Add(u"Drivers", FORM_PRINTER, {50000, 50000}, {0, 0, 50000, 50000}), DWORD{ERROR_SUCCESS});
    auto expected = before;
    expected[u"Mine"] = {FORM_USER, {100000, 200000, 1000, 2000, 99000, 198000}};
    expected[u"Drivers"] = {FORM_PRINTER, {50000, 50000, 0, 0, 50000, 50000}};
    EXPECT_EQ(Forms(), expected);
    EXPECT_EQ(Delete(u"mine"), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Delete(u"Drivers"), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Forms(), before);
}

TEST_F(FormsTest, RefusedForms) {
    const SIZEL size = {1000, 2000};
    const struct {
        const char16_t* name;
        DWORD flags;
        SIZEL size;
        RECTL area;
        DWORD error;
    } cases[] = {
        {u"", FORM_USER, size, {0, 0, 1000, 2000}, ERROR_INVALID_FORM_NAME},
        {u"a4", FORM_USER, size, {0, 0, 1000, 2000}, ERROR_FILE_EXISTS},
        {u"x", FORM_BUILTIN, size, {0, 0, 1000, 2000}, ERROR_INVALID_PARAMETER},
        {u"x", 4, size, {0, 0, 1000, 2000}, ERROR_INVALID_PARAMETER},
        {u"x", FORM_USER, {0, 2000}, {0, 0, 1000, 2000}, ERROR_INVALID_FORM_SIZE},
        {u"x", FORM_USER, {1000, -1}, {0, 0, 1000, 2000}, ERROR_INVALID_FORM_SIZE},
        {u"x", FORM_USER, size, {0, 0, 1001, 2000}, ERROR_INVALID_FORM_SIZE},
        {u"x", FORM_USER, size, {0, 0, 1000, 2001}, ERROR_INVALID_FORM_SIZE},
        {u"x", FORM_USER, size, {-1, 0, 1000, 2000}, ERROR_INVALID_FORM_SIZE},
        {u"x", FORM_USER, size, {500, 0, 500, 2000}, ERROR_INVALID_FORM_SIZE},
        {u"x", FORM_PRINTER, size, {0, 900, 1000, 800}, ERROR_INVALID_FORM_SIZE},
    };
    const auto before = Forms();
    for (const auto& test : cases) {
        EXPECT_EQ(Add(test.name, test.flags, test.size, test.area), test.error) << &test - cases;
    }
    EXPECT_EQ(Delete(u"x"), DWORD{ERROR_INVALID_FORM_NAME});
    EXPECT_EQ(Delete(u"A4"), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(Forms(), before);
}

}  // namespace
}  // namespace host
