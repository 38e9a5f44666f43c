// Header primitives: fixed-point rounding, signatures, validation and the reporter's text.
#include "profile/header.h"
#include "profile/status.h"

#include <gtest/gtest.h>

namespace {

TEST(Primitives, FixedPointEncodingRoundsHalfUpThenTruncates) {
    struct Row {
        double value;
        std::uint32_t encoded;
    };
    for (const Row& row : {Row{0.9642, 0x0000F6D6}, Row{1.0, 0x00010000}, Row{0.8249, 0x0000D32D},
                           Row{-1.0, 0xFFFF0001}, Row{-0.5 / 65536, 0}, // toward zero
                           Row{-1.5 / 65536, 0xFFFFFFFF}, Row{32767.99999, 0x7FFFFFFF}}) {
        EXPECT_EQ(static_cast<std::uint32_t>(doubleToS15Fixed16(row.value)), row.encoded)
            << row.value;
    }
    EXPECT_EQ(doubleToU8Fixed8(1.5), 0x0180);
    EXPECT_EQ(doubleToU16Fixed16(2.2), 0x00023333u);
    EXPECT_EQ(doubleToS15Fixed16(1e300), -1); // saturates instead of being undefined
    EXPECT_DOUBLE_EQ(s15Fixed16ToDouble(-65536), -1.0);
}

TEST(Primitives, SignaturesAndText) {
    EXPECT_EQ(sigToText(icSig("mntr")), "mntr");
    EXPECT_EQ(sigToText(0x61006263), "a"); // a zero byte ends the text
    EXPECT_EQ(textToSig("ab"), 0x61620000u);
    EXPECT_EQ(textToSig(""), 0u);
    EXPECT_EQ(textToSig("APPLE"), icSig("APPL"));
}

TEST(Header, RoundTripsThroughBytes) {
    icHeader h = defaultHeader();
    h.attributes = {0x12345678, 0x9ABCDEF0};
    h.profileID[0] = 0xAB;
    h.reserved[27] = 7;
    const auto bytes = headerToBytes(h);
    EXPECT_EQ(loadBE32(bytes.data() + 36), icSig("acsp"));
    EXPECT_EQ(loadBE32(bytes.data() + 68), 0x0000F6D6u);
    EXPECT_EQ(bytes[84], 0xAB);
    EXPECT_EQ(headerFromBytes(bytes), h);
}

TEST(Header, Validation) {
    icHeader h = defaultHeader();
    EXPECT_EQ(validateHeader(h), icOk);
    EXPECT_EQ(validateHeader(h, 128), icOk);
    EXPECT_EQ(validateHeader(h, 132), icWarnHeader);
    h.illuminant = {doubleToS15Fixed16(0.9505), doubleToS15Fixed16(1.0), doubleToS15Fixed16(1.089)};
    EXPECT_EQ(validateHeader(h), icWarnHeader); // D65
    h.illuminant = defaultHeader().illuminant;
    h.illuminant.Y = 65536 + 327; // 0.00499: inside the tolerance
    EXPECT_EQ(validateHeader(h), icOk);
    h.illuminant.Y = 65536 + 328; // 0.00500 and a little: outside
    EXPECT_EQ(validateHeader(h), icWarnHeader);
    h.magic = icSig("ascp");
    EXPECT_EQ(validateHeader(h), icErrBadProfile);
}

TEST(Status, ReporterText) {
    EXPECT_EQ(errorReportText(icOk, "Done."), "Done.\n");
    const std::string longMessage(400, 'x');
    EXPECT_EQ(errorReportText(icErrFile, longMessage), std::string(254, 'x') + " Errcode: -100.\n");
}

} // namespace
