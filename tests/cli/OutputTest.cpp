#include "Output.h"

#include <gtest/gtest.h>

using namespace lumabroom;
using Output::Align;
using Output::Column;
using Output::Row;

TEST(Output, TablesAlignByTerminalCells) {
    struct Case {
        const char* name;
        std::vector<Column> columns;
        std::vector<Row> rows;
        std::string expected;
    };
    const std::vector<Column> threeTitled{{"大小", Align::right, 0}, {"NAME"}, {"STATE"}};
    const Case cases[] = {
        {"wide characters count two cells, and the last cell gets no blanks after it",
         threeTitled,
         {{{"63 字节", "分支", "ok"}}, {{"1.20 GB", "x", "gone"}, "! "}},
         "     大小  NAME  STATE\n"
         "  63 字节  分支  ok\n"
         "! 1.20 GB  x     gone\n"},
        {"a short row's last cell runs on without widening its column",
         threeTitled,
         {{{"1 kB", "a", "ok"}}, {{"", "~/a/rather/long/path  (of ~/src)"}}},
         "  大小  NAME  STATE\n"
         "  1 kB  a     ok\n"
         "        ~/a/rather/long/path  (of ~/src)\n"},
        {"no titles, no title line; a minimum width holds when every cell is narrower",
         {Output::sizeColumn(), {}},
         {{{"0 bytes", "npm"}}, {{"4 kB", "~/.npm"}, "      "}},
         "     0 bytes  npm\n"
         "            4 kB  ~/.npm\n"},
        {"no rows, only the titles", {{"A"}, {"B"}}, {}, "  A  B\n"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(Output::table(c.columns, c.rows), c.expected);
    }
}

TEST(Output, PathsUnderTheHomeReadShorterAndCannotSteerTheTerminal) {
    const std::pair<const char*, const char*> cases[] = {
        {"/home/u/.npm", "~/.npm"},           {"/home/u", "~"},
        {"/home/user/x", "/home/user/x"},     {"/srv/a\nb", "$'/srv/a\\nb'"},
        {"/home/u/\x1b[31m", "$'~/\\E[31m'"},
    };
    for (const auto& [path, shown] : cases) {
        SCOPED_TRACE(path);
        EXPECT_EQ(Output::displayPath(path, "/home/u"), shown);
    }
    EXPECT_EQ(Output::displayPath("/x", "/"), "/x");
}

TEST(Output, JsonLinesStayValidWithBytesThatAreNoUtf8) {
    EXPECT_EQ(Output::jsonText(Output::Json{{"path", "a\xff"
                                                     "b"},
                                            {"size", 3}}),
              "{\"path\":\"a\xef\xbf\xbd"
              "b\",\"size\":3}");
}
