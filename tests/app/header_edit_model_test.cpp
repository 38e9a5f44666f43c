// The header editor's presets and its rules for "OK".
#include "app/header_edit_model.h"

#include <gtest/gtest.h>

#include <tuple>

namespace {

const char kToV4[] =
    "Warning: Changed version number from V2 to V4, tags should be updated accordingly!";
const char kToV2[] =
    "Warning: Changed version number from V4 to V2, tags should be updated accordingly!";

icHeader sampleHeader() {
    icHeader h = defaultHeader();
    h.date = {2020, 5, 17, 8, 30, 5};
    h.flags = 2;
    h.attributes = {0b1010, 77};
    h.renderingIntent = 7;
    return h;
}

TEST(HeaderEditModel, ListsArePresetMaskedAndAnUneditedOkKeepsTheBits) {
    const HeaderEditFields f = headerEditFields(sampleHeader());
    EXPECT_EQ(f.version + " " + f.date + " " + f.time + " " + f.model,
              "0x2400000 2020/5/17 8:30:5 0x0");
    EXPECT_EQ(f.embedded, 0);
    // Bits above bit 0 land past the end of a two-item list: no selection.
    EXPECT_EQ(f.independent, kNoSelection);
    EXPECT_EQ(f.attributes, (std::array<int, 4>{0, kNoSelection, 0, kNoSelection}));
    EXPECT_EQ(f.intent, kNoSelection);

    // OK unedited: the intent shown as no selection stores as 0xFFFFFFFF, the bits stay.
    const icHeader before = sampleHeader();
    icHeader h = before;
    EXPECT_TRUE(applyHeaderEdit(f, h).empty());
    EXPECT_EQ(h.renderingIntent, 0xFFFFFFFFu);
    h.renderingIntent = before.renderingIntent;
    EXPECT_EQ(h, before);
}

TEST(HeaderEditModel, VersionParsesAsPercentIAndWarnsAcrossFour) {
    struct Case {
        std::uint32_t current;
        const char* text;
        std::uint32_t stored;
        const char* warning;
    };
    const Case cases[] = {
        {0x02400000, "0x4200000", 0x04200000, kToV4},
        {0x02400000, "0", 0x02400000, nullptr},    // 0 stores nothing
        {0x02400000, "", 0x02400000, nullptr},     // empty stores nothing
        {0x02400000, "junk", 0x02400000, nullptr}, // not a number
        {0x04200000, "0x2100000", 0x02100000, kToV2},
        {0x04200000, "0", 0x04200000, kToV2},        // compared before the 0 is dropped
        {0x02400000, "010", 8, nullptr},             // leading 0 is octal
        {0x02400000, "67108864", 0x04000000, kToV4}, // decimal
    };
    for (const Case& c : cases) {
        icHeader h = defaultHeader();
        h.version = c.current;
        HeaderEditFields f = headerEditFields(h);
        f.version = c.text;
        const auto warnings = applyHeaderEdit(f, h);
        EXPECT_EQ(h.version, c.stored) << c.text;
        EXPECT_EQ(warnings,
                  c.warning ? std::vector<std::string>{c.warning} : std::vector<std::string>{})
            << c.text;
    }
}

TEST(HeaderEditModel, TextsListsAndSignatures) {
    icHeader h = sampleHeader();
    const icSignature cmm = h.cmmId;
    HeaderEditFields f = headerEditFields(h);
    f.cmmType = "abcd";
    f.date = "2009/2/21";
    f.time = "23:59"; // two numbers are not a time
    f.manufacturer = "";
    f.creator = "XYZW";
    f.model = "0x61620000";
    f.embedded = 1;
    f.independent = 0;
    f.attributes = {1, 0, 1, 0};
    applyHeaderEdit(f, h);
    EXPECT_EQ(h.cmmId, cmm); // shown, never stored
    EXPECT_EQ(h.date, (icDateTimeNumber{2009, 2, 21, 8, 30, 5}));
    EXPECT_EQ(std::tuple(h.manufacturer, h.creator, h.model, h.flags, h.attributes[0]),
              std::tuple(0u, icSig("XYZW"), 0x61620000u, 1u, 5u));
}

} // namespace
