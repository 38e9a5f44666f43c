// The catalogue's labels and handlers, the Show selected tag failure rule, and viewer write-back.
#include "catalogue/catalogue_testing.h"

#include <set>

namespace {

const Shown kFailedAnyway{"stop", "Veltrino", "Failed in displaying tag. Errcode: -1001.\n"};

TEST(Catalogue, UniqueRowsChosenByVersionAndSignature) {
    std::set<icSignature> seen;
    for (const icCatalogueRow& row : kTagCatalogue) {
        EXPECT_TRUE(seen.insert(row.signature).second) << sigToText(row.signature);
        EXPECT_FALSE(row.label.empty());
        EXPECT_FALSE(row.labelV4.empty());
        EXPECT_NE(row.handler, icTagHandler::hexDump);
    }
    EXPECT_EQ(seen.size(), 44u);

    constexpr std::uint32_t v2 = 0x02400000, v3 = 0x03FFFFFF, v4 = 0x04000000;
    EXPECT_EQ(chooseTagHandler(icSig("rXYZ"), v2).label, "RedColorant Tag");
    EXPECT_EQ(chooseTagHandler(icSig("rXYZ"), v3).label, "RedColorant Tag");
    EXPECT_EQ(chooseTagHandler(icSig("rXYZ"), v4).label, "RedMatrixColumn Tag");
    EXPECT_EQ(chooseTagHandler(icSig("cprt"), v2).handler, icTagHandler::text);
    // Signatures are compared exactly (the handlers by version show in the ShowTag tests).
    EXPECT_EQ(chooseTagHandler(icSig("DESC"), v2).handler, icTagHandler::hexDump);
}

TEST(ShowTag, HexDumps) {
    // Sixteen bytes a line; only letters and digits are shown as they are.
    Bytes payload(24, '.');
    std::ranges::copy(Bytes{'A', ' ', 'z', '!', '0', '9', 0x7F, 0xE9, 1, 2, 0xAB, 'x'},
                      payload.begin());
    EXPECT_EQ(showOne(icSig("bfd "), tagBytes(icSig("ucrb"), payload)).shown,
              (std::vector<Shown>{{"viewer hexdump", "Private or Unsupported Tag",
                                   "00000000    75 63 72 62 00 00 00 00 - 41 20 7A 21 30 39 7F E9 "
                                   "   ucrb....A.z.09..\n"
                                   "00000010    01 02 AB 78 2E 2E 2E 2E - 2E 2E 2E 2E 2E 2E 2E 2E "
                                   "   ...x............"}}));

    // A LUT row holding another type of data shows nothing and reports nothing.
    const auto other = showOne(icSig("A2B0"), curvTag({}));
    EXPECT_EQ(other.status, icOk);
    EXPECT_TRUE(other.shown.empty());
}

TEST(ShowTag, FailuresShowTheHandlersBoxThenTheFailureBox) {
    // 'desc' of a version-4 profile always goes to the localized-string viewer.
    const auto desc = showOne(icSig("desc"), descTag("Old style"), true);
    EXPECT_EQ(desc.status, icErrBadProfile);
    EXPECT_EQ(desc.shown, (std::vector<Shown>{
                              {"stop", "Veltrino", "Error in tag data. Errcode: -1001.\n"},
                              kFailedAnyway,
                          }));
    // ... and in a version-2 profile to the text description report.
    const auto mluc = showOne(icSig("desc"), mlucTag("New style"));
    EXPECT_EQ(mluc.shown, (std::vector<Shown>{
                              {"stop", "Veltrino", "Invalid ICC format. Errcode: -1001.\n"},
                              kFailedAnyway,
                          }));
    const auto curve = showOne(icSig("rTRC"), xyzTag(1, 1, 1));
    EXPECT_EQ(curve.status, icErrGeneral);
    EXPECT_EQ(curve.shown.back(),
              (Shown{"stop", "Veltrino", "Failed in displaying tag. Errcode: -1.\n"}));
}

TEST(ShowTag, OutOfMemoryEscalatesInsteadOfReporting) {
    class Exhausted : public RecordingPresenter {
        icViewerResult hexDumpViewer(std::string_view, std::span<const std::uint8_t>) override {
            throw std::bad_alloc();
        }
    };
    auto profile = loaded(ProfileBuilder().tag(icSig("zzzz"), tagBytes(icSig("zzzz"))).build());
    Exhausted presenter;
    EXPECT_EQ(showTag(presenter, *profile, 0), icErrNoMemory);
    EXPECT_EQ(presenter.shown, (std::vector<Shown>{{"stop", "Veltrino", "Out of memory."}}));
}

// ---- write-back ---------------------------------------------------------------------------

struct WriteBack {
    std::unique_ptr<iccProfileRW> profile;
    RecordingPresenter presenter;

    WriteBack(const ProfileBuilder& builder) : profile(loaded(builder.build())) {}
    Bytes run(int index = 0) {
        EXPECT_EQ(showTag(presenter, *profile, index), icOk);
        const auto bytes = profile->getTagData(index);
        return Bytes(bytes.begin(), bytes.end());
    }
};

TEST(WriteBack, ModifiedCurveIsEncodedAndStoredForEverySharerOnlyOnOk) {
    ProfileBuilder builder;
    builder.tag(icSig("rTRC"), curvTag({0x0233}));
    const std::uint32_t offset = kHeaderSize + 4 + 2 * 12;
    builder.entry(icSig("gTRC"), offset, 14);
    WriteBack run(builder);
    run.presenter.answer = {true, true, icOk};
    run.presenter.editCurve = [](iccCurveElement& curve) {
        ASSERT_EQ(curve.buildCurve(2, std::vector<std::uint16_t>{0, 0xFFFF}), icOk);
    };
    EXPECT_EQ(run.run(), curvTag({0, 0xFFFF}));
    EXPECT_EQ(run.presenter.shown[0], (Shown{"viewer curve", "RedTRC Tag", "gamma= 2.2"}));
    // The sharer's entry keeps its old size until the profile is laid out again.
    const Bytes written = curvTag({0, 0xFFFF});
    EXPECT_TRUE(std::ranges::equal(run.profile->getTagData(1),
                                   Bytes(written.begin(), written.begin() + 14)));

    // Unless the viewer closes with OK and modified, the curve is kept.
    for (const icViewerResult answer : {icViewerResult{true, false}, icViewerResult{false, true}}) {
        WriteBack kept(ProfileBuilder().tag(icSig("kTRC"), curvTag({0x0100})));
        kept.presenter.answer = answer;
        kept.presenter.editCurve = run.presenter.editCurve;
        EXPECT_EQ(kept.run(), curvTag({0x0100}));
    }
}

TEST(WriteBack, XyzValuesAreStoredOnOkEvenUnchanged) {
    // -1/65536 is stored again as 0 (add 0.5, truncate), so the write shows in the bytes.
    Bytes bytes = wordTag(icSig("XYZ "), {0xFFFFFFFF, fixed(1.0), fixed(0.5)});
    WriteBack unchanged(ProfileBuilder().tag(icSig("wtpt"), bytes));
    EXPECT_EQ(unchanged.run(), xyzTag(0, 1.0, 0.5));

    WriteBack cancelled(ProfileBuilder().tag(icSig("wtpt"), bytes));
    cancelled.presenter.answer = {false, false, icOk};
    EXPECT_EQ(cancelled.run(), bytes);

    WriteBack edited(ProfileBuilder().tag(icSig("rXYZ"), bytes));
    edited.presenter.editXYZ = [](iccXYZType& xyz) {
        xyz.X = 0.25;
        xyz.Z = -2.0;
    };
    EXPECT_EQ(edited.run(), wordTag(icSig("XYZ "), {0x4000, fixed(1.0), 0xFFFE0001}));
    EXPECT_EQ(edited.presenter.shown.size(), 1u);
}

Bytes lut8Tag() {
    iccLut8Type lut;
    EXPECT_EQ(lut.initialize(1, 3, 2), icOk);
    EXPECT_EQ(lut.setClut(std::vector<std::uint8_t>{10, 20, 30, 40, 50, 60}), icOk);
    return rawOf(lut);
}

TEST(WriteBack, AcceptedLutNodeIsStoredAndOutputSpaceFollowsTheTag) {
    ProfileBuilder builder;
    builder.header.pcs = icSig("Lab ");
    builder.header.colorSpace = icSig("RGB ");
    builder.tag(icSig("A2B0"), lut8Tag()).tag(icSig("B2A0"), lut8Tag());
    WriteBack run(builder);
    run.presenter.answer = {true, true, icOk};
    run.presenter.editLut = [](LutModel& model) {
        ASSERT_EQ(model.scroll(0, icScrollRequest::lineForward), icOk);
        ASSERT_EQ(model.acceptChange(std::vector<std::string>{"300", "x", "-5"}), icOk);
    };
    Bytes expected = lut8Tag();
    const std::size_t clut = 48 + 256; // header, matrix and one input table
    expected[clut + 3] = 255, expected[clut + 4] = 255, expected[clut + 5] = 0;
    EXPECT_EQ(run.run(0), expected);
    EXPECT_EQ(run.presenter.lutOutputSpace, icSig("Lab "));
    run.presenter.answer = {false, true, icOk};
    EXPECT_EQ(run.run(1), lut8Tag());
    EXPECT_EQ(run.presenter.lutOutputSpace, icSig("RGB "));
}

TEST(WriteBack, ImportedMlutIsRebuiltAndStored) {
    WriteBack run(ProfileBuilder().tag(icSig("B2A1"), mabTag()));
    run.presenter.answer = {true, true, icOk};
    run.presenter.editMlut = [](iccMlutType& lut) { ASSERT_EQ(lut.clut->setValue(1, 7), icOk); };
    Bytes stored = run.run();
    // The rebuild lays the A curves right after the CLUT, without the source's gap.
    ASSERT_EQ(stored.size(), 80u);
    EXPECT_EQ(Bytes(stored.begin() + 64, stored.begin() + 68), (Bytes{0x80, 0, 0, 7}));
}

} // namespace
