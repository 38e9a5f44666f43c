// Whole sessions of the main window, offscreen: start-up, Browse, Modify, Save As and opening
// tags, with scripted file dialogs and every box read back; then the small dialogs on their own.
#include "app/about_dialog.h"
#include "app/header_edit_dialog.h"
#include "app/qt_presenter.h"
#include "app/settings.h"
#include "app/veltrino_app.h"
#include "app/veltrino_dialog.h"
#include "document/settings_model.h"
#include "gui/gui_test.h"
#include "support/test_support.h"
#include "tagtypes/xyz_type.h"
#include "viewers/hex_dump_dialog.h"
#include "viewers/hex_dump_model.h"
#include "viewers/large_text_dialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStandardPaths>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include <functional>

namespace fs = std::filesystem;

namespace {

const std::string kSrgb = "/usr/share/color/icc/colord/sRGB.icc";
const QString kToV4 = "info | Veltrino | Warning: Changed version number from V2 to V4, tags "
                      "should be updated accordingly!";
const QString kToV2 = "info | Veltrino | Warning: Changed version number from V4 to V2, tags "
                      "should be updated accordingly!";

QString text(const std::string& s) {
    return QString::fromLatin1(s.c_str()).remove(QLatin1Char('\n'));
}
QStringList texts(const HeaderFields& fields) {
    QStringList out;
    for (const HeaderField& f : fields)
        out << text(f.text);
    return out;
}
QList<QStringList> texts(const std::vector<TagRow>& rows) {
    QList<QStringList> out;
    for (const TagRow& r : rows)
        out << QStringList{text(r.index), text(r.signature), text(r.offset), text(r.size)};
    return out;
}

// What the models make of a file, read independently of the window.
QStringList fieldsOnDisk(const std::string& path) {
    iccProfileRW p;
    return p.loadFromFile(path) == icOk ? texts(headerFieldTexts(p.header())) : QStringList();
}
QList<QStringList> rowsOnDisk(const std::string& path, bool hexadecimal = false) {
    iccProfileRW p;
    return p.loadFromFile(path) == icOk ? texts(tagTableRows(p, hexadecimal))
                                        : QList<QStringList>();
}

std::string writeProfile(const std::string& name, const Bytes& bytes) {
    return writeBytes(scratchDir() / name, bytes);
}

// Version 2.4, flags 2, a stale Profile ID, no description and no copyright.
std::string version2Profile() {
    ProfileBuilder b;
    b.header.flags = 2;
    b.header.profileID.fill(0x5A);
    b.tag(icSig("wtpt"), tagBytes(icSig("XYZ "), Bytes(12, 1)))
        .tag(icSig("priv"), tagBytes(icSig("zzzz"), Bytes(21, 'q')));
    return writeProfile("v2.icc", b.build());
}

// Two tags the catalogue has no view for, so both open in the hex dump window.
std::string unknownTagsProfile() {
    ProfileBuilder b;
    b.tag(icSig("pri0"), tagBytes(icSig("yyyy"), Bytes(12, 1)))
        .tag(icSig("priv"), tagBytes(icSig("zzzz"), Bytes(21, 'q')));
    return writeProfile("unknown-tags.icc", b.build());
}

struct Window {
    explicit Window(QSettings& settings, const std::string& path = {})
        : dlg(prompts, settings, path) {}
    ScriptedPrompts prompts;
    CVeltrinoDlg dlg;

    template <class T = QPushButton> T* get(const char* name) {
        return dlg.findChild<T*>(QLatin1String(name));
    }
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
    // Runs `edit` on the header editor inside its modal loop.
    void modify(std::function<void(CEditHeaderDlg&)> edit) {
        QTimer::singleShot(0, [edit] {
            for (QWidget* w : QApplication::topLevelWidgets())
                if (auto* editor = qobject_cast<CEditHeaderDlg*>(w); editor && editor->isVisible())
                    return edit(*editor);
        });
        get("modifyButton")->click();
    }
};

template <class T> T* child(QWidget& parent, const char* name) {
    return parent.findChild<T*>(QLatin1String(name));
}

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

    void startsEmptyOrWithTheGivenProfile() {
        Window empty(*settings);
        QVERIFY(!empty.get("modifyButton")->isEnabled());
        QVERIFY(!empty.get("saveAsButton")->isEnabled());
        QCOMPARE(empty.dlg.windowTitle(), "Veltrino");
        QCOMPARE(empty.fields(), QStringList(17, QString()));
        QCOMPARE(empty.list()->headerItem()->text(3), "Size");

        Window started(*settings, kSrgb);
        QVERIFY(started.get("modifyButton")->isEnabled());
        QVERIFY(started.get("saveAsButton")->isEnabled());
        QCOMPARE(started.fields(), fieldsOnDisk(kSrgb));
        QCOMPARE(started.dlg.windowTitle(), "sRGB.icc[*] - Veltrino");
        QVERIFY(!started.dlg.isWindowModified());
        QVERIFY(looksReadOnly(started.get<QLineEdit>("sizeField")));

        Window missing(*settings, "/no/such.icc");
        QCOMPARE(missing.prompts.take(),
                 {"info | Veltrino | Error in reading ICC profile: /no/such.icc.\n"});
        QVERIFY(!missing.get("saveAsButton")->isEnabled());
    }

    void browseMisalignedBrokenAndCancelled() {
        Window w(*settings);
        w.browse(kSrgb);
        QCOMPARE(w.prompts.requests[0].caption, "Open an ICC Profile");
        QCOMPARE(w.prompts.requests[0].filters,
                 (std::vector<std::string>{
                     "ICC Files (*.icm *.icc)", "All Files (*)",
                     "Images with profiles (*.jpg *.jpeg *.png *.tif *.tiff *.webp)"}));
        QCOMPARE(w.path(), QString::fromStdString(kSrgb));
        QCOMPARE(w.fields(), fieldsOnDisk(kSrgb));
        QCOMPARE(w.rows(), rowsOnDisk(kSrgb));
        QCOMPARE(w.dlg.findChildren<QGroupBox*>().at(1)->title(),
                 QString("Tag Table (%1 tags):").arg(w.rows().size()));
        w.get<QRadioButton>("hexadecimalButton")->click();
        QCOMPARE(w.rows(), rowsOnDisk(kSrgb, true));
        w.get<QRadioButton>("decimalButton")->click();
        QCOMPARE(w.rows(), rowsOnDisk(kSrgb));

        const std::string misaligned =
            writeProfile("misaligned.icc", ProfileBuilder()
                                               .tag(icSig("desc"), textTag("x"))
                                               .entry(icSig("wtpt"), 130, 20)
                                               .build());
        w.browse(misaligned);
        QCOMPARE(w.prompts.take(),
                 {"warning | Veltrino | Invalid ICC profile: Error in tag offset(s)."});
        QCOMPARE(w.rows(), rowsOnDisk(misaligned));

        const QStringList fields = w.fields();
        const auto rows = w.rows();
        const std::string broken = writeProfile("broken.icc", Bytes(200, 'x'));
        w.browse(broken);
        QCOMPARE(w.prompts.take(), {QString::fromStdString("info | Veltrino | Error in reading "
                                                           "ICC profile: " +
                                                           broken + ".\n")});
        QCOMPARE(w.fields(), fields);
        QCOMPARE(w.rows(), rows);
        QCOMPARE(w.path(), QString::fromStdString(misaligned));
        QVERIFY(w.get("modifyButton")->isEnabled()); // the profile shown stays fully usable
        QVERIFY(w.get("saveAsButton")->isEnabled());

        const auto files = std::distance(fs::directory_iterator(scratchDir()), {});
        w.browse(std::nullopt);
        w.saveAs(std::nullopt);
        QCOMPARE(w.prompts.requests.size(), std::size_t(5));
        QCOMPARE(w.fields(), fields);
        QCOMPARE(w.path(), QString::fromStdString(misaligned));
        QCOMPARE(std::distance(fs::directory_iterator(scratchDir()), {}), files);
        QCOMPARE(w.prompts.boxes, QStringList());
    }

    void modifyEditsTheHeaderWithItsWarnings() {
        Window w(*settings, version2Profile());
        QStringList expected = w.fields();
        const icHeader before = w.dlg.document().profile().header();
        w.modify([&](CEditHeaderDlg& editor) {
            QCOMPARE(child<QComboBox>(editor, "independentList")->currentIndex(), -1);
            QVERIFY(looksReadOnly(child<QLineEdit>(editor, "pcsField")));
            // Garbage is refused, the box gets its old text back and the header stays as it was.
            auto* version = child<QLineEdit>(editor, "versionEdit");
            version->setText("0x4200000ABCDEFG");
            child<QLineEdit>(editor, "platformEdit")->setText("ab");
            child<QLineEdit>(editor, "dateEdit")->setText("2009-02-21");
            editor.accept();
            QCOMPARE(version->text(), expected[2]);
            QVERIFY(editor.isVisible() && w.dlg.document().profile().header() == before);
            version->setText("0x4200000");
            child<QComboBox>(editor, "intentList")->setCurrentIndex(3);
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
        QCOMPARE(w.dlg.document().profile().header().platform, 0x61620000u);

        w.modify([](CEditHeaderDlg& editor) {
            child<QLineEdit>(editor, "versionEdit")->setText("0x2100000");
            editor.accept();
        });
        QCOMPARE(w.prompts.take(), {kToV2});
        QCOMPARE(w.fields()[16], "00000000-00000000-00000000-00000000");
        QCOMPARE(w.fields()[9], "not embedded, not independently");

        expected = w.fields();
        w.modify([](CEditHeaderDlg& editor) {
            child<QLineEdit>(editor, "versionEdit")->setText("0x4000000");
            editor.reject();
        });
        QCOMPARE(w.fields(), expected);
        QCOMPARE(w.prompts.boxes, QStringList());
    }

    void saveAsShowsTheWrittenLayout() {
        Window w(*settings, version2Profile());
        const std::string target = (scratchDir() / "saved.icc").string();
        w.saveAs(target);
        const FileDialogRequest& request = w.prompts.requests.back();
        QCOMPARE(request.caption, "Save ICC Profile");
        QCOMPARE(request.filters,
                 (std::vector<std::string>{"ICC Files (*.icc *.icm)", "All Files (*)"}));
        QCOMPARE(request.defaultSuffix, "icc");
        QCOMPARE(w.path(), QString::fromStdString(target));
        QCOMPARE(w.dlg.windowTitle(), "saved.icc[*] - Veltrino");
        QCOMPARE(w.rows(), rowsOnDisk(target));
        const auto rows = w.rows();
        QVERIFY(std::any_of(rows.begin(), rows.end(), [](auto& r) { return r[1] == "desc"; }));
        QVERIFY(std::any_of(rows.begin(), rows.end(), [](auto& r) { return r[1] == "cprt"; }));

        // Over the open file: the profile lives in memory, so this works.
        w.modify([](CEditHeaderDlg& editor) {
            child<QLineEdit>(editor, "creatorEdit")->setText("Me");
            editor.accept();
        });
        w.saveAs(target);
        QCOMPARE(fieldsOnDisk(target)[15], "Me");
        QCOMPARE(w.fields(), fieldsOnDisk(target));
        QVERIFY(!w.dlg.isWindowModified());
        QCOMPARE(w.prompts.boxes, QStringList());

        const std::string nowhere = (scratchDir() / "no-such-dir" / "x.icc").string();
        w.saveAs(nowhere);
        QCOMPARE(w.prompts.take(),
                 {"stop | Veltrino | Error in writing a new profile. Errcode: -100.\n" +
                  QString::fromStdString(nowhere) + ": No such file or directory"});
        QCOMPARE(w.path(), QString::fromStdString(target));
    }

    void imagesShowTheirProfileAndSaveAProfileFile() {
        const std::string image = makeImage("photo.jpg", kSrgb), bare = makeImage("bare.png");
        QVERIFY(!image.empty() && !bare.empty());
        Window w(*settings, image);
        QCOMPARE(w.dlg.windowTitle(), "photo.jpg (embedded profile)[*] - Veltrino");
        QCOMPARE(w.path(), QString::fromStdString(image + " (embedded profile)"));
        QCOMPARE(w.fields(), fieldsOnDisk(kSrgb));
        QCOMPARE(w.rows(), rowsOnDisk(kSrgb));
        w.browse(bare);
        QCOMPARE(w.prompts.take(),
                 {QString::fromStdString("info | Veltrino | " + bare + " holds no ICC profile.")});
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
        QCOMPARE(w.path(), QString::fromStdString(saved));
        iccProfileRW reread;
        QCOMPARE(reread.loadFromFile(saved), icOk);
        QCOMPARE(reread.getTagData(0)[10], 0x80); // X = 0.5 as s15Fixed16
    }

    void tagsOpenOnDoubleClickKeysAndSpaceFocus() {
        const std::string path = unknownTagsProfile();
        Window w(*settings, path);
        w.dlg.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w.dlg));
        QTreeWidget* list = w.list();
        const auto dumpOf = [&](int row) {
            iccProfileRW profile;
            (void)profile.loadFromFile(path);
            return std::pair{std::string("Private or Unsupported Tag"),
                             hexDumpLines(profile.getTagData(row))};
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
        CAboutDlg about("About Veltrino", "Veltrino Version 0.1.0");
        QCOMPARE(about.windowTitle(), QString("About Veltrino"));
        QCOMPARE(about.findChild<QLabel*>("aboutText")->text(), QString("Veltrino Version 0.1.0"));
        QDialogButtonBox* ok = about.findChild<QDialogButtonBox*>("aboutButtons");
        QCOMPARE(ok->buttons().size(), 1);
        ok->button(QDialogButtonBox::Ok)->click();
        QCOMPARE(about.result(), int(QDialog::Accepted));

        QMimeData mime;
        mime.setUrls({QUrl::fromLocalFile(QString::fromStdString(kSrgb))});
        // A drop reaches the widget that accepted the drag's entry.
        QDragEnterEvent enter({10, 10}, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&w.dlg, &enter);
        QDropEvent drop({10, 10}, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&w.dlg, &drop);
        QCOMPARE(w.fields(), fieldsOnDisk(kSrgb));

        w.dlg.show();
        QVERIFY(QTest::qWaitForWindowActive(&w.dlg));
        // A larger window gives the header panel and every column of the tag table more room.
        const int panel = w.dlg.findChildren<QGroupBox*>().at(0)->width();
        const int firstColumn = w.list()->columnWidth(0);
        w.dlg.resize(w.dlg.size() * 3 / 2);
        QTRY_VERIFY(w.dlg.findChildren<QGroupBox*>().at(0)->width() > panel);
        QVERIFY(w.list()->columnWidth(0) > firstColumn);
        QTest::keyClick(&w.dlg, Qt::Key_O, Qt::ControlModifier);
        QTest::keyClick(&w.dlg, Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(w.prompts.requests.size(), std::size_t(2));
        QCOMPARE(w.prompts.requests[1].caption, "Save ICC Profile");
    }

    void everyInstalledProfileShowsWhatTheModelsGive() {
        Window w(*settings);
        for (const fs::path& file : installedProfiles()) {
            ScriptedPrompts reference;
            iccDocument document(reference);
            const bool opened = document.open(file.string());
            QCOMPARE(w.dlg.openProfile(file.string()), opened);
            QCOMPARE(w.prompts.take(), reference.boxes);
            if (opened) {
                QCOMPARE(w.fields(), texts(document.headerFields()));
                QCOMPARE(w.rows(), texts(document.tagRows(false)));
            }
        }
    }

    void dataFolderComesFromAndGoesBackToTheSettings() {
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

    void messageBoxesHexDumpAndLargeText() {
        const std::pair<icBoxKind, QMessageBox::Icon> kinds[] = {
            {icBoxKind::info, QMessageBox::Information},
            {icBoxKind::warning, QMessageBox::Warning},
            {icBoxKind::stop, QMessageBox::Critical}};
        for (const auto& [kind, icon] : kinds) {
            const auto box = makeMessageBox(kind, "Veltrino", "Error in icc header.");
            QCOMPARE(box->icon(), icon);
            QCOMPARE(box->windowTitle(), "Veltrino");
            QCOMPARE(box->text(), "Error in icc header.");
            QCOMPARE(box->windowModality(), Qt::ApplicationModal);
        }
        // A caption is never cut short; a table of numbers lines up in the fixed-width font.
        const QString caption = "Perceptual Rendering Intent Gamut Tag";
        const auto named = makeMessageBox(icBoxKind::info, caption.toStdString(), "1.0 2.0\n3 4\n");
        named->show();
        QVERIFY(named->width() > QFontMetrics(named->font()).horizontalAdvance(caption) + 100);
        const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
        QCOMPARE(named->findChild<QLabel*>("qt_msgbox_label")->font(), fixed);
        QVERIFY(makeMessageBox(icBoxKind::info, "", "Error in icc header.")
                    ->findChild<QLabel*>("qt_msgbox_label")
                    ->font() != fixed);
        QCOMPARE(makeCloseQuestion(icKeepButton::save, "Veltrino", "?")->standardButtons(),
                 QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
        CHexDlg hex("", {"line one", "line two"});
        QCOMPARE(hex.windowTitle(), "Private or UnknownTag");
        QCOMPARE(child<QListWidget>(hex, "hexList")->item(1)->text(), "line two");
        CLargeTextDlg large("CharTarget Tag", "a\nb\rc");
        QCOMPARE(large.windowTitle(), "CharTarget Tag");
        QCOMPARE(child<QPlainTextEdit>(large, "textEdit")->document()->blockCount(), 3);
        QCOMPARE(child<QPlainTextEdit>(large, "textEdit")->font(), fixed);
    }

    void startOptions() {
        QCOMPARE(parseStartOptions({"veltrino"}).commandLineFile, "");
        const StartOptions shot = parseStartOptions({"veltrino", "--screenshot", "s.png", "a.icc"});
        QCOMPARE(shot.commandLineFile, "a.icc");
        QCOMPARE(shot.screenshotPath.value_or(""), "s.png");
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
