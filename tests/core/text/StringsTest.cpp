#include "text/Strings.h"

#include <gtest/gtest.h>

using namespace lumabroom;

TEST(Strings, DisplayWidthCountsTerminalCells) {
    const std::pair<std::string_view, std::size_t> cases[] = {
        {"", 0},
        {"1.20 GB", 7},
        {"63 \xe5\xad\x97\xe8\x8a\x82", 7}, // 63 字节
        {"\xef\xbc\xa1", 2},                // fullwidth A
        {"\xea\xb0\x80", 2},                // Hangul
        {"\xf0\x9f\x93\xa6", 2},            // emoji
        {"\xf0\xa0\x80\x80", 2},            // CJK extension B
        {"e\xcc\x81", 1},                   // e and a combining accent
        {"a\xe2\x80\x8b"
         "b",
         2}, // zero width space
        {"\xc3\xa9t\xc3\xa9", 3},
        {"tab\there", 7},   // controls take no cell
        {"bad\xff\xfe", 5}, // each invalid byte is one replacement
    };
    for (const auto& [text, width] : cases) EXPECT_EQ(Strings::displayWidth(text), width) << text;
}

TEST(Strings, NamesThatWouldSteerTheTerminalAreQuotedAsTheShellReadsThem) {
    const std::pair<std::string_view, std::string_view> cases[] = {
        {"plain name.txt", "plain name.txt"},
        {"it's \\ fine", "it's \\ fine"},
        {"\xe5\xae\x89\xe8\xa3\x85.dmg", "\xe5\xae\x89\xe8\xa3\x85.dmg"},
        {"a\nb", "$'a\\nb'"},
        {"x\x1b[31my", "$'x\\E[31my'"},
        {"t\tr\rb\bv\vf\fa\a", "$'t\\tr\\rb\\bv\\vf\\fa\\a'"},
        {"nul\x01"
         "del\x7f",
         "$'nul\\x01del\\x7f'"},
        {"c1\xc2\x9b"
         "31m",
         "$'c1\\xc2\\x9b31m'"}, // CSI as one C1 character
        {"bad\xff", "$'bad\\xff'"},
        {"it's\n\\", "$'it\\'s\\n\\\\'"},
    };
    for (const auto& [name, shown] : cases) EXPECT_EQ(Strings::quotedForTerminal(name), shown) << name;
}
