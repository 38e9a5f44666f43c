// lut8/lut16 folders: the exact files written, the reading rules and their looseness, and the
// viewer's two-pass import with its boxes.
#include "lutio/exchange_procedures.h"
#include "lutio/lut_folder.h"
#include "lutio_testing.h"

#include <gtest/gtest.h>

namespace {

// 2 inputs with 3 entries, 1 output with 2 entries, 2 grid points.
iccLut16Type smallLut16() {
    iccLut16Type lut;
    EXPECT_EQ(lut.initialize(2, 3, 1, 2, 2), icOk);
    EXPECT_EQ(lut.setClut(std::vector<std::uint16_t>{1, 2, 3, 65535}), icOk);
    lut.setMatrixFixed(std::array<std::int32_t, 9>{65536, -98304, 0, 0, 65536, 0, 0, 0, 65536});
    return lut;
}

Bytes rawOf(const iccTagType& tag) {
    return Bytes(tag.raw().begin(), tag.raw().end());
}

TEST(LutFolder, ExportWritesTheFiveFiles) {
    const auto folder = makeFolder("lut16-export", {{"notes.txt", "mine"}, {"clut.txt", "old"}});
    ASSERT_EQ(ExportLut16Folder(smallLut16(), folder), icOk);
    EXPECT_EQ(readFolder(folder),
              (Files{{"header.txt", "icTagTypeSignature: mft2\nTag_Bytes: 76\nInputChan: 2\n"
                                    "OutputChan: 1\nInput_Entries: 3\nOutput_Entries: 2\n"
                                    "Clut_Size: 2\n"},
                     {"matrix.txt", "0 1.000000\n1 -1.500000\n2 0.000000\n3 0.000000\n"
                                    "4 1.000000\n5 0.000000\n6 0.000000\n7 0.000000\n"
                                    "8 1.000000\n"},
                     {"InputCurves.txt", "0 0 0 \n1 32768 32768 \n2 65535 65535 \n"},
                     {"OutputCurves.txt", "0 0 \n1 65535 \n"},
                     {"clut.txt", "0 1 \n1 2 \n2 3 \n3 65535 \n"},
                     {"notes.txt", "mine"}}));

    iccLut8Type lut8;
    ASSERT_EQ(lut8.initialize(1, 1, 2), icOk);
    const auto folder8 = makeFolder("lut8-export");
    ASSERT_EQ(ExportLut8Folder(lut8, folder8), icOk);
    EXPECT_EQ(readText(folder8 / "header.txt"), "icTagTypeSignature: mft1\nTag_Bytes: 562\n"
                                                "InputChan: 1\nOutputChan: 1\nClut_Size: 2\n");
    EXPECT_EQ(readText(folder8 / "InputCurves.txt").substr(0, 16), "0 0 \n1 1 \n2 2 \n3");
}

TEST(LutFolder, ImportRules) {
    const auto exported = makeFolder("lut16-exported");
    ASSERT_EQ(ExportLut16Folder(smallLut16(), exported), icOk);
    const Files good = readFolder(exported);
    const std::string header = good.at("header.txt");
    const auto with = [&good](const std::string& file, const std::string& text) {
        Files files = good;
        files[file] = text;
        return files;
    };
    const auto without = [&good](const std::string& file) {
        Files files = good;
        files.erase(file);
        return files;
    };
    struct Row {
        const char* name;
        Files files;
        icStatus status;
    } rows[] = {
        {"only 13 characters of Output_Entries compared",
         with("header.txt", edited(header, "Output_Entries:", "Output_Entriesxyz:")), icOk},
        {"the colon is not compared", with("header.txt", edited(header, "InputChan:", "InputChan")),
         icOk},
        {"case is", with("header.txt", edited(header, "InputChan:", "Inputchan:")), icErrFile},
        {"signature of a lut8", with("header.txt", edited(header, "mft2", "mft1")), icErrFile},
        {"header line without a number",
         with("header.txt", edited(header, "Clut_Size: 2", "Clut_Size:")), icErrFile},
        {"missing header", without("header.txt"), icErrFile},
        {"missing matrix", without("matrix.txt"), icErrFile},
        {"wrong index", with("clut.txt", "0 1 \n1 2 \n3 3 \n3 4 \n"), icErrFile},
        {"short table", with("OutputCurves.txt", "0 0 \n1 \n"), icErrFile},
        {"lines do not matter", with("clut.txt", "0 1 1\n2 2 3 3\n65536"), icOk},
        {"re-initialisation refuses",
         with("header.txt", edited(header, "Clut_Size: 2", "Clut_Size: 256")), icErrInvalidArg},
        // Half a gigabyte of tables is not set up for a folder of a few bytes, not even to be
        // returned unread because Tag_Bytes disagrees.
        {"dimensions the files cannot fill",
         with("header.txt", "icTagTypeSignature: mft2\nTag_Bytes: 1\nInputChan: 3\n"
                            "OutputChan: 15\nInput_Entries: 2\nOutput_Entries: 2\n"
                            "Clut_Size: 255\n"),
         icErrFile},
    };
    for (const Row& row : rows) {
        icMemorySource source;
        source.files.insert(row.files.begin(), row.files.end());
        iccLut16Type lut;
        EXPECT_EQ(ImportLut16Files(lut, source), row.status) << row.name;
    }

    // A value beyond 16 bits is cut to 16 bits.
    icMemorySource source;
    source.files.insert(good.begin(), good.end());
    source.files["clut.txt"] = "0 1 1 2 2 3 3 65536";
    iccLut16Type lut;
    ASSERT_EQ(ImportLut16Files(lut, source), icOk);
    EXPECT_EQ(lut.clut, (std::vector<std::uint16_t>{1, 2, 3, 0}));
    EXPECT_EQ(lut.matrix[1], -98303); // -1.5 moves one unit toward zero

    // A header that disagrees with its own size reads no table file and keeps identity tables.
    icMemorySource headerOnly;
    headerOnly.files["header.txt"] = edited(header, "Tag_Bytes: 76", "Tag_Bytes: 80");
    ASSERT_EQ(ImportLut16Files(lut, headerOnly), icOk);
    EXPECT_EQ(lut.rawSize(), 76u);
    EXPECT_EQ(lut.inputTables, (std::vector<std::uint16_t>{0, 32768, 65535, 0, 32768, 65535}));

    // lut8: 256 is cut to 0, and a lut16 folder is refused.
    iccLut8Type lut8;
    ASSERT_EQ(lut8.initialize(1, 1, 2), icOk);
    const auto folder8 = makeFolder("lut8-rules");
    ASSERT_EQ(ExportLut8Folder(lut8, folder8), icOk);
    writeText(folder8 / "clut.txt", "0 255 1 256");
    ASSERT_EQ(ImportLut8Folder(lut8, folder8), icOk);
    EXPECT_EQ(lut8.clut, (std::vector<std::uint8_t>{255, 0}));
    EXPECT_EQ(ImportLut8Folder(lut8, exported), icErrFile);

    // A folder's table file is read in pieces that never cut a number: runs longer than a piece.
    writeText(exported / "clut.txt",
              "0 " + std::string(300000, '0') + "1" + std::string(300000, ' ') + "1 2 2 3 3 4");
    ASSERT_EQ(ImportLut16Folder(lut, exported), icOk);
    EXPECT_EQ(lut.clut, (std::vector<std::uint16_t>{1, 2, 3, 4}));
}

TEST(LutFolder, ViewerImportTwoPasses) {
    const iccLut16Type original = smallLut16();
    const auto folder = makeFolder("lut16-viewer");
    BoxRecorder boxes;
    ASSERT_EQ(runLutExport(boxes, original, folder.string()), icOk);
    writeText(folder / "clut.txt", "0 9 1 8 2 7 3 6");

    // Failures: the scratch pass fails, or its size differs; the shown tag stays as it was.
    iccLut16Type shown = smallLut16();
    const std::string header = readText(folder / "header.txt");
    writeText(folder / "header.txt", edited(header, "Tag_Bytes: 76", "Tag_Bytes: 78"));
    EXPECT_EQ(runLutImport(boxes, shown, folder.string()), icErrBadProfile);
    writeText(folder / "header.txt", edited(header, "mft2", "mft1"));
    EXPECT_EQ(runLutImport(boxes, shown, folder.string()), icErrFile);
    EXPECT_EQ(rawOf(shown), rawOf(original));
    iccLut8Type lut8;
    ASSERT_EQ(lut8.initialize(1, 1, 2), icOk);
    EXPECT_EQ(runLutExport(boxes, lut8, (folder / "clut.txt" / "x").string()), icErrFile);

    // Inputs and outputs swapped with their entries: another shape of the same size passes.
    writeText(folder / "header.txt", "icTagTypeSignature: mft2\nTag_Bytes: 76\nInputChan: 1\n"
                                     "OutputChan: 2\nInput_Entries: 2\nOutput_Entries: 3\n"
                                     "Clut_Size: 2\n");
    writeText(folder / "InputCurves.txt", "0 5 1 6");
    writeText(folder / "OutputCurves.txt", "0 1 2 1 3 4 2 5 6");
    writeText(folder / "clut.txt", "0 9 9 1 8 8");
    ASSERT_EQ(runLutImport(boxes, shown, folder.string()), icOk);
    EXPECT_EQ(shown.inputChannels(), 1u);
    EXPECT_EQ(shown.clut, (std::vector<std::uint16_t>{9, 9, 8, 8}));
    EXPECT_EQ(boxes.texts,
              (std::vector<std::string>{
                  "Successfully export a Lut16 tag to folder:" + folder.string() + "\n",
                  "Error: Tag signatures are mismatched or the tag sizes are different.\n",
                  "Failed in importing files...\n", "Failed in exporting...\n",
                  "Successfully import a Lut16 tag from folder:" + folder.string() + "\n"}));
}

} // namespace
