// The curve, XYZ, named colour and localized-string viewers offscreen: opened from the catalogue
// through the desktop presenter on installed and built profiles, with scripted file dialogs,
// their write-back saved and reloaded, and their plots checked pixel by pixel.
#include "app/qt_presenter.h"
#include "catalogue/catalogue_testing.h"
#include "document/settings_model.h"
#include "gui/gui_test.h"
#include "lutio/curve_text.h"
#include "tagtypes/profile_save.h"
#include "viewers/chromaticity_diagram.h"
#include "viewers/curve_dialog.h"
#include "viewers/curve_plot.h"
#include "viewers/mluc_dialog.h"
#include "viewers/named_color_dialog.h"
#include "viewers/xyz_dialog.h"

#include <QApplication>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QTimer>

#include <functional>
#include <numeric>

namespace fs = std::filesystem;

namespace {

const std::string kSrgb = "/usr/share/color/icc/colord/sRGB.icc";
const std::string kX11 = "/usr/share/color/icc/colord/x11-colors.icc";
const std::string kCrayons = "/usr/share/color/icc/colord/Crayons.icc";
const QString kSaveFailed = "info | Veltrino | Error in saving file!\n";

// The desktop presenter's real viewers, with the scripted service's file dialogs and boxes.
class ViewerPrompts : public QtPresenter {
public:
    void messageBox(icBoxKind kind, std::string_view caption, std::string_view text) override {
        script.messageBox(kind, caption, text);
    }
    std::optional<std::string> askOpenPath(const FileDialogRequest& request) override {
        return script.askOpenPath(request);
    }
    std::optional<std::string> askSavePath(const FileDialogRequest& request) override {
        return script.askSavePath(request);
    }
    icCloseAnswer askBeforeClosing(icKeepButton keep, std::string_view caption,
                                   std::string_view text) override {
        return script.askBeforeClosing(keep, caption, text);
    }
    ScriptedPrompts script;
};

// Shows tag `sig` through the catalogue and runs `act` on the viewer while it is up. A viewer
// that `act` leaves open is cancelled, so a failed check never hangs the run.
template <class Dialog>
icStatus showAndAct(Presenter& presenter, iccProfileRW& profile, const char (&sig)[5],
                    std::function<void(Dialog&)> act) {
    QTimer::singleShot(0, [act] {
        for (QWidget* w : QApplication::topLevelWidgets())
            if (auto* dialog = qobject_cast<Dialog*>(w); dialog && dialog->isVisible()) {
                act(*dialog);
                if (dialog->isVisible())
                    dialog->reject();
                return;
            }
    });
    return showTag(presenter, profile, profile.findTag(icSig(sig)));
}

QString q(const std::string& s) {
    return QString::fromLatin1(s.data(), static_cast<qsizetype>(s.size()));
}
QStringList q(const std::vector<std::string>& lines) {
    QStringList out;
    for (const std::string& line : lines)
        out << q(line);
    return out;
}

std::unique_ptr<iccProfileRW> load(const std::string& path) {
    auto profile = std::make_unique<iccProfileRW>();
    return profile->loadFromFile(path) == icOk ? std::move(profile) : nullptr;
}
Bytes tagOf(iccProfileRW& profile, const char (&sig)[5]) {
    const auto bytes = profile.getTagData(profile.findTag(icSig(sig)));
    return Bytes(bytes.begin(), bytes.end());
}

bool near(QColor a, QColor b, int tolerance = 40) {
    return std::abs(a.red() - b.red()) <= tolerance &&
           std::abs(a.green() - b.green()) <= tolerance &&
           std::abs(a.blue() - b.blue()) <= tolerance;
}
QColor at(const QImage& image, icPlotPoint p, QPoint offset = {}) {
    return image.pixelColor(int(p.x) + offset.x(), int(p.y) + offset.y());
}
// Whether a line of that colour passes through the pixel at `p` or one beside it: antialiased
// lines at fractional positions cover no single pixel fully.
bool lineAt(const QImage& image, icPlotPoint p, QColor color, int tolerance, QPoint offset = {}) {
    for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx)
            if (near(at(image, {p.x + dx, p.y + dy}, offset), color, tolerance))
                return true;
    return false;
}
int darkPixels(const QImage& image, const QRect& area) {
    int n = 0;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            n += image.pixelColor(x, y).lightness() < 100;
    return n;
}

// Where a screenshot of a dialog is kept: the scratch folder, and the folder in
// VELTRINO_SCREENSHOT_DIR when that is set (the pictures of the documentation).
QImage screenshot(QWidget& dialog, const char* name) {
    dialog.show();
    if (!QTest::qWaitForWindowExposed(&dialog))
        return {};
    const QImage image = dialog.grab().toImage();
    image.save(QString::fromStdString((scratchDir() / name).string()));
    if (const QByteArray dir = qgetenv("VELTRINO_SCREENSHOT_DIR"); !dir.isEmpty())
        image.save(QString::fromLocal8Bit(dir) + '/' + name);
    return image;
}

// 'ncl2' with `count` records of `planes` device values, each the given PCS and device values.
Bytes ncl2Tag(std::uint32_t count, std::uint32_t planes, std::uint32_t records,
              const std::vector<std::uint16_t>& values) {
    Bytes bytes = wordTag(icSig("ncl2"), {0, count, planes});
    bytes.resize(bytes.size() + 64, 0);
    iccWriter w(bytes);
    for (std::uint32_t i = 0; i < records; ++i) {
        Bytes name(32, 0);
        name[0] = static_cast<std::uint8_t>('a' + i);
        w.bytes(name);
        for (std::uint16_t v : values)
            w.u16(v);
    }
    return bytes;
}

} // namespace

class ViewerDialogsTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        for (const std::string& path : {kSrgb, kX11, kCrayons})
            if (!fs::exists(path))
                QSKIP("colord's profiles are not installed");
    }

    void curveExportImportRoundTripOnSrgb() {
        auto profile = load(kSrgb);
        QVERIFY(profile);
        const Bytes original = tagOf(*profile, "rTRC");
        const fs::path folder = scratchDir() / "curves";
        fs::create_directories(folder);
        ViewerPrompts prompts;
        ScriptedPrompts& script = prompts.script;
        DataFolder::set("/start/here");

        // Export, cancel an import, close with OK: nothing to write back.
        QString title;
        QStringList labels;
        script.answers = {(folder / "red.txt").string(), std::nullopt};
        QCOMPARE(showAndAct<CicCurveDlg>(prompts, *profile, "rTRC",
                                         [&](CicCurveDlg& d) {
                                             title = d.windowTitle();
                                             labels = q(d.plot().data().labels);
                                             get<QPushButton>(d, "exportButton")->click();
                                             get<QPushButton>(d, "importButton")->click();
                                             get<QPushButton>(d, "okButton")->click();
                                         }),
                 icOk);
        QCOMPARE(title, "RedTRC Tag");
        QCOMPARE(labels, QStringList{"gamma=2.4;a=0.9479;b=0.05214;c=0.07739;d=0.04045"});
        QCOMPARE(script.requests.size(), std::size_t(2));
        const FileDialogRequest& save = script.requests[0];
        QCOMPARE(save.caption, "Save Curve");
        QCOMPARE(save.filters, (std::vector<std::string>{"Text Files (*.txt)", "All Files (*.*)"}));
        QCOMPARE(save.defaultSuffix, "txt");
        QCOMPARE(save.fileName, "curve.txt");
        QCOMPARE(save.directory, "/start/here");
        QCOMPARE(script.requests[1].caption, "Read Curve");
        QCOMPARE(script.requests[1].fileName, "curve.txt");
        QCOMPARE(script.requests[1].directory, folder.string()); // remembered on OK only
        QCOMPARE(DataFolder::get(), folder.string());
        std::string exported = readText(folder / "red.txt");
        QVERIFY(exported.starts_with("Data_Type: para\nType: 3\nCount: 5\n0 2.399994\n"));
        QCOMPARE(tagOf(*profile, "rTRC"), original);

        // Closing after an import asks first; an import discarded so is not written back.
        exported.replace(exported.find("0 2.399994"), 10, "0 2.200000");
        const std::string edited = writeText(scratchDir() / "red-2.2.txt", exported);
        script.answers = {edited};
        script.closeAnswers = {icCloseAnswer::stay, icCloseAnswer::discard};
        QCOMPARE(showAndAct<CicCurveDlg>(prompts, *profile, "rTRC",
                                         [&](CicCurveDlg& d) {
                                             get<QPushButton>(d, "importButton")->click();
                                             d.close();
                                             QVERIFY(d.isVisible());
                                             d.reject();
                                         }),
                 icOk);
        QCOMPARE(tagOf(*profile, "rTRC"), original);
        QCOMPARE(script.take(), QStringList(2, "apply? | RedTRC Tag | Apply the changes made in "
                                               "RedTRC Tag before closing?"));

        script.answers = {edited};
        QCOMPARE(showAndAct<CicCurveDlg>(prompts, *profile, "rTRC",
                                         [&](CicCurveDlg& d) {
                                             get<QPushButton>(d, "importButton")->click();
                                             labels = q(d.plot().data().labels);
                                             get<QPushButton>(d, "okButton")->click();
                                         }),
                 icOk);
        QCOMPARE(labels, QStringList{"gamma=2.2;a=0.9479;b=0.05214;c=0.07739;d=0.04045"});
        QCOMPARE(script.boxes, QStringList());

        const std::string saved = (scratchDir() / "srgb-gamma-2.2.icc").string();
        QCOMPARE(saveProfileToFile(*profile, saved), icOk);
        auto reloaded = load(saved);
        QVERIFY(reloaded);
        iccCurveElement red, blue, before;
        QCOMPARE(red.loadByTagSignature(icSig("rTRC"), *reloaded), icOk);
        QCOMPARE(before.loadByTagSignature(icSig("rTRC"), *load(kSrgb)), icOk);
        QVERIFY(red.parametric());
        QCOMPARE(int(red.parametric()->functionType), 3);
        QVERIFY(std::abs(red.parametric()->parameters[0] - 2.2) < 1.0 / 65536);
        for (std::size_t i = 1; i < 5; ++i)
            QCOMPARE(red.parametric()->parameters[i], before.parametric()->parameters[i]);
        // The three curves of sRGB share one block, so all three changed.
        QCOMPARE(blue.loadByTagSignature(icSig("bTRC"), *reloaded), icOk);
        QCOMPARE(blue.parametric()->parameters, red.parametric()->parameters);
    }

    void curveDialogLabelsAndFailures() {
        ScriptedPrompts prompts;
        iccCurveElement curve;
        QCOMPARE(curve.create(icSig("curv")), icOk);
        QCOMPARE(curve.curve()->setData(curvTag({0x0233})), icOk);
        CicCurveDlg dialog(curve, std::string(70, 't'), prompts);
        QCOMPARE(dialog.windowTitle(), QString(63, 't'));
        QCOMPARE(q(dialog.plot().data().labels), QStringList{"gamma= 2.2"});

        // A 'para' file for a 'curv' curve, a missing file and an unwritable target: a box each,
        // the curve kept and nothing marked.
        const std::string para =
            writeText(scratchDir() / "para.txt", "Data_Type: para\nType: 0\nCount: 1\n0 "
                                                 "1.800000\n");
        prompts.answers = {para, (scratchDir() / "missing.txt").string(),
                           (scratchDir() / "no-such-dir" / "curve.txt").string()};
        get<QPushButton>(dialog, "importButton")->click();
        get<QPushButton>(dialog, "importButton")->click();
        get<QPushButton>(dialog, "exportButton")->click();
        QCOMPARE(prompts.take(), QStringList(3, kSaveFailed));
        QVERIFY(!dialog.modified());
        QCOMPARE(curve.curve()->gamma(), 0x0233 / 256.0);

        // A parametric type this program cannot draw still opens, saying so in its legend.
        iccCurveElement unknown;
        QCOMPARE(unknown.create(icSig("para")), icOk);
        unknown.parametric()->functionType = 5;
        CicCurveDlg shown(unknown, "", prompts);
        QCOMPARE(shown.setupStatus(), icOk);
        QCOMPARE(shown.windowTitle(), "Curve Tag");
        QCOMPARE(q(shown.plot().data().labels), QStringList{"Curve Type #5 not supported.\n"});
        QVERIFY(shown.plot().data().curves[0].empty());
    }

    void curvePlotDrawsCurvesGridLegendAndEmptyState() {
        icCurvePlotData data;
        data.curves = {{0, 65535}, {32768, 32768}};
        data.labels = numberCurveLabels({"ramp", "level"});
        const QRectF bounds(0, 0, 480, 360);
        const icPlotMapping m = curvePlotMapping(bounds, data);
        for (const qreal ratio : {1.0, 2.0}) {
            QImage image((bounds.size() * ratio).toSize(), QImage::Format_RGB32);
            image.setDevicePixelRatio(ratio);
            QPainter painter(&image);
            drawCurvePlot(painter, bounds, data);
            painter.end();
            const auto pixel = [&](icPlotPoint p) {
                return image.pixelColor(int(p.x * ratio), int(p.y * ratio));
            };
            const auto line = [&](icPlotPoint p, QColor color) {
                return lineAt(image, {p.x * ratio, p.y * ratio}, color, 10);
            };
            QVERIFY(line(m.map(0.75, 0.75 * 65535), curvePlotColor(0, 2)));
            QVERIFY(line(m.map(0.85, 32768), curvePlotColor(1, 2)));
            QVERIFY(line(m.map(0.3, 0.15 * 65535), QColor(222, 222, 222))); // grid
            QVERIFY(!line(m.map(0.35, 0.15 * 65535), QColor(222, 222, 222)));
            QVERIFY(near(pixel(m.map(0.95, 0.95 * 65535 - 6000)), Qt::white, 0));
        }

        // No curves: "No data" in the middle and nothing drawn in a curve's colour.
        QImage empty(480, 360, QImage::Format_RGB32);
        QPainter painter(&empty);
        drawCurvePlot(painter, bounds, {});
        painter.end();
        const icPlotPoint middle = m.map(0.5, 65535 / 2.0);
        QVERIFY(darkPixels(empty, QRect(int(middle.x) - 40, int(middle.y) - 8, 80, 16)) > 20);

        // A resized plot maps onto its new size.
        CCurvePlot plot;
        plot.setData(data);
        for (const QSize size : {QSize(300, 220), QSize(700, 500)}) {
            plot.resize(size);
            const QImage image = plot.grab().toImage();
            const icPlotMapping sized = curvePlotMapping(QRectF(plot.rect()), data);
            QVERIFY(lineAt(image, sized.map(0.8, 0.8 * 65535), curvePlotColor(0, 2), 10));
        }
    }

    void curvePlotTableStyleSetsEqualTablesApart() {
        // Three channels holding the same ramp, as the RGB outputs of many 8-bit tables do.
        std::vector<double> ramp(256);
        std::iota(ramp.begin(), ramp.end(), 0.0);
        icCurvePlotData data;
        data.style = icCurvePlotStyle::table;
        data.valueScale = 255;
        data.inputRange = 255;
        data.curves = {ramp, ramp, ramp};
        data.labels = {"Channel #0", "Channel #1", "Channel #2"};
        data.legendFooter = "256 points";
        const QRectF bounds(0, 0, 480, 360);
        const icPlotMapping m = curvePlotMapping(bounds, data);
        QImage image(480, 360, QImage::Format_RGB32);
        QPainter painter(&image);
        drawCurvePlot(painter, bounds, data);
        painter.end();

        // Along the row of value 128 each channel shows in a column of its own, left to right
        // as the shifts go.
        const int row = int(m.map(0, 128).y);
        std::vector<int> columns;
        for (std::size_t c = 0; c < 3; ++c) {
            int found = -1;
            for (int x = int(m.area().left); found < 0 && x < int(m.area().right()); ++x)
                if (near(image.pixelColor(x, row), curvePlotColor(c, 3), 0))
                    found = x;
            columns.push_back(found);
        }
        QVERIFY2(
            columns[0] >= 0 && columns[0] < columns[1] && columns[1] < columns[2],
            qPrintable(QStringLiteral("%1 %2 %3").arg(columns[0]).arg(columns[1]).arg(columns[2])));

        // A grey grid on every tenth, the frame itself grey rather than dark.
        const QColor grey(0x80, 0x80, 0x80);
        QVERIFY(lineAt(image, m.map(0.3 * 255, 0.15 * 255), grey, 0));
        QVERIFY(lineAt(image, m.map(0, 0.15 * 255), grey, 0));
        QVERIFY(!lineAt(image, m.map(0.35 * 255, 0.15 * 255), grey, 30));

        // The legend right of the plot: a line per channel in its colour, then the footer.
        const double right = m.area().right();
        for (std::size_t c = 0; c < 3; ++c)
            QVERIFY(lineAt(image, {right + 20, kTableLegendTop + kTableLegendRowStep * double(c)},
                           curvePlotColor(c, 3), 0));
        const double footer = kTableLegendTop + kTableLegendRowStep * 2 + kTableLegendFooterGap;
        QVERIFY(darkPixels(image, QRect(int(right + kTableLegendTextStart), int(footer) - 7, 80,
                                        14)) > 20);
    }

    void xyzWriteBackOnSrgb() {
        auto profile = load(kSrgb);
        QVERIFY(profile);
        const Bytes original = tagOf(*profile, "wtpt");
        ViewerPrompts prompts;
        QStringList shown, typed;
        const auto fields = [](QDialog& d) {
            return QStringList{
                d.windowTitle(),       text(d, "valueXEdit"),        text(d, "valueYEdit"),
                text(d, "valueZEdit"), text(d, "chromaticityXEdit"), text(d, "chromaticityYEdit")};
        };
        // Typed values move x and y at once; "&Cancel" keeps the tag.
        QCOMPARE(showAndAct<CcieXYZDlg>(prompts, *profile, "wtpt",
                                        [&](CcieXYZDlg& d) {
                                            shown = fields(d);
                                            get(d, "valueXEdit")->selectAll();
                                            QTest::keyClicks(get(d, "valueXEdit"), "0.5");
                                            typed = fields(d);
                                            get<QPushButton>(d, "cancelButton")->click();
                                        }),
                 icOk);
        QCOMPARE(shown, (QStringList{"MediaWhitePoint Tag", "0.96420", "1.00000", "0.82491",
                                     "0.345703", "0.358538"}));
        QCOMPARE(typed.mid(4), (QStringList{"0.215063", "0.430125"})); // Y and Z exact
        QCOMPARE(tagOf(*profile, "wtpt"), original);

        QCOMPARE(showAndAct<CcieXYZDlg>(prompts, *profile, "wtpt",
                                        [&](CcieXYZDlg& d) {
                                            get(d, "valueXEdit")->setText("0.25");
                                            emit get(d, "valueXEdit")->textEdited("0.25");
                                            // Refused on OK, the old value back in its box.
                                            for (const QString bad : {"abc", "1e9", "0"}) {
                                                get(d, "valueZEdit")->setText(bad);
                                                emit get(d, "valueZEdit")->textEdited(bad);
                                                get<QPushButton>(d, "okButton")->click();
                                                QCOMPARE(text(d, "valueZEdit"),
                                                         d.isVisible() ? "0.82491" : "0");
                                            }
                                        }),
                 icOk);
        const std::string saved = (scratchDir() / "srgb-white.icc").string();
        QCOMPARE(saveProfileToFile(*profile, saved), icOk);
        auto reloaded = load(saved);
        QVERIFY(reloaded);
        iccXYZType white;
        QCOMPARE(white.loadByIndex(reloaded->findTag(icSig("wtpt")), *reloaded), icOk);
        QCOMPARE(white.X, 0.25);
        QCOMPARE(white.Y, 1.0);
        QCOMPARE(white.Z, 0.0);
        QCOMPARE(prompts.script.boxes,
                 (QStringList{"warning | MediaWhitePoint Tag | Z: \"abc\" is not a number from "
                              "-32768 to 32767.99998. The old value is kept.",
                              "warning | MediaWhitePoint Tag | Z: \"1e9\" is not a number from "
                              "-32768 to 32767.99998. The old value is kept."}));

        // Black: the chromaticity falls back to 0.3333 and the circle is drawn there.
        CcieXYZDlg black(0, 0, 0, "", prompts);
        QCOMPARE(black.windowTitle(), "XYZ Data");
        QCOMPARE(text(black, "chromaticityXEdit"), "0.333300");
        QCOMPARE(black.diagram().value().xy.y, 0.3333);
    }

    void namedColorsOnColordProfiles() {
        const std::tuple<std::string, int, int> profiles[] = {{kX11, 138, 13}, {kCrayons, 24, 2}};
        for (const auto& [path, count, page] : profiles) {
            auto profile = load(path);
            QVERIFY(profile);
            icNamedColor2 colors;
            QCOMPARE(decodeNamedColor2(tagOf(*profile, "ncl2"), colors), icOk);
            const NamedColorModel reference(colors, profile->header().pcs);
            ScriptedPrompts prompts;
            CNameColor2Dlg d(colors, profile->header().pcs, "Named Color2 Tag", prompts);
            d.show();
            QStringList header;
            for (const char* name : {"vendorFlagEdit", "colorCountEdit", "devicePlanesEdit",
                                     "prefixEdit", "suffixEdit"})
                header << text(d, name);
            QCOMPARE(header, (QStringList{"0", QString::number(count), "3", "", ""}));
            QCOMPARE(get<QLabel>(d, "pcsLabel1")->text(), "CIE a*:");
            QVERIFY(!get(d, "channelEdit2")->isHidden());
            QVERIFY(get(d, "channelEdit3")->isHidden() &&
                    get<QLabel>(d, "channelLabel7")->isHidden());

            // Every shown field against the model's lines for that colour.
            const auto shownLines = [&] {
                QStringList lines{"Color #: " + text(d, "indexEdit"),
                                  "Root name: " + text(d, "rootNameEdit")};
                for (int i = 0; i < 3; ++i)
                    lines << get<QLabel>(d, QString("pcsLabel%1").arg(i))->text() + " " +
                                 text(d, QString("pcsEdit%1").arg(i));
                for (int c = 0; c < 3; ++c)
                    lines << QString("Channel %1: ").arg(c) +
                                 text(d, QString("channelEdit%1").arg(c));
                return lines;
            };
            auto* bar = get<QScrollBar>(d, "colorScroll");
            const std::pair<QAbstractSlider::SliderAction, int> steps[] = {
                {QAbstractSlider::SliderSingleStepSub, 0},
                {QAbstractSlider::SliderSingleStepAdd, 1},
                {QAbstractSlider::SliderPageStepAdd, 1 + page},
                {QAbstractSlider::SliderToMaximum, 1 + page},
                {QAbstractSlider::SliderPageStepSub, 1},
                {QAbstractSlider::SliderPageStepSub, 0}};
            QCOMPARE(shownLines(), q(reference.colorLines(0)));
            for (const auto& [action, index] : steps) {
                bar->triggerAction(action);
                QCOMPARE(bar->value(), index);
                QCOMPARE(shownLines(), q(reference.colorLines(index)));
            }
            bar->setSliderPosition(count - 2); // dragging the thumb
            QCOMPARE(text(d, "indexEdit"), QString::number(count - 2));
            bar->triggerAction(QAbstractSlider::SliderPageStepAdd);
            QCOMPARE(bar->value(), count - 1);

            // Typed digit by digit: "2", "20", then "200" is past the last colour.
            get(d, "indexEdit")->selectAll();
            QTest::keyClicks(get(d, "indexEdit"), "200");
            QCOMPARE(prompts.take(),
                     QStringList{
                         QString("info | Veltrino | ERROR: Maximum index is %1\n").arg(count - 1)});
            QCOMPARE(shownLines(), q(reference.colorLines(count - 1)));
            QCOMPARE(bar->value(), count - 1);
            get(d, "indexEdit")->setText("70000"); // past the box's own range: no colour asked
            emit get(d, "indexEdit")->textEdited("70000");
            QCOMPARE(prompts.boxes, QStringList());
            QCOMPARE(bar->value(), count - 1);
        }
    }

    void namedColorsOpenFromTheCatalogue() {
        auto profile = load(kCrayons);
        QVERIFY(profile);
        ViewerPrompts prompts;
        QString shown;
        const auto act = [&](CNameColor2Dlg& d) {
            shown = d.windowTitle() + text(d, "rootNameEdit");
        };
        QCOMPARE(showAndAct<CNameColor2Dlg>(prompts, *profile, "ncl2", act), icOk);
        QCOMPARE(shown, "Named Color2 TagWhite");
    }

    void namedColorEdgeCases() {
        // Nine planes: the header and the box once the dialog is up, no colour.
        icNamedColor2 colors;
        QCOMPARE(decodeNamedColor2(ncl2Tag(1, 9, 1, std::vector<std::uint16_t>(12, 1)), colors),
                 icOk);
        ScriptedPrompts prompts;
        CNameColor2Dlg nine(colors, icSig("Lab "), "", prompts);
        QCOMPARE(prompts.boxes, QStringList());
        nine.show();
        nine.hide();
        nine.show();
        QCOMPARE(prompts.take(),
                 QStringList{"info | Veltrino | Device planes is greater than 8. Current version "
                             "of Veltrino not supported.\n"});
        QCOMPARE(nine.windowTitle(), "Named Color Tag");
        QCOMPARE(text(nine, "devicePlanesEdit"), "9");
        QCOMPARE(text(nine, "rootNameEdit"), "");
        QVERIFY(!get(nine, "channelEdit7")->isHidden());
        QVERIFY(!get(nine, "indexEdit")->isEnabled());

        // No colours at all: nothing to show and nothing to step.
        QCOMPARE(decodeNamedColor2(ncl2Tag(0, 3, 0, {}), colors), icOk);
        CNameColor2Dlg none(colors, icSig("Lab "), "", prompts);
        none.show();
        get<QScrollBar>(none, "colorScroll")->triggerAction(QAbstractSlider::SliderSingleStepAdd);
        QCOMPARE(text(none, "rootNameEdit"), "");
        QVERIFY(!get<QScrollBar>(none, "colorScroll")->isEnabled());
        QCOMPARE(prompts.boxes, QStringList());
    }

    void localizedStringsOnSrgbAndBuilt() {
        auto profile = load(kSrgb);
        QVERIFY(profile);
        iccMultiLocalizedUnicodeType copyright;
        QCOMPARE(copyright.loadByIndex(profile->findTag(icSig("cprt")), *profile), icOk);
        const MlucModel reference(copyright);
        ViewerPrompts prompts;
        QStringList header;
        QCOMPARE(showAndAct<CulmcDlg>(prompts, *profile, "cprt",
                                      [&](CulmcDlg& d) {
                                          header = QStringList{
                                              d.windowTitle(), text(d, "nameCountEdit"),
                                              text(d, "recordSizeEdit"),
                                              get<QLabel>(d, "highestIndexLabel")->text()};
                                      }),
                 icOk);
        QCOMPARE(header, (QStringList{"Copyright Tag", "31", "12", "30"}));

        CulmcDlg d(copyright, "Copyright Tag");
        const auto shownLines = [&] {
            QStringList lines{get<QGroupBox>(d, "recordGroup")->title()};
            const char* names[] = {"languageEdit", "countryEdit", "lengthEdit", "offsetEdit"};
            for (std::size_t i = 0; i < 4; ++i)
                lines << q(std::string(kMlucRecordLabels[i])) + " " + text(d, names[i]);
            auto* list = get<QListWidget>(d, "dumpList");
            for (int i = 0; i < list->count(); ++i)
                lines << list->item(i)->text();
            return lines;
        };
        QCOMPARE(shownLines(), q(reference.recordLines(0)));
        QCOMPARE(shownLines()[1], "Language Code: 0X656E/'en'");
        QCOMPARE(get<QListWidget>(d, "dumpList")->count(), 7); // 104 bytes
        auto* bar = get<QScrollBar>(d, "recordScroll");
        const std::pair<QAbstractSlider::SliderAction, int> steps[] = {
            {QAbstractSlider::SliderSingleStepAdd, 1},
            {QAbstractSlider::SliderPageStepAdd, 3},
            {QAbstractSlider::SliderToMinimum, 3},
            {QAbstractSlider::SliderPageStepSub, 1},
            {QAbstractSlider::SliderPageStepSub, 0}};
        for (const auto& [action, index] : steps) {
            bar->triggerAction(action);
            QCOMPARE(bar->value(), index);
            QCOMPARE(get<QLabel>(d, "currentIndexLabel")->text(), QString::number(index));
            QCOMPARE(shownLines(), q(reference.recordLines(index)));
        }
        bar->setSliderPosition(29);
        bar->triggerAction(QAbstractSlider::SliderPageStepAdd);
        QCOMPARE(shownLines(), q(reference.recordLines(30)));

        // The list scrolls sideways over its widest line when the window is narrow.
        d.show();
        d.resize(260, 400);
        QTest::qWait(50);
        auto* list = get<QListWidget>(d, "dumpList");
        const int widest = list->fontMetrics().horizontalAdvance(list->item(0)->text());
        QVERIFY(list->horizontalScrollBar()->maximum() > 0);
        QVERIFY(list->horizontalScrollBar()->maximum() + list->viewport()->width() >= widest);

        // A record of no bytes empties the list; no records at all leave the fields empty.
        iccMultiLocalizedUnicodeType built;
        QCOMPARE(built.layoutRecords(std::vector<std::uint16_t>{0x656E, 0x6465},
                                     std::vector<std::uint16_t>{0x5553, 0},
                                     std::vector<std::uint32_t>{16, 0}),
                 icOk);
        CulmcDlg two(built, "");
        QCOMPARE(two.windowTitle(), "MultiLocalizedUnicodeType");
        get<QScrollBar>(two, "recordScroll")->triggerAction(QAbstractSlider::SliderPageStepAdd);
        QCOMPARE(get<QListWidget>(two, "dumpList")->count(), 0);
        const iccMultiLocalizedUnicodeType none;
        CulmcDlg empty(none, "");
        QCOMPARE(text(empty, "nameCountEdit"), "0");
        QCOMPARE(text(empty, "recordSizeEdit"), "");
        QVERIFY(!get<QScrollBar>(empty, "recordScroll")->isEnabled());
    }

    void dialogsRenderOffscreen() {
        auto profile = load(kSrgb);
        QVERIFY(profile);
        ScriptedPrompts prompts;

        iccCurveElement red;
        QCOMPARE(red.loadByTagSignature(icSig("rTRC"), *profile), icOk);
        CicCurveDlg curve(red, "RedTRC Tag", prompts);
        const QImage curveShot = screenshot(curve, "curve-viewer.png");
        const CCurvePlot& plot = curve.plot();
        const QPoint plotAt = plot.mapTo(&curve, QPoint(0, 0));
        const icPlotMapping m = curvePlotMapping(QRectF(plot.rect()), plot.data());
        const std::vector<double>& values = plot.data().curves[0];
        for (const std::size_t i : {600u, 800u, 1000u}) {
            const double x = double(i) / double(values.size() - 1);
            QVERIFY(lineAt(curveShot, m.map(x, values[i]), Qt::black, 10, plotAt));
        }

        iccXYZType white;
        QCOMPARE(white.loadByIndex(profile->findTag(icSig("wtpt")), *profile), icOk);
        CcieXYZDlg xyz(white.X, white.Y, white.Z, "MediaWhitePoint Tag", prompts);
        const QImage xyzShot = screenshot(xyz, "xyz-viewer.png");
        const CChromaticityDiagram& diagram = xyz.diagram();
        const QPoint diagramAt = diagram.mapTo(&xyz, QPoint(0, 0));
        const ChromaticityMapping mapping = chromaticityDiagramMapping(QRectF(diagram.rect()));
        for (const int i : {8, 10, 12, 15, 18, 20, 32, 34}) {
            const icRgb8 c = kSpectralLocus[std::size_t(i)].color;
            QVERIFY2(lineAt(xyzShot, mapping.locus()[std::size_t(i)], QColor(c.r, c.g, c.b), 20,
                            diagramAt),
                     qPrintable(QString("locus point %1").arg(i)));
        }
        const icPlotPoint centre = mapping.map(diagram.value().xy);
        const icRgb8 fill = displayColor(white.X, white.Y, white.Z);
        QCOMPARE(at(xyzShot, centre, diagramAt), QColor(fill.r, fill.g, fill.b));
        QVERIFY(lineAt(xyzShot, {centre.x, centre.y + kValueRadius}, Qt::black, 10, diagramAt));
        QVERIFY(
            !lineAt(xyzShot, {centre.x, centre.y + kValueRadius + 4}, Qt::black, 60, diagramAt));
        // The triangle's red-to-green edge is drawn in grey.
        const auto corners = mapping.srgbTriangle();
        int grey = 0;
        for (int t = 20; t <= 80; ++t) {
            const icPlotPoint p{corners[0].x + (corners[1].x - corners[0].x) * t / 100,
                                corners[0].y + (corners[1].y - corners[0].y) * t / 100};
            grey += lineAt(xyzShot, p, QColor(128, 128, 128), 40, diagramAt);
        }
        QVERIFY(grey > 20);

        // The text dialogs: the shown root name and dump are painted.
        icNamedColor2 colors;
        QCOMPARE(decodeNamedColor2(tagOf(*load(kX11), "ncl2"), colors), icOk);
        CNameColor2Dlg named(colors, icSig("Lab "), "Named Color2 Tag", prompts);
        const QImage namedShot = screenshot(named, "named-color-viewer.png");
        QLineEdit* root = get(named, "rootNameEdit");
        QVERIFY(darkPixels(namedShot, QRect(root->mapTo(&named, QPoint(0, 0)), root->size())) > 20);
        iccMultiLocalizedUnicodeType copyright;
        QCOMPARE(copyright.loadByIndex(profile->findTag(icSig("cprt")), *profile), icOk);
        CulmcDlg mluc(copyright, "Copyright Tag");
        const QImage mlucShot = screenshot(mluc, "mluc-viewer.png");
        QListWidget* dump = get<QListWidget>(mluc, "dumpList");
        QVERIFY(darkPixels(mlucShot, QRect(dump->viewport()->mapTo(&mluc, QPoint(0, 0)),
                                           dump->viewport()->size())) > 200);
        QCOMPARE(prompts.boxes, QStringList());
    }
};

namespace {
const bool registered = registerGuiTest<ViewerDialogsTest>();
}

#include "viewer_dialogs_test.moc"
