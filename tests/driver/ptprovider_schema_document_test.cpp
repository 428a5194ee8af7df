#include "driver/ptprovider/schema_document.h"

#include <objbase.h>

#include "tests/driver/machine.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

using SchemaDocuments = MachineTest;

TEST_F(SchemaDocuments, RunOutOfPrefixes) {
    ASSERT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
    {
        SchemaDocument schema;
        ASSERT_EQ(schema.CreateDocument(), S_OK);
        ElementReference root;
        ASSERT_EQ(schema.AppendElement(schema.Document(), TEXT("u:root"), TEXT("root"), &root), S_OK);
        schema.SetRoot(std::move(root));
        // Without its document the root takes no declaration, so each prefix is generated and binds nothing.
        const ComReference<IXMLDOMDocument2> document(schema.DetachDocument());
        OwnedBstr text;
        for (int used = 1; used < 65535; ++used) {
            ASSERT_EQ(schema.DeclareNamespace(schema.Root(), TEXT("u:new"), nullptr, &text), E_INVALIDARG) << used;
        }
        for (int beyond = 0; beyond < 2; ++beyond) {
            EXPECT_EQ(schema.DeclareNamespace(schema.Root(), TEXT("u:new"), nullptr, &text), E_FAIL);
            EXPECT_EQ(schema.MakeQName(schema.Root(), TEXT("u:new"), TEXT("name"), &text), E_FAIL);
        }
        EXPECT_EQ(schema.MakeQName(schema.Root(), TEXT("u:root"), TEXT("name"), &text), S_OK);
        EXPECT_EQ(ToText(text.Text()), "ns0000:name");
    }
    CoUninitialize();
}

}  // namespace
}  // namespace velmora
