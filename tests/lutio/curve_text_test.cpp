// Curve text files: what the readers accept and refuse, what they make of loose values, the
// exact text the writers produce, and the curve viewer's Export and Import boxes.
#include "lutio/curve_text.h"
#include "lutio/exchange_procedures.h"
#include "lutio_testing.h"

#include <gtest/gtest.h>

namespace {

std::string curvText(int count, const std::string& values) {
    return "Data_Type: curv\nCount: " + std::to_string(count) + "\n" + values;
}

std::string rampValues(int count) {
    std::string values;
    for (int i = 0; i < count; ++i)
        values += std::to_string(i) + " " + std::to_string(i * 16) + "\n";
    return values;
}

TEST(CurveText, CurvReadingRules) {
    struct Row {
        std::string text;
        icStatus status;
        std::vector<std::uint16_t> entries;
    } rows[] = {
        // Values are clamped and rounded; the count's colon is not compared; the values are a
        // token stream, so how they are spread over lines does not matter.
        {curvText(2, "0 -5.0\n1 70000\n"), icOk, {0, 65535}},
        {"Data_Type: x\nCount 3\n0 1.4 1\n1.5\n2\n3", icOk, {1, 2, 3}},
        {curvText(4096, rampValues(4096)), icOk, {}},
        {curvText(4097, rampValues(4097)), icErrFile, {}},
        {curvText(2, "0 1\n2 3\n"), icErrFile, {}}, // wrong index
        {curvText(2, "0 1\n"), icErrFile, {}},      // missing pair
        {curvText(2, "0 1\n1 x\n"), icErrFile, {}}, // not a number
        {"Data_Typ: curv\nCount: 0\n", icErrFile, {}},
        {"Data_Type: curv\n", icErrFile, {}},
    };
    for (const Row& row : rows) {
        iccCurveType curve;
        ASSERT_EQ(curve.build(3), icOk);
        const Bytes before(curve.raw().begin(), curve.raw().end());
        ASSERT_EQ(parseCurveText(curve, row.text), row.status) << row.text.substr(0, 40);
        if (row.status != icOk) {
            EXPECT_EQ(Bytes(curve.raw().begin(), curve.raw().end()), before);
        } else if (!row.entries.empty()) {
            EXPECT_EQ(curve.entries(), row.entries);
        }
    }

    // A pure gamma keeps the double as read, although the tag holds it as u8Fixed8.
    iccCurveType gamma;
    ASSERT_EQ(parseCurveText(gamma, curvText(1, "\n   2.2")), icOk);
    EXPECT_EQ(loadBE16(&gamma.raw()[12]), 0x0233);
    std::string text;
    ASSERT_EQ(formatCurveText(gamma, text), icOk);
    EXPECT_EQ(text, curvText(1, "2.200000\n"));
    const std::vector<std::uint16_t> entries{0, 32768, 65535};
    ASSERT_EQ(gamma.build(3, entries), icOk);
    ASSERT_EQ(formatCurveText(gamma, text), icOk);
    EXPECT_EQ(text, curvText(3, "0 0\n1 32768\n2 65535\n"));
}

TEST(CurveText, ParaReadingRulesAndElements) {
    const std::string good = "Data_Type: para\nType: 3\nCount: 5\n0 2.4\n1 0.947867\n2 0.052133\n"
                             "3 0.077399\n4 0.04045\n";
    iccParametricCurveType para;
    ASSERT_EQ(parseParametricText(para, good), icOk);
    std::string text;
    ASSERT_EQ(formatParametricText(para, text), icOk);
    EXPECT_EQ(text, "Data_Type: para\nType: 3\nCount: 5\n0 2.399994\n1 0.947861\n2 0.052139\n"
                    "3 0.077393\n4 0.040451\n");

    for (const std::string& bad : {
             edited(good, "Count: 5", "Count: 0"),
             edited(good, "Count: 5", "Count: 8"),
             edited(good, "Type: 3", "Type 3"),        // this reader compares the colon
             edited(good, "0 2.4\n", "0\n2.4\n"),      // one parameter per line
             edited(good, "1 0.947867", "2 0.947867"), // wrong index
             edited(good, "4 0.04045\n", ""),          // a line short
             edited(good, "Data_Type: para", "Data_Type: curv"),
         })
        EXPECT_EQ(parseParametricText(para, bad), icErrFile) << bad;
    // The count must fit the function type; that is the setter's refusal.
    EXPECT_EQ(
        parseParametricText(para, edited(edited(good, "Count: 5", "Count: 4"), "4 0.04045\n", "")),
        icErrInvalidArg);

    iccCurveElement element;
    ASSERT_EQ(element.buildCurve(2), icOk);
    EXPECT_EQ(parseCurveElementText(element, "Data_Type: none\nCount: 0\n"), icErrFile);
    EXPECT_EQ(element.signature(), 0xFFFFFFFFu);
    EXPECT_EQ(parseCurveElementText(element, edited(good, "Count: 5", "Count: 4")),
              icErrInvalidArg);
    EXPECT_NE(element.parametric(), nullptr); // the new curve stays attached, unset
    ASSERT_EQ(parseCurveElementText(element, good), icOk);
    EXPECT_EQ(element.size(), 32u);
    ASSERT_EQ(parseCurveElementText(element, curvText(0, "")), icOk);
    EXPECT_EQ(element.signature(), iccCurveType::kSignature);
}

TEST(CurveText, ViewerExportAndImport) {
    const auto folder = makeFolder("curve-viewer", {{"bad.txt", curvText(2, "0 1\n")},
                                                    {"good.txt", curvText(2, "0 7\n1 9\n")},
                                                    {"para.txt", "Data_Type: para\nType: 0\n"
                                                                 "Count: 1\n0 1.8\n"}});
    iccCurveElement shown;
    ASSERT_EQ(shown.buildCurve(3), icOk);
    const Bytes before = bytesOf(shown);
    BoxRecorder boxes;
    // A bad file, or a file of the other curve type, leaves the shown curve as it was.
    EXPECT_EQ(runCurveImport(boxes, shown, (folder / "bad.txt").string()), icErrFile);
    EXPECT_EQ(runCurveImport(boxes, shown, (folder / "para.txt").string()), icErrFile);
    EXPECT_EQ(runCurveImport(boxes, shown, (folder / "missing.txt").string()), icErrFile);
    EXPECT_EQ(bytesOf(shown), before);
    EXPECT_EQ(runCurveExport(boxes, shown, (folder / "no" / "such.txt").string()), icErrFile);
    EXPECT_EQ(boxes.texts, std::vector<std::string>(4, "Error in saving file!\n"));

    boxes.texts.clear();
    ASSERT_EQ(runCurveImport(boxes, shown, (folder / "good.txt").string()), icOk);
    EXPECT_EQ(shown.curve()->entries(), (std::vector<std::uint16_t>{7, 9}));
    ASSERT_EQ(runCurveExport(boxes, shown, (folder / "out.txt").string()), icOk);
    EXPECT_EQ(readText(folder / "out.txt"), curvText(2, "0 7\n1 9\n"));
    EXPECT_TRUE(boxes.texts.empty());
}

} // namespace
