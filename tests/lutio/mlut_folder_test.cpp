// lutAToB/lutBToA folders: the files written, the reading rules of the header and the CLUT
// file, the layout at the stored offsets, and the viewer's import boxes.
#include "lutio/exchange_procedures.h"
#include "lutio/mlut_folder.h"
#include "lutio_testing.h"

#include <gtest/gtest.h>

namespace {

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
    Bytes expected(tag.raw().begin(), tag.raw().end());
    expected[64 + 7] = 0x01; // -16384 (FFFFC000) becomes -16383
    EXPECT_EQ(Bytes(imported.raw().begin(), imported.raw().end()), expected);
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
    const auto with = [&good](const std::string& file, const std::string& text) {
        Files files = good;
        files[file] = text;
        return files;
    };
    Files noMatrixFile = good;
    noMatrixFile.erase("matrix.txt");
    Files noCurve = good;
    noCurve.erase("ACurve_2.txt");
    struct Row {
        const char* name;
        Files files;
        icStatus status;
    } rows[] = {
        {"mABx", with("header.txt", edited(header, "mAB ", "mABx")), icErrFile},
        {"Number_ lines are not used",
         with("header.txt", edited(header, "Number_BCurve: 2", "Number_BCurve: 99")), icOk},
        {"Offset_Matrix 0 reads no matrix",
         with("header.txt", edited(edited(header, "Offset_Matrix: 64", "Offset_Matrix: 0"),
                                   "Offset_MCurve: 112", "Offset_MCurve: 0")),
         icOk},
        {"missing matrix.txt", noMatrixFile, icErrFile},
        {"missing curve file", noCurve, icErrFile},
        {"wrong matrix index", with("matrix.txt", edited(good.at("matrix.txt"), "5 0", "6 0")),
         icErrFile},
        {"offset 34", with("header.txt", edited(header, "Offset_BCurve: 32", "Offset_BCurve: 34")),
         icErrBadProfile},
        {"elements overlap",
         with("header.txt", edited(header, "Offset_Matrix: 64", "Offset_Matrix: 60")),
         icErrInvalidArg},
        {"size too small", with("header.txt", edited(header, "Tag_Bytes: 252", "Tag_Bytes: 249")),
         icErrInvalidArg},
        {"size far too large",
         with("header.txt", edited(header, "Tag_Bytes: 252", "Tag_Bytes: 4000000000")),
         icErrInvalidArg},
        {"gaps and padding are kept",
         with("header.txt", edited(edited(header, "Tag_Bytes: 252", "Tag_Bytes: 300"),
                                   "Offset_ACurve: 204", "Offset_ACurve: 240")),
         icOk},
    };
    for (const Row& row : rows) {
        icMemorySource source;
        source.files.insert(row.files.begin(), row.files.end());
        iccMlutType imported;
        ASSERT_EQ(ImportMlutFiles(imported, source), row.status) << row.name;
        if (row.status == icOk) {
            EXPECT_EQ(imported.validate(), icOk);
        }
    }

    // Stored offsets are kept: A curves moved on by 36 bytes come out there, zeros before them.
    icMemorySource source;
    source.files.insert(rows[10].files.begin(), rows[10].files.end());
    iccMlutType moved;
    ASSERT_EQ(ImportMlutFiles(moved, source), icOk);
    EXPECT_EQ(moved.rawSize(), 300u);
    EXPECT_EQ(moved.offsetA, 240u);
    EXPECT_EQ(Bytes(moved.raw().begin() + 204, moved.raw().begin() + 240), Bytes(36, 0));
    EXPECT_EQ((*moved.aCurves)[2].curve()->gamma(), 461 / 256.0);
}

TEST(MlutFolder, ViewerImportBoxes) {
    iccMlutType shown = fullAToB();
    const Bytes before(shown.raw().begin(), shown.raw().end());
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
    EXPECT_EQ(Bytes(shown.raw().begin(), shown.raw().end()), before);

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
