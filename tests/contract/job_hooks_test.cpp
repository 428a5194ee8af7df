// The hooks that the rendering side calls around a job, driven as it drives them.
#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

#include "tests/contract/sheet_test.h"
#include "tests/contract/transcript.h"
#include "tests/driver/changed_devmode.h"

namespace contract {
namespace {

using driver_test::With;
using velmora::VelmoraDevMode;

constexpr DWORD kRecordSize = 1229;  // the job description in its record form

enum Answer { kImpossible = 0, kDone = 1, kTooLarge = 2 };

// The part of the job-hook record that the hooks look at: byte-packed, so its pointers lie unaligned.
#pragma pack(push, 1)
struct JobRecord {
    BYTE reserved0[10];
    WCHAR* printerName;
    BYTE reserved18[4];
    void* jobState;
    union {
        DWORD promptFlag;   // GuiStartJob
        char* sheetBuffer;  // GuiStartSheet
    };
    DWORD sheetSize;
    DWORD result;
    BYTE reserved46[2];
    WCHAR* jobName;
};
#pragma pack(pop)
static_assert(offsetof(JobRecord, printerName) == 10 && offsetof(JobRecord, jobState) == 22 &&
              offsetof(JobRecord, sheetBuffer) == 30 && offsetof(JobRecord, sheetSize) == 38 &&
              offsetof(JobRecord, result) == 42 && offsetof(JobRecord, jobName) == 48);

// What a hook answers and writes with a buffer of `capacity` bytes.
struct Block {
    int answer;
    DWORD size;         // as the hook told it
    std::string bytes;  // the buffer afterwards
};

// A job of a printer, with one record for all of its hooks.
class Job {
  public:
    Job(InstalledPrinter& printer, DEVMODEW* devMode, const WideText& name = {})
        : driver_(printer.Driver()), devMode_(devMode), printerName_(printer.Name()), name_(name) {}

    Block Start(DWORD capacity) {
        record_.promptFlag = 0;
        record_.result = 77;
        Block block = Ask(capacity, [this](char* buffer, DWORD* size) {
            return driver_.GuiStartJob(devMode_, buffer, size, &record_);
        });
        EXPECT_EQ(DWORD{record_.result}, 0u);
        return block;
    }
    // The prompt in place of a prologue.
    Block Prompt(DWORD capacity) {
        record_.promptFlag = 1;
        return Ask(capacity,
                   [this](char* buffer, DWORD* size) { return driver_.GuiStartJob(devMode_, buffer, size, &record_); });
    }
    Block Sheet(DWORD capacity) {
        return Ask(capacity, [this](char* buffer, DWORD* size) {
            record_.sheetBuffer = buffer;
            record_.sheetSize = *size;
            const int answer = driver_.GuiStartSheet(devMode_, &record_);
            *size = record_.sheetSize;
            return answer;
        });
    }
    Block End(DWORD capacity) {
        return Ask(capacity,
                   [this](char* buffer, DWORD* size) { return driver_.GuiEndJob(devMode_, buffer, size, &record_); });
    }

    void* State() const { return record_.jobState; }
    void SetState(void* state) { record_.jobState = state; }

  private:
    template <class Hook>
    Block Ask(DWORD capacity, Hook hook) {
        constexpr size_t kBehind = 16;
        record_.printerName = printerName_.data();
        record_.jobName = name_.empty() ? nullptr : name_.data();
        Block block = {0, capacity, std::string(capacity + kBehind, '#')};
        if (capacity > 0) {
            block.bytes[0] = 0;  // empty text
        }
        block.answer = hook(block.bytes.data(), &block.size);
        EXPECT_EQ(block.bytes.substr(capacity), std::string(kBehind, '#')) << "written behind the buffer";
        block.bytes.resize(capacity);
        return block;
    }

    const DriverExports& driver_;
    DEVMODEW* devMode_;
    WideText printerName_;
    WideText name_;
    JobRecord record_ = {};
};

using Hook = Block (Job::*)(DWORD);

// Asks for the size, then for the block, as the rendering side does; what the buffer has behind it is left out. A job
// that was started on the first asking has no block.
std::string WholeBlock(Job& job, Hook hook) {
    Block query = (job.*hook)(0);
    if (query.answer == kDone) {
        return {};
    }
    EXPECT_EQ(query.answer, kTooLarge);
    Block block = (job.*hook)(query.size);
    EXPECT_EQ(block.answer, kDone);
    EXPECT_LE(block.size, query.size);
    return block.bytes.substr(0, block.size);
}

// The blocks of a job with two sheets.
std::vector<std::string> BlocksOf(Job job) {
    std::vector<std::string> blocks;
    for (const Hook hook : {&Job::Start, &Job::Sheet, &Job::Sheet, &Job::End}) {
        blocks.push_back(WholeBlock(job, hook));
    }
    EXPECT_EQ(job.State(), nullptr);
    return blocks;
}

// A record in rows of 16 bytes, those of zeros left out; a text by its entries or lines.
void RecordBlock(const std::string& title, const std::string& block) {
    Record(title + ", " + std::to_string(block.size()) + " bytes");
    if (block.size() == kRecordSize) {
        constexpr size_t kRow = 16;
        for (size_t row = 0; row < block.size(); row += kRow) {
            const std::string bytes = block.substr(row, kRow);
            if (bytes.find_first_not_of('\0') != std::string::npos) {
                Record("  " + std::to_string(row) + ": " +
                       Hex(reinterpret_cast<const BYTE*>(bytes.data()), bytes.size()));
            }
        }
        return;
    }
    for (size_t start = 0; start < block.size();) {
        const size_t end = std::min(block.find_first_of(std::string("\n\0", 2), start), block.size() - 1);
        const std::string line = block.substr(start, end + 1 - start);
        Record("  " + Printable(WideText(line.begin(), line.end())));
        start = end + 1;
    }
}

using JobHooks = SheetTest;

// A model of each kind of block.
constexpr const char* kPjlModel = "VELMORA-C3200.XPI";
constexpr const char* kRecordModel = "VELMORA-I520.XPI";
constexpr const char* kTextModel = "VELMORA-I700.XPI";

TEST_F(JobHooks, JobsOfEveryModel) {
    for (const std::string& model : DescriptionFiles()) {
        SCOPED_TRACE(model);
        InstalledPrinter printer(*environment_, PackageOf(model));
        DevModeBuffer devMode = DefaultDevMode(printer, printer.Name());
        Record(model);
        const std::vector<std::string> blocks = BlocksOf(Job(printer, devMode.Get(), TEXT("A job")));
        constexpr const char* kTitles[] = {" start", " sheet", " sheet", " end"};
        for (size_t i = 0; i < blocks.size(); ++i) {
            RecordBlock(kTitles[i], blocks[i]);
        }
        EXPECT_EQ(BlocksOf(Job(printer, nullptr, TEXT("A job"))), blocks) << "by the printer's own device mode";

        // However large the buffer is: the block, or a size with which it fits.
        const auto need = static_cast<DWORD>(blocks[0].size());
        for (const DWORD capacity : {DWORD{1}, need / 2, need - 1, need, need + 5, need + 100}) {
            SCOPED_TRACE(capacity);
            Job job(printer, devMode.Get(), TEXT("A job"));
            Block block = job.Start(capacity);
            EXPECT_TRUE(block.answer == kDone || (block.answer == kTooLarge && block.size > capacity)) << block.answer;
            EXPECT_TRUE(capacity >= need || block.answer == kTooLarge);
            if (block.answer == kTooLarge) {
                EXPECT_EQ(job.State(), nullptr);
                block = job.Start(block.size);
            }
            EXPECT_EQ(block.answer, kDone);
            EXPECT_EQ(block.bytes.substr(0, need), blocks[0]);
            job.End(kRecordSize * 4);
        }
    }
}

TEST_F(JobHooks, PromptInEveryLanguage) {
    InstalledPrinter printer(*environment_, PackageOf(kPjlModel));
    DevModeBuffer devMode = DefaultDevMode(printer, printer.Name());
    InEachLanguage([&] {
        Job job(printer, devMode.Get());
        Block block = {};
        RunWithUser(*environment_, Look("prompt") + std::vector<Step>{Press(1604)}, [&] { block = job.Prompt(100); });
        EXPECT_EQ(block.answer, -1);
        EXPECT_EQ(block.size, 0u);
        EXPECT_EQ(job.State(), nullptr);
    });
}

TEST_F(JobHooks, RecordFitsExactly) {
    InstalledPrinter printer(*environment_, PackageOf(kRecordModel));
    Job job(printer, nullptr);
    const Block tooSmall = job.Start(kRecordSize - 1);
    EXPECT_EQ(tooSmall.answer, kTooLarge);
    EXPECT_EQ(tooSmall.size, kRecordSize);
    EXPECT_EQ(tooSmall.bytes.find_first_not_of('\0'), std::string::npos) << "the buffer is cleared";
    EXPECT_EQ(job.Start(kRecordSize).answer, kDone);
    for (const Hook hook : {&Job::Sheet, &Job::End}) {
        EXPECT_EQ((job.*hook)(kRecordSize - 1).answer, kTooLarge);
        EXPECT_NE(job.State(), nullptr);
        EXPECT_EQ((job.*hook)(kRecordSize).answer, kDone);
    }
}

TEST_F(JobHooks, TwoJobsAtOnce) {
    for (const char* model : {kPjlModel, kRecordModel, kTextModel}) {
        SCOPED_TRACE(model);
        InstalledPrinter printer(*environment_, PackageOf(model));
        const VelmoraDevMode built = *DefaultDevMode(printer, printer.Name()).content;
        VelmoraDevMode devModes[] = {built, With(built, "resolutionIndex=0 dmPrintQuality=300 dmYResolution=300")};
        std::vector<Job> jobs;
        std::vector<std::vector<std::string>> alone;
        std::vector<std::vector<std::string>> together(2);
        for (size_t i = 0; i < 2; ++i) {
            jobs.emplace_back(printer, &devModes[i].publicPart);
            alone.push_back(BlocksOf(jobs[i]));
        }
        EXPECT_NE(alone[0], alone[1]);
        for (const Hook hook : {&Job::Start, &Job::Sheet, &Job::Sheet, &Job::End}) {
            for (size_t i = 0; i < 2; ++i) {
                together[i].push_back(WholeBlock(jobs[i], hook));
            }
        }
        EXPECT_EQ(together, alone);
    }
}

TEST_F(JobHooks, OutOfOrder) {
    for (const char* model : {kPjlModel, kRecordModel}) {
        SCOPED_TRACE(model);
        InstalledPrinter printer(*environment_, PackageOf(model));
        constexpr DWORD kRoom = 4096;
        // S start, s sheet, e end; in small letters those that find no job.
        for (const char* sequence : {"s", "e", "se", "SEe", "SEs", "SESPEe"}) {
            SCOPED_TRACE(sequence);
            Job job(printer, nullptr);
            for (const char* step = sequence; *step != 0; ++step) {
                const Hook hook = *step == 'S' ? &Job::Start : *step == 's' || *step == 'P' ? &Job::Sheet : &Job::End;
                const bool writes = *step < 'a';
                const Block block = (job.*hook)(kRoom);
                EXPECT_EQ(block.answer, kDone);
                EXPECT_TRUE(writes || (block.size == kRoom && block.bytes[0] == 0)) << "nothing to say without a job";
                EXPECT_EQ(job.State() != nullptr, writes && hook != &Job::End);
            }
        }
        // A second start is a second job, whatever the record holds of the first one.
        Job job(printer, nullptr);
        EXPECT_EQ(job.Start(kRoom).answer, kDone);
        void* const first = job.State();
        const Block second = job.Start(kRoom);
        EXPECT_EQ(second.answer, kDone);
        EXPECT_NE(job.State(), first);
        for (void* const state : {job.State(), first}) {
            job.SetState(state);
            EXPECT_EQ(job.End(kRoom).answer, kDone);
            EXPECT_EQ(job.State(), nullptr);
        }
    }
}

// Every hook repairs the caller's device mode in its place, and works by the repaired one.
TEST_F(JobHooks, DamagedDeviceModes) {
    const struct {
        const char* damage;    // on the built device mode
        const char* repaired;  // likewise
    } cases[] = {
        {"dmCopies=7 dmSpecVersion=0x400", "dmCopies=5 psContrast=9"},  // the printer's own
        {"dmCopies=7 dmSize=0", "dmCopies=5 psContrast=9"},
        {"dmCopies=7 privateSignature=0", "dmCopies=7 psContrast=9"},  // the caller's public part
        {"dmCopies=7 psContrast=-8 dmOrientation=2", "dmCopies=7 psContrast=-8 dmOrientation=2"},
        {"dmCopies=0 psContrast=-8", "dmCopies=1 psContrast=-8"},  // a value that can be mended
    };
    for (const char* model : {kPjlModel, kRecordModel, kTextModel}) {
        SCOPED_TRACE(model);
        InstalledPrinter printer(*environment_, PackageOf(model));
        VelmoraDevMode built = *DefaultDevMode(printer, printer.Name()).content;
        BlocksOf(Job(printer, &built.publicPart));  // what a hook would repair of it is repaired from now on
        printer.SetDevMode(With(built, "dmCopies=5 psContrast=9").publicPart);
        for (const auto& c : cases) {
            SCOPED_TRACE(c.damage);
            VelmoraDevMode expected = With(built, c.repaired);
            const std::vector<std::string> blocks = BlocksOf(Job(printer, &expected.publicPart));
            EXPECT_EQ(Differences(With(built, c.repaired), expected), std::vector<std::string>())
                << "nothing to repair";
            VelmoraDevMode devMode = With(built, c.damage);
            Job job(printer, &devMode.publicPart);
            size_t i = 0;
            for (const Hook hook : {&Job::Start, &Job::Sheet, &Job::Sheet, &Job::End}) {
                devMode = With(built, c.damage);
                EXPECT_EQ(WholeBlock(job, hook), blocks[i++]);
                EXPECT_EQ(Differences(expected, devMode), std::vector<std::string>());
            }
        }
    }
}

TEST_F(JobHooks, LongJobNames) {
    std::string name;
    for (size_t i = 0; i < 10000; ++i) {
        name += "a\"b=%s\x01\t\r\n\x1B\\"[i % 12];
    }
    const WideText wideName(name.begin(), name.end());
    for (const char* model : {kPjlModel, kRecordModel, kTextModel}) {
        SCOPED_TRACE(model);
        InstalledPrinter printer(*environment_, PackageOf(model));
        const std::vector<std::string> unnamed = BlocksOf(Job(printer, nullptr));
        std::vector<std::string> named = BlocksOf(Job(printer, nullptr, wideName));
        if (model == kTextModel) {
            const std::string entry = "jobName=" + name + '\0';
            const size_t place = named[0].find(entry);
            ASSERT_NE(place, std::string::npos);
            named[0].erase(place, entry.size());
        }
        EXPECT_EQ(named, unnamed);
    }
}

TEST_F(JobHooks, WithoutDescriptionFileOrPrinter) {
    DriverPackage package;
    package.driverName = TEXT("Velmora Without Model");
    package.dataFile = {TEXT("PLAIN.BIN"), {}, "no description"};
    InstalledPrinter plain(*environment_, package, TEXT("Plain"));
    JobRecord record = {};
    WCHAR nobody[] = TEXT("Nobody");
    for (WCHAR* const name : {plain.NameArgument(), nobody, static_cast<WCHAR*>(nullptr)}) {
        record.printerName = name;
        char block[256] = "";
        DWORD size = sizeof(block);
        EXPECT_EQ(plain.Driver().GuiStartJob(nullptr, block, &size, &record), kImpossible);
        void* const jobState = record.jobState;  // a copy: the field lies unaligned
        EXPECT_EQ(jobState, nullptr);
        EXPECT_EQ(plain.Driver().GuiStartSheet(nullptr, &record), kDone);
        EXPECT_EQ(plain.Driver().GuiEndJob(nullptr, block, &size, &record), kDone);
        EXPECT_STREQ(block, "");
    }
}

}  // namespace
}  // namespace contract
