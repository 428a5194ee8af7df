// INI files by the published calls: what is read of a file, whoever wrote it, and what a change makes of it. Every file
// has a name of its own, since a host may keep what it read of one.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/contract/contract_test.h"
#include "tests/contract/transcript.h"

namespace contract {
namespace {

using namespace std::string_literals;  // NOLINT(google-build-using-namespace): texts with NULs

// Two characters of code page 932, one with a trail byte that is a backslash by itself, and how encodings write them.
constexpr WCHAR kHiraganaA = 0x3042;
constexpr WCHAR kKatakanaSo = 0x30BD;

enum class Encoding { kAnsi, kUtf16, kUtf16Reversed, kUtf8 };
constexpr struct {
    Encoding encoding;
    const char* name;
} kEncodings[] = {{Encoding::kAnsi, "ANSI"},
                  {Encoding::kUtf16, "UTF-16"},
                  {Encoding::kUtf16Reversed, "UTF-16 reversed"},
                  {Encoding::kUtf8, "UTF-8"}};

// With a byte order mark, but in ANSI, where bytes of code page 932 stand for what 1252 doesn't have.
std::string Encode(const WideText& text, Encoding encoding) {
    std::string bytes;
    const auto put = [&bytes](unsigned byte) { bytes += static_cast<char>(byte); };
    for (const WCHAR c : (encoding == Encoding::kAnsi ? WideText() : WideText(1, 0xFEFF)) + text) {
        switch (encoding) {
            case Encoding::kAnsi:
                if (c >= 0x100) {
                    bytes += c == kHiraganaA ? "\x82\xA0" : "\x83\x5C";
                } else {
                    put(c);
                }
                break;
            case Encoding::kUtf16:
                put(c & 0xFF);
                put(c >> 8);
                break;
            case Encoding::kUtf16Reversed:
                put(c >> 8);
                put(c & 0xFF);
                break;
            case Encoding::kUtf8:
                if (c < 0x80) {
                    put(c);
                } else if (c < 0x800) {
                    put(0xC0 | c >> 6);
                    put(0x80 | (c & 0x3F));
                } else {
                    put(0xE0 | c >> 12);
                    put(0x80 | (c >> 6 & 0x3F));
                    put(0x80 | (c & 0x3F));
                }
        }
    }
    return bytes;
}

// Line ends "\n" of a text as others.
WideText WithLineEnds(const WideText& text, const WideText& end) {
    WideText ended;
    for (const WCHAR c : text) {
        ended += c == '\n' ? end : WideText(1, c);
    }
    return ended;
}

std::string ShownName(const WCHAR* name) {
    return name != nullptr ? '"' + Printable(name) + '"' : "null";
}

class IniFiles : public ContractTest {
  protected:
    void NewPath() {
        const std::string number = std::to_string(++files_);
        path_ = kFolder + (TEXT("\\f") + WideText(number.begin(), number.end())) + TEXT(".ini");
    }
    void NewFile(const std::string& bytes) {
        NewPath();
        std::ofstream stream(environment_->HostPath(path_), std::ios::binary);
        stream << bytes;
        ASSERT_TRUE(stream.flush());
    }
    // The file at the path; "no file" where there is none.
    std::string Bytes() const {
        const std::filesystem::path file = environment_->HostPath(path_);
        return std::filesystem::exists(file) ? ContentOf(file) : "no file";
    }

    // What a call gives in a buffer of that size: as many characters as it says. A test failure where it ends without a
    // NUL or writes further than it may.
    template <class Call>
    static WideText Given(DWORD size, Call call) {
        WideText buffer(size + 4, '#');
        const DWORD length = call(buffer.data(), size);
        EXPECT_EQ(buffer.substr(size), WideText(4, '#'));
        EXPECT_TRUE(size == 0 ? length == 0 : length < size && buffer[length] == 0) << size << " " << length;
        return buffer.substr(0, std::min(length, size));
    }
    WideText String(const WCHAR* section, const WCHAR* key, const WCHAR* fallback = TEXT("missing"),
                    DWORD size = 250) const {
        return Given(size, [&](WCHAR* buffer, DWORD room) {
            return GetPrivateProfileStringW(section, key, fallback, buffer, room, path_.c_str());
        });
    }
    WideText Section(const WCHAR* section, DWORD size = 600) const {
        return Given(size, [&](WCHAR* buffer, DWORD room) {
            return GetPrivateProfileSectionW(section, buffer, room, path_.c_str());
        });
    }

    static constexpr const WCHAR* kFolder = TEXT("C:\\VelmoraIni");
    WideText path_;

  private:
    struct Folder {
        explicit Folder(std::filesystem::path where) : path(std::move(where)) {
            std::filesystem::create_directories(path);
        }
        ~Folder() {
            std::error_code ignored;
            std::filesystem::remove_all(path, ignored);
        }
        std::filesystem::path path;
    } folder_{environment_->HostPath(kFolder)};
    int files_ = 0;
};

TEST_F(IniFiles, ReadInEveryEncodingWithAllLineEnds) {
    const WideText text =
        WideText(
            TEXT("lost = 1\n; [One]\n[One]\n A = 1 2 \na=second\nquoted=\"q x\"\nsingle='s'\nhalf=\"h\n"
                 "other='x\"\nquote=\"\ntwo=\"\"\ntwice=\"\"x\"\"\nblanks=  \"  in \"  \ntabs=\t t\t\nempty=\nalone\n"
                 ";off=1\n  ; in = 2\nwith = a=b;c\nsemi=a ; b\nhash=#1\nbracket=[x]\n in ner = k \n=nameless\n"
                 "#h=1\nn\x00E9=\x00E9\x00E4\n")) +
        kHiraganaA + TEXT("=") + kKatakanaSo + kHiraganaA +
        TEXT("\n\n[ two ] rest\nA=2\n  [three]\nA=3\n[One]\nlate=1\n[]\nA=4\n[x]y]\nA=5\n[open\nA=6\n[last]\nk=v");
    const WideText japanese(1, kHiraganaA);
    const WideText japaneseBytes = {0x201A, 0x00A0};  // of the same in code page 932, in 1252
    const struct {
        const WCHAR* section;
        const WCHAR* key;
        const WCHAR* value;  // null: the fallback
    } asked[] = {
        {TEXT("oNE"), TEXT("a"), TEXT("1 2")},
        {TEXT(" One "), TEXT(" A "), TEXT("1 2")},
        {TEXT("One"), TEXT("quoted"), TEXT("q x")},
        {TEXT("One"), TEXT("two"), TEXT("")},
        {TEXT("One"), TEXT("blanks"), TEXT("  in ")},
        {TEXT("One"), TEXT("empty"), TEXT("")},
        {TEXT("One"), TEXT("alone"), nullptr},
        {TEXT("One"), TEXT("off"), nullptr},
        {TEXT("One"), TEXT(";off"), TEXT("1")},
        {TEXT("One"), TEXT("in"), nullptr},
        {TEXT("One"), TEXT("with"), TEXT("a=b;c")},
        {TEXT("One"), TEXT(""), TEXT("nameless")},
        {TEXT("One"), TEXT("N\x00E9"), TEXT("\x00E9\x00E4")},
        {TEXT("One"), TEXT("late"), nullptr},
        {TEXT("two"), TEXT("A"), TEXT("2")},
        {TEXT("three"), TEXT("A"), TEXT("3")},
        {TEXT(""), TEXT("A"), nullptr},
        {TEXT(""), TEXT("lost"), TEXT("1")},
        {TEXT("x]y"), TEXT("A"), TEXT("5")},
        {TEXT("open"), TEXT("A"), nullptr},
        {TEXT("last"), TEXT("k"), TEXT("v")},
        {TEXT("none"), TEXT("k"), nullptr},
    };
    for (const auto& [encoding, name] : kEncodings) {
        for (const WCHAR* end : {TEXT("\r\n"), TEXT("\n"), TEXT("\r")}) {
            SCOPED_TRACE(name + Printable(end));
            NewFile(Encode(WithLineEnds(text, end), encoding));
            for (const auto& ask : asked) {
                EXPECT_EQ(String(ask.section, ask.key), ask.value != nullptr ? ask.value : TEXT("missing"))
                    << ShownName(ask.section) << " " << ShownName(ask.key);
            }
            const bool isAnsi = encoding == Encoding::kAnsi;
            EXPECT_EQ(String(TEXT("One"), (isAnsi ? japaneseBytes : japanese).c_str()),
                      isAnsi ? WideText({0x0192, '\\'}) + japaneseBytes : WideText({kKatakanaSo, kHiraganaA}));
            Record(std::string(name) + " " + Printable(end) + ": " + Printable(String(nullptr, nullptr)));
            Record(Printable(String(nullptr, TEXT("A"))));
            Record(Printable(String(TEXT("One"), nullptr)));
            Record(Printable(String(TEXT(""), nullptr)));
            Record(Printable(Section(TEXT("One"))));
        }
    }
}

TEST_F(IniFiles, OddFiles) {
    // None with half a character at its end: Wine completes it with whatever is behind the file in its memory.
    const std::string wide = Encode(TEXT("[s]\r\nk=v\r\n"), Encoding::kUtf16);
    const struct {
        const char* what;
        std::string bytes;
    } files[] = {
        {"empty", ""},
        {"mark alone", "\xFF\xFE"},
        {"UTF-16 without mark", wide.substr(2)},
        {"UTF-8 without mark", "[s]\r\nk=\xE3\x81\x82\r\n"},
        {"UTF-8, invalid", "\xEF\xBB\xBF[s]\r\nk=a\xE3\x81z\xFF\r\n"},
        {"ANSI behind another mark", "\xFF\xFE[s]\r\nk=v\r\n"},
        {"NULs", "[s]\0\r\nk=v\0w\r\nj\0h=1\r\n"s},
        {"end-of-file characters", "[s]\r\nj=1\x1A\r\n\x1Ak=v\r\n\x1A"},
        {"blank characters", "[s]\v\r\n\v\fk\f=\xA0v\xA0\r\n\x85j=\x1Fw\x1F\r\n"},
        {"control characters", "[s]\r\nk=\x01\x7F\x80\x81\x90\x9F\r\n"},
        {"value of blanks", "[s]\r\nk=   \r\nj=\"   \"\r\n"},
        {"nothing to list", "[s]\r\nalone\r\n; k=1\r\n"},
        {"returns", "[s]\r\r\nk=v\r\r\nj=w\n\r"},
        {"no section", "k=v\r\nj=1\r\n"},
        {"long value", "[s]\r\nk=" + std::string(5000, 'x') + "\r\nj=1\r\n"},
        {"long name", "[s]\r\n" + std::string(5000, 'x') + "=1\r\nk=v\r\n"},
        {"1 MiB", "[s]\r\nj=1\r\n;" + std::string(1 << 19, 'x') + "\r\n" + std::string(1 << 19, '\n') + "k=v\r\n"},
    };
    for (const auto& file : files) {
        NewFile(file.bytes);
        Record(std::string(file.what) + ": " + Printable(String(TEXT("s"), TEXT("k"), TEXT("missing"), 40)) + ", " +
               Printable(String(TEXT("s"), TEXT("j"))) + ", " + Printable(String(nullptr, nullptr, TEXT(""))) + ", " +
               Printable(String(TEXT("s"), nullptr, TEXT("missing"), 40)) + ", " + Printable(Section(TEXT("s"), 40)));
    }
}

// Small buffers. Hosts differ where a list or a value in quotes just fits.
TEST_F(IniFiles, Sizes) {
    NewFile("[one]\r\nb=q x\r\nalone\r\n; c\r\n[two]\r\n A = 2\r\n[one]\r\n");
    for (const DWORD size : {0, 1, 2, 3, 4, 5}) {
        EXPECT_EQ(String(TEXT("one"), TEXT("b"), TEXT("abc"), size),
                  WideText(TEXT("q x")).substr(0, size - (size != 0)));
        EXPECT_EQ(String(TEXT("one"), TEXT("x"), TEXT("abc"), size),
                  WideText(TEXT("abc")).substr(0, size - (size != 0)));
    }
    for (const DWORD size : {4, 5, 8, 12, 20}) {
        Record(std::to_string(size) + ": " + Printable(String(nullptr, nullptr, TEXT(""), size)) + ", " +
               Printable(String(TEXT("one"), nullptr, TEXT(""), size)) + ", " + Printable(Section(TEXT("one"), size)) +
               ", " + Printable(Section(TEXT("none"), size)));
    }
    EXPECT_EQ(String(TEXT("one"), TEXT("x"), TEXT(" a\tb  ")), TEXT(" a\tb"));
    EXPECT_EQ(String(TEXT("one"), TEXT("x"), TEXT("\"a\"\t")), TEXT("\"a\"\t"));
    EXPECT_EQ(String(TEXT("one"), TEXT("x"), nullptr), WideText());
}

TEST_F(IniFiles, Numbers) {
    const struct {
        const char* text;
        UINT number;
    } numbers[] = {{"12", 12},
                   {" 12abc", 12},
                   {"\t9", 9},
                   {"010", 10},
                   {"+7", 7},
                   {"-1", 0xFFFFFFFF},
                   {"-", 0},
                   {"x", 0},
                   {"", 42},
                   {"007070FF", 7070},
                   {"0x1F", 31},
                   {"0x", 0},
                   {"-0x10", 0u - 16},
                   {"0b101", 5},
                   {"\"5\"", 5},
                   {"2147483648", 0x80000000},
                   {"-2147483648", 0x80000000},
                   {"-99999999999999999999", 0x9CF00001}};
    for (const auto& number : numbers) {
        NewFile(std::string("[s]\r\nn=") + number.text + "\r\n");
        EXPECT_EQ(GetPrivateProfileIntW(TEXT("s"), TEXT("n"), 42, path_.c_str()), number.number) << number.text;
    }
    EXPECT_EQ(GetPrivateProfileIntW(TEXT("s"), TEXT("m"), -42, path_.c_str()), static_cast<UINT>(-42));
}

// A host may write lines anew that a change doesn't concern: where the file has line ends and blanks of its own, only
// what there is to read is compared.
TEST_F(IniFiles, Writes) {
    const WideText mixed = {'k', kHiraganaA, 0x20AC};
    const struct {
        const char* what;
        std::string before;
        const WCHAR* section;
        const WCHAR* key;
        const WCHAR* value;
        std::string after;
    } writes[] = {
        {"no file", "no file", TEXT("a"), TEXT("k"), TEXT("v"), "[a]\r\nk=v\r\n"},
        {"no file, delete key", "no file", TEXT("a"), TEXT("k"), nullptr, "no file"},
        {"empty file", "", TEXT("a"), TEXT("k"), TEXT("v"), "[a]\r\nk=v\r\n"},
        {"new section", "; c\r\n[b]\r\nx=1\r\n", TEXT("A"), TEXT("k"), TEXT("v"),
         "; c\r\n[b]\r\nx=1\r\n[A]\r\nk=v\r\n"},
        {"new key", "[a]\r\nx=1\r\n;\r\n[b]\r\nx=1\r\n", TEXT("A"), TEXT("k"), TEXT("v"),
         "[a]\r\nx=1\r\n;\r\nk=v\r\n[b]\r\nx=1\r\n"},
        {"in an empty section", "[a]\r\n[b]\r\n", TEXT("A"), TEXT("k"), TEXT("v"), "[a]\r\nk=v\r\n[b]\r\n"},
        {"replaced", "[a]\r\nX=1\r\ny=2\r\n", TEXT("A"), TEXT("x"), TEXT("new"), "[a]\r\nX=new\r\ny=2\r\n"},
        {"first of two", "[a]\r\nx=1\r\nx=2\r\n[a]\r\nx=3\r\n", TEXT("a"), TEXT("x"), TEXT("9"),
         "[a]\r\nx=9\r\nx=2\r\n[a]\r\nx=3\r\n"},
        {"delete key", "[a]\r\nx=1\r\nX=2\r\ny=2\r\n", TEXT("a"), TEXT("x"), nullptr, "[a]\r\nX=2\r\ny=2\r\n"},
        {"delete no key", "[a]\nx = 1", TEXT("a"), TEXT("z"), nullptr, "[a]\nx = 1"},
        {"delete section", "t=1\r\n[a]\r\nx=1\r\n; c\r\n[b]\r\ny=1\r\n[a]\r\n", TEXT("A"), nullptr, TEXT("v"),
         "t=1\r\n[b]\r\ny=1\r\n[a]\r\n"},
        {"blanks", "[a]\r\n", TEXT("a"), TEXT("k"), TEXT(" \t v  "), "[a]\r\nk=v  \r\n"},
        {"empty value", "[a]\r\nk=1\r\n", TEXT("a"), TEXT("k"), TEXT(""), "[a]\r\nk=\r\n"},
        {"line ends", "[a]\r\n", TEXT("a"), TEXT("k"), TEXT("v\rj=w\r\nb"), "[a]\r\nk=v\rj=w\r\nb\r\n"},
        {"empty key", "[a]\r\nx=1\r\n", TEXT("a"), TEXT(""), TEXT("v"), "[a]\r\nx=1\r\n=v\r\n"},
        {"key with equals", "[a]\r\nx=1\r\n", TEXT("a"), TEXT("k=j"), TEXT("v"), "[a]\r\nx=1\r\nk=j=v\r\n"},
        {"not in ANSI", "[a]\r\n", TEXT("a"), mixed.c_str(), mixed.c_str(), "[a]\r\nk?\x80=k?\x80\r\n"},
        {"other bytes", "[a]\r\n\x82\xA0=\x83\x5C\x81\x8D\x90\r\n", TEXT("a"), TEXT("\x00E9"), TEXT("\x20AC"),
         "[a]\r\n\x82\xA0=\x83\x5C\x81\x8D\x90\r\n\xE9=\x80\r\n"},
    };
    for (const auto& write : writes) {
        if (write.before == "no file") {
            NewPath();
        } else {
            NewFile(write.before);
        }
        EXPECT_TRUE(WritePrivateProfileStringW(write.section, write.key, write.value, path_.c_str())) << write.what;
        EXPECT_EQ(Bytes(), write.after) << write.what;
        Record(std::string(write.what) + ": " + Printable(String(write.section, write.key)));
    }
    EXPECT_FALSE(WritePrivateProfileStringW(nullptr, nullptr, nullptr, path_.c_str()));
}

TEST_F(IniFiles, WritesInEveryEncodingWithAllLineEnds) {
    const WideText mixed = {'k', kHiraganaA, kKatakanaSo};
    for (const auto& [encoding, name] : kEncodings) {
        if (encoding == Encoding::kAnsi) {
            continue;
        }
        NewFile(Encode(TEXT("[a]\r\nx=1\r\n"), encoding));
        EXPECT_TRUE(WritePrivateProfileStringW(TEXT("a"), mixed.c_str(), mixed.c_str(), path_.c_str()));
        EXPECT_EQ(Bytes(), Encode(TEXT("[a]\r\nx=1\r\n") + mixed + TEXT("=") + mixed + TEXT("\r\n"), encoding)) << name;
    }
    for (const auto& [encoding, name] : kEncodings) {
        for (const WCHAR* end : {TEXT("\r\n"), TEXT("\n"), TEXT("\r")}) {
            NewFile(Encode(WithLineEnds(TEXT("[a]\n X = 1\n\n;\n[b]\nx=2\ny=3"), end), encoding));
            EXPECT_TRUE(WritePrivateProfileStringW(TEXT("b"), TEXT("x"), nullptr, path_.c_str()));
            EXPECT_TRUE(WritePrivateProfileStringW(TEXT("b"), TEXT("k"), TEXT("v"), path_.c_str()));
            EXPECT_TRUE(WritePrivateProfileStringW(TEXT("a"), TEXT("k"), TEXT("w"), path_.c_str()));
            EXPECT_EQ(Section(TEXT("a")), TEXT("X=1\0k=w\0"s)) << name << Printable(end);
            EXPECT_EQ(Section(TEXT("b")), TEXT("y=3\0k=v\0"s)) << name << Printable(end);
        }
    }
    const std::string large = "[b]\r\ny=" + std::string(1 << 20, 'x') + "\r\n";
    NewFile("[a]\r\n" + large);
    EXPECT_TRUE(WritePrivateProfileStringW(TEXT("a"), TEXT("k"), TEXT("v"), path_.c_str()));
    EXPECT_TRUE(Bytes() == "[a]\r\nk=v\r\n" + large);
}

TEST_F(IniFiles, Places) {
    const auto folder = [](const WideText& name) { return kFolder + name; };
    const WideText places[] = {TEXT(""),
                               folder(TEXT("")),
                               folder(TEXT("\\")),
                               folder(TEXT("\\no\\f.ini")),
                               folder(TEXT("\\f?")),
                               TEXT("velmora-ini.ini")};
    for (const WideText& place : places) {
        path_ = place;
        SetLastError(0);
        const BOOL done = WritePrivateProfileStringW(TEXT("s"), TEXT("k"), TEXT("v"), place.c_str());
        const DWORD error = done ? 0 : GetLastError();
        Record(ShownName(place.c_str()) + ": error " + std::to_string(error) + ", " +
               Printable(String(TEXT("s"), TEXT("k"))));
    }
    // Without a folder it lies in that of Windows; without a name it is the user's profile.
    path_ = TEXT("C:\\Windows\\velmora-ini.ini");
    EXPECT_EQ(Bytes(), "[s]\r\nk=v\r\n");
    EXPECT_TRUE(DeleteFileW(path_.c_str()));
    EXPECT_TRUE(WritePrivateProfileStringW(TEXT("Velmora"), TEXT("k"), TEXT("v"), nullptr));
    WCHAR value[8];
    EXPECT_EQ(GetProfileStringW(TEXT("Velmora"), TEXT("k"), TEXT(""), value, 8), 1u);
    EXPECT_TRUE(WritePrivateProfileStringW(TEXT("Velmora"), nullptr, nullptr, nullptr));

    NewPath();
    SetLastError(0);
    EXPECT_EQ(String(TEXT("s"), TEXT("k")), TEXT("missing"));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_FILE_NOT_FOUND});
    EXPECT_EQ(GetPrivateProfileIntW(TEXT("s"), TEXT("k"), 7, path_.c_str()), 7u);
}

}  // namespace
}  // namespace contract
