// Report texts box by box for built tags; hostile ones read only up to the tag's end.
#include "catalogue/catalogue_testing.h"
#include "catalogue/reports.h"

namespace {

std::vector<std::string> texts(const icReport& report) {
    std::vector<std::string> out;
    for (const icReportBox& box : report.boxes)
        out.push_back(box.text);
    return out;
}

TEST(SimpleReports, Texts) {
    const Bytes chad =
        wordTag(icSig("sf32"), {fixed(1), fixed(0.5), 0xFFFFC000, 0, fixed(1), 0, 0, 0, fixed(2)});
    EXPECT_EQ(texts(reportChromaticAdaptation(chad, "L")),
              std::vector<std::string>{"1.000000    0.500000    -0.250000    \n0.000000    "
                                       "1.000000    0.000000\n0.000000    0.000000    2.000000\n"});
    const icReport shortChad = reportChromaticAdaptation(Bytes(chad.begin(), chad.end() - 1), "L");
    EXPECT_EQ(shortChad.status, icOk);
    EXPECT_TRUE(shortChad.boxes.empty());

    const Bytes dtim = wordTag(icSig("dtim"), {2005 << 16 | 3, 7 << 16 | 8, 5 << 16 | 9});
    EXPECT_EQ(texts(reportDateTime(dtim, "L")),
              std::vector<std::string>{"Date = 3/7/2005 \nTime = 8:5:9\n"});
    EXPECT_EQ(reportDateTime(xyzTag(1, 1, 1), "L").status, icErrWrongType);

    EXPECT_EQ(luminanceText(80), "80.000000 candelas per square meter");

    EXPECT_EQ(texts(reportData(wordTag(icSig("data"), {1}), "L")),
              std::vector<std::string>{"Binary data\nSize = 0 bytes"});
    // ASCII data without a NUL ends with the tag.
    EXPECT_EQ(texts(reportData(tagBytes(icSig("data"), {0, 0, 0, 0, 'a', 'b', 'c'}), "L")),
              std::vector<std::string>{"abc"});
    EXPECT_EQ(texts(reportData(tagBytes(icSig("data"), {0, 0, 0, 0, 'a', 0, 'c'}), "L")),
              std::vector<std::string>{"a"});
    const icReport wrong = reportData(textTag("x"), "L");
    EXPECT_EQ(wrong.status, icErrWrongType);
    EXPECT_EQ(wrong.boxes, (std::vector<icReportBox>{
                               {icBoxKind::stop, "Veltrino", "Incorrect Tag signature."}}));
}

TEST(SimpleReports, LongTextsGoToTheLargeTextWindow) {
    for (std::size_t length : {499u, 500u}) {
        const auto result = showOne(icSig("targ"), textTag(std::string(length, 'x')), true);
        ASSERT_EQ(result.shown.size(), 1u);
        EXPECT_EQ(result.shown[0], (Shown{length < 500 ? "info" : "text", "CharTarget Tag",
                                          std::string(length, 'x')}));
    }
    EXPECT_EQ(showOne(icSig("desc"), descTag("sRGB")).shown,
              (std::vector<Shown>{{"info", "Profile Description Tag", "sRGB"}}));
    EXPECT_EQ(showOne(icSig("cprt"), mlucTag(""), true).shown.size(), 1u);
}

TEST(DeviceReports, Measurement) {
    const Bytes meas = wordTag(icSig("meas"), {1, fixed(0.5), fixed(1), 0, 2, 0x8000, 9});
    EXPECT_EQ(texts(reportMeasurement(meas, "L")),
              std::vector<std::string>{"Standard Observer: 1931 2 degree Observer.\nMeasurement "
                                       "Backing: X = 0.500000, Y = 1.000000, Z = 0.000000\n"
                                       "Measurement Geometry: 0/d or d/0.\nMeasurement Flare: "
                                       "0.500000\nStandard Illuminant: invalid value.\n"});
    const Bytes observer3 = wordTag(icSig("meas"), {3, 0, 0, 0, 0, 0, 6});
    EXPECT_EQ(texts(reportMeasurement(observer3, "L"))[0].substr(0, 34),
              "Standard Observer: invalid value.\n");
}

TEST(DeviceReports, ViewingConditionsAndTechnology) {
    const Bytes view = wordTag(icSig("view"), {fixed(19.5), fixed(20), 0, fixed(4), 0, 0, 2});
    EXPECT_TRUE(texts(reportViewingConditions(view, "L"))[0].ends_with(
        "\tY = 20.000000\n\tZ = 0.000000\n\nCIE XYZ value for surround in cd/m^2:\n\tX = "
        "4.000000\n\tY = 0.000000\n\tZ = 0.000000\n\nIlluminant Type: D65\n"));
    EXPECT_EQ(reportViewingConditions(Bytes(35), "L").boxes,
              (std::vector<icReportBox>{
                  {icBoxKind::stop, "Veltrino", "Tag byes too small. Errcode: -1001.\n"}}));
    EXPECT_EQ(reportViewingConditions(wordTag(icSig("XYZ "), {0, 0, 0, 0, 0, 0, 0}), "L").status,
              icErrWrongType);

    EXPECT_EQ(texts(reportTechnology(wordTag(icSig("sig "), {icSig("twax")}), "L")),
              std::vector<std::string>{"Device Technology: Thernam Wax Printer"});
    EXPECT_EQ(texts(reportTechnology(wordTag(icSig("sig "), {icSig("xyzw")}), "L")),
              std::vector<std::string>{
                  "Device Technology: unknown technology type\n  Signuature code: 0x78797a77"});
    EXPECT_EQ(reportTechnology(wordTag(icSig("sig "), {}), "L").status, icErrBadProfile);
    EXPECT_EQ(reportTechnology(wordTag(icSig("tech"), {1}), "L").status, icErrWrongType);
}

TEST(DeviceReports, Screening) {
    const Bytes two = wordTag(icSig("scrn"), {2, 2, fixed(150), fixed(45), 2, fixed(10), 0, 42});
    EXPECT_EQ(texts(reportScreening(two, "L")),
              std::vector<std::string>{"Screening data\n\nUse printer default screens\nFrequency "
                                       "units in Lines/Inch\nNumber of channels: 2\n\nChannel "
                                       "#0:\n\tFrequency: 150.000000\n\tScreen Angle: 45.000000 "
                                       "degrees\n\tSpot Shape: round\nChannel #1:\n\tFrequency: "
                                       "10.000000\n\tScreen Angle: 0.000000 degrees\n\tSpot "
                                       "Shape: invalid value\n"});
    // A thousand channels announced in 28 bytes: the one that is there is shown.
    const Bytes hostile = wordTag(icSig("scrn"), {0, 1000, 0, 0, 7});
    EXPECT_TRUE(texts(reportScreening(hostile, "L"))[0].ends_with(
        "Lines/cm\nNumber of channels: 1000\n\nChannel #0:\n\tFrequency: 0.000000\n\tScreen "
        "Angle: 0.000000 degrees\n\tSpot Shape: cross\n"));
    EXPECT_EQ(reportScreening(Bytes(hostile.begin(), hostile.end() - 1), "L").boxes[0].text,
              "Tag bytes too small.");
}

// Two platforms: 'MSFT' with one structure of two values, and an unknown one without any.
Bytes devsTag(std::uint32_t platforms, std::uint32_t values = 2) {
    return wordTag(icSig("devs"), {platforms, icSig("MSFT"), 40, 1, 28, 1, icSig("rsln"), 8, values,
                                   300, 600, icSig("XXXX"), 12, 0});
}

TEST(SettingsReports, DeviceSettings) {
    const std::vector<std::string> expected{
        "PLATFORM #0 OF 2\n\nPlatform: 'MSFT'\nBytes of the structure: 40\nSetting "
        "combinations: 1\n\n  Platform Setting #0 of 1\n    Number of setting structures: 1\n  "
        "  Bytes of the structure: 28\n\n    Structure Setting #0 of 1\n      Setting "
        "signature: 'rsln'\n      Bytes of the structure: 8\n      Setting #0 of 2\n        "
        "Setting Value: 300\n      Setting #1 of 2\n        Setting Value: 600\n",
        "PLATFORM #1 OF 2\n\nPlatform: unknown\nBytes of the structure: 12\nSetting "
        "combinations: 0\n\n"};
    EXPECT_EQ(texts(reportDeviceSettings(devsTag(2), "L")), expected);
    EXPECT_EQ(texts(reportDeviceSettings(wordTag(icSig("devs"), {0}), "L")),
              std::vector<std::string>{"Platform count = 0\n"});

    // Counts pointing past the end: the walk stops there.
    const auto more = texts(reportDeviceSettings(devsTag(5), "L"));
    ASSERT_EQ(more.size(), 2u);
    EXPECT_EQ(more[0].substr(0, 18), "PLATFORM #0 OF 5\n\n");
    const auto values = texts(reportDeviceSettings(devsTag(1, 100000), "L"));
    ASSERT_EQ(values.size(), 1u);
    EXPECT_NE(values[0].find("Setting #4 of 100000\n        Setting Value: 0\n"),
              std::string::npos);
    EXPECT_EQ(values[0].find("Setting #5 of"), std::string::npos);
    // Records of size 0 would repeat forever; the walk ends after a bounded number of reads.
    const Bytes looping =
        wordTag(icSig("devs"), {0xFFFFFFFF, icSig("APPL"), 0, 0xFFFFFFFF, 0, 0xFFFFFFFF});
    EXPECT_LT(reportDeviceSettings(looping, "L").boxes.size(), 40u);
    // However long, a platform is a message box of its own.
    const auto longPlatform = showOne(icSig("devs"), devsTag(1, 30));
    ASSERT_EQ(longPlatform.shown.size(), 1u);
    EXPECT_GT(longPlatform.shown[0].text.size(), 500u);
    EXPECT_EQ(longPlatform.shown[0].kind, "info");
}

TEST(SettingsReports, ResponseCurves) {
    // Three channels, two measurement types: 'StaI' with one response for channel 0, 'DN P'
    // with two for channel 1 (each a 16-bit device value, two bytes of padding, the value).
    const std::uint32_t staI = icSig("StaI"), dinP = icSig("DN P"), one = fixed(1),
                        half = fixed(0.5), quarter = fixed(0.25);
    const Bytes resp = wordTag(
        icSig("rcs2"),
        {0x00030002, 20,         100,     staI,       1,  0, 0, 0,   0,    0,       0, 0, 0, 0, 0,
         0,          0x00070000, quarter, dinP,       0,  2, 0, one, half, quarter, 0, 0, 0, 0, 0,
         0,          0x000A0000, half,    0xFFFF0000, one});

    const auto boxes = texts(reportResponseCurves(resp, "L"));
    ASSERT_EQ(boxes.size(), 3u);
    EXPECT_EQ(boxes[0], "Number of channels: 3 \nNumber of measurement types: 2 \n");
    EXPECT_NE(boxes[1].find("Measurement Unit:  Status I\n"), std::string::npos);
    EXPECT_TRUE(boxes[2].starts_with("INFORMATION FOR MEASUREMENT TYPE #1\n\nByte offset: 100 "
                                     "(0x64)\nMeasurement Unit: DIN with Polarising Filter \n"
                                     "CIE XYZ value for Channel #0\n    1.000000, 0.500000, "
                                     "0.250000\n"));
    EXPECT_TRUE(boxes[2].ends_with("Counts: 2\nResponse data for Channel #0\nno data\nResponse "
                                   "data for Channel #1\n    10, 0.500000\n    65535, 1.000000\n"
                                   "Response data for Channel #2\nno data\n"));

    // A million responses announced, one present: the text ends with that one.
    Bytes hostile(resp.begin(), resp.begin() + 80);
    storeBE32(hostile.data() + 24, 1000000);
    const auto cut = texts(reportResponseCurves(hostile, "L"));
    ASSERT_EQ(cut.size(), 2u);
    const std::string tail = "Measurement Counts: 1000000\nResponse data for Channel #0\n    7, "
                             "0.250000\n";
    ASSERT_GE(cut[1].size(), tail.size());
    EXPECT_EQ(cut[1].substr(cut[1].size() - tail.size()), tail);
}

Bytes pseqRecord(icSignature technology, std::uint32_t attributes, const Bytes& manufacturer,
                 const Bytes& model) {
    Bytes bytes;
    iccWriter w(bytes);
    for (std::uint32_t v : {icSig("APPL"), icSig("m1  "), attributes, 0u, technology})
        w.u32(v);
    w.bytes(manufacturer);
    w.bytes(model);
    return bytes;
}

Bytes pseqTag(const std::vector<Bytes>& records) {
    Bytes bytes = wordTag(icSig("pseq"), {static_cast<std::uint32_t>(records.size())});
    for (const Bytes& r : records)
        bytes.insert(bytes.end(), r.begin(), r.end());
    return bytes;
}

TEST(SettingsReports, SequenceVersion2BoxesGrow) {
    const std::string longName(200, 'B');
    const Bytes tag = pseqTag({pseqRecord(icSig("dcam"), 0, descTag("Maker"), descTag("Cam")),
                               pseqRecord(icSig("none"), 3, descTag(longName), descTag("C")),
                               pseqRecord(icSig("flex"), 2, descTag(longName), descTag(""))});
    const auto result = showOne(icSig("pseq"), tag);
    ASSERT_EQ(result.shown.size(), 4u);
    const std::string first = "Number of profile sequence descriptions: 3\n";
    const std::string second =
        first + "Device Maufacturer: APPL\nDevice Model: m1  \nDevice attributes: reflective, "
                "glossy\nDevice Technology: Digital Camera\n\nDevice manufacture "
                "description:\n\tMaker\nDevice model description:\n\tCam\n";
    EXPECT_EQ(result.shown[0], (Shown{"info", "Profile Sequence Desc Tag", first}));
    EXPECT_EQ(result.shown[1], (Shown{"info", "Profile Sequence #0", second}));
    EXPECT_EQ(result.shown[2].text.substr(0, second.size()), second);
    EXPECT_NE(result.shown[2].text.find("transparency, matte\nDevice Technology: unknown\n"),
              std::string::npos);
    EXPECT_EQ(result.shown[3].caption, "Profile Sequence #2");
    // Boxes past 500 characters stay message boxes.
    EXPECT_GT(result.shown[3].text.size(), 500u);
    for (const Shown& box : result.shown)
        EXPECT_EQ(box.kind, "info");
}

TEST(SettingsReports, SequenceVersion4OpensTheNames) {
    iccMultiLocalizedUnicodeType none;
    ASSERT_EQ(none.layoutRecords({}, {}, {}), icOk);
    const Bytes tag = pseqTag({pseqRecord(icSig("vidm"), 1, mlucTag("Vendor"), rawOf(none))});
    const auto result = showOne(icSig("pseq"), tag, true);
    ASSERT_EQ(result.shown.size(), 4u);
    EXPECT_EQ(result.shown[0].text, "Number of profile sequence descriptions: 1\n");
    EXPECT_EQ(result.shown[1],
              (Shown{"info", "Profile Sequence #0",
                     "Device Maufacturer: APPL\nDevice Model: m1  \nDevice attributes: "
                     "transparency, glossy\nDevice Technology: Video Monitor\n"}));
    EXPECT_EQ(result.shown[2].kind, "viewer mluc");
    EXPECT_EQ(result.shown[2].caption, "MultiLocalizedUnicodeType");
    EXPECT_EQ(result.shown[3], (Shown{"info", "Profile Sequence #0",
                                      "No Name Record found on Device Model Description.\n"}));

    const auto broken = showOne(icSig("pseq"), wordTag(icSig("pseq"), {1, 0}), true);
    EXPECT_EQ(broken.shown[0].text.substr(0, 26), "Tag data fromat incorrect.");
}

} // namespace
