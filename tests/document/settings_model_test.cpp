// The shared data folder and the file-based folder record.
#include "document/settings_model.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

namespace {

TEST(DataFolder, CutToTwoHundredSixtyCharactersNeverInsideOne) {
    EXPECT_EQ(cutToCharacters("abc", 2), "ab");
    EXPECT_EQ(cutToCharacters("\xC3\xA9\xC3\xA9x", 2), "\xC3\xA9\xC3\xA9");
    EXPECT_EQ(cutToCharacters("", 2), "");
    DataFolder::set(std::string(300, 'd'));
    EXPECT_EQ(DataFolder::get(), std::string(260, 'd'));
    DataFolder::set("/tmp/luts");
    EXPECT_EQ(DataFolder::get(), "/tmp/luts");
}

class Recorder : public Presenter {
public:
    void messageBox(icBoxKind kind, std::string_view caption, std::string_view text) override {
        kinds.push_back(kind);
        texts.emplace_back(std::string(caption) + "|" + std::string(text));
    }
    std::vector<icBoxKind> kinds;
    std::vector<std::string> texts;
};

TEST(FolderRecord, RoundTripFallbackAndWriteFailure) {
    const std::string path = (scratchDir() / "veltrino.ini").string();
    Recorder recorder;
    EXPECT_EQ(readFolderRecord(path + ".missing", "/usr/share/color/icc"), "/usr/share/color/icc");
    ASSERT_EQ(writeFolderRecord(path, "/home/me/luts", recorder), icOk);
    EXPECT_EQ(readBytes(path).size(), kFolderRecordSize);
    EXPECT_EQ(readFolderRecord(path, "fallback"), "/home/me/luts");
    writeBytes(path, Bytes(100, 'x')); // too short to be a record
    EXPECT_EQ(readFolderRecord(path, "fallback"), "fallback");

    const std::string blocked = (scratchDir() / "no-such-folder" / "veltrino.ini").string();
    EXPECT_EQ(writeFolderRecord(blocked, "x", recorder), icErrGeneral);
    ASSERT_EQ(recorder.texts.size(), 1u);
    EXPECT_EQ(recorder.kinds[0], icBoxKind::stop);
    EXPECT_EQ(recorder.texts[0],
              "Veltrino|Fail to open " + blocked + ". This file should not be write protected.");
}

} // namespace
