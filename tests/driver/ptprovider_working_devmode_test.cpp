// The device mode that a call of the print-ticket provider works on: where it comes from, and what it carries beside
// the settings.
#include "driver/ptprovider/working_devmode.h"

#include <cstring>
#include <functional>

#include "driver/devmode/default_devmode.h"
#include "driver/job/job_description.h"
#include "driver/job/pjl_block.h"
#include "tests/driver/changed_devmode.h"
#include "tests/driver/job_model.h"
#include "tests/driver/machine.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

Texts TextsOf(const TextList& list) {
    Texts texts;
    for (const WCHAR* text : list) {
        texts.push_back(ToText(text));
    }
    return texts;
}

class WorkingDevModes : public MachineTest {
  protected:
    void Use(const DescriptionBuilder& model) {
        Install(model.Build());
        snapshot_ = LoadPrinterSnapshot(Printer());
        ASSERT_TRUE(snapshot_);
        BuildDefaultDevMode(Printer(), kPrinterName, &default_);
    }
    void TearDown() override {
        snapshot_.Close();
        MachineTest::TearDown();
    }

    // Prepares one from a device mode (null: none) and hands it to `check`.
    void Prepare(VelmoraDevMode* input, const std::function<void(const WorkingDevMode&)>& check,
                 size_t size = sizeof(VelmoraDevMode)) {
        WorkingDevMode working;
        working.Bind(Printer(), snapshot_.Get());
        working.Prepare(input ? &input->publicPart : nullptr, size);
        ASSERT_TRUE(working.DevMode());
        check(working);
    }
    // Copies mark where a device mode comes from.
    short CopiesOf(VelmoraDevMode* input, size_t size = sizeof(VelmoraDevMode)) {
        short copies = 0;
        Prepare(
            input, [&](const WorkingDevMode& working) { copies = working.DevMode()->publicPart.dmCopies; }, size);
        return copies;
    }

    OwnedSnapshot snapshot_;
    VelmoraDevMode default_ = {};
};

TEST_F(WorkingDevModes, AreTheCallersOrThePrintersOrTheDefault) {
    Use(JobModel(kPdlPcl6));
    VelmoraDevMode given = With(default_, "dmCopies=5");
    VelmoraDevMode badPublic = With(given, "dmSpecVersion=1");
    VelmoraDevMode badPrivate = With(given, "privateSignature=1");
    EXPECT_EQ(CopiesOf(&given), 5);
    EXPECT_EQ(CopiesOf(&given, sizeof(given) - 1), 1);
    EXPECT_EQ(CopiesOf(&badPublic), 1);
    EXPECT_EQ(CopiesOf(&badPrivate), 1);

    // Of the printer's own one part that is accepted is enough.
    const struct {
        const char* stored;
        short copies;
    } rows[] = {
        {"dmCopies=7", 7},
        {"dmCopies=7 privateSignature=1", 7},
        {"dmCopies=7 dmSpecVersion=1 privateSignature=1", 1},
    };
    for (const auto& row : rows) {
        VelmoraDevMode stored = With(default_, row.stored);
        ASSERT_TRUE(SetPrinterDevMode(Printer(), &stored.publicPart));
        EXPECT_EQ(CopiesOf(nullptr), row.copies) << row.stored;
        EXPECT_EQ(CopiesOf(&badPrivate), row.copies) << row.stored;
    }
}

TEST_F(WorkingDevModes, CarryTheJobsLinesInThePlaceOfTheirMarkers) {
    Use(JobModel(kPdlPcl6));
    VelmoraDevMode devMode = default_;
    PrivateDevMode& part = devMode.privatePart;
    std::strcpy(part.pjlJobStart, "ONE\r\n\n@PJL SET GUISTARTJOB=1\r\nTWO\n\rTHREE");
    std::strcpy(part.pjlJobEnd, "@PJL SET GUIENDJOB=2\r\nLAST\n");
    Prepare(&devMode, [](const WorkingDevMode& working) {
        const Texts start = TextsOf(working.lists[kDocumentStartPjl]);
        ASSERT_GE(start.size(), 4u);
        EXPECT_EQ(start.front(), "ONE");
        EXPECT_EQ(start[1], "R1");  // the job's own lines begin with its resolution
        EXPECT_EQ(start[start.size() - 2], "TWO");
        EXPECT_EQ(start.back(), "THREE");
        EXPECT_EQ(TextsOf(working.lists[kDocumentEndPjl]), (Texts{"@PJL SET GUIENDJOB=2", "LAST"}));
    });
    // Fields that end without a terminator.
    std::memset(part.pjlJobStart, 'x', sizeof(part.pjlJobStart));
    std::memset(part.pjlJobEnd, 'y', sizeof(part.pjlJobEnd));
    TextList lists[kTextListCount];
    FillTextLists(*snapshot_.Get(),
                  {Printer(), kPrinterName, snapshot_.Get()->descriptionFile.Get(), *snapshot_.Get()->model}, &devMode,
                  lists);
    EXPECT_EQ(TextsOf(lists[kDocumentStartPjl]), (Texts{std::string(sizeof(part.pjlJobStart), 'x')}));
    EXPECT_EQ(TextsOf(lists[kDocumentEndPjl]), (Texts{std::string(sizeof(part.pjlJobEnd), 'y')}));
}

TEST_F(WorkingDevModes, OfImagePrintersCarryTheJobsDescriptions) {
    DescriptionBuilder builder = JobModel(kPdlImage);
    for (const bool isText : {true, false}) {
        builder.fields.descriptionFlags = isText ? kDescriptionsAreText : 0;
        if (isText) {
            Use(builder);
        } else {
            Describe(builder);
            snapshot_ = LoadPrinterSnapshot(Printer());
        }
        Prepare(nullptr, [&](const WorkingDevMode& working) {
            for (const TextListId id : {kDocumentStartOcmData, kDocumentSheetOcmData, kDocumentEndOcmData}) {
                const Texts texts = TextsOf(working.lists[id]);
                if (isText) {
                    ASSERT_GT(texts.size(), 1u);
                    EXPECT_NE(texts.front().find('='), std::string::npos);
                } else {
                    ASSERT_EQ(texts.size(), 1u);
                    EXPECT_EQ(texts.front().size(), (1229u + 2) / 3 * 4);
                }
            }
        });
    }
}

TEST_F(WorkingDevModes, UnpackExceptions) {
    PrivateDevMode part = {};
    ExceptionRecord records[kExceptionSlots];
    ExceptionPageList pages[kExceptionSlots];
    part.exceptionAreaOffset = kExceptionAreaOffset;
    part.exceptionCount = 2;
    part.pageListCount = 2;
    // A record that is shorter than the driver's own, a longer one; lists of slots 1 and 3.
    const uint8_t area[] = {6, 0, kMediaException, kOddPages, 0xAA, 0xBB, 42, 0, kBlankSheetAfter, kEvenPages, 9, 0};
    std::memcpy(part.exceptionArea, area, sizeof(area));
    const uint8_t lists[] = {1, 2, 5, 0, 7, 1, 3, 0};
    std::memcpy(part.exceptionArea + 6 + 42, lists, sizeof(lists));
    UnpackExceptions(part, records, pages);
    EXPECT_EQ(records[0].kind, kMediaException);
    EXPECT_EQ(ValueOf(records[0].paper), 0xBBAA);
    EXPECT_EQ(ValueOf(records[0].media), 0);
    EXPECT_EQ(records[1].kind, kBlankSheetAfter);
    EXPECT_EQ(records[1].usage, kEvenPages);
    EXPECT_EQ(ValueOf(records[1].paper), 9);
    EXPECT_EQ(records[2].kind, kNoException);
    EXPECT_EQ(pages[0].count, 0);
    ASSERT_EQ(pages[1].count, 2);
    EXPECT_EQ(pages[1].pages[0], 5);
    EXPECT_EQ(pages[1].pages[1], 0x0107);

    // Lengths and counts that lead out of the area are followed as far as it goes.
    std::memset(part.exceptionArea, 0xFF, sizeof(part.exceptionArea));
    part.exceptionCount = part.pageListCount = 0xFF;
    UnpackExceptions(part, records, pages);
    EXPECT_EQ(records[1].kind, kNoException);
    part.exceptionAreaOffset = 0;
    UnpackExceptions(part, records, pages);
    EXPECT_EQ(records[0].kind, kNoException);
}

}  // namespace
}  // namespace velmora
