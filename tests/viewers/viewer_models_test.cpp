// The viewers' texts and rules without widgets, and where the plots put their data.
#include "catalogue/catalogue_testing.h"
#include "viewers/hex_dump_model.h"
#include "viewers/plot_mapping.h"

namespace {

iccCurveElement parametric(std::uint16_t type, std::vector<double> values) {
    iccCurveElement curve;
    (void)curve.buildParametric(type, static_cast<std::int32_t>(values.size()), values);
    return curve;
}

TEST(CurveModel, Labels) {
    // "gamma= 2.2" and "1024 points" are shown by the catalogue and command-line tests.
    iccCurveElement curve;
    ASSERT_EQ(curve.create(icSig("curv")), icOk);
    ASSERT_EQ(curve.curve()->setData(curvTag({})), icOk);
    EXPECT_EQ(curveLabel(curve), "Identity");
    EXPECT_EQ(curveLabel(parametric(0, {2.4})), "gamma=2.4");
    EXPECT_EQ(curveLabel(parametric(1, {2.4, 1, 0.5})), "gamma=2.4; a=1; b=0.5");
    EXPECT_EQ(curveLabel(parametric(3, {2.4, 0.5, 0.25, 0.125, 0.0625})),
              "gamma=2.4;a=0.5;b=0.25;c=0.125;d=0.0625");
    EXPECT_EQ(curveLabel(parametric(5, {1})), "Curve Type #5 not supported.\n");
    EXPECT_EQ(curveLabel(iccCurveElement()), "No data");
    EXPECT_EQ(CurveModel(curve, std::string(70, 'c')).title().size(), 63u);
    EXPECT_EQ(CurveModel(curve, "").title(), "Curve Tag");
}

TEST(XyzModel, ChromaticityColourAndBoxes) {
    EXPECT_EQ(XyzModel(0, 0, 0).lines(),
              (std::vector<std::string>{"X: 0.00000", "Y: 0.00000", "Z: 0.00000", "x: 0.333300",
                                        "y: 0.333300"}));
    // The raw colour of D50 is a little above 255 in every channel, so all three are scaled.
    const icRgb8 white = XyzModel(0.9642, 1.0, 0.8249).displayColor();
    EXPECT_GE(white.r, 254);
    EXPECT_EQ(white.g, 254);
    EXPECT_EQ(white.b, 254);
    EXPECT_EQ(displayColor(0.1, 0.1, 0.1), (icRgb8{26, 24, 32}));
    EXPECT_EQ(displayColor(0, 0, 0.01), (icRgb8{0, 0, 3}));

    // The boxes read their leading number, 0 when there is none.
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

// Each value and its second text, "value second; ...".
std::string nodeTexts(const LutModel& model) {
    std::string out;
    for (const icNodeValueText& v : model.nodeValues())
        out += (out.empty() ? "" : "; ") + v.value + " " + v.second;
    return out;
}

TEST(LutModel, InfoPageAndNodeTexts) {
    iccLut8Type lut8;
    ASSERT_EQ(lut8.initialize(2, 3, 2), icOk);
    std::vector<std::uint8_t> clut(12, 0);
    clut[9] = 255, clut[10] = 128, clut[11] = 7; // node (1, 1)
    ASSERT_EQ(lut8.setClut(clut), icOk);
    LutModel lab(lut8, icSig("Lab "));
    EXPECT_EQ(lab.lines(), (std::vector<std::string>{
                               "LUT Type: 8-bit LUT", "Input Channels: 2", "Input Entries: 256",
                               "Output Channels: 3", "Output Entries: 256", "CLUT Points: 2",
                               "Matrix:", "1.000000 0.000000 0.000000",
                               "0.000000 1.000000 0.000000", "0.000000 0.000000 1.000000"}));
    EXPECT_EQ(lab.highestNodeText(), "1");
    ASSERT_EQ(lab.scroll(0, icScrollRequest::pageForward), icOk);
    ASSERT_EQ(lab.scroll(1, icScrollRequest::lineForward), icOk);
    ASSERT_EQ(lab.scroll(1, icScrollRequest::lineForward), icOk);
    EXPECT_EQ(lab.nodeIndexText(1), "1");
    EXPECT_EQ(lab.scroll(2, icScrollRequest::lineForward), icErrInvalidArg);
    EXPECT_EQ(nodeTexts(lab), "255 (100x2.55); 128 (0+128); 7 (-121+128)");
    EXPECT_EQ(LutModel(lut8, icSig("RGB ")).nodeValues()[0].second, "");

    iccLut16Type lut16;
    ASSERT_EQ(lut16.initialize(1, 4, 15, 2, 2), icOk);
    ASSERT_EQ(lut16.setClut(std::vector<std::uint16_t>(30, 65535)), icOk);
    LutModel rgb(lut16, icSig("RGB "));
    EXPECT_EQ(rgb.lines()[0] + ", " + rgb.lines()[2], "LUT Type: 16-bit LUT, Input Entries: 4");
    EXPECT_EQ(nodeTexts(rgb).substr(0, 19), "65535 (255); 65535 ");
    EXPECT_EQ(rgb.visibleOutputs(), 12u);
    EXPECT_EQ(rgb.clutPageWarning(), kLutTooManyChannels);
    EXPECT_EQ(LutModel(lut16, icSig("Lab ")).nodeValues()[0].second, "(100x2.55)");
    EXPECT_FALSE(lab.clutPageWarning());
}

TEST(MlutModel, PagesAndNodes) {
    iccLutAToBType tag;
    ASSERT_EQ(tag.setData(Bytes(mabTag())), icOk);
    MlutModel model(tag); // its lines are in the command-line dump test
    EXPECT_EQ(model.precisionText(), "16-bit/channel");
    EXPECT_EQ(model.nodeValues(), std::vector<std::string>{"32768 (128)"});
    ASSERT_EQ(model.scroll(0, icScrollRequest::pageForward), icOk);
    EXPECT_EQ(model.nodeValues(), std::vector<std::string>{"65535 (255)"});
    EXPECT_EQ(model.curves(icMlutCurves::a).size(), 1u);
    EXPECT_TRUE(model.curves(icMlutCurves::m).empty());

    // Grid 9, 17, 17: every bar runs to 8, the labels show each channel's own end.
    iccMlutType grid;
    ASSERT_EQ(grid.createLayout(iccMlutType::kBToA, 3, 1, {true, true, true, true, true}), icOk);
    const std::uint8_t points[] = {9, 17, 17};
    ASSERT_EQ(grid.clut->init(3, 1, 1, points), icOk);
    MlutModel walk(grid);
    EXPECT_EQ(walk.lines()[0].substr(0, 12), "lutBToAType:");
    EXPECT_EQ(walk.lines()[8], "e1 1");
    EXPECT_EQ(walk.scrollMaximum(), 8);
    EXPECT_EQ(walk.rangeLabel(1), "16");
    ASSERT_EQ(walk.scroll(0, icScrollRequest::thumbTrack, 1), icOk);
    ASSERT_EQ(walk.scroll(1, icScrollRequest::thumbPosition, 2), icOk);
    ASSERT_EQ(walk.scroll(2, icScrollRequest::pageForward), icOk);
    ASSERT_EQ(walk.scroll(2, icScrollRequest::lineForward), icOk);
    EXPECT_EQ(walk.nodeNumber(), 1u * 17 * 17 + 2 * 17 + 3);
    for (int i = 0; i < 10; ++i)
        ASSERT_EQ(walk.scroll(0, icScrollRequest::lineForward), icOk);
    EXPECT_EQ(walk.nodeIndex(0), 8u);
    EXPECT_EQ(walk.nodeValues(), std::vector<std::string>{"0"});
    EXPECT_FALSE(walk.clutPageWarning());

    ASSERT_EQ(grid.createLayout(iccMlutType::kAToB, 9, 1, {true, false, false, true, true}), icOk);
    const std::uint8_t nine[] = {2, 2, 2, 2, 2, 2, 2, 2, 2};
    ASSERT_EQ(grid.clut->init(9, 1, 3, nine), icOk);
    EXPECT_EQ(MlutModel(grid).clutPageWarning(), kMlutTooManyChannels);
    EXPECT_EQ(MlutModel(grid).precisionText(), "3 bytes/channel");
    EXPECT_TRUE(MlutModel(grid).nodeValues().empty());
}

TEST(NamedColorModel, LinesAndStepping) {
    icNamedColor2 colors;
    const Bytes tag =
        ncl2Tag(5, 2, std::vector(5, std::vector<std::uint16_t>{0xFF00, 0x8000, 0, 0xFFFF, 0x80}));
    ASSERT_EQ(decodeNamedColor2(tag, colors), icOk);
    NamedColorModel lab(colors, icSig("Lab "));
    EXPECT_EQ(lab.colorLines(4),
              (std::vector<std::string>{"Color #: 4", "Root name: e", "CIE L*: 65280 (100.000)",
                                        "CIE a*: 32768 ( 0.000)", "CIE b*: 0 (-128.000)",
                                        "Channel 0: 65535 (255)", "Channel 1:   128 (  0)"}));
    EXPECT_EQ(lab.headerLines(), (std::vector<std::string>{
                                     "Vendor specific flag: 0x10", "Count of named colors: 5",
                                     "Number of device planes: 2", "Prefix of each color name: P",
                                     "Suffix of each color name: " + std::string(32, 'S')}));
    EXPECT_EQ(lab.lines().size(), 5u + 5 * 7);
    EXPECT_EQ(NamedColorModel(colors, icSig("XYZ ")).colorLines(0)[3], "CIE Y: 32768 (100.000)");

    EXPECT_EQ(lab.setIndexFromBox(7), "ERROR: Maximum index is 4\n");
    EXPECT_EQ(lab.index(), 4);
    EXPECT_EQ(lab.setIndexFromBox(-3), std::nullopt);
    EXPECT_EQ(lab.index(), 0);
    lab.scroll(icScrollRequest::pageForward); // a page of 5 colours is 5 / 10 = 0
    EXPECT_EQ(lab.index(), 0);
    lab.scroll(icScrollRequest::lineBack);
    EXPECT_EQ(lab.index(), 0);
    lab.scroll(icScrollRequest::thumbTrack, 3);
    EXPECT_EQ(lab.index(), 3);

    // Nine planes: the header and the box, no colour.
    ASSERT_EQ(decodeNamedColor2(ncl2Tag(1, 9, {std::vector<std::uint16_t>(12, 1)}), colors), icOk);
    const NamedColorModel nine(colors, icSig("Lab "));
    EXPECT_EQ(nine.openingMessage(), kTooManyDevicePlanes);
    EXPECT_EQ(nine.lines(), nine.headerLines());
    // Colours announced beyond the tag's end are not there to show.
    ASSERT_EQ(decodeNamedColor2(ncl2Tag(1000, 0, {{1, 2, 3}, {4, 5, 6}}), colors), icOk);
    EXPECT_EQ(colors.colors.size(), 2u);
    EXPECT_EQ(decodeNamedColor2(Bytes(tag.begin(), tag.begin() + 83), colors), icErrTruncated);
    EXPECT_EQ(decodeNamedColor2(xyzTag(0, 0, 0), colors), icErrWrongType);
}

TEST(MlucModel, RecordsAndStepping) {
    iccMultiLocalizedUnicodeType strings;
    ASSERT_EQ(strings.layoutRecords(std::vector<std::uint16_t>{0x656E, 0x6465, 0x6672},
                                    std::vector<std::uint16_t>{0x5553, 0, 0},
                                    std::vector<std::uint32_t>{16, 0, 2}),
              icOk);
    strings.strings[0] = {0, 'A', 0, 'b', 0, ' ', 0, '1', 0, 0, 0, 0, 0, 0, 0, 0};
    MlucModel model(strings);
    EXPECT_EQ(model.headerLines(),
              (std::vector<std::string>{"Number of Names: 3", "Name Record Size: 12"}));
    EXPECT_EQ(
        model.recordLines(0),
        (std::vector<std::string>{
            "Name Record #0:", "Language Code: 0X656E/'en'", "Country Code: 0X5553/'US'",
            "Length in Bytes (decimal and hex): 0X10/16",
            "Offset in Bytes (decimal and hex): 0X34/52",
            "00000000    00 41 00 62 00 20 00 31 - 00 00 00 00 00 00 00 00    .A.b...1........"}));
    EXPECT_EQ(model.recordLines(1).size(), 5u); // no string, no dump line
    EXPECT_EQ(model.recordLines(1)[2], "Country Code: 0X0/''");
    EXPECT_EQ(model.lines().size(), 2u + 6 + 5 + 6);
    model.scroll(icScrollRequest::lineForward);
    model.scroll(icScrollRequest::pageForward);
    EXPECT_EQ(model.index(), 2);
    model.scroll(icScrollRequest::pageBack);
    EXPECT_EQ(model.indexText(), "0");
    EXPECT_EQ(model.highestIndexText(), "2");
}

TEST(LargeText, LineEndsForTheEditBox) {
    EXPECT_EQ(toEditBoxLineEnds("a\nb"), "a\r\nb");
    EXPECT_EQ(toEditBoxLineEnds("\nb"), "\nb");
    EXPECT_EQ(toEditBoxLineEnds("a\r"), "a\r");
    EXPECT_EQ(toEditBoxLineEnds("a\rb\r\nc\n\n"), "a\r\nb\r\nc\r\n\r\n");
}

TEST(PlotMapping, CurvePlotAndDiagramShareOneMapping) {
    // A table's last entry lands at the legend strip's edge; a window too small for its margins
    // still maps every value onto a pixel; the locus is drawn through the diagram's own mapping.
    icCurvePlotData table;
    table.valueScale = table.inputRange = 255;
    table.style = icCurvePlotStyle::table;
    const icPlotPoint last = curvePlotMapping(icPlotArea{10, 5, 474, 344}, table).map(255, 255);
    EXPECT_DOUBLE_EQ(last.x, 484 - kTablePlotLegendStrip);
    EXPECT_DOUBLE_EQ(curvePlotMapping(icPlotArea{0, 0, 20, 20}, icCurvePlotData{}).area().width, 1);
    const ChromaticityMapping diagram = chromaticityDiagramMapping(icPlotArea{0, 0, 446, 430});
    EXPECT_DOUBLE_EQ(diagram.locus()[29].x, diagram.map(kSpectralLocus[29].xy).x);
}

TEST(CurvePlotData, UnplottableLabelsTableAxesAndShifts) {
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

    EXPECT_EQ(numberCurveLabels({"one"}), std::vector<std::string>{"one"}); // a single one is not

    // Every grid line is labelled with the integer part of its value, never rounded up.
    std::vector<std::string> eightBit, sixteenBit, twoEntries;
    for (int i = 0; i <= kCurvePlotDivisions; ++i) {
        eightBit.push_back(tableAxisLabel(i, 255));
        sixteenBit.push_back(tableAxisLabel(i, 65535));
        twoEntries.push_back(tableAxisLabel(i, 1));
    }
    EXPECT_EQ(eightBit, (std::vector<std::string>{"0", "25", "51", "76", "102", "127", "153", "178",
                                                  "204", "229", "255"}));
    EXPECT_EQ(sixteenBit[3] + " " + sixteenBit[5] + " " + sixteenBit[10], "19660 32767 65535");
    EXPECT_EQ(twoEntries,
              (std::vector<std::string>{"0", "0", "0", "0", "0", "0", "0", "0", "0", "0", "1"}));

    // Equal tables of neighbouring channels never share a column.
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

} // namespace
