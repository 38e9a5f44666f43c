// The header panel's texts, the shared data folder and the folder record.
#include "catalogue/catalogue_testing.h"
#include "document/header_model.h"
#include "document/settings_model.h"

namespace {

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
    std::string panel;
    for (const HeaderField& field : headerFieldTexts(h))
        panel += std::string(field.label) + " " + field.text + "|";
    EXPECT_EQ(panel, "Size: 3144 bytes|CMM Type: Lino|Version: 0x2400000|Device Class: Unknown|"
                     "Color Space: RGB |PCS: Lab |Date: 2009/2/1, 7:5:0|Magic: acsp|"
                     "Platform: MSFT|Flags: embedded, not independently|Manufacture: |"
                     "Model: 0x61620000 / ab|Attribute: transparency, matte, negative black & "
                     "white|Intent: Unknown|Illuminant: X=0.96420, Y=1.00000, Z=0.82491\n|"
                     "Creator: Tint|Profile ID: 00000000-00000000-00000000-00000000|");
    EXPECT_EQ(deviceClassText(icSig("spac")), "colorspace");
    // Rounded to five decimals before printing: 0.964199... shows as 0.96420.
    EXPECT_EQ(illuminantText({63190, -1, 0}), "X=0.96420, Y=-0.00001, Z=0.00000\n");

    RecordingPresenter recorder;
    HeaderFields fields{};
    h.magic = 0;
    EXPECT_EQ(fillHeaderPanel(h, recorder, fields), icErrBadProfile);
    EXPECT_EQ(recorder.shown,
              (std::vector<Shown>{{"stop", "Veltrino", "Error in icc header. Errcode: -1001.\n"}}));
}

TEST(DataFolder, CutToTwoHundredSixtyCharactersNeverInsideOne) {
    EXPECT_EQ(cutToCharacters("abc", 2), "ab");
    EXPECT_EQ(cutToCharacters("\xC3\xA9\xC3\xA9x", 2), "\xC3\xA9\xC3\xA9");
    EXPECT_EQ(cutToCharacters("", 2), "");
    DataFolder::set(std::string(300, 'd'));
    EXPECT_EQ(DataFolder::get(), std::string(260, 'd'));
    DataFolder::set("/tmp/luts");
    EXPECT_EQ(DataFolder::get(), "/tmp/luts");
}

TEST(FolderRecord, RoundTripFallbackAndWriteFailure) {
    const std::string path = (scratchDir() / "veltrino.ini").string();
    RecordingPresenter recorder;
    EXPECT_EQ(readFolderRecord(path + ".missing", "/usr/share/color/icc"), "/usr/share/color/icc");
    ASSERT_EQ(writeFolderRecord(path, "/home/me/luts", recorder), icOk);
    EXPECT_EQ(readBytes(path).size(), kFolderRecordSize);
    EXPECT_EQ(readFolderRecord(path, "fallback"), "/home/me/luts");
    writeBytes(path, Bytes(100, 'x')); // too short to be a record
    EXPECT_EQ(readFolderRecord(path, "fallback"), "fallback");

    const std::string blocked = (scratchDir() / "no-such-folder" / "veltrino.ini").string();
    EXPECT_EQ(writeFolderRecord(blocked, "x", recorder), icErrGeneral);
    EXPECT_EQ(recorder.shown,
              (std::vector<Shown>{
                  {"stop", "Veltrino",
                   "Fail to open " + blocked + ". This file should not be write protected."}}));
}

} // namespace
