// Tables in their three forms, and texts with escapes.
#include "tools/velmora/table.h"

#include <gtest/gtest.h>

#include "platform/host.h"
#include "tools/velmora/escapes.h"

namespace velmora {
namespace {

std::string Text(const Table& table) {
    return FormatText(std::span(&table, 1));
}

TEST(Table, AlignsByCharactersAndLeavesOutEmptyColumns) {
    const Table table = {
        "Things",
        "",
        {{"Name", "name"}, {"Empty", "empty"}, {"Count", "count"}},
        {{TextCell("Büro"), EmptyCell(), NumberCell(7)}, {TextCell("x"), EmptyCell(), NumberCell(1200)}}};
    EXPECT_EQ(Text(table),
              "Things\n"
              "\n"
              "Name  Count\n"
              "Büro      7\n"
              "x      1200\n");
}

TEST(Table, FullWidthCharactersTakeTwoPlaces) {
    const Table table = {"",
                         "",
                         {{"Name", "name"}, {"Count", "count"}},
                         {{TextCell("封筒 10号"), NumberCell(7)}, {TextCell("ﾊｶﾞｷ é"), NumberCell(1200)}}};
    EXPECT_EQ(Text(table),
              "Name       Count\n"
              "封筒 10号      7\n"
              "ﾊｶﾞｷ é      1200\n");
    std::string words;
    for (int i = 0; i < 51; ++i) {
        words += "紙";
    }
    EXPECT_EQ(Text({"", "", {{"Text", "text"}}, {{TextCell("x" + words)}}}),
              "Text\nx" + words.substr(0, 49 * 3) + "\n紙紙\n");
}

TEST(Table, ContinuesWideCellsBelowAndKeepsWordsAndNumbers) {
    const std::string words = "one two three four five six seven eight nine ten eleven twelve thirteen fourteen";
    const Table table = {"",
                         "",
                         {{"First", "first"}, {"Number", "number"}, {"Second", "second"}},
                         {{TextCell(words), NumberCell(123456789), TextCell(words)}}};
    EXPECT_EQ(Text(table),
              "First                                           Number  Second\n"
              "one two three four five six seven eight      123456789  one two three four five six seven eight nine\n"
              "nine ten eleven twelve thirteen fourteen                ten eleven twelve thirteen fourteen\n");
}

TEST(Table, CutsWordsThatNoLineHolds) {
    const Table table = {"", "", {{"Text", "text"}}, {{TextCell(std::string(90, 'a') + "ä" + std::string(59, 'b'))}}};
    EXPECT_EQ(Text(table),
              "Text\n" + std::string(90, 'a') + "ä" + std::string(9, 'b') + "\n" + std::string(50, 'b') + "\n");
    const Table path = {
        "", "", {{"Text", "text"}}, {{TextCell("C:\\\\" + std::string(60, 'a') + "\\\\" + std::string(60, 'b'))}}};
    EXPECT_EQ(Text(path), "Text\nC:\\\\" + std::string(60, 'a') + "\\\\\n" + std::string(60, 'b') + "\n");
}

TEST(Table, JsonOfOneAndOfSeveral) {
    Table rows = {"", "", {{"Name", "name"}, {"Value", ""}}, {}};
    rows.rows.push_back({TextCell("a"), {"1 (one)", {{"value", 1}, {"valueName", "one"}}}});
    EXPECT_EQ(ToJson(std::span(&rows, 1)), Json::parse(R"([{"name": "a", "value": 1, "valueName": "one"}])"));

    Table keyed = rows;
    keyed.key = "things";
    keyed.isKeyed = true;
    Table none = {"", "none", {{"Name", "name"}}};
    const Table tables[] = {keyed, none};
    EXPECT_EQ(ToJson(tables), Json::parse(R"({"things": {"a": {"value": 1, "valueName": "one"}}, "none": []})"));
    EXPECT_EQ(FormatText(std::span(&none, 1)), "");
    EXPECT_EQ(FormatJson(Json("\xFF")), "\"\uFFFD\"\n");
}

TEST(Table, MarkdownEscapes) {
    const Table table = {"A_b", "", {{"Name", "name"}}, {{TextCell("32*k | <x> \\r")}}};
    EXPECT_EQ(FormatMarkdown(table), "## A\\_b\n\n| Name |\n|---|\n| 32\\*k \\| \\<x> \\\\r |\n");
}

TEST(Escapes, QuotedTexts) {
    const struct {
        std::u16string text;
        std::string quoted;
    } cases[] = {
        {u"", "\"\""},
        {u"plain", "\"plain\""},
        {u"a\"b\\c\r\n\t", R"("a\"b\\c\r\n\t")"},
        {u"\x1B\x7F\x85", R"("\u001B\u007F\u0085")"},
        {u"Büro €", "\"Büro €\""},
        {u"\U0001F5A8", "\"\U0001F5A8\""},
        {std::u16string(1, 0xD800) + u"x" + std::u16string(1, 0xDC00), R"("\uD800x\uDC00")"},
    };
    for (const auto& expected : cases) {
        EXPECT_EQ(Quoted(expected.text), expected.quoted);
    }
}

TEST(Escapes, AnsiTextsAreReadInTheMachinesCodePage) {
    host::Machine machine;
    EXPECT_EQ(FromAnsi(std::string_view("\x80\0x", 3)), u"€");
    machine.SetAnsiCodePage(932);
    EXPECT_EQ(FromAnsi("\x93\xFA"), u"日");
    EXPECT_EQ(FromAnsi(""), u"");
}

}  // namespace
}  // namespace velmora
