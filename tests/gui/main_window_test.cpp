// Main window sessions offscreen: Browse, Modify, Save As, closing, opening tags, small dialogs.
#include "app/compare_dialog.h"
#include "app/header_edit_dialog.h"
#include "app/settings.h"
#include "app/veltrino_app.h"
#include "app/veltrino_dialog.h"
#include "document/settings_model.h"
#include "gui/gui_test.h"
#include "tagtypes/xyz_type.h"
#include "viewers/hex_dump_model.h"

#include <QComboBox>
#include <QFontDatabase>
#include <QGroupBox>
#include <QMimeData>
#include <QRadioButton>
#include <QStandardPaths>
#include <QTreeWidget>

namespace fs = std::filesystem;

namespace {

const QString kToV4 = "info | Veltrino | Warning: Changed version number from V2 to V4, tags "
                      "should be updated accordingly!";

// What the models make of a file, read independently of the window.
QStringList fieldsOnDisk(const std::string& path) {
    QStringList out;
    if (const auto p = load(path))
        for (const HeaderField& f : headerFieldTexts(p->header()))
            out << q(f.text).remove(QLatin1Char('\n'));
    return out;
}
QList<QStringList> rowsOnDisk(const std::string& path, bool hexadecimal = false) {
    QList<QStringList> out;
    if (const auto p = load(path))
        for (const TagRow& r : tagTableRows(*p, hexadecimal))
            out << QStringList{q(r.index), q(r.signature), q(r.offset), q(r.size)};
    return out;
}

// Version 2.4, flags 2, a stale Profile ID, no description and no copyright.
std::string version2Profile() {
    ProfileBuilder b;
    b.header.flags = 2;
    b.header.profileID.fill(0x5A);
    b.tag(icSig("wtpt"), tagBytes(icSig("XYZ "), Bytes(12, 1)))
        .tag(icSig("priv"), tagBytes(icSig("zzzz"), Bytes(21, 'q')));
    return writeBytes(scratchDir() / "v2.icc", b.build());
}

struct Window {
    explicit Window(QSettings& settings, const std::string& path = {})
        : dlg(prompts, settings, path) {}
    ScriptedPrompts prompts;
    CVeltrinoDlg dlg;

    template <class T = QPushButton> T* get(const char* name) { return ::get<T>(dlg, name); }
    QTreeWidget* list() { return get<QTreeWidget>("tagList"); }
    QString path() { return get<QLineEdit>("pathField")->text(); }
    QStringList fields() {
        QStringList out;
        for (QLineEdit* e : dlg.findChildren<QGroupBox*>().at(0)->findChildren<QLineEdit*>())
            out << e->text();
        return out;
    }
    QList<QStringList> rows() {
        QList<QStringList> out;
        for (int i = 0; i < list()->topLevelItemCount(); ++i) {
            QStringList cells;
            for (int c = 0; c < 4; ++c)
                cells << list()->topLevelItem(i)->text(c);
            out << cells;
        }
        return out;
    }
    void browse(std::optional<std::string> answer) {
        prompts.answers.push_back(std::move(answer));
        get("browseButton")->click();
    }
    void saveAs(std::optional<std::string> answer) {
        prompts.answers.push_back(std::move(answer));
        get("saveAsButton")->click();
    }
    template <class Edit> void modify(Edit edit) {
        whileOpen<CEditHeaderDlg>([this] { get("modifyButton")->click(); }, edit);
    }
};

} // namespace

class MainWindowTest : public QObject {
    Q_OBJECT
    std::unique_ptr<QSettings> settings;

private slots:
    void init() {
        static int n = 0;
        const fs::path file = scratchDir() / ("settings-" + std::to_string(n++) + ".ini");
        settings = std::make_unique<QSettings>(QString::fromStdString(file.string()),
                                               QSettings::IniFormat);
        if (!fs::exists(kSrgb))
            QSKIP("colord's sRGB.icc is not installed");
    }

    void startBrowseAndFailedOpens() {
        Window empty(*settings);
        QVERIFY(!empty.get("modifyButton")->isEnabled() && !empty.get("saveAsButton")->isEnabled());
        QCOMPARE(empty.dlg.windowTitle(), "Veltrino");
        QCOMPARE(empty.fields(), QStringList(17, QString()));
        Window missing(*settings, "/no/such.icc");
        QCOMPARE(missing.prompts.take(),
                 {"info | Veltrino | Error in reading ICC profile: /no/such.icc.\n"});
        QVERIFY(!missing.get("saveAsButton")->isEnabled());

        Window w(*settings, kSrgb);
        QVERIFY(w.get("modifyButton")->isEnabled() && w.get("saveAsButton")->isEnabled());
        QCOMPARE(w.dlg.windowTitle(), "sRGB.icc[*] - Veltrino");
        QVERIFY(!w.dlg.isWindowModified());
        QVERIFY(looksReadOnly(w.get<QLineEdit>("sizeField")));
        QCOMPARE(w.fields(), fieldsOnDisk(kSrgb));
        QCOMPARE(w.rows(), rowsOnDisk(kSrgb));
        QCOMPARE(w.dlg.findChildren<QGroupBox*>().at(1)->title(),
                 QString("Tag Table (%1 tags):").arg(w.rows().size()));
        w.get<QRadioButton>("hexadecimalButton")->click();
        QCOMPARE(w.rows(), rowsOnDisk(kSrgb, true));
        w.get<QRadioButton>("decimalButton")->click();
        QCOMPARE(w.rows(), rowsOnDisk(kSrgb));

        const std::string misaligned =
            writeBytes(scratchDir() / "misaligned.icc", ProfileBuilder()
                                                            .tag(icSig("desc"), textTag("x"))
                                                            .entry(icSig("wtpt"), 130, 20)
                                                            .build());
        w.browse(misaligned);
        QCOMPARE(w.prompts.requests[0].caption, "Open an ICC Profile");
        QCOMPARE(w.prompts.requests[0].filters,
                 (std::vector<std::string>{
                     "ICC Files (*.icm *.icc)", "All Files (*)",
                     "Images with profiles (*.jpg *.jpeg *.png *.tif *.tiff *.webp)"}));
        QCOMPARE(w.prompts.take(),
                 {"warning | Veltrino | Invalid ICC profile: Error in tag offset(s)."});
        QCOMPARE(w.path(), q(misaligned));
        QCOMPARE(w.fields(), fieldsOnDisk(misaligned));
        QCOMPARE(w.rows(), rowsOnDisk(misaligned));

        // A file that does not open leaves the profile shown fully usable.
        const QStringList fields = w.fields();
        const auto rows = w.rows();
        const std::string broken = writeBytes(scratchDir() / "broken.icc", Bytes(200, 'x'));
        w.browse(broken);
        QCOMPARE(w.prompts.take(),
                 {q("info | Veltrino | Error in reading ICC profile: " + broken + ".\n")});
        QVERIFY(w.fields() == fields && w.rows() == rows && w.path() == q(misaligned));
        QVERIFY(w.get("modifyButton")->isEnabled() && w.get("saveAsButton")->isEnabled());

        const auto files = std::distance(fs::directory_iterator(scratchDir()), {});
        w.browse(std::nullopt);
        w.saveAs(std::nullopt);
        QCOMPARE(w.prompts.requests.size(), std::size_t(4));
        QVERIFY(w.fields() == fields && w.path() == q(misaligned));
        QCOMPARE(std::distance(fs::directory_iterator(scratchDir()), {}), files);
        QCOMPARE(w.prompts.boxes, QStringList());
    }

    void modifyRefusesGarbageWarnsAcrossVersion4AndSaves() {
        Window w(*settings, version2Profile());
        QStringList expected = w.fields();
        const icHeader before = w.dlg.document().profile().header();
        w.modify([&](CEditHeaderDlg& editor) {
            QCOMPARE(get<QComboBox>(editor, "independentList")->currentIndex(), -1);
            QVERIFY(looksReadOnly(get(editor, "pcsField")));
            // Garbage is refused, the box gets its old text back and the header stays as it was.
            QLineEdit* version = get(editor, "versionEdit");
            version->setText("0x4200000ABCDEFG");
            get(editor, "platformEdit")->setText("ab");
            get(editor, "dateEdit")->setText("2009-02-21");
            editor.accept();
            QCOMPARE(version->text(), expected[2]);
            QVERIFY(editor.isVisible() && w.dlg.document().profile().header() == before);
            version->setText("0x4200000");
            get<QComboBox>(editor, "intentList")->setCurrentIndex(3);
            editor.accept(); // the date refused
            editor.accept();
        });
        QCOMPARE(w.prompts.take(),
                 (QStringList{"warning | Header | Version: \"0x4200000ABCDEFG\" is not a 32-bit "
                              "number: up to 8 hexadecimal digits after 0x, or a decimal number. "
                              "The old value is kept.",
                              "warning | Header | Date: \"2009-02-21\" is not a date: "
                              "year/month/day, with the month 1 to 12 and the day 1 to 31. The "
                              "old value is kept.",
                              kToV4}));
        QVERIFY(w.dlg.isWindowModified());
        expected[2] = "0x4200000";
        expected[8] = "ab";
        expected[13] = "Absolute Colorimetric";
        QCOMPARE(w.fields(), expected); // date refused, flags 2 kept, ID kept at version 4

        w.modify([](CEditHeaderDlg& editor) {
            get(editor, "versionEdit")->setText("0x2100000");
            editor.accept();
        });
        QCOMPARE(w.prompts.take().size(), 1); // back to version 2, which drops the ID
        QCOMPARE(w.fields()[16], "00000000-00000000-00000000-00000000");
        expected = w.fields();
        w.modify([](CEditHeaderDlg& editor) { get(editor, "versionEdit")->setText("0x4000000"); });
        QCOMPARE(w.fields(), expected); // cancelled

        const std::string target = (scratchDir() / "saved.icc").string();
        w.saveAs(target);
        const FileDialogRequest& request = w.prompts.requests.back();
        QCOMPARE(request.caption + " " + request.defaultSuffix, "Save ICC Profile icc");
        QCOMPARE(w.path(), q(target));
        QCOMPARE(w.dlg.windowTitle(), "saved.icc[*] - Veltrino");
        QVERIFY(!w.dlg.isWindowModified());
        QCOMPARE(w.rows(), rowsOnDisk(target)); // with the description and copyright added
        QCOMPARE(w.fields(), fieldsOnDisk(target));
        QCOMPARE(w.prompts.boxes, QStringList());

        const std::string nowhere = (scratchDir() / "no-such-dir" / "x.icc").string();
        w.saveAs(nowhere);
        QCOMPARE(w.prompts.take(), {q("stop | Veltrino | Error in writing a new profile. Errcode: "
                                      "-100.\n" +
                                      nowhere + ": No such file or directory")});
        QCOMPARE(w.path(), q(target));
    }

    void imagesShowTheirProfileAndSaveAProfileFile() {
        const std::string image = makeImage("photo.jpg", kSrgb), bare = makeImage("bare.png");
        QVERIFY(!image.empty() && !bare.empty());
        Window w(*settings, image);
        QCOMPARE(w.dlg.windowTitle(), "photo.jpg (embedded profile)[*] - Veltrino");
        QCOMPARE(w.path(), q(image + " (embedded profile)"));
        QCOMPARE(w.fields(), fieldsOnDisk(kSrgb));
        QCOMPARE(w.rows(), rowsOnDisk(kSrgb));
        w.browse(bare);
        QCOMPARE(w.prompts.take(), {q("info | Veltrino | " + bare + " holds no ICC profile.")});
        QCOMPARE(w.fields(), fieldsOnDisk(kSrgb));
        const std::string target = (scratchDir() / "photo.icc").string();
        w.saveAs(target);
        QCOMPARE(w.prompts.requests.back().fileName, "photo.icc");
        QCOMPARE(w.dlg.windowTitle(), "photo.icc[*] - Veltrino");
        QCOMPARE(w.rows(), rowsOnDisk(target));
    }

    void closingAsksBeforeChangesAreLost() {
        Window w(*settings, version2Profile());
        w.dlg.show();
        w.dlg.reject(); // nothing changed: no question
        QVERIFY(!w.dlg.isVisible());
        w.dlg.show();
        w.list()->setCurrentItem(w.list()->topLevelItem(0)); // 'wtpt'
        w.prompts.xyzEdit = [](iccXYZType&) {};              // OK, values as they were
        w.dlg.openSelectedTag();
        QVERIFY(!w.dlg.isWindowModified());
        w.prompts.xyzEdit = [](iccXYZType& xyz) { xyz.X = 0.5; };
        w.dlg.openSelectedTag();
        QVERIFY(w.dlg.isWindowModified());

        // Escape: Cancel. The close button: Save, its dialog cancelled. Browse: Discard, but the
        // file does not open, so the changes stay. "&Close": Save.
        const std::string saved = (scratchDir() / "closed.icc").string();
        w.prompts.closeAnswers = {icCloseAnswer::stay, icCloseAnswer::keep, icCloseAnswer::discard,
                                  icCloseAnswer::keep};
        QTest::keyClick(&w.dlg, Qt::Key_Escape);
        w.prompts.answers = {std::nullopt};
        w.dlg.close();
        w.browse("/no/such.icc");
        QVERIFY(w.dlg.isVisible() && w.dlg.isWindowModified());
        w.prompts.answers = {saved};
        w.get("closeButton")->click();
        QVERIFY(!w.dlg.isVisible() && !w.dlg.isWindowModified());
        QStringList expected(4, "save? | Veltrino | Save changes to v2.icc before closing?");
        expected.insert(3, "info | Veltrino | Error in reading ICC profile: /no/such.icc.\n");
        QCOMPARE(w.prompts.take(), expected);
        QCOMPARE(w.path(), q(saved));
        const auto reread = load(saved);
        QVERIFY(reread);
        QCOMPARE(reread->getTagData(0)[10], 0x80); // X = 0.5 as s15Fixed16
    }

    void tagsOpenOnDoubleClickKeysAndSpaceFocus() {
        // Two tags the catalogue has no view for, so both open in the hex dump window.
        const std::string path =
            writeBytes(scratchDir() / "unknown-tags.icc",
                       ProfileBuilder()
                           .tag(icSig("pri0"), tagBytes(icSig("yyyy"), Bytes(12, 1)))
                           .tag(icSig("priv"), tagBytes(icSig("zzzz"), Bytes(21, 'q')))
                           .build());
        Window w(*settings, path);
        w.dlg.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w.dlg));
        QTreeWidget* list = w.list();
        const auto dumpOf = [&](int row) {
            return std::pair{std::string("Private or Unsupported Tag"),
                             hexDumpLines(load(path)->getTagData(row))};
        };
        QTest::keyClick(list, Qt::Key_A); // no row selected: nothing
        list->setCurrentItem(list->topLevelItem(1));
        const QPoint row1 = list->visualItemRect(list->topLevelItem(1)).center();
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, row1);
        QVERIFY(w.prompts.dumps.empty());
        QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, row1);
        QCOMPARE(w.prompts.dumps, decltype(w.prompts.dumps){dumpOf(1)});

        QTest::keyClick(list, Qt::Key_Return);
        QTest::keyClick(list, Qt::Key_Enter);
        QTest::keyClick(list, Qt::Key_Shift);
        QCOMPARE(w.prompts.dumps.size(), std::size_t(1));
        QVERIFY(w.dlg.isVisible());        // Enter did not close the window either
        QTest::keyClick(list, Qt::Key_Up); // opens row 1, then moves to row 0
        QCOMPARE(w.prompts.dumps.back(), dumpOf(1));

        QLineEdit* elsewhere = w.get<QLineEdit>("pathField");
        QFocusEvent focusIn(QEvent::FocusIn, Qt::TabFocusReason);
        QTest::keyPress(elsewhere, Qt::Key_Space);
        QApplication::sendEvent(list, &focusIn);
        QCOMPARE(w.prompts.dumps.size(), std::size_t(3));
        QCOMPARE(w.prompts.dumps.back(), dumpOf(0));
        QTest::keyRelease(elsewhere, Qt::Key_Space);
        QApplication::sendEvent(list, &focusIn);
        QCOMPARE(w.prompts.dumps.size(), std::size_t(3));
        QCOMPARE(w.prompts.boxes, QStringList());
    }

    void aboutDropAndShortcuts() {
        Window w(*settings);
        w.get("aboutButton")->click();
        QCOMPARE(w.prompts.abouts, std::vector<std::string>{"About Veltrino"});
        QMimeData mime;
        mime.setUrls({QUrl::fromLocalFile(q(kSrgb))});
        // A drop reaches the widget that accepted the drag's entry.
        QDragEnterEvent enter({10, 10}, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&w.dlg, &enter);
        QDropEvent drop({10, 10}, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&w.dlg, &drop);
        QCOMPARE(w.fields(), fieldsOnDisk(kSrgb));

        w.dlg.show();
        QVERIFY(QTest::qWaitForWindowActive(&w.dlg));
        QTest::keyClick(&w.dlg, Qt::Key_O, Qt::ControlModifier);
        QTest::keyClick(&w.dlg, Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(w.prompts.requests.size(), std::size_t(2));
        QCOMPARE(w.prompts.requests[1].caption, "Save ICC Profile");
    }

    // "Compare with...": the tree with its highlighted values; a double click opens that tag.
    void compareWithAnotherProfile() {
        if (!fs::exists(kSrgbV2))
            QSKIP("the version 2 sRGB profile is not installed");
        Window w(*settings);
        QVERIFY(!w.get("compareButton")->isEnabled());
        QVERIFY(w.dlg.openProfile(kSrgbV2));
        QStringList titles;
        QString highlighted;
        w.prompts.answers.push_back(kSrgb);
        const auto read = [&](CCompareDlg& d) {
            auto* tree = get<QTreeWidget>(d, "compareTree");
            for (int i = 0; i < tree->topLevelItemCount(); ++i)
                titles << tree->topLevelItem(i)->text(0);
            QTreeWidgetItem* desc = tree->topLevelItem(
                titles.indexOf("Tag desc (Profile Description Tag, 'desc' -> 'mluc')"));
            QVERIFY(desc);
            for (int i = 0; i < desc->childCount(); ++i)
                if (desc->child(i)->background(2).style() != Qt::NoBrush)
                    highlighted += desc->child(i)->text(0) + " ";
            emit tree->itemDoubleClicked(desc->child(0), 0);
        };
        QVERIFY(whileOpen<CCompareDlg>([&] { w.get("compareButton")->click(); }, read));
        QCOMPARE(w.prompts.requests.back().caption, "Compare with an ICC Profile");
        QCOMPARE(titles.mid(0, 2), (QStringList{"Header", "Directory"}));
        QCOMPARE(highlighted, "type ASCII en/US ");
        QCOMPARE(w.prompts.take(), QStringList{"info | Profile Description Tag | sRGB"});
    }

    void startOptionsAndTheDataFolderInTheSettings() {
        QCOMPARE(parseStartOptions({"veltrino"}).commandLineFile, "");
        const StartOptions shot = parseStartOptions({"veltrino", "--screenshot", "s.png", "a.icc"});
        QCOMPARE(shot.commandLineFile, "a.icc");
        QCOMPARE(shot.screenshotPath.value_or(""), "s.png");

        QCOMPARE(loadDataDir(*settings), QDir::home().filePath("icclut"));
        saveDataDir(*settings, QString(300, QLatin1Char('d')));
        QCOMPARE(loadDataDir(*settings), QString(260, QLatin1Char('d')));
        settings->setValue("File/Data_Dir", "/data/luts");
        {
            Window w(*settings);
            QCOMPARE(DataFolder::get(), "/data/luts");
            DataFolder::set("/changed/by/an/export");
        }
        QCOMPARE(settings->value("File/Data_Dir").toString(), "/changed/by/an/export");
    }

    void messageBoxesKeepCaptionsAndTables() {
        // A caption is never cut short; a table of numbers lines up in the fixed-width font.
        const QString caption = "Perceptual Rendering Intent Gamut Tag";
        const auto named = makeMessageBox(icBoxKind::info, caption.toStdString(), "1.0 2.0\n3 4\n");
        named->show();
        QCOMPARE(named->windowModality(), Qt::ApplicationModal);
        QVERIFY(named->width() > QFontMetrics(named->font()).horizontalAdvance(caption) + 100);
        QCOMPARE(get<QLabel>(*named, "qt_msgbox_label")->font(),
                 QFontDatabase::systemFont(QFontDatabase::FixedFont));
        QCOMPARE(makeCloseQuestion(icKeepButton::save, "Veltrino", "?")->standardButtons(),
                 QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
    }
};

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Keeps every per-user store of the run away from the real one.
    QStandardPaths::setTestModeEnabled(true);
    QApplication app(argc, argv);
    app.setOrganizationName(QLatin1String(kOrganisationName));
    app.setApplicationName(QLatin1String(kApplicationName));
    MainWindowTest test;
    int failures = QTest::qExec(&test, argc, argv);
    for (GuiTestFactory make : guiTestClasses())
        failures += QTest::qExec(make().get(), argc, argv);
    return failures;
}

#include "main_window_test.moc"
