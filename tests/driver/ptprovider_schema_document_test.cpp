#include "driver/ptprovider/schema_document.h"

#include <objbase.h>

#include "tests/driver/machine.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

using SchemaDocuments = MachineTest;

TEST_F(SchemaDocuments, BeginWithTheXmlDeclaration) {
    ASSERT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
    {
        SchemaDocument document;
        ASSERT_EQ(document.CreateDocument(), S_OK);
        EXPECT_FALSE(document.Root());
        OwnedBstr text;
        ASSERT_EQ(document.Document()->get_xml(text.Receive()), S_OK);
        EXPECT_EQ(ToText(text.Text()).substr(0, 39), R"(<?xml version="1.0"  encoding="UTF-8"?>)");
    }
    CoUninitialize();
}

}  // namespace
}  // namespace velmora
