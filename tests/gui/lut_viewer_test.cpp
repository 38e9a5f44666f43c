// The lookup-table sheets offscreen: node stepping, Accept Change, export, import and write-back.
#include "catalogue/catalogue.h"
#include "document/document.h"
#include "document/settings_model.h"
#include "gui/gui_test.h"
#include "lutio/lut_folder.h"
#include "tagtypes/lut16_type.h"
#include "tagtypes/lut_atob_type.h"
#include "viewers/curve_plot.h"
#include "viewers/lut_property_sheet.h"
#include "viewers/mlut_property_sheet.h"

#include <QScrollBar>
#include <QTabWidget>

namespace fs = std::filesystem;

namespace {

const QString kBox = QStringLiteral("info | Veltrino | ");
const QString kMismatch =
    kBox + "Error: Tag signatures are mismatched or the tag sizes are different.\n";

// An open profile whose tags open through the catalogue, as a double click runs it.
struct Session {
    explicit Session(const std::string& path) : document(prompts) { QVERIFY(document.open(path)); }
    // Runs `act` on the sheet of tag `sig` while it is up; whether it came up.
    template <class Sheet, class Act> bool show(const char (&sig)[5], Act act) {
        iccProfileRW& profile = document.profile();
        return whileOpen<Sheet>(
            [&] { (void)showTag(prompts, profile, profile.findTag(icSig(sig))); }, act);
    }
    ScriptedPrompts prompts;
    iccDocument document;
};

QScrollBar* nodeBar(QWidget& page, int channel) {
    return get<QScrollBar>(page, QStringLiteral("nodeBar%1").arg(channel));
}
int visibleBars(QWidget& page) {
    int n = 0;
    for (int c = 0; c < 12; ++c)
        n += nodeBar(page, c)->isVisibleTo(&page);
    return n;
}

// Grid point 0 of a folder's clut.txt gets other values.
void changeFirstGridPoint(const fs::path& folder, const std::string& line) {
    std::string clut = readText(folder / "clut.txt");
    const std::size_t first = clut.starts_with("0 ") ? 0 : clut.find("\n0 ") + 1;
    clut.replace(first, clut.find('\n', first) - first, line);
    writeText(folder / "clut.txt", clut);
}

// An 'mAB ' or 'mBA ' with the elements asked for: B curves gamma 2.2, M curves of 3 points,
// A curves gamma 1.8, a matrix of -1 to 1.75 in quarters, and a CLUT over `grid` counting by 37.
// A step that fails leaves bytes that do not decode, which the tests refuse.
Bytes mlutTag(icSignature type, icMlutElements e, std::vector<std::uint8_t> grid = {9, 17, 17},
              std::uint32_t outputs = 3, std::uint8_t precision = 2) {
    iccMlutType tag;
    const auto inputs = static_cast<std::uint32_t>(grid.size());
    (void)tag.createLayout(type, inputs, outputs, e);
    for (auto [set, g] : {std::pair{&tag.bCurves, 2.2}, {&tag.aCurves, 1.8}})
        if (*set)
            for (iccCurveElement& curve : **set)
                (void)curve.buildParametric(0, 1, std::vector<double>{g});
    if (tag.mCurves)
        for (iccCurveElement& curve : *tag.mCurves)
            (void)curve.buildCurve(3);
    if (tag.matrix)
        for (int i = 0; i < 12; ++i)
            (*tag.matrix)[i] = i * 16384 - 65536;
    if (tag.clut) {
        (void)tag.clut->init(inputs, outputs, precision, grid);
        for (std::uint32_t k = 0; k < tag.clut->valueCount(); ++k)
            (void)tag.clut->setValue(k, k * 37);
    }
    (void)tag.rebuild();
    return Bytes(tag.raw().begin(), tag.raw().end());
}

struct Step {
    int channel;
    QAbstractSlider::SliderAction action;
    int index;
};
using Node = std::vector<std::uint32_t>;

// Runs the steps on a CLUT page, checking each index box; then the value boxes show `values`.
void walk(QWidget& page, const std::vector<Step>& steps, const Node& values) {
    for (const Step& s : steps) {
        if (s.action == QAbstractSlider::SliderMove)
            nodeBar(page, s.channel)->setSliderPosition(s.index); // the thumb dragged there
        else
            nodeBar(page, s.channel)->triggerAction(s.action);
        QCOMPARE(text(page, QStringLiteral("nodeIndex%1").arg(s.channel)),
                 QString::number(s.index));
    }
    Node shown;
    for (std::size_t o = 0; o < values.size(); ++o)
        shown.push_back(text(page, QStringLiteral("value%1").arg(o)).section(' ', 0, 0).toUInt());
    QCOMPARE(shown, values);
}

template <class Lut> Node lutNode(const Lut& lut, const Node& n) {
    std::size_t k = 0;
    for (std::uint32_t i : n)
        k = k * lut.gridPoints() + i;
    k *= lut.outputChannels();
    return Node(lut.clut.begin() + std::ptrdiff_t(k),
                lut.clut.begin() + std::ptrdiff_t(k + lut.outputChannels()));
}

} // namespace

using A = QAbstractSlider;

class LutViewerTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        DataFolder::set((scratchDir() / "data").string());
        if (!fs::exists(kCmyk))
            QSKIP("ghostscript's default_cmyk.icc is not installed");
    }

    void lut8StepAcceptAndWriteBack() {
        Session s(kCmyk);
        iccLut8Type tag;
        QCOMPARE(tag.loadBySignature(icSig("B2A0"), s.document.profile()), icOk);
        QVERIFY(s.show<CiccLutPropertySheet>("B2A0", [&](CiccLutPropertySheet& sheet) {
            QTabWidget* pages = sheet.pages();
            QStringList tabs;
            for (int i = 0; i < pages->count(); ++i)
                tabs << pages->tabText(i);
            QCOMPARE(tabs, (QStringList{"LUT Info", "Input Channels", "CLUT", "Output Channels"}));
            QCOMPARE(texts(sheet, {"lutTypeValue", "clutPointsValue"}),
                     (QStringList{"8-bit LUT", "33"}));

            pages->setCurrentIndex(2);
            QWidget& clut = *pages->currentWidget();
            QCOMPARE(visibleBars(clut), 3);
            QCOMPARE(text(clut, "nodeRange0") + " " + QString::number(nodeBar(clut, 0)->maximum()),
                     "32 32");
            QVERIFY(get(clut, "value3")->isVisibleTo(&clut) &&
                    !get(clut, "value4")->isVisibleTo(&clut));
            walk(clut,
                 {{0, A::SliderSingleStepSub, 0},
                  {0, A::SliderPageStepAdd, 2},
                  {2, A::SliderMove, 31},
                  {2, A::SliderPageStepAdd, 32},
                  {0, A::SliderMove, 31},
                  {2, A::SliderMove, 2}},
                 lutNode(tag, {31, 0, 2}));
            screenshot(sheet, "lut-clut.png");
            pages->setCurrentIndex(3);
            screenshot(sheet, "lut-curves.png");
            pages->setCurrentIndex(2);

            // Typed values are clamped to 0..255; a box that is no number repeats the box before
            // it. The boxes keep what was typed until the page is shown again.
            const QStringList typed{"300", "-5", "abc", "17"};
            for (int o = 0; o < 4; ++o)
                get(clut, QStringLiteral("value%1").arg(o))->setText(typed[o]);
            click(clut, "acceptButton");
            QVERIFY(sheet.modified());
            QCOMPARE(numbered(clut, "value%1", 4), typed);
            pages->setCurrentIndex(0);
            pages->setCurrentIndex(2);
            QCOMPARE(numbered(clut, "value%1", 4), (QStringList{"255", "0", "0", "17"}));
            click(sheet, "okButton");
        }));
        QCOMPARE(s.prompts.take(), QStringList());

        const std::string saved = (scratchDir() / "cmyk-lut8-saved.icc").string();
        QCOMPARE(s.document.saveAs(saved), icOk);
        const auto reread = load(saved);
        QVERIFY(reread);
        iccLut8Type back;
        QCOMPARE(back.loadBySignature(icSig("B2A0"), *reread), icOk);
        QCOMPARE(lutNode(back, {31, 0, 2}), (Node{255, 0, 0, 17}));
    }

    void lut16ExchangeLabNotesEnterAndEscape() {
        Session s(kCmyk);
        const fs::path folder = scratchDir() / "lut16-folder";
        const fs::path other = scratchDir() / "lut16-other";
        fs::remove_all(folder);
        iccLut16Type small;
        QCOMPARE(small.initialize(4, 2, 3, 2, 5), icOk);
        QCOMPARE(ExportLut16Folder(small, other), icOk);
        // A folder longer than the shared folder keeps is still used in full.
        const fs::path deep = scratchDir() / std::string(150, 'd') / std::string(150, 'e');
        fs::create_directories(deep.parent_path());
        const QString exported = kBox + "Successfully export a Lut16 tag to folder:";

        s.prompts.clutFolders = {folder.string(), deep.string(), std::nullopt, other.string(),
                                 folder.string()};
        QVERIFY(s.show<CiccLutPropertySheet>("A2B0", [&](CiccLutPropertySheet& sheet) {
            click(sheet, "exportButton");
            QCOMPARE(s.prompts.take(), {exported + q(folder.string()) + "\n"});
            click(sheet, "exportButton");
            QCOMPARE(s.prompts.take(), {exported + q(deep.string()) + "\n"});
            click(sheet, "importButton"); // cancelled: nothing
            QCOMPARE(s.prompts.take(), QStringList());

            sheet.pages()->setCurrentIndex(2);
            QWidget& clut = *sheet.pages()->currentWidget();
            const QStringList shownBefore = numbered(clut, "value%1", 3);
            click(sheet, "importButton");
            QCOMPARE(s.prompts.take(), {kMismatch});
            QVERIFY(!sheet.modified());
            sheet.pages()->setCurrentIndex(0);
            sheet.pages()->setCurrentIndex(2);
            QCOMPARE(numbered(clut, "value%1", 3), shownBefore);

            changeFirstGridPoint(folder, "0 1 2 3 ");
            click(sheet, "importButton");
            QCOMPARE(s.prompts.take(), {kBox + "Successfully import a Lut16 tag from folder:" +
                                        q(folder.string()) + "\n"});
            QVERIFY(sheet.modified());
            QCOMPARE(numbered(clut, "value%1", 3), (QStringList{"1", "2", "3"}));
            click(sheet, "okButton");
        }));
        // Each opening proposed the folder the one before took.
        const auto& asked = s.prompts.clutFolderRequests;
        QCOMPARE(asked.size(), std::size_t(5));
        QCOMPARE(asked[0].mode, 2u);
        QCOMPARE(asked[1].proposed, folder.string());
        QCOMPARE(asked[2].proposed, deep.string().substr(0, 260));

        // Written back, and opened again.
        iccLut16Type tag;
        QCOMPARE(tag.loadBySignature(icSig("A2B0"), s.document.profile()), icOk);
        QCOMPARE(lutNode(tag, {0, 0, 0, 0}), (Node{1, 2, 3}));
        const Bytes before(tag.raw().begin(), tag.raw().end());
        QVERIFY(s.show<CiccLutPropertySheet>("A2B0", [&](CiccLutPropertySheet& sheet) {
            // One curve per channel, on the tables' own scale.
            const icCurvePlotData& in =
                get<CCurvePlot>(*sheet.pages()->widget(1), "curvePlot")->data();
            QCOMPARE(in.curves[3].back(), double(tag.inputTables[3 * 256 + 255]));
            QVERIFY(in.style == icCurvePlotStyle::table && in.valueScale == 65535.0);

            sheet.pages()->setCurrentIndex(2);
            QWidget& clut = *sheet.pages()->currentWidget();
            QCOMPARE(visibleBars(clut), 4);
            walk(clut,
                 {{3, A::SliderPageStepAdd, 2},
                  {0, A::SliderMove, 8},
                  {1, A::SliderSingleStepAdd, 1}},
                 lutNode(tag, {8, 1, 0, 2}));
            // The Lab notes (their texts are the model's) follow the stored value at once.
            get(clut, "value0")->setText("70000");
            click(clut, "acceptButton");
            QCOMPARE(text(clut, "note0"), "(100x2.55)");
            QVERIFY(looksReadOnly(get(clut, "nodeIndex0")));

            // Enter in a value box accepts the change and leaves the sheet open. Escape then asks:
            // Cancel stays, Discard closes, and the change stays out of the profile.
            get(clut, "value2")->setFocus();
            get(clut, "value2")->selectAll();
            QTest::keyClicks(get(clut, "value2"), "128");
            QTest::keyClick(get(clut, "value2"), Qt::Key_Return);
            QVERIFY(sheet.isVisible());
            QCOMPARE(text(clut, "note2"), "(-128+128)");
            s.prompts.closeAnswers = {icCloseAnswer::stay, icCloseAnswer::discard};
            QTest::keyClick(&sheet, Qt::Key_Escape);
            QVERIFY(sheet.isVisible());
            QTest::keyClick(&sheet, Qt::Key_Escape);
            QVERIFY(!sheet.isVisible() && sheet.result() == QDialog::Rejected);
            QCOMPARE(s.prompts.take(),
                     QStringList(2, "apply? | AToB0 Tag | Apply the changes made in AToB0 Tag "
                                    "before closing?"));
        }));
        iccLut16Type after;
        QCOMPARE(after.loadBySignature(icSig("A2B0"), s.document.profile()), icOk);
        QVERIFY(Bytes(after.raw().begin(), after.raw().end()) == before);

        // More inputs than the page has controls for: the warning, twelve bars, and it goes on.
        iccLut16Type wide;
        QCOMPARE(wide.initialize(15, 2, 1, 2, 2), icOk);
        ScriptedPrompts prompts;
        CiccLutPropertySheet sheet(wide, icSig("RGB "), "", prompts);
        sheet.pages()->setCurrentIndex(2);
        QCOMPARE(prompts.take(), {"stop | Veltrino | Error: Input channels or output channels are "
                                  "greater than 12. \nThis program will not work correctly."});
        QCOMPARE(visibleBars(*sheet.pages()->currentWidget()), 12);
        QCOMPARE(text(*sheet.pages()->currentWidget(), "value0"), "0");
        CDumpCLUT folderDialog(2); // as the lut8/lut16 sheets open it
        QCOMPARE(texts(folderDialog, {"firstCurveFile", "mCurveFile"}),
                 (QStringList{"InputCurves.txt", "Not Available"}));
    }

    void mlutNodesWarningAndExchange() {
        // 'mAB ' over grid 9, 17, 17: every bar runs to 8, each label says its own end.
        const Bytes bytes = mlutTag(iccMlutType::kAToB, {true, true, true, true, true});
        iccMlutType tag;
        QCOMPARE(tag.setData(bytes), icOk);
        const fs::path folder = scratchDir() / "mlut-folder";
        fs::remove_all(folder);

        ProfileBuilder b;
        b.header.version = 0x04300000;
        b.header.pcs = icSig("Lab ");
        Session s(writeBytes(scratchDir() / "mab.icc", b.tag(icSig("A2B0"), bytes).build()));
        QVERIFY(s.show<CLutB2APropertySheet>("A2B0", [&](CLutB2APropertySheet& sheet) {
            sheet.pages()->setCurrentIndex(4);
            QWidget& clut = *sheet.pages()->currentWidget();
            QCOMPARE(text(clut, "nodeRange2") + " " + QString::number(nodeBar(clut, 2)->maximum()),
                     "16 8");
            // Page and arrow steps take a channel beyond its bar's range.
            const std::uint32_t k = ((1 * 17 + 1) * 17 + 11) * 3, v = tag.clut->value(k);
            walk(clut,
                 {{2, A::SliderMove, 8},
                  {2, A::SliderPageStepAdd, 10},
                  {2, A::SliderSingleStepAdd, 11},
                  {1, A::SliderSingleStepAdd, 1},
                  {0, A::SliderSingleStepAdd, 1}},
                 {v, tag.clut->value(k + 1), tag.clut->value(k + 2)});
            screenshot(sheet, "mlut-clut.png");
            sheet.pages()->setCurrentIndex(1);
            screenshot(sheet, "mlut-curves.png");

            s.prompts.clutFolders = {folder.string(), folder.string()};
            click(sheet, "exportButton");
            QCOMPARE(s.prompts.clutFolderRequests.back().mode, 4u);
            QCOMPARE(s.prompts.take(),
                     {kBox + "Successfully export MLUT to folder:" + q(folder.string()) + "\n"});
            QVERIFY(!sheet.modified());

            changeFirstGridPoint(folder, "0 11 22 33 ");
            click(sheet, "importButton");
            QCOMPARE(s.prompts.take(),
                     {kBox + "Successfully import MLUT from folder:" + q(folder.string()) + "\n"});
            QVERIFY(sheet.modified());
            s.prompts.closeAnswers = {icCloseAnswer::keep}; // Escape, then "Apply": as OK
            sheet.reject();
            QCOMPARE(sheet.result(), int(QDialog::Accepted));
            QCOMPARE(s.prompts.take().size(), 1);
            for (int c = 0; c < 3; ++c)
                nodeBar(clut, c)->setSliderPosition(0);
            QCOMPARE(numbered(clut, "value%1", 3), (QStringList{"11 (0)", "22 (0)", "33 (0)"}));
        }));
        iccLutAToBType written;
        QCOMPARE(written.loadBySignature(icSig("A2B0"), s.document.profile()), icOk);
        QCOMPARE(written.clut->value(2), 33u);

        // Nine inputs: the page warns with its own wording but walks all nine.
        iccMlutType wide;
        QCOMPARE(wide.setData(mlutTag(iccMlutType::kBToA, {true, false, false, true, true},
                                      std::vector<std::uint8_t>(9, 2), 1, 1)),
                 icOk);
        ScriptedPrompts prompts;
        CLutB2APropertySheet sheet(wide, "", prompts);
        QCOMPARE(text(sheet, "typeLabel"), "lutBToAType:");
        QCOMPARE(text(*sheet.pages()->widget(2), "matrix1"), "N/A"); // no matrix, no M curves
        sheet.pages()->setCurrentIndex(4);
        QCOMPARE(prompts.take(), {"stop | Veltrino | Error: Input channels or output channels are "
                                  "greater than 12. \nThe program will not work correctly."});
        QCOMPARE(visibleBars(*sheet.pages()->currentWidget()), 9);
        QCOMPARE(text(*sheet.pages()->currentWidget(), "precisionValue"), "8-bit/channel");
    }

    // colord's named-colour profiles carry an 'mBA ' that does not decode: only the failure box.
    void malformedRealMbaShowsOnlyTheFailure() {
        if (!fs::exists(kX11))
            QSKIP("colord's x11-colors.icc is not installed");
        Session s(kX11);
        QVERIFY(!s.show<CLutB2APropertySheet>("B2A0", [](CLutB2APropertySheet&) {}));
        QCOMPARE(s.prompts.take(), {"stop | Veltrino | Failed in displaying tag. Errcode: -1.\n"});
        QVERIFY(s.prompts.dumps.empty());
    }
};

[[maybe_unused]] const bool registered = registerGuiTest<LutViewerTest>();

#include "lut_viewer_test.moc"
