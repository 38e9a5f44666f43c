// The lut8/lut16 and lutAToB/lutBToA exchange folders: the exact files written, each file's reading
// rules, the layout at the stored offsets, and the viewers' two-pass imports with their boxes.
#include "lutio/exchange_procedures.h"
#include "lutio/lut_folder.h"
#include "lutio/mlut_folder.h"
#include "lutio_testing.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

// A folder's files read from memory into a fresh tag.
template <class Tag> icStatus importFiles(Tag& tag, const Files& files) {
    icMemorySource source;
    source.files.insert(files.begin(), files.end());
    if constexpr (std::is_same_v<Tag, iccLut16Type>)
        return ImportLut16Files(tag, source);
    else
        return ImportMlutFiles(tag, source);
}
Files with(Files files, const std::string& name, const std::string& text) {
    files[name] = text;
    return files;
}
Files without(Files files, const std::string& name) {
    files.erase(name);
    return files;
}
struct ImportCase {
    const char* name;
    Files files;
    icStatus status;
};

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
    const auto inHeader = [&](const std::string& from, const std::string& to) {
        return with(good, "header.txt", edited(header, from, to));
    };
    const ImportCase cases[] = {
        {"only 13 characters of Output_Entries compared",
         inHeader("Output_Entries:", "Output_Entriesxyz:"), icOk},
        {"the colon is not compared", inHeader("InputChan:", "InputChan"), icOk},
        {"case is", inHeader("InputChan:", "Inputchan:"), icErrFile},
        {"signature of a lut8", inHeader("mft2", "mft1"), icErrFile},
        {"header line without a number", inHeader("Clut_Size: 2", "Clut_Size:"), icErrFile},
        {"missing header", without(good, "header.txt"), icErrFile},
        {"missing matrix", without(good, "matrix.txt"), icErrFile},
        {"wrong index", with(good, "clut.txt", "0 1 \n1 2 \n3 3 \n3 4 \n"), icErrFile},
        {"short table", with(good, "OutputCurves.txt", "0 0 \n1 \n"), icErrFile},
        {"lines do not matter", with(good, "clut.txt", "0 1 1\n2 2 3 3\n65536"), icOk},
        {"re-initialisation refuses", inHeader("Clut_Size: 2", "Clut_Size: 256"), icErrInvalidArg},
        // Half a gigabyte of tables is not set up for a folder of a few bytes.
        {"dimensions the files cannot fill",
         with(good, "header.txt",
              "icTagTypeSignature: mft2\nTag_Bytes: 1\nInputChan: 3\nOutputChan: 15\n"
              "Input_Entries: 2\nOutput_Entries: 2\nClut_Size: 255\n"),
         icErrFile},
    };
    for (const ImportCase& c : cases) {
        iccLut16Type lut;
        EXPECT_EQ(importFiles(lut, c.files), c.status) << c.name;
    }

    // A value beyond 16 bits is cut to 16 bits.
    iccLut16Type lut;
    ASSERT_EQ(importFiles(lut, with(good, "clut.txt", "0 1 1 2 2 3 3 65536")), icOk);
    EXPECT_EQ(lut.clut, (std::vector<std::uint16_t>{1, 2, 3, 0}));
    EXPECT_EQ(lut.matrix[1], -98303); // -1.5 moves one unit toward zero

    // A header that disagrees with its own size reads no table file and keeps identity tables.
    ASSERT_EQ(importFiles(lut, {{"header.txt", edited(header, "Tag_Bytes: 76", "Tag_Bytes: 80")}}),
              icOk);
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
}

TEST(LutFolder, LargeTablesReadAsOneStream) {
    // 160,000 CLUT rows: about 4 MB of text, read in parts on every core.
    iccLut16Type original;
    ASSERT_EQ(original.initialize(4, 2, 3, 2, 20), icOk);
    for (std::size_t i = 0; i < original.clut.size(); ++i)
        original.clut[i] = static_cast<std::uint16_t>(i * 7919);
    const auto folder = makeFolder("lut16-large");
    ASSERT_EQ(ExportLut16Folder(original, folder), icOk);
    const std::string clut = readText(folder / "clut.txt");
    const auto imported = [&folder](const std::string& text, icStatus expected) {
        writeText(folder / "clut.txt", text);
        iccLut16Type lut;
        EXPECT_EQ(ImportLut16Folder(lut, folder), expected);
        return lut.clut;
    };
    EXPECT_EQ(imported(clut, icOk), original.clut);
    // Rows that span line feeds, so that a part may start inside a row.
    std::string wrapped = clut;
    for (std::size_t i = 0; i < wrapped.size(); ++i)
        if (wrapped[i] == '\n' || wrapped[i] == ' ')
            wrapped[i] = i % 7 == 0 ? '\n' : ' ';
    EXPECT_EQ(imported(wrapped, icOk), original.clut);
    // A malformed index in the last row, or a wrong index in the middle, fails the whole table.
    std::string broken = clut;
    broken[broken.rfind('\n', broken.size() - 2) + 1] = 'x';
    EXPECT_EQ(imported(broken, icErrFile), std::vector<std::uint16_t>(original.clut.size()));
    broken = edited(clut, "\n100000 ", "\n100001 ");
    EXPECT_EQ(imported(broken, icErrFile), std::vector<std::uint16_t>(original.clut.size()));
}

TEST(LutFolder, FolderSourceTellsAChangedFolder) {
    const auto folder = makeFolder("source", {{"a.txt", "one"}, {"b.txt", "two"}});
    icFolderSource files(folder);
    std::string_view a;
    ASSERT_EQ(files.read("a.txt", a), icOk);
    EXPECT_EQ(files.size("b.txt"), 3u);
    writeText(folder / "a.txt", "one");
    EXPECT_TRUE(files.unchanged());
    writeText(folder / "a.txt", "onE");
    EXPECT_FALSE(files.unchanged());
    writeText(folder / "a.txt", "one");
    writeText(folder / "b.txt", "too");
    EXPECT_TRUE(files.unchanged()); // only its size was asked for
    std::filesystem::remove(folder / "b.txt");
    EXPECT_FALSE(files.unchanged());
    EXPECT_EQ(a, "one");
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

// An 'mAB ' with 3 inputs, 2 outputs and all five elements, laid out B, matrix, M, CLUT, A.
iccMlutType fullAToB() {
    iccMlutType tag;
    EXPECT_EQ(tag.createLayout(iccMlutType::kAToB, 3, 2, {true, true, true, true, true}), icOk);
    for (auto& b : *tag.bCurves)
        EXPECT_EQ(b.buildParametric(0, 1, std::vector<double>{2.2}), icOk);
    (*tag.matrix)[1] = -16384;
    (*tag.matrix)[9] = 100;
    for (auto& m : *tag.mCurves)
        EXPECT_EQ(m.buildCurve(3), icOk);
    EXPECT_EQ(tag.clut->init(3, 2, 2, std::vector<std::uint8_t>{2, 2, 2}), icOk);
    for (std::uint32_t i = 0; i < tag.clut->valueCount(); ++i)
        EXPECT_EQ(tag.clut->setValue(i, i * 1000), icOk);
    for (auto& a : *tag.aCurves)
        EXPECT_EQ(a.buildCurve(std::vector<double>{1.8}), icOk);
    EXPECT_EQ(tag.rebuild(), icOk);
    return tag;
}

const std::string kClut = "Data_Type: none\nInputChan: 3\nOutputChan: 2\nByteDepth: 2\nLUT_Size:\n"
                          "InputChan: 0 2\nInputChan: 1 2\nInputChan: 2 2\nData_Begine:\n"
                          "0 0 1000 \n1 2000 3000 \n2 4000 5000 \n3 6000 7000 \n4 8000 9000 \n"
                          "5 10000 11000 \n6 12000 13000 \n7 14000 15000 \nData_End";

TEST(MlutFolder, ExportWritesAFilePerElement) {
    iccMlutType tag = fullAToB();
    const auto folder = makeFolder("mlut-export");
    ASSERT_EQ(ExportMlutFolder(tag, folder), icOk);
    const Files files = readFolder(folder);
    EXPECT_EQ(files.size(), 10u);
    EXPECT_EQ(files.at("header.txt"),
              "icTagTypeSignature: mAB \nTag_Bytes: 252\nInputChan: 3\nOutputChan: 2\n"
              "Offset_BCurve: 32\nOffset_Matrix: 64\nOffset_MCurve: 112\nOffset_CLut: 152\n"
              "Offset_ACurve: 204\nNumber_BCurve: 2\nNumber_MCurve: 2\nNumber_ACurve: 3\n");
    EXPECT_EQ(files.at("clut.txt"), kClut);
    EXPECT_EQ(files.at("ACurve_2.txt"), "Data_Type: curv\nCount: 1\n1.800000\n");
    EXPECT_EQ(files.at("matrix.txt").substr(0, 33), "0 1.000000\n1 -0.250000\n2 0.000000");

    // The same bytes come back, but for the negative matrix value, which the rounding of
    // doubles to s15Fixed16 (add 0.5, truncate) moves one unit toward zero.
    iccMlutType imported;
    ASSERT_EQ(ImportMlutFolder(imported, folder), icOk);
    Bytes expected = rawOf(tag);
    expected[64 + 7] = 0x01; // -16384 (FFFFC000) becomes -16383
    EXPECT_EQ(rawOf(imported), expected);
}

TEST(MlutFolder, ClutReadingRules) {
    const auto clutHolding = [](const std::string& text) {
        iccClut clut;
        const icStatus s = parseClutText(clut, text);
        return std::pair{s, clut.valueCount()};
    };
    EXPECT_EQ(clutHolding(kClut), std::pair(icOk, 16u));
    // A grid line's channel number decides whose count it gives: after a line for channel 2 of
    // three, the next line is taken for "Data_Begine:".
    EXPECT_EQ(clutHolding(edited(kClut, "InputChan: 0 2", "InputChan: 2 2")).first, icErrFile);
    // Skipped channels keep a count of 0, and 256 is kept as 0: no grid points at all.
    EXPECT_EQ(
        clutHolding(edited(kClut, "InputChan: 0 2\nInputChan: 1 2\n", "InputChan: 1 2\n")).first,
        icErrFile);
    EXPECT_EQ(clutHolding("Data_Type: x\nInputChan: 1\nOutputChan: 2\nByteDepth: 1\nLUT_Size:\n"
                          "InputChan: 0 256\nData_Begine:\nData_End"),
              std::pair(icOk, 0u));
    for (const std::string& bad : {
             edited(kClut, "3 6000 7000 \n", "3 6000\n7000 \n"), // a value line split in two
             edited(kClut, "3 6000", "4 6000"),                  // wrong index
             edited(kClut, "Data_End", "DataEnd"), edited(kClut, "Data_Begine:", "Data_Begin:"),
             edited(kClut, "ByteDepth: 2", "ByteDepth: 3"), edited(kClut, "LUT_Size:", "LUT-Size:"),
             edited(kClut, "\n7 14000 15000 ", ""), // short table
         })
        EXPECT_EQ(clutHolding(bad).first, icErrFile) << bad;
}

TEST(MlutFolder, HeaderRulesAndStoredLayout) {
    iccMlutType tag = fullAToB();
    const auto folder = makeFolder("mlut-rules");
    ASSERT_EQ(ExportMlutFolder(tag, folder), icOk);
    const Files good = readFolder(folder);
    const std::string header = good.at("header.txt");
    const auto inHeader = [&](const std::string& from, const std::string& to) {
        return with(good, "header.txt", edited(header, from, to));
    };
    const Files gapped = with(good, "header.txt",
                              edited(edited(header, "Tag_Bytes: 252", "Tag_Bytes: 300"),
                                     "Offset_ACurve: 204", "Offset_ACurve: 240"));
    const ImportCase cases[] = {
        {"mABx", inHeader("mAB ", "mABx"), icErrFile},
        {"Number_ lines are not used", inHeader("Number_BCurve: 2", "Number_BCurve: 99"), icOk},
        {"Offset_Matrix 0 reads no matrix",
         with(good, "header.txt",
              edited(edited(header, "Offset_Matrix: 64", "Offset_Matrix: 0"), "Offset_MCurve: 112",
                     "Offset_MCurve: 0")),
         icOk},
        {"missing matrix.txt", without(good, "matrix.txt"), icErrFile},
        {"missing curve file", without(good, "ACurve_2.txt"), icErrFile},
        {"wrong matrix index",
         with(good, "matrix.txt", edited(good.at("matrix.txt"), "5 0", "6 0")), icErrFile},
        {"offset 34", inHeader("Offset_BCurve: 32", "Offset_BCurve: 34"), icErrBadProfile},
        {"elements overlap", inHeader("Offset_Matrix: 64", "Offset_Matrix: 60"), icErrInvalidArg},
        {"size too small", inHeader("Tag_Bytes: 252", "Tag_Bytes: 249"), icErrInvalidArg},
        {"size far too large", inHeader("Tag_Bytes: 252", "Tag_Bytes: 4000000000"),
         icErrInvalidArg},
        {"gaps and padding are kept", gapped, icOk},
    };
    for (const ImportCase& c : cases) {
        iccMlutType imported;
        ASSERT_EQ(importFiles(imported, c.files), c.status) << c.name;
        if (c.status == icOk) {
            EXPECT_EQ(imported.validate(), icOk);
        }
    }

    // Stored offsets are kept: A curves moved on by 36 bytes come out there, zeros before them.
    iccMlutType moved;
    ASSERT_EQ(importFiles(moved, gapped), icOk);
    EXPECT_EQ(moved.rawSize(), 300u);
    EXPECT_EQ(moved.offsetA, 240u);
    EXPECT_EQ(Bytes(moved.raw().begin() + 204, moved.raw().begin() + 240), Bytes(36, 0));
    EXPECT_EQ((*moved.aCurves)[2].curve()->gamma(), 461 / 256.0);
}

TEST(MlutFolder, ViewerImportBoxes) {
    iccMlutType shown = fullAToB();
    const Bytes before = rawOf(shown);
    const auto folder = makeFolder("mlut-viewer");
    BoxRecorder boxes;
    ASSERT_EQ(runMlutExport(boxes, shown, folder.string()), icOk);
    const std::string header = readText(folder / "header.txt");

    // A folder of B curves only, read as an 'mBA ' into an 'mAB '.
    iccMlutType bOnly;
    ASSERT_EQ(bOnly.createLayout(iccMlutType::kAToB, 2, 2, {true, false, false, false, false}),
              icOk);
    for (auto& b : *bOnly.bCurves)
        ASSERT_EQ(b.buildCurve(0), icOk);
    ASSERT_EQ(bOnly.rebuild(), icOk);
    const auto bFolder = makeFolder("mlut-viewer-b");
    ASSERT_EQ(ExportMlutFolder(bOnly, bFolder), icOk);
    writeText(bFolder / "header.txt", edited(readText(bFolder / "header.txt"), "mAB ", "mBA "));
    EXPECT_EQ(runMlutImport(boxes, bOnly, bFolder.string()), icErrBadProfile);
    EXPECT_EQ(bOnly.typeSignature(), iccMlutType::kAToB);

    // A shown tag whose A curves lie well after the CLUT: laid out, its folder comes to less.
    writeText(folder / "header.txt", edited(edited(header, "Tag_Bytes: 252", "Tag_Bytes: 300"),
                                            "Offset_ACurve: 204", "Offset_ACurve: 240"));
    iccMlutType gapped;
    ASSERT_EQ(ImportMlutFolder(gapped, folder), icOk);
    EXPECT_EQ(runMlutImport(boxes, gapped, folder.string()), icErrBadProfile);

    writeText(folder / "clut.txt", edited(kClut, "3 6000 7000 \n", "3 6000\n7000 \n"));
    EXPECT_EQ(runMlutImport(boxes, shown, folder.string()), icErrFile);
    EXPECT_EQ(rawOf(shown), before);

    writeText(folder / "header.txt", header);
    writeText(folder / "clut.txt", edited(kClut, "3 6000 7000", "3 6001 7000"));
    ASSERT_EQ(runMlutImport(boxes, shown, folder.string()), icOk);
    EXPECT_EQ(shown.clut->value(6), 6001u);
    EXPECT_EQ(runMlutExport(boxes, shown, (folder / "header.txt" / "x").string()), icErrFile);
    EXPECT_EQ(boxes.texts,
              (std::vector<std::string>{
                  "Successfully export MLUT to folder:" + folder.string() + "\n",
                  "Error: Tag signatures are mismatched or the tag sizes are different.\n",
                  "Error: Tag signatures are mismatched or the tag sizes are different.\n",
                  "Failed in importing files...\n",
                  "Successfully import MLUT from folder:" + folder.string() + "\n",
                  "Failed in exporting...\n"}));
}

} // namespace
