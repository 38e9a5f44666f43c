// Where the plots put their data, on numbers alone, and the curve plot's data and the XYZ boxes'
// reading rules.
#include "catalogue/catalogue_testing.h"
#include "viewers/plot_mapping.h"

namespace {

TEST(PlotMapping, CurvePlotAndDiagramShareOneMapping) {
    // 52 pixels on the left and 30 below are the axis labels' room.
    icCurvePlotData eightBit;
    eightBit.valueScale = 255;
    const icPlotMapping curve = curvePlotMapping(icPlotArea{10, 5, 474, 344}, eightBit);
    EXPECT_DOUBLE_EQ(curve.map(0, 0).x, 62);
    EXPECT_DOUBLE_EQ(curve.map(0, 0).y, 5 + 344 - 30);
    EXPECT_DOUBLE_EQ(curve.map(1, 255).x, 10 + 474 - 22);
    EXPECT_DOUBLE_EQ(curve.map(1, 255).y, 5 + 14);
    EXPECT_DOUBLE_EQ(curve.map(0.5, 127.5).y, 5 + 14 + 150);
    // A window too small for its margins still maps every value onto a pixel.
    EXPECT_DOUBLE_EQ(curvePlotMapping(icPlotArea{0, 0, 20, 20}, icCurvePlotData{}).area().width, 1);

    // A table's plot runs over its entries and leaves the legend strip on the right: the last of
    // 256 entries at the strip's edge.
    icCurvePlotData table = eightBit;
    table.style = icCurvePlotStyle::table;
    table.inputRange = 255;
    const icPlotMapping entries = curvePlotMapping(icPlotArea{10, 5, 474, 344}, table);
    EXPECT_DOUBLE_EQ(entries.map(0, 0).x, 62);
    EXPECT_DOUBLE_EQ(entries.map(255, 255).x, 10 + 474 - kTablePlotLegendStrip);
    EXPECT_DOUBLE_EQ(entries.map(255, 255).y, 5 + 14);

    // The diagram: a 400 x 400 square inside the label room and margins.
    const ChromaticityMapping diagram = chromaticityDiagramMapping(icPlotArea{0, 0, 446, 430});
    EXPECT_DOUBLE_EQ(diagram.map({0, 0}).x, 34);
    EXPECT_DOUBLE_EQ(diagram.map({0, 0}).y, 410);
    EXPECT_DOUBLE_EQ(diagram.map({1, 1}).x, 434);
    EXPECT_DOUBLE_EQ(diagram.map({1, 1}).y, 10);
    EXPECT_DOUBLE_EQ(diagram.locus()[29].x, diagram.map(kSpectralLocus[29].xy).x);
}

TEST(CurvePlotData, UnplottableCurvesKeepTheirLabels) {
    std::vector<iccCurveElement> set(3);
    ASSERT_EQ(set[0].buildParametric(0, 1, std::vector{2.0}), icOk);
    ASSERT_EQ(set[1].create(icSig("para")), icOk);
    set[1].parametric()->functionType = 7; // as decoded from a tag of an unknown type
    ASSERT_EQ(set[2].buildCurve(std::vector{0.0, 65535.0}), icOk);
    icCurvePlotData data;
    ASSERT_EQ(buildCurvePlot(set, 5, data), icOk);
    EXPECT_EQ(data.labels,
              (std::vector<std::string>{"#0: gamma=2", "#1: Curve Type #7 not supported.\n",
                                        "#2: 2 points"}));
    ASSERT_EQ(data.curves.size(), 3u);
    EXPECT_NEAR(data.curves[0][2], 65535 * 0.25, 0.5);
    EXPECT_TRUE(data.curves[1].empty());
    EXPECT_DOUBLE_EQ(data.curves[2][4], 65535);
    EXPECT_EQ(buildCurvePlot(set, 1, data), icErrInvalidArg);
    EXPECT_TRUE(data.labels.empty());

    EXPECT_EQ(numberCurveLabels({"one"}), std::vector<std::string>{"one"});
    EXPECT_EQ(numberCurveLabels({"a", "b"}), (std::vector<std::string>{"#0: a", "#1: b"}));
}

TEST(CurvePlotData, TableAxesAndShifts) {
    // Every grid line is labelled with the integer part of its value, never rounded up.
    std::vector<std::string> eightBit, sixteenBit, twoEntries;
    for (int i = 0; i <= kCurvePlotDivisions; ++i) {
        eightBit.push_back(tableAxisLabel(i, 255));
        sixteenBit.push_back(tableAxisLabel(i, 65535));
        twoEntries.push_back(tableAxisLabel(i, 1));
    }
    EXPECT_EQ(eightBit, (std::vector<std::string>{"0", "25", "51", "76", "102", "127", "153", "178",
                                                  "204", "229", "255"}));
    EXPECT_EQ(sixteenBit[3], "19660");
    EXPECT_EQ(sixteenBit[5], "32767");
    EXPECT_EQ(sixteenBit[10], "65535");
    EXPECT_EQ(twoEntries,
              (std::vector<std::string>{"0", "0", "0", "0", "0", "0", "0", "0", "0", "0", "1"}));

    // Equal tables of neighbouring channels never share a column: RGB -1, 0, 2; CMYK's equal
    // C, M and Y -2, -1, 1.
    const auto shifts = [](std::size_t count) {
        std::vector<int> out;
        for (std::size_t c = 0; c < count; ++c)
            out.push_back(tableCurveShift(c, count));
        return out;
    };
    EXPECT_EQ(shifts(1), std::vector<int>{0});
    EXPECT_EQ(shifts(2), (std::vector<int>{-1, 0}));
    EXPECT_EQ(shifts(3), (std::vector<int>{-1, 0, 2}));
    EXPECT_EQ(shifts(4), (std::vector<int>{-2, -1, 1, 1}));
    EXPECT_EQ(shifts(7), (std::vector<int>{-3, -2, 0, 0, 1, 3, 3}));
}

TEST(XyzModel, BoxesReadTheirLeadingNumber) {
    EXPECT_DOUBLE_EQ(XyzModel::parseValueText(" 0.96420"), 0.9642);
    EXPECT_DOUBLE_EQ(XyzModel::parseValueText("+1.5e1x"), 15);
    EXPECT_DOUBLE_EQ(XyzModel::parseValueText("-0,25"), -0.25);
    for (const char* zero : {"", "abc", "-", ".", "1e999", "nan"})
        EXPECT_EQ(XyzModel::parseValueText(zero), 0) << zero;
    XyzModel model(1, 1, 1);
    model.setXYZ("0.5", "x", "0.5");
    EXPECT_EQ(model.lines()[3], "x: 0.500000");
    EXPECT_EQ(model.lines()[4], "y: 0.000000");
}

} // namespace
