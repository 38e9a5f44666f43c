// The hex dump and large-text windows' texts.
#include "support/test_support.h"
#include "viewers/hex_dump_model.h"

#include <gtest/gtest.h>

namespace {

TEST(HexDump, LinesOfSixteenWithAZeroFilledShortRow) {
    Bytes bytes = {'d', 'e', 's', 'c', 0, 0, 0, 0, ' ', '!', 0x7F, 0xE9, 'A', 'z', '0', '9'};
    bytes.insert(bytes.end(), {1, 2, 0xAB, 'x'});
    const auto lines = hexDumpLines(bytes);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0], "00000000    64 65 73 63 00 00 00 00 - 20 21 7F E9 41 7A 30 39    "
                        "desc........Az09");
    EXPECT_EQ(lines[1], "00000010    01 02 AB 78 00 00 00 00 - 00 00 00 00 00 00 00 00    "
                        "...x");
    EXPECT_TRUE(hexDumpLines({}).empty());
    EXPECT_EQ(hexDumpLines(Bytes(32, 0)).size(), 2u);
    EXPECT_EQ(hexDumpLine(0x12345678, Bytes{0xFF}).substr(0, 12), "12345678    ");
}

TEST(LargeText, LineEndsForTheEditBox) {
    EXPECT_EQ(toEditBoxLineEnds("a\nb"), "a\r\nb");
    EXPECT_EQ(toEditBoxLineEnds("\nb"), "\nb");
    EXPECT_EQ(toEditBoxLineEnds("a\r"), "a\r");
    EXPECT_EQ(toEditBoxLineEnds("a\rb\r\nc\n\n"), "a\r\nb\r\nc\r\n\r\n");
    EXPECT_EQ(toEditBoxLineEnds(""), "");
}

} // namespace
