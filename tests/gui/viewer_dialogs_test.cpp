// The curve, XYZ, named colour and localized-string viewers offscreen, plots pixel by pixel.
#include "catalogue/catalogue_testing.h"
#include "document/settings_model.h"
#include "gui/gui_test.h"
#include "viewers/chromaticity_diagram.h"
#include "viewers/curve_dialog.h"
#include "viewers/curve_plot.h"
#include "viewers/mluc_dialog.h"
#include "viewers/named_color_dialog.h"
#include "viewers/xyz_dialog.h"

#include <QGroupBox>
#include <QListWidget>
#include <QPainter>
#include <QScrollBar>

#include <numeric>

namespace fs = std::filesystem;

namespace {

// Shows tag `sig` through the catalogue, running `act` on its viewer; no viewer is a failure.
template <class Dialog, class Act>
icStatus showAndAct(Presenter& presenter, iccProfileRW& profile, const char (&sig)[5], Act act) {
    icStatus status = icErrGeneral;
    const bool shown = whileOpen<Dialog>(
        [&] { status = showTag(presenter, profile, profile.findTag(icSig(sig))); }, act);
    return shown ? status : icErrGeneral;
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
// Whether a line of that colour passes through `p` or a pixel beside it (lines are antialiased).
bool lineAt(const QImage& image, icPlotPoint p, QColor color, int tolerance, QPoint offset = {}) {
    for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx)
            if (near(image.pixelColor(int(p.x) + dx + offset.x(), int(p.y) + dy + offset.y()),
                     color, tolerance))
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
QImage render(const icCurvePlotData& data, qreal ratio = 1) {
    QImage image(QSize(480, 360) * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    QPainter painter(&image);
    drawCurvePlot(painter, QRectF(0, 0, 480, 360), data);
    painter.end();
    return image;
}

// Every line the model gives for the shown record, read from the dialog's fields.
QStringList shownColor(CNameColor2Dlg& d) {
    QStringList lines{"Color #: " + text(d, "indexEdit"), "Root name: " + text(d, "rootNameEdit")};
    for (int i = 0; i < 3; ++i)
        lines << text(d, QString("pcsLabel%1").arg(i)) + " " + text(d, QString("pcsEdit%1").arg(i));
    for (int c = 0; c < 3; ++c)
        lines << QString("Channel %1: ").arg(c) + text(d, QString("channelEdit%1").arg(c));
    return lines;
}
QStringList shownRecord(CulmcDlg& d) {
    QStringList lines{get<QGroupBox>(d, "recordGroup")->title()};
    const char* names[] = {"languageEdit", "countryEdit", "lengthEdit", "offsetEdit"};
    for (std::size_t i = 0; i < 4; ++i)
        lines << q(std::string(kMlucRecordLabels[i])) + " " + text(d, names[i]);
    auto* list = get<QListWidget>(d, "dumpList");
    for (int i = 0; i < list->count(); ++i)
        lines << list->item(i)->text();
    return lines;
}
using A = QAbstractSlider;

} // namespace

class ViewerDialogsTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        for (const std::string& path : {kSrgb, kX11})
            if (!fs::exists(path))
                QSKIP("colord's profiles are not installed");
    }

    void curveExportImportFailuresAndWriteBack() {
        auto profile = load(kSrgb);
        QVERIFY(profile);
        const Bytes original = tagOf(*profile, "rTRC");
        const fs::path folder = scratchDir() / "curves";
        fs::create_directories(folder);
        ScriptedPrompts prompts;
        DataFolder::set("/start/here");

        // The curve drawn where the plot maps it. Export; an import of the other curve type
        // fails, one is cancelled, one is discarded on closing and so not written back.
        const std::string curv = writeText(folder / "curv.txt", "Data_Type: curv\nCount: 0\n");
        const std::string edited = (scratchDir() / "red-2.2.txt").string();
        prompts.answers = {(folder / "red.txt").string(), curv, std::nullopt, edited};
        prompts.closeAnswers = {icCloseAnswer::stay, icCloseAnswer::discard};
        const auto act = [&](CicCurveDlg& d) {
            const QImage shot = screenshot(d, "curve-viewer.png");
            const CCurvePlot& plot = d.plot();
            const icPlotMapping m = curvePlotMapping(QRectF(plot.rect()), plot.data());
            const std::vector<double>& values = plot.data().curves[0];
            for (const std::size_t i : {600u, 800u, 1000u})
                QVERIFY(lineAt(shot, m.map(double(i) / double(values.size() - 1), values[i]),
                               Qt::black, 10, plot.mapTo(&d, QPoint(0, 0))));
            click(d, "exportButton");
            click(d, "importButton");
            QCOMPARE(prompts.take(), {"info | Veltrino | Error in saving file!\n"});
            QVERIFY(!d.modified());
            click(d, "importButton");
            std::string text = readText(folder / "red.txt");
            QVERIFY(text.starts_with("Data_Type: para\nType: 3\nCount: 5\n0 2.399994\n"));
            writeText(edited, text.replace(text.find("0 2.399994"), 10, "0 2.200000"));
            click(d, "importButton");
            d.close();
            QVERIFY(d.isVisible());
            d.reject();
        };
        QCOMPARE(showAndAct<CicCurveDlg>(prompts, *profile, "rTRC", act), icOk);
        QCOMPARE(prompts.requests.size(), std::size_t(4));
        const FileDialogRequest& save = prompts.requests[0];
        QCOMPARE(save.caption + "|" + save.fileName + "|" + save.directory + "|" +
                     save.defaultSuffix,
                 "Save Curve|curve.txt|/start/here|txt");
        const FileDialogRequest& read = prompts.requests[1];
        QCOMPARE(read.caption + "|" + read.fileName + "|" + read.directory, // kept on OK only
                 "Read Curve|curve.txt|" + folder.string());
        QCOMPARE(tagOf(*profile, "rTRC"), original);
        QCOMPARE(prompts.take(), QStringList(2, "apply? | RedTRC Tag | Apply the changes made in "
                                                "RedTRC Tag before closing?"));

        QStringList labels;
        prompts.answers = {edited};
        QCOMPARE(showAndAct<CicCurveDlg>(prompts, *profile, "rTRC",
                                         [&](CicCurveDlg& d) {
                                             click(d, "importButton");
                                             labels = q(d.plot().data().labels);
                                             click(d, "okButton");
                                         }),
                 icOk);
        QCOMPARE(labels, QStringList{"gamma=2.2;a=0.9479;b=0.05214;c=0.07739;d=0.04045"});
        QCOMPARE(prompts.boxes, QStringList());

        // The three curves of sRGB share one block, so all three changed.
        iccCurveElement blue;
        QCOMPARE(blue.loadByTagSignature(icSig("bTRC"), *profile), icOk);
        QVERIFY(blue.parametric() &&
                std::abs(blue.parametric()->parameters[0] - 2.2) < 1.0 / 65536);

        // A parametric type this program cannot draw still opens.
        iccCurveElement unknown;
        QCOMPARE(unknown.create(icSig("para")), icOk);
        unknown.parametric()->functionType = 5;
        QCOMPARE(CicCurveDlg(unknown, "", prompts).setupStatus(), icOk);
    }

    void curvePlotsDrawCurvesGridLegendAndEmptyState() {
        icCurvePlotData data;
        data.curves = {{0, 65535}, {32768, 32768}};
        data.labels = numberCurveLabels({"ramp", "level"});
        const icPlotMapping m = curvePlotMapping(QRectF(0, 0, 480, 360), data);
        for (const qreal ratio : {1.0, 2.0}) {
            const QImage image = render(data, ratio);
            const auto line = [&](double x, double y, QColor color, int tolerance = 10) {
                const icPlotPoint p = m.map(x, y);
                return lineAt(image, {p.x * ratio, p.y * ratio}, color, tolerance);
            };
            QVERIFY(line(0.75, 0.75 * 65535, curvePlotColor(0, 2)));
            QVERIFY(line(0.85, 32768, curvePlotColor(1, 2)));
            QVERIFY(line(0.3, 0.15 * 65535, QColor(222, 222, 222))); // grid
            QVERIFY(!line(0.35, 0.15 * 65535, QColor(222, 222, 222)));
            const icPlotPoint blank = m.map(0.95, 0.95 * 65535 - 6000);
            QVERIFY(
                near(image.pixelColor(int(blank.x * ratio), int(blank.y * ratio)), Qt::white, 0));
        }
        // No curves: "No data" in the middle.
        const icPlotPoint middle = m.map(0.5, 65535 / 2.0);
        QVERIFY(darkPixels(render({}), QRect(int(middle.x) - 40, int(middle.y) - 8, 80, 16)) > 20);

        // A table's plot of three equal ramps: along the row of value 128 each channel shows in
        // a column of its own, left to right as the shifts go.
        std::vector<double> ramp(256);
        std::iota(ramp.begin(), ramp.end(), 0.0);
        icCurvePlotData table;
        table.style = icCurvePlotStyle::table;
        table.valueScale = table.inputRange = 255;
        table.curves = {ramp, ramp, ramp};
        table.labels = {"Channel #0", "Channel #1", "Channel #2"};
        const icPlotMapping t = curvePlotMapping(QRectF(0, 0, 480, 360), table);
        const QImage image = render(table);
        const int row = int(t.map(0, 128).y);
        std::vector<int> columns;
        for (std::size_t c = 0; c < 3; ++c) {
            int found = -1;
            for (int x = int(t.area().left); found < 0 && x < int(t.area().right()); ++x)
                if (near(image.pixelColor(x, row), curvePlotColor(c, 3), 0))
                    found = x;
            columns.push_back(found);
        }
        QVERIFY(columns[0] >= 0 && columns[0] < columns[1] && columns[1] < columns[2]);
        // The legend right of the plot: a line per channel in its colour.
        const double right = t.area().right();
        for (std::size_t c = 0; c < 3; ++c)
            QVERIFY(lineAt(image, {right + 20, kTableLegendTop + kTableLegendRowStep * double(c)},
                           curvePlotColor(c, 3), 0));
    }

    void xyzRefusesBadNumbersAndWritesBack() {
        auto profile = load(kSrgb);
        QVERIFY(profile);
        const Bytes original = tagOf(*profile, "wtpt");
        ScriptedPrompts prompts;
        QStringList typed;
        // The diagram: the spectral locus in its colours, the value's circle in the display
        // colour. Typed values move x and y at once; "&Cancel" keeps the tag.
        const auto look = [&](CcieXYZDlg& d) {
            const QImage shot = screenshot(d, "xyz-viewer.png");
            const CChromaticityDiagram& diagram = d.diagram();
            const QPoint at = diagram.mapTo(&d, QPoint(0, 0));
            const ChromaticityMapping mapping = chromaticityDiagramMapping(QRectF(diagram.rect()));
            for (const std::size_t i : {8u, 10u, 12u, 15u, 18u, 20u, 32u, 34u}) {
                const icRgb8 c = kSpectralLocus[i].color;
                QVERIFY2(lineAt(shot, mapping.locus()[i], QColor(c.r, c.g, c.b), 20, at),
                         qPrintable(QString("locus point %1").arg(i)));
            }
            const icPlotPoint centre = mapping.map(diagram.value().xy);
            const icRgb8 fill = displayColor(d.X(), d.Y(), d.Z());
            QCOMPARE(shot.pixelColor(int(centre.x) + at.x(), int(centre.y) + at.y()),
                     QColor(fill.r, fill.g, fill.b));
            QVERIFY(lineAt(shot, {centre.x, centre.y + kValueRadius}, Qt::black, 10, at));
            QVERIFY(!lineAt(shot, {centre.x, centre.y + kValueRadius + 4}, Qt::black, 60, at));
            get(d, "valueXEdit")->selectAll();
            QTest::keyClicks(get(d, "valueXEdit"), "0.5");
            typed = texts(d, {"chromaticityXEdit", "chromaticityYEdit"});
            click(d, "cancelButton");
        };
        QCOMPARE(showAndAct<CcieXYZDlg>(prompts, *profile, "wtpt", look), icOk);
        QCOMPARE(typed, (QStringList{"0.215063", "0.430125"})); // Y and Z as in the tag
        QCOMPARE(tagOf(*profile, "wtpt"), original);

        QCOMPARE(showAndAct<CcieXYZDlg>(prompts, *profile, "wtpt",
                                        [&](CcieXYZDlg& d) {
                                            get(d, "valueXEdit")->setText("0.25");
                                            emit get(d, "valueXEdit")->textEdited("0.25");
                                            // Refused on OK, the old value back in its box.
                                            for (const QString bad : {"abc", "1e9", "0"}) {
                                                get(d, "valueZEdit")->setText(bad);
                                                emit get(d, "valueZEdit")->textEdited(bad);
                                                click(d, "okButton");
                                                QCOMPARE(text(d, "valueZEdit"),
                                                         d.isVisible() ? "0.82491" : "0");
                                            }
                                        }),
                 icOk);
        QCOMPARE(prompts.boxes.size(), 2);
        QCOMPARE(prompts.boxes[0],
                 "warning | MediaWhitePoint Tag | Z: \"abc\" is not a number from "
                 "-32768 to 32767.99998. The old value is kept.");
        iccXYZType white;
        QCOMPARE(white.loadBySignature(icSig("wtpt"), *profile), icOk);
        QVERIFY(white.X == 0.25 && white.Y == 1.0 && white.Z == 0.0);
    }

    void namedColorsStepAndRefuseIndicesPastTheEnd() {
        auto profile = load(kX11);
        QVERIFY(profile);
        icNamedColor2 colors;
        QCOMPARE(decodeNamedColor2(tagOf(*profile, "ncl2"), colors), icOk);
        const NamedColorModel reference(colors, profile->header().pcs);
        const int last = 137;
        ScriptedPrompts prompts;
        const auto act = [&](CNameColor2Dlg& d) {
            const QImage shot = screenshot(d, "named-color-viewer.png");
            QLineEdit* root = get(d, "rootNameEdit");
            QVERIFY(darkPixels(shot, QRect(root->mapTo(&d, QPoint(0, 0)), root->size())) > 20);
            QCOMPARE(texts(d, {"colorCountEdit", "devicePlanesEdit"}), (QStringList{"138", "3"}));
            QVERIFY(!get(d, "channelEdit2")->isHidden() && get(d, "channelEdit3")->isHidden());
            QCOMPARE(shownColor(d), q(reference.colorLines(0)));
            auto* bar = get<QScrollBar>(d, "colorScroll");
            // The page step is a tenth of the colours; the bar's ends are not steps.
            for (const auto& [action, index] :
                 {std::pair{A::SliderSingleStepSub, 0}, std::pair{A::SliderPageStepAdd, 13},
                  std::pair{A::SliderToMaximum, 13}}) {
                bar->triggerAction(action);
                QCOMPARE(bar->value(), index);
                QCOMPARE(shownColor(d), q(reference.colorLines(index)));
            }
            bar->setSliderPosition(last - 1); // dragging the thumb
            QCOMPARE(text(d, "indexEdit"), QString::number(last - 1));
            bar->triggerAction(QAbstractSlider::SliderPageStepAdd);
            QCOMPARE(bar->value(), last);

            // Typed digit by digit: "2", "20", then "200" is past the last colour.
            get(d, "indexEdit")->selectAll();
            QTest::keyClicks(get(d, "indexEdit"), "200");
            QCOMPARE(prompts.take(), {"info | Veltrino | ERROR: Maximum index is 137\n"});
            QCOMPARE(shownColor(d), q(reference.colorLines(last)));
            QCOMPARE(bar->value(), last);
            get(d, "indexEdit")->setText("70000"); // past the box's own range: no colour asked
            emit get(d, "indexEdit")->textEdited("70000");
            QCOMPARE(prompts.boxes, QStringList());
            QCOMPARE(bar->value(), last);
        };
        QCOMPARE(showAndAct<CNameColor2Dlg>(prompts, *profile, "ncl2", act), icOk);

        // Nine planes: the header, and the box once the dialog is up, no colour.
        QCOMPARE(decodeNamedColor2(ncl2Tag(1, 9, {std::vector<std::uint16_t>(12, 1)}), colors),
                 icOk);
        CNameColor2Dlg nine(colors, icSig("Lab "), "", prompts);
        QCOMPARE(prompts.boxes, QStringList());
        nine.show();
        nine.hide();
        nine.show();
        QCOMPARE(prompts.take(), {"info | Veltrino | Device planes is greater than 8. Current "
                                  "version of Veltrino not supported.\n"});
        QCOMPARE(texts(nine, {"devicePlanesEdit", "rootNameEdit"}), (QStringList{"9", ""}));
        QVERIFY(!get(nine, "channelEdit7")->isHidden() && !get(nine, "indexEdit")->isEnabled());
    }

    void localizedStringsStep() {
        auto profile = load(kSrgb);
        QVERIFY(profile);
        iccMultiLocalizedUnicodeType copyright;
        QCOMPARE(copyright.loadByIndex(profile->findTag(icSig("cprt")), *profile), icOk);
        const MlucModel reference(copyright);
        ScriptedPrompts prompts;
        const auto act = [&](CulmcDlg& d) {
            const QImage shot = screenshot(d, "mluc-viewer.png");
            QWidget* dump = get<QListWidget>(d, "dumpList")->viewport();
            QVERIFY(darkPixels(shot, QRect(dump->mapTo(&d, QPoint(0, 0)), dump->size())) > 200);
            QCOMPARE(texts(d, {"nameCountEdit", "recordSizeEdit", "highestIndexLabel"}),
                     (QStringList{"31", "12", "30"}));
            QCOMPARE(shownRecord(d), q(reference.recordLines(0)));
            auto* bar = get<QScrollBar>(d, "recordScroll");
            for (const auto& [action, index] :
                 {std::pair{A::SliderPageStepAdd, 2}, std::pair{A::SliderToMinimum, 2},
                  std::pair{A::SliderSingleStepSub, 1}}) {
                bar->triggerAction(action);
                QCOMPARE(bar->value(), index);
                QCOMPARE(text(d, "currentIndexLabel"), QString::number(index));
                QCOMPARE(shownRecord(d), q(reference.recordLines(index)));
            }
            bar->setSliderPosition(29);
            bar->triggerAction(QAbstractSlider::SliderPageStepAdd);
            QCOMPARE(shownRecord(d), q(reference.recordLines(30)));
        };
        QCOMPARE(showAndAct<CulmcDlg>(prompts, *profile, "cprt", act), icOk);
    }
};

[[maybe_unused]] const bool registered = registerGuiTest<ViewerDialogsTest>();

#include "viewer_dialogs_test.moc"
