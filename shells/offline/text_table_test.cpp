#include "text_table.h"

#include <gtest/gtest.h>

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

TEST(TextTable, ColumnsAreAsWideAsTheirWidestCell) {
    KCTextTable table({{"n", true}, {"name"}, {"x", true}});
    table.AddRow({"1", "Gain", "10"});
    table.AddRow({"12", "Q", "7"});
    EXPECT_EQ(table.ToText(), " n  name   x\n"
                              "--  ----  --\n"
                              " 1  Gain  10\n"
                              "12  Q      7\n");
}

TEST(TextTable, LinesEndInNoBlank) {
    KCTextTable table({{"name"}, {"units"}});
    table.AddRow({"a long name", ""});
    EXPECT_EQ(table.ToText(), "name         units\n-----------  -----\na long name\n");
}

TEST(TextTable, MissingCellsAreEmptyAndOthersDropped) {
    KCTextTable table({{"a"}, {"b"}});
    table.AddRow({});
    table.AddRow({"1", "2", "3"});
    EXPECT_EQ(table.ToText(), "a  b\n-  -\n\n1  2\n");
}

TEST(TextTable, CharactersOfSeveralBytesKeepColumnsAligned) {
    KCTextTable table({{"u"}, {"v"}});
    table.AddRow({"°", "1"});
    EXPECT_EQ(table.ToText(), "u  v\n-  -\n°  1\n");
}

} // namespace
} // namespace kvKorvoV12_9_0_320::kvHost
