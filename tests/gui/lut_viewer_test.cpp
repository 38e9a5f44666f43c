// The lookup-table sheets and the CLUT folder dialog, offscreen: real and built tables opened
// through the catalogue, the pages' texts against the tag, node stepping, "Accept Change",
// export and import through the scripted folder dialog, and the write-back after OK.
#include "app/qt_presenter.h"
#include "catalogue/catalogue.h"
#include "document/document.h"
#include "document/settings_model.h"
#include "gui/gui_test.h"
#include "lutio/lut_folder.h"
#include "lutio/mlut_folder.h"
#include "support/test_support.h"
#include "tagtypes/lut16_type.h"
#include "tagtypes/lut_atob_type.h"
#include "viewers/curve_plot.h"
#include "viewers/dump_clut_dialog.h"
#include "viewers/lut_exchange.h"
#include "viewers/lut_property_sheet.h"
#include "viewers/mlut_property_sheet.h"

#include <QApplication>
#include <QLabel>
#include <QProgressDialog>
#include <QScrollBar>
#include <QTabWidget>
#include <QTest>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>

namespace fs = std::filesystem;

namespace {

const std::string kCmyk = "/usr/share/color/icc/ghostscript/default_cmyk.icc";
const std::string kX11 = "/usr/share/color/icc/colord/x11-colors.icc";
const QString kBox = QStringLiteral("info | Veltrino | ");
const QString kMismatch =
    kBox + "Error: Tag signatures are mismatched or the tag sizes are different.\n";

// Opens the real sheets without their modal loops: the script runs on the sheet, which then
// closes with OK unless `ok` was cleared.
class SheetPrompts : public ScriptedPrompts {
public:
    std::function<void(CiccLutPropertySheet&)> onLut;
    std::function<void(CLutB2APropertySheet&)> onMlut;
    bool ok = true;
    int opened = 0;

    icViewerResult lutViewer(std::string_view caption, iccMftLut& lut,
                             icSignature outputSpace) override {
        CiccLutPropertySheet sheet(lut, outputSpace, caption, *this);
        ++opened;
        if (onLut)
            onLut(sheet);
        return {ok, sheet.modified(), sheet.setupStatus()};
    }
    icViewerResult mlutViewer(std::string_view caption, iccMlutType& lut) override {
        CLutB2APropertySheet sheet(lut, caption, *this);
        ++opened;
        if (onMlut)
            onMlut(sheet);
        return {ok, sheet.modified(), sheet.setupStatus()};
    }
};

// An open profile whose tags open through the catalogue, as a double click runs it.
struct Session {
    explicit Session(const std::string& path) : document(prompts) { QVERIFY(document.open(path)); }
    void show(icSignature sig) {
        iccProfileRW& profile = document.profile();
        for (int i = 0; i < profile.tagCount(); ++i)
            if (profile.getEntry(i)->sig == sig)
                (void)showTag(prompts, profile, i);
    }
    SheetPrompts prompts;
    iccDocument document;
};

QStringList texts(QWidget& w, const QStringList& names) {
    QStringList out;
    for (const QString& name : names)
        out << text(w, name);
    return out;
}
QStringList numbered(QWidget& w, const QString& pattern, int count) {
    QStringList out;
    for (int i = 0; i < count; ++i)
        out << text(w, pattern.arg(i));
    return out;
}
QStringList tabs(QTabWidget* pages) {
    QStringList out;
    for (int i = 0; i < pages->count(); ++i)
        out << pages->tabText(i);
    return out;
}
int visibleBars(QWidget& page) {
    int n = 0;
    for (int c = 0; c < 12; ++c)
        n += get<QScrollBar>(page, QStringLiteral("nodeBar%1").arg(c))->isVisibleTo(&page);
    return n;
}
void click(QWidget& w, const char* button) {
    get<QPushButton>(w, button)->click();
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

std::string profileWith(const std::string& name, icSignature tagSig, const Bytes& tag) {
    ProfileBuilder b;
    b.header.version = 0x04300000;
    b.header.pcs = icSig("Lab ");
    b.tag(tagSig, tag);
    return writeBytes(scratchDir() / name, b.build());
}

// One scroll request on a bar and the node index it must lead to.
struct Step {
    int channel;
    QAbstractSlider::SliderAction action;
    int index;
};
using Node = std::vector<std::uint32_t>;

// Runs the steps on a CLUT page; after each the index box and the shown values (the first
// number of each box) must match the node and the tag's values there.
void walk(QWidget& page, const std::vector<Step>& steps,
          const std::function<Node(const Node&)>& valuesAt, Node node) {
    for (const Step& s : steps) {
        QScrollBar* bar = get<QScrollBar>(page, QStringLiteral("nodeBar%1").arg(s.channel));
        if (s.action == QAbstractSlider::SliderMove)
            bar->setSliderPosition(s.index); // the thumb dragged there
        else
            bar->triggerAction(s.action);
        node[std::size_t(s.channel)] = std::uint32_t(s.index);
        QCOMPARE(text(page, QStringLiteral("nodeIndex%1").arg(s.channel)),
                 QString::number(s.index));
        const Node expected = valuesAt(node);
        Node shown;
        for (std::size_t o = 0; o < expected.size(); ++o)
            shown.push_back(
                text(page, QStringLiteral("value%1").arg(o)).section(' ', 0, 0).toUInt());
        QCOMPARE(shown, expected);
    }
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

class LutViewerTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        DataFolder::set((scratchDir() / "data").string());
        if (!fs::exists(kCmyk))
            QSKIP("ghostscript's default_cmyk.icc is not installed");
    }

    void lut8PagesStepAcceptAndWriteBack();
    void lut16LabTextsCurvesAndCancel();
    void lutExportImportAndMismatch();
    void mlutEveryElementCombination();
    void mlutNodesWarningAndExchange();
    void malformedRealMbaShowsOnlyTheFailure();
    void folderDialogModes();
    void busyIndicatorKeepsTheWindowResponsive();
    void qtPresenterRunsTheSheets();
    void screenshots();
};

[[maybe_unused]] const bool registered = registerGuiTest<LutViewerTest>();

using A = QAbstractSlider;

void LutViewerTest::lut8PagesStepAcceptAndWriteBack() {
    Session s(kCmyk);
    iccLut8Type tag;
    QCOMPARE(tag.loadBySignature(icSig("B2A0"), s.document.profile()), icOk);
    s.prompts.onLut = [&](CiccLutPropertySheet& sheet) {
        QCOMPARE(sheet.windowTitle(), "BToA0 Tag");
        QTabWidget* pages = sheet.pages();
        QCOMPARE(tabs(pages),
                 (QStringList{"LUT Info", "Input Channels", "CLUT", "Output Channels"}));
        QCOMPARE(texts(sheet, {"lutTypeValue", "inputChannelsValue", "inputEntriesValue",
                               "outputChannelsValue", "outputEntriesValue", "clutPointsValue"}),
                 (QStringList{"8-bit LUT", "3", "256", "4", "256", "33"}));
        QCOMPARE(numbered(sheet, "matrix%1", 4),
                 (QStringList{"1.000000", "0.000000", "0.000000", "0.000000"}));

        pages->setCurrentIndex(2);
        QWidget& clut = *pages->currentWidget();
        QCOMPARE(visibleBars(clut), 3);
        QCOMPARE(get<QScrollBar>(clut, "nodeBar0")->maximum(), 32);
        QCOMPARE(text(clut, "nodeRange0"), "32");
        QVERIFY(get(clut, "value3")->isVisibleTo(&clut) &&
                !get(clut, "value4")->isVisibleTo(&clut));
        QCOMPARE(text(clut, "note0"), ""); // lut8 without Lab outputs: no second text
        walk(clut,
             {{0, A::SliderSingleStepSub, 0},
              {0, A::SliderSingleStepAdd, 1},
              {0, A::SliderPageStepAdd, 3},
              {0, A::SliderPageStepSub, 1},
              {0, A::SliderSingleStepSub, 0},
              {2, A::SliderMove, 31},
              {2, A::SliderPageStepAdd, 32},
              {2, A::SliderSingleStepAdd, 32},
              {1, A::SliderToMaximum, 0},
              {0, A::SliderMove, 31},
              {2, A::SliderMove, 2}},
             [&](const Node& n) { return lutNode(tag, n); }, {0, 0, 0});

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
    };
    s.show(icSig("B2A0"));
    QCOMPARE(s.prompts.opened, 1);
    QCOMPARE(s.prompts.take(), QStringList());

    const std::string saved = (scratchDir() / "cmyk-lut8-saved.icc").string();
    QCOMPARE(s.document.saveAs(saved), icOk);
    iccProfileRW reread;
    QCOMPARE(reread.loadFromFile(saved), icOk);
    iccLut8Type back;
    QCOMPARE(back.loadBySignature(icSig("B2A0"), reread), icOk);
    QCOMPARE(lutNode(back, {31, 0, 2}), (Node{255, 0, 0, 17}));
    // Nothing else changed.
    const std::size_t at = ((31 * 33 + 0) * 33 + 2) * 4;
    std::copy_n(back.clut.begin() + at, 4, tag.clut.begin() + at);
    QVERIFY(back.clut == tag.clut);
}

void LutViewerTest::lut16LabTextsCurvesAndCancel() {
    Session s(kCmyk);
    iccLut16Type tag;
    QCOMPARE(tag.loadBySignature(icSig("A2B0"), s.document.profile()), icOk);
    const Bytes before(tag.raw().begin(), tag.raw().end());
    s.prompts.onLut = [&](CiccLutPropertySheet& sheet) {
        QCOMPARE(texts(sheet, {"lutTypeValue", "inputEntriesValue", "outputEntriesValue",
                               "clutPointsValue"}),
                 (QStringList{"16-bit LUT", "256", "2", "9"}));
        // One curve per channel on the tables' own scale, and the number of entries.
        QWidget& inputs = *sheet.pages()->widget(1);
        const icCurvePlotData& in = get<CCurvePlot>(inputs, "curvePlot")->data();
        QCOMPARE(in.labels, (std::vector<std::string>{"Channel #0", "Channel #1", "Channel #2",
                                                      "Channel #3"}));
        QCOMPARE(in.valueScale, 65535.0);
        QCOMPARE(in.curves[3].back(), double(tag.inputTables[3 * 256 + 255]));
        QCOMPARE(in.style, icCurvePlotStyle::table);
        QCOMPARE(in.inputRange, 255.0);
        const auto points = [&](int page) {
            return qobject_cast<CiccLutCurvePage*>(sheet.pages()->widget(page))->pointsText();
        };
        QCOMPARE(points(1), "256 points");
        QCOMPARE(points(3), "2 points");

        sheet.pages()->setCurrentIndex(2);
        QWidget& clut = *sheet.pages()->currentWidget();
        QCOMPARE(visibleBars(clut), 4);
        walk(clut,
             {{3, A::SliderPageStepAdd, 2},
              {0, A::SliderMove, 8},
              {0, A::SliderSingleStepAdd, 8},
              {1, A::SliderPageStepAdd, 2},
              {1, A::SliderSingleStepSub, 1}},
             [&](const Node& n) { return lutNode(tag, n); }, {0, 0, 0, 0});
        // Lab outputs: L* in units of 652.8, a* and b* as their high byte around 128.
        const Node v = lutNode(tag, {8, 1, 0, 2});
        QCOMPARE(text(clut, "note0"),
                 QStringLiteral("(%1x2.55)").arg(unsigned(v[0] / 652.8 + 0.5)));
        QCOMPARE(text(clut, "note2"), QStringLiteral("(%1+128)").arg(int(v[2] >> 8) - 128));

        get(clut, "value0")->setText("70000");
        click(clut, "acceptButton");
        QCOMPARE(text(clut, "note0"), "(100x2.55)"); // the stored value's, at once
        QVERIFY(looksReadOnly(get(clut, "nodeIndex0")));

        // Enter in a value box accepts the change and leaves the sheet open. Escape then asks:
        // Cancel stays, Discard closes.
        sheet.show();
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
        s.prompts.ok = false; // Cancel: the change stays out of the profile
    };
    s.show(icSig("A2B0"));
    QCOMPARE(s.prompts.opened, 1);
    iccLut16Type after;
    QCOMPARE(after.loadBySignature(icSig("A2B0"), s.document.profile()), icOk);
    QVERIFY(Bytes(after.raw().begin(), after.raw().end()) == before);

    // More inputs than the page has controls for: the warning each time the page comes to the
    // front, twelve bars, and the page goes on.
    iccLut16Type wide;
    QCOMPARE(wide.initialize(15, 2, 1, 2, 2), icOk);
    ScriptedPrompts prompts;
    CiccLutPropertySheet sheet(wide, icSig("RGB "), "", prompts);
    QCOMPARE(sheet.windowTitle(), "LutType Tag");
    sheet.pages()->setCurrentIndex(2);
    QCOMPARE(prompts.take(), {"stop | Veltrino | Error: Input channels or output channels are "
                              "greater than 12. \nThis program will not work correctly."});
    QCOMPARE(visibleBars(*sheet.pages()->currentWidget()), 12);
    QCOMPARE(text(*sheet.pages()->currentWidget(), "value0"), "0");
}

void LutViewerTest::lutExportImportAndMismatch() {
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

    s.prompts.onLut = [&](CiccLutPropertySheet& sheet) {
        s.prompts.clutFolders = {folder.string(),
                                 deep.string(),
                                 std::nullopt,
                                 other.string(),
                                 (scratchDir() / "no-such-folder").string(),
                                 folder.string()};
        click(sheet, "exportButton");
        QCOMPARE(s.prompts.take(), {exported + QString::fromStdString(folder.string()) + "\n"});
        click(sheet, "exportButton");
        QCOMPARE(s.prompts.take(), {exported + QString::fromStdString(deep.string()) + "\n"});
        QCOMPARE(DataFolder::get(), deep.string().substr(0, 260));
        click(sheet, "importButton"); // cancelled: nothing
        QCOMPARE(s.prompts.take(), QStringList());

        sheet.pages()->setCurrentIndex(2);
        QWidget& clut = *sheet.pages()->currentWidget();
        const QStringList shownBefore = numbered(clut, "value%1", 3);
        click(sheet, "importButton");
        QCOMPARE(s.prompts.take(), {kMismatch});
        click(sheet, "importButton");
        QCOMPARE(s.prompts.take(), {kBox + "Failed in importing files...\n"});
        QVERIFY(!sheet.modified());
        sheet.pages()->setCurrentIndex(0);
        sheet.pages()->setCurrentIndex(2);
        QCOMPARE(numbered(clut, "value%1", 3), shownBefore);

        changeFirstGridPoint(folder, "0 1 2 3 ");
        click(sheet, "importButton");
        QCOMPARE(s.prompts.take(), {kBox + "Successfully import a Lut16 tag from folder:" +
                                    QString::fromStdString(folder.string()) + "\n"});
        QVERIFY(sheet.modified());
        QCOMPARE(numbered(clut, "value%1", 3), (QStringList{"1", "2", "3"}));
    };
    s.show(icSig("A2B0"));
    // Each opening proposed the folder the one before took.
    const auto& asked = s.prompts.clutFolderRequests;
    QCOMPARE(asked.size(), std::size_t(6));
    QCOMPARE(asked[0].mode, 2u);
    QCOMPARE(asked[1].proposed, folder.string());
    QCOMPARE(asked[2].proposed, deep.string().substr(0, 260));

    iccLut16Type written;
    QCOMPARE(written.loadBySignature(icSig("A2B0"), s.document.profile()), icOk);
    QCOMPARE(lutNode(written, {0, 0, 0, 0}), (Node{1, 2, 3}));
}

void LutViewerTest::mlutEveryElementCombination() {
    // B curves always; M curves with the matrix; A curves with the CLUT.
    for (const icMlutElements e : {icMlutElements{true, false, false, false, false},
                                   icMlutElements{true, true, true, false, false},
                                   icMlutElements{true, false, false, true, true},
                                   icMlutElements{true, true, true, true, true}}) {
        const Bytes bytes = mlutTag(iccMlutType::kAToB, e, {3, 2}, 2);
        iccMlutType tag;
        QCOMPARE(tag.setData(bytes), icOk);
        Session s(profileWith("mab-combo.icc", icSig("A2B1"), bytes));
        s.prompts.onMlut = [&](CLutB2APropertySheet& sheet) {
            QCOMPARE(sheet.windowTitle(), "AToB1 Tag");
            QTabWidget* pages = sheet.pages();
            QCOMPARE(tabs(pages), (QStringList{"LUT Info", "\"B\" Curve", "Matrix", "\"M\" Curve",
                                               "Multidimensional LUT", "\"A\" Curve"}));
            QCOMPARE(text(sheet, "typeLabel"), "lutAToBType:");
            QCOMPARE(texts(sheet, {"chainValue", "inputChannelsValue", "outputChannelsValue"}),
                     (QStringList{"(A curve)->(multidimensional LUT)->(M curve)->(matrix)->(B "
                                  "curve)",
                                  "2", "2"}));
            const auto offset = [](std::uint32_t o) {
                return o ? QStringLiteral("%1 / 0X%2").arg(o).arg(QString::number(o, 16).toUpper())
                         : QStringLiteral("N/A");
            };
            QCOMPARE(
                texts(sheet, {"bCurvesOffset", "matrixOffset", "mCurvesOffset", "clutOffset",
                              "aCurvesOffset"}),
                (QStringList{offset(tag.offsetB), offset(tag.offsetMatrix), offset(tag.offsetM),
                             offset(tag.offsetClut), offset(tag.offsetA)}));
            const auto labels = sheet.findChildren<QLabel*>();
            QVERIFY(std::any_of(labels.begin(), labels.end(),
                                [](QLabel* l) { return l->text() == "Mulitdimensional LUT:"; }));
            QCOMPARE(numbered(*pages->widget(2), "matrix%1", 12),
                     e.matrix ? (QStringList{"-1", "-0.75", "-0.5", "-0.25", "0", "0.25", "0.5",
                                             "0.75", "1", "1.25", "1.5", "1.75"})
                              : QStringList(12, "N/A"));
            // Each curve page plots its set with numbered labels, or is the empty plot.
            for (const auto& [page, present] :
                 {std::pair{1, e.bCurves}, {3, e.mCurves}, {5, e.aCurves}}) {
                pages->setCurrentIndex(page);
                const icCurvePlotData& data =
                    get<CCurvePlot>(*pages->widget(page), "curvePlot")->data();
                QCOMPARE(data.curves.size(), present ? std::size_t(2) : std::size_t(0));
                if (present)
                    QCOMPARE(data.labels[1], page == 1   ? "#1: gamma=2.2"
                                             : page == 3 ? "#1: 3 points"
                                                         : "#1: gamma=1.8");
            }
            pages->setCurrentIndex(4);
            QWidget& clut = *pages->widget(4);
            QCOMPARE(get<QScrollBar>(clut, "nodeBar0")->isEnabled(), e.clut);
            QCOMPARE(visibleBars(clut), e.clut ? 2 : 12);
            QCOMPARE(text(clut, "precisionValue"), e.clut ? "16-bit/channel" : "");
            if (e.clut)
                QCOMPARE(texts(clut, {"nodeRange0", "nodeRange1", "value0", "value1"}),
                         (QStringList{"2", "1", "0 (0)", "37 (0)"}));
        };
        s.show(icSig("A2B1"));
        QCOMPARE(s.prompts.opened, 1);
        QCOMPARE(s.prompts.take(), QStringList());
    }
}

void LutViewerTest::mlutNodesWarningAndExchange() {
    // 'mBA ' over grid 9, 17, 17: every bar runs to 8, each label says its own end.
    const Bytes bytes = mlutTag(iccMlutType::kBToA, {true, true, true, true, true});
    iccMlutType tag;
    QCOMPARE(tag.setData(bytes), icOk);
    const fs::path folder = scratchDir() / "mlut-folder";
    const fs::path other = scratchDir() / "mlut-other";
    fs::remove_all(folder);
    iccMlutType smaller;
    QCOMPARE(
        smaller.setData(mlutTag(iccMlutType::kBToA, {true, true, true, true, true}, {9, 17, 16})),
        icOk);
    QCOMPARE(ExportMlutFolder(smaller, other), icOk);

    Session s(profileWith("mba.icc", icSig("B2A0"), bytes));
    s.prompts.onMlut = [&](CLutB2APropertySheet& sheet) {
        QCOMPARE(texts(sheet, {"typeLabel", "chainValue"}),
                 (QStringList{"lutBToAType:", "(B curve)->(matrix)->(M curve)->(multidimensional "
                                              "LUT)->(A curve)"}));
        sheet.pages()->setCurrentIndex(4);
        QWidget& clut = *sheet.pages()->currentWidget();
        QCOMPARE(texts(clut, {"nodeRange0", "nodeRange1", "nodeRange2"}),
                 (QStringList{"8", "16", "16"}));
        for (int c = 0; c < 3; ++c)
            QCOMPARE(get<QScrollBar>(clut, QStringLiteral("nodeBar%1").arg(c))->maximum(), 8);
        // The arrows walk a channel to its own end, beyond its bar's range.
        walk(clut,
             {{2, A::SliderMove, 8},
              {2, A::SliderPageStepAdd, 10},
              {2, A::SliderPageStepAdd, 12},
              {2, A::SliderSingleStepAdd, 13},
              {1, A::SliderSingleStepAdd, 1},
              {0, A::SliderPageStepAdd, 2},
              {0, A::SliderSingleStepSub, 1}},
             [&](const Node& n) {
                 Node v;
                 for (std::uint32_t o = 0; o < 3; ++o)
                     v.push_back(tag.clut->value(((n[0] * 17 + n[1]) * 17 + n[2]) * 3 + o));
                 return v;
             },
             {0, 0, 0});
        const std::uint32_t v = tag.clut->value(((1 * 17 + 1) * 17 + 13) * 3);
        QCOMPARE(text(clut, "value0"), QStringLiteral("%1 (%2)").arg(v).arg(v >> 8));

        s.prompts.clutFolders = {folder.string(), other.string(), folder.string()};
        click(sheet, "exportButton");
        QCOMPARE(s.prompts.clutFolderRequests.back().mode, 4u);
        QCOMPARE(s.prompts.take(), {kBox + "Successfully export MLUT to folder:" +
                                    QString::fromStdString(folder.string()) + "\n"});
        click(sheet, "importButton");
        QCOMPARE(s.prompts.take(), {kMismatch});
        QVERIFY(!sheet.modified());

        changeFirstGridPoint(folder, "0 11 22 33 ");
        click(sheet, "importButton");
        QCOMPARE(s.prompts.take(), {kBox + "Successfully import MLUT from folder:" +
                                    QString::fromStdString(folder.string()) + "\n"});
        QVERIFY(sheet.modified());
        s.prompts.closeAnswers = {icCloseAnswer::keep}; // Escape, then "Apply": as OK
        sheet.reject();
        QCOMPARE(sheet.result(), int(QDialog::Accepted));
        QCOMPARE(s.prompts.take().size(), 1);
        for (int c = 0; c < 3; ++c)
            get<QScrollBar>(clut, QStringLiteral("nodeBar%1").arg(c))->setSliderPosition(0);
        QCOMPARE(numbered(clut, "value%1", 3), (QStringList{"11 (0)", "22 (0)", "33 (0)"}));
    };
    s.show(icSig("B2A0"));
    iccLutBToAType written;
    QCOMPARE(written.loadBySignature(icSig("B2A0"), s.document.profile()), icOk);
    QCOMPARE(written.clut->value(2), 33u);

    // Nine inputs: the page warns with its own wording but walks all nine.
    iccMlutType wide;
    QCOMPARE(wide.setData(mlutTag(iccMlutType::kAToB, {true, false, false, true, true},
                                  std::vector<std::uint8_t>(9, 2), 1, 1)),
             icOk);
    ScriptedPrompts prompts;
    CLutB2APropertySheet sheet(wide, "", prompts);
    QCOMPARE(sheet.windowTitle(), "Version-4 LUT Tag");
    sheet.pages()->setCurrentIndex(4);
    QCOMPARE(prompts.take(), {"stop | Veltrino | Error: Input channels or output channels are "
                              "greater than 12. \nThe program will not work correctly."});
    QCOMPARE(visibleBars(*sheet.pages()->currentWidget()), 9);
    QCOMPARE(text(*sheet.pages()->currentWidget(), "precisionValue"), "8-bit/channel");
}

// colord's named-colour profiles carry an 'mBA ' whose matrix overlaps its B curves: it does
// not decode (Little CMS refuses it too), so the failure box is all that shows.
void LutViewerTest::malformedRealMbaShowsOnlyTheFailure() {
    if (!fs::exists(kX11))
        QSKIP("colord's x11-colors.icc is not installed");
    Session s(kX11);
    s.show(icSig("B2A0"));
    QCOMPARE(s.prompts.opened, 0);
    QCOMPARE(s.prompts.take(), {"stop | Veltrino | Failed in displaying tag. Errcode: -1.\n"});
    QVERIFY(s.prompts.dumps.empty());
}

void LutViewerTest::folderDialogModes() {
    DataFolder::set("/data/luts");
    const QStringList rows{"headerFile",      "firstCurveRow", "firstCurveFile",
                           "clutFile",        "matrixFile",    "secondCurveRow",
                           "secondCurveFile", "mCurveRow",     "mCurveFile"};
    CDumpCLUT lut(2);
    QCOMPARE(lut.windowTitle(), "Import/Export CLUT");
    QCOMPARE(text(lut, "folderEdit"), "/data/luts");
    QVERIFY(!get<QPushButton>(lut, "browseButton")->isEnabled());
    QCOMPARE(texts(lut, rows),
             (QStringList{"header.txt", "Input Curve", "InputCurves.txt", "CLUT.txt", "Matrix.txt",
                          "Output Curve", "OutputCurves.txt", "\"M\" Curve", "Not Available"}));
    CDumpCLUT mab(4);
    QCOMPARE(texts(mab, rows),
             (QStringList{"header.txt", "\"B\" Curve", "BCurve.txt", "CLUT.txt", "Matrix.txt",
                          "\"A\" Curve", "ACurve.txt", "\"M\" Curve", "MCurve.txt"}));
    get(lut, "folderEdit")->setText("/elsewhere");
    click(lut, "cancelButton");
    QCOMPARE(DataFolder::get(), "/data/luts");
}

void LutViewerTest::busyIndicatorKeepsTheWindowResponsive() {
    // The work waits until the window's thread has seen the indicator, which it can only do
    // while the work runs.
    std::atomic<bool> seen{false};
    QTimer poll;
    poll.setInterval(5);
    connect(&poll, &QTimer::timeout, [&] {
        for (QWidget* w : QApplication::topLevelWidgets())
            if (auto* busy = qobject_cast<QProgressDialog*>(w);
                busy && busy->objectName() == kExchangeProgressName && busy->isVisible())
                seen = true;
    });
    poll.start();
    QWidget owner;
    runWithBusyIndicator(
        &owner, "Working...",
        [&] {
            for (int i = 0; i < 2000 && !seen; ++i)
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
        },
        0);
    QVERIFY(seen);
    QVERIFY(owner.findChildren<QProgressDialog*>().isEmpty());
}

void LutViewerTest::qtPresenterRunsTheSheets() {
    iccLut8Type lut8;
    QCOMPARE(lut8.initialize(1, 1, 2), icOk);
    iccMlutType mlut;
    QCOMPARE(mlut.setData(mlutTag(iccMlutType::kAToB, {true, false, false, true, true}, {2}, 1)),
             icOk);
    QtPresenter presenter;
    const auto closeWith = [](bool ok) {
        QTimer::singleShot(0, [ok] {
            for (QWidget* w : QApplication::topLevelWidgets())
                if (auto* d = qobject_cast<QDialog*>(w); d && d->isVisible())
                    ok ? d->accept() : d->reject();
        });
    };
    closeWith(true);
    const icViewerResult lut = presenter.lutViewer("AToB0 Tag", lut8, icSig("Lab "));
    QVERIFY(lut.accepted && !lut.modified && lut.status == icOk);
    closeWith(false);
    const icViewerResult mab = presenter.mlutViewer("AToB0 Tag", mlut);
    QVERIFY(!mab.accepted && !mab.modified);
}

// The pages shown in the documentation, written when VELTRINO_SCREENSHOT_DIR names a folder.
void LutViewerTest::screenshots() {
    const QString dir = qEnvironmentVariable("VELTRINO_SCREENSHOT_DIR");
    if (dir.isEmpty())
        QSKIP("VELTRINO_SCREENSHOT_DIR is not set");
    const auto shoot = [&](QDialog& sheet, QTabWidget* pages, int page, const char* name) {
        pages->setCurrentIndex(page);
        sheet.show();
        QVERIFY(QTest::qWaitForWindowExposed(&sheet));
        QVERIFY(sheet.grab().save(dir + "/" + name, "PNG"));
    };
    const auto moveTo = [](QWidget& page, const Node& node) {
        for (std::size_t c = 0; c < node.size(); ++c)
            get<QScrollBar>(page, QStringLiteral("nodeBar%1").arg(c))
                ->setSliderPosition(int(node[c]));
    };
    Session s(kCmyk);
    s.prompts.onLut = [&](CiccLutPropertySheet& sheet) {
        moveTo(*sheet.pages()->widget(2), {12, 20, 5});
        shoot(sheet, sheet.pages(), 2, "lut-clut.png");
        shoot(sheet, sheet.pages(), 3, "lut-curves.png");
    };
    s.show(icSig("B2A0"));

    // No installed profile has an 'mAB ' that decodes, so the lutAToB pages show a built one.
    Session m(profileWith("mab-shot.icc", icSig("A2B0"),
                          mlutTag(iccMlutType::kAToB, {true, true, true, true, true})));
    m.prompts.onMlut = [&](CLutB2APropertySheet& sheet) {
        moveTo(*sheet.pages()->widget(4), {4, 0, 7});
        shoot(sheet, sheet.pages(), 4, "mlut-clut.png");
        shoot(sheet, sheet.pages(), 1, "mlut-curves.png");
    };
    m.show(icSig("A2B0"));
}

#include "lut_viewer_test.moc"
