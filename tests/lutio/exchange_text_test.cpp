// The exchange files' numbers and lines against the C library they replace: printf's "%u" and
// "%f", strtod, and fgets with a 1024-byte buffer.
#include "lutio/exchange_text.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>

namespace {

std::string printed(const char* format, double v) {
    char buffer[512];
    std::snprintf(buffer, sizeof buffer, format, v);
    return buffer;
}

// Every number printed as printf prints it, and read back as strtod reads it.
TEST(ExchangeText, NumbersAsTheCLibraryHasThem) {
    std::vector<double> values = {0.0,      -0.0,    0.0000005, -0.0000005, 0.0000015, 0.0000025,
                                  2.5,      -2.5,    1.0 / 3,   1e22,       1e300,     DBL_MAX,
                                  -DBL_MAX, DBL_MIN, 4.9e-324,  INFINITY,   -INFINITY, NAN};
    std::mt19937_64 random(7);
    for (int i = 0; i < 100000; ++i) {
        // Every s15Fixed16Number a matrix or parameter can hold, and doubles of any bit pattern.
        values.push_back(static_cast<std::int32_t>(random()) / 65536.0);
        values.push_back(std::bit_cast<double>(random()));
        values.push_back(std::ldexp(static_cast<double>(random() % 2000001) - 1000000, -21));
    }
    for (double v : values) {
        const std::string text = printed("%f", v);
        ASSERT_EQ(icTextOut().f(v).str(), text) << std::hexfloat << v;
        std::string_view in = text;
        double read = 0;
        if (std::isfinite(v)) {
            ASSERT_TRUE(scanDouble(in, read) && in.empty() &&
                        read == std::strtod(text.c_str(), nullptr))
                << text;
        }
    }
    EXPECT_EQ(icTextOut().u(UINT64_MAX).u(0).d(-128).str(), "184467440737095516150-128");

    std::string_view in = "+7 12abc -5 4294967296 \n\t";
    std::uint32_t u = 0;
    std::uint64_t wide = 0;
    double d = 0;
    std::string_view word;
    EXPECT_TRUE(scanU32(in, u) && u == 7);
    EXPECT_TRUE(scanU32(in, u) && u == 12);
    EXPECT_FALSE(scanU32(in, u)); // "abc"
    EXPECT_TRUE(scanWord(in, word) && word == "abc");
    EXPECT_FALSE(scanU32(in, u)); // unsigned numbers take no minus
    EXPECT_TRUE(scanDouble(in, d) && d == -5);
    EXPECT_FALSE(scanU32(in, u)); // beyond 32 bits
    EXPECT_TRUE(scanU64(in, wide) && wide == 4294967296u);
    EXPECT_FALSE(scanWord(in, word));
}

// The table readers (a batch, and one at a time through icTextIn) against scanU32 one number at
// a time, over streams of every kind of token in runs of white space that cross the batch
// reader's 64-byte blocks.
TEST(ExchangeText, TableReadersReadAsScanU32) {
    const char* tokens[] = {"7",  "65535", "12345678", "123456789",     "4294967295", "4294967296",
                            "+5", "+-5",   "-5",       "0000000000042", "12a",        "x"};
    std::mt19937 random(11);
    for (int round = 0; round < 3000; ++round) {
        std::string text;
        for (int i = int(random() % 80); i > 0; --i) {
            text.append(random() % 3, " \n\t\r\v\f"[random() % 6]);
            text += tokens[random() % (random() % 8 ? 3 : std::size(tokens))];
        }
        std::vector<std::uint32_t> expected, single, batch(text.size() + 1);
        std::uint32_t v = 0;
        for (std::string_view in = text; scanU32(in, v);)
            expected.push_back(v);
        for (icTextIn in(text); in.u32(v);)
            single.push_back(v);
        std::string_view in = text;
        batch.resize(scanU32s(in, batch));
        ASSERT_EQ(single, expected) << text;
        ASSERT_EQ(batch, expected) << text;
    }
}

TEST(ExchangeText, LinesSplitAsFgetsSplitsThem) {
    std::mt19937 random(3);
    std::string text;
    for (int i = 0; i < 300; ++i) {
        text.append(random() % 2500, static_cast<char>('a' + i % 26));
        if (random() % 5 != 0)
            text += '\n';
    }
    text += "last line without a line feed";
    const auto path = scratchDir() / "lines.txt";
    writeBytes(path, Bytes(text.begin(), text.end()));

    std::FILE* file = std::fopen(path.c_str(), "rb");
    ASSERT_NE(file, nullptr);
    icTextIn in(text);
    char buffer[1024];
    while (std::fgets(buffer, sizeof buffer, file)) {
        const auto line = in.line();
        ASSERT_TRUE(line);
        ASSERT_EQ(*line, buffer);
    }
    std::fclose(file);
    EXPECT_FALSE(in.line());
}

} // namespace
