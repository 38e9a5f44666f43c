// The header panel's and tag table's texts.
#include "document/header_model.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

namespace {

class Recorder : public Presenter {
public:
    void messageBox(icBoxKind kind, std::string_view caption, std::string_view text) override {
        boxes.push_back({kind, std::string(caption), std::string(text)});
    }
    struct Box {
        icBoxKind kind;
        std::string caption, text;
    };
    std::vector<Box> boxes;
};

TEST(HeaderModel, FieldTexts) {
    icHeader h = defaultHeader();
    h.size = 3144;
    h.deviceClass = icSig("nmcl");
    h.colorSpace = icSig("RGB ");
    h.date = {2009, 2, 1, 7, 5, 0};
    h.flags = 3;
    h.model = icSig("ab\0\0");
    h.attributes[0] = 15;
    h.renderingIntent = 4;
    const HeaderFields f = headerFieldTexts(h);
    const std::vector<std::pair<std::string, std::string>> expected = {
        {"Size:", "3144 bytes"},
        {"CMM Type:", "Lino"},
        {"Version:", "0x2400000"},
        {"Device Class:", "Unknown"},
        {"Color Space:", "RGB "},
        {"PCS:", "Lab "},
        {"Date:", "2009/2/1, 7:5:0"},
        {"Magic:", "acsp"},
        {"Platform:", "MSFT"},
        {"Flags:", "embedded, not independently"},
        {"Manufacture:", ""},
        {"Model:", "0x61620000 / ab"},
        {"Attribute:", "transparency, matte, negative black & white"},
        {"Intent:", "Unknown"},
        {"Illuminant:", "X=0.96420, Y=1.00000, Z=0.82491\n"},
        {"Creator:", "Tint"},
        {"Profile ID:", "00000000-00000000-00000000-00000000"},
    };
    ASSERT_EQ(f.size(), expected.size());
    for (std::size_t i = 0; i < f.size(); ++i) {
        EXPECT_EQ(f[i].label, expected[i].first);
        EXPECT_EQ(f[i].text, expected[i].second) << expected[i].first;
    }
    EXPECT_EQ(flagsText(0), "not embedded, independently");
    EXPECT_EQ(attributesText(0), "reflective, glossy, positive, color");
    EXPECT_EQ(modelText(0), "0x0");
    EXPECT_EQ(deviceClassText(icSig("spac")), "colorspace");
    EXPECT_EQ(intentText(3), "Absolute Colorimetric");
    // Rounded to five decimals before printing: 0.964199... shows as 0.96420.
    EXPECT_EQ(illuminantText({63190, -1, 0}), "X=0.96420, Y=-0.00001, Z=0.00000\n");
}

TEST(HeaderModel, PanelWarnsAboutAnOddIlluminant) {
    Recorder recorder;
    HeaderFields fields{};
    icHeader h = defaultHeader();
    h.illuminant.Z = doubleToS15Fixed16(1.089);
    EXPECT_EQ(fillHeaderPanel(h, recorder, fields), icOk);
    ASSERT_EQ(recorder.boxes.size(), 1u);
    EXPECT_EQ(recorder.boxes[0].kind, icBoxKind::warning);
    EXPECT_EQ(recorder.boxes[0].caption, "Veltrino");
    EXPECT_EQ(recorder.boxes[0].text, "Warning: improper format in ICC Header.");
    EXPECT_EQ(fields[0].text, "128 bytes");

    h.magic = 0;
    EXPECT_EQ(fillHeaderPanel(h, recorder, fields), icErrBadProfile);
    EXPECT_EQ(recorder.boxes.back().kind, icBoxKind::stop);
    EXPECT_EQ(recorder.boxes.back().text, "Error in icc header. Errcode: -1001.\n");
}

TEST(HeaderModel, TagTableInBothBasesAndTheOffsetWarning) {
    iccProfileRW profile;
    ASSERT_EQ(profile.loadFromMemory(ProfileBuilder()
                                         .tag(icSig("desc"), textTag("0123456"))
                                         .entry(icSig("wtpt"), 130, 20)
                                         .build()),
              icOk);
    Recorder recorder;
    warnAboutTagOffsets(profile, recorder);
    const auto decimal = tagTableRows(profile, false);
    ASSERT_EQ(decimal.size(), 2u);
    EXPECT_EQ(decimal[1].index, "1");
    EXPECT_EQ(decimal[1].signature, "wtpt");
    EXPECT_EQ(decimal[1].offset, "130");
    EXPECT_EQ(decimal[0].offset, "156");
    const auto hex = tagTableRows(profile, true);
    EXPECT_EQ(hex[1].offset, "82");
    EXPECT_EQ(hex[1].size, "14");
    EXPECT_EQ(hex[0].offset, "9C");
    ASSERT_EQ(recorder.boxes.size(), 1u);
    EXPECT_EQ(recorder.boxes[0].text, "Invalid ICC profile: Error in tag offset(s).");
    EXPECT_EQ(tagTableCaption(2), "Tag Table (2 tags):");
}

} // namespace
