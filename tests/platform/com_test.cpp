#include "tests/platform/xml_fixture.h"

namespace host {
namespace {

using ComTest = KernelTest;

TEST_F(ComTest, TextsCarryTheirLength) {
    const struct {
        BSTR text;
        UINT chars;
        std::u16string_view content;
    } rows[] = {
        {SysAllocString(TEXT("ab")), 2, u"ab"},
        {SysAllocString(TEXT("")), 0, u""},
        {SysAllocStringLen(TEXT("a\0b"), 3), 3, std::u16string_view(u"a\0b", 3)},
        {SysAllocStringLen(TEXT("abc"), 1), 1, u"a"},
        {nullptr, 0, u""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(SysStringLen(row.text), row.chars);
        EXPECT_EQ(SysStringByteLen(row.text), 2 * row.chars);
        if (row.text != nullptr) {
            EXPECT_EQ(std::u16string_view(row.text, row.chars), row.content);
            EXPECT_EQ(row.text[row.chars], 0);
            EXPECT_EQ(reinterpret_cast<const uint32_t*>(row.text)[-1], 2 * row.chars);
        }
        SysFreeString(row.text);
    }
    EXPECT_EQ(SysAllocString(nullptr), nullptr);
    EXPECT_EQ(SysAllocStringLen(nullptr, 0xFFFFFFFF), nullptr);
    const BSTR unfilled = SysAllocStringLen(nullptr, 3);
    EXPECT_EQ(SysStringLen(unfilled), 3u);
    EXPECT_EQ(StillOpen(), Lines{"BSTR of 16 bytes (allocation " + std::to_string(AllocationsSoFar()) + ")"});
    SysFreeString(unfilled);
    FailAllocation(1);
    EXPECT_EQ(SysAllocString(TEXT("a")), nullptr);
    alignas(16) WCHAR foreign[40] = {};
    EXPECT_DEATH(SysFreeString(foreign + 20), "no BSTR in use");
}

TEST_F(ComTest, ValuesGiveBackWhatTheyOwn) {
    VARIANT value;
    VariantInit(&value);
    EXPECT_EQ(value.vt, VT_EMPTY);
    value.vt = VT_BSTR;
    value.bstrVal = SysAllocString(TEXT("text"));
    EXPECT_EQ(VariantClear(&value), S_OK);
    EXPECT_EQ(value.vt, VT_EMPTY);
    EXPECT_EQ(StillOpen(), Lines());
    value.vt = 0x7FF;
    EXPECT_EQ(VariantClear(&value), DISP_E_BADVARTYPE);
}

HRESULT Create(REFCLSID classId, DWORD context, REFIID interfaceId, IUnknown* outer = nullptr) {
    Ref<IUnknown> object;
    return CoCreateInstance(classId, outer, context, interfaceId, object.ReceiveAny());
}

TEST_F(ComTest, ObjectsAreMadeOnThreadsThatHaveCom) {
    EXPECT_EQ(Create(kDocumentClass, CLSCTX_INPROC_SERVER, kDocument2Id), CO_E_NOTINITIALIZED);
    EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
    EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED | COINIT_DISABLE_OLE1DDE), S_FALSE);
    EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), RPC_E_CHANGED_MODE);
    CoUninitialize();
    EXPECT_EQ(Create(kDocumentClass, CLSCTX_INPROC_SERVER, kDocument2Id), S_OK);
    EXPECT_EQ(Create(kManagerClass, CLSCTX_INPROC_SERVER, IID_IUnknown), S_OK);
    EXPECT_EQ(Create(kManagerClass, CLSCTX_INPROC_SERVER, kDocument2Id), E_NOINTERFACE);
    EXPECT_EQ(Create(kDocument2Id, CLSCTX_INPROC_SERVER, IID_IUnknown), REGDB_E_CLASSNOTREG);
    EXPECT_EQ(Create(kDocumentClass, CLSCTX_LOCAL_SERVER, kDocument2Id), REGDB_E_CLASSNOTREG);
    Ref<IUnknown> outer;
    ASSERT_EQ(CoCreateInstance(kManagerClass, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, outer.ReceiveAny()), S_OK);
    EXPECT_EQ(Create(kDocumentClass, CLSCTX_INPROC_SERVER, IID_IUnknown, outer.Get()), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(CoCreateInstance(kDocumentClass, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, nullptr), E_POINTER);

    FailCall("CoCreateInstance", static_cast<DWORD>(REGDB_E_CLASSNOTREG), 1);
    EXPECT_EQ(Create(kDocumentClass, CLSCTX_INPROC_SERVER, kDocument2Id), REGDB_E_CLASSNOTREG);
    FailCall("CoCreateInstance", ERROR_ACCESS_DENIED, 1);
    EXPECT_EQ(Create(kDocumentClass, CLSCTX_INPROC_SERVER, kDocument2Id), E_ACCESSDENIED);
    FailAllocation(1);
    EXPECT_EQ(Create(kDocumentClass, CLSCTX_INPROC_SERVER, kDocument2Id), E_OUTOFMEMORY);
    FailAllocation(1);
    EXPECT_EQ(Create(kManagerClass, CLSCTX_INPROC_SERVER, kManagerId), E_OUTOFMEMORY);
    CoUninitialize();
    EXPECT_EQ(Create(kDocumentClass, CLSCTX_INPROC_SERVER, kDocument2Id), CO_E_NOTINITIALIZED);
}

}  // namespace
}  // namespace host
