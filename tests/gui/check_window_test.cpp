// The Check window (Ctrl+K): findings by severity, Copy as the CLI's text, a finding's tag.
#include "app/check_dialog.h"
#include "app/veltrino_dialog.h"
#include "check/check_report.h"
#include "gui/gui_test.h"

#include <QClipboard>
#include <QSettings>
#include <QTreeWidget>

class CheckWindowTest : public QObject {
    Q_OBJECT
private slots:
    void findingsCopyAndSelectTheirTag() {
        // No desc, wtpt or colorants: errors and warnings, and a private tag at index 1.
        ProfileBuilder b;
        b.tag(icSig("cprt"), textTag("c")).tag(icSig("priv"), tagBytes(icSig("zzzz"), Bytes(12)));
        const std::string path = writeBytes(scratchDir() / "check-window.icc", b.build());
        const icCheckReport report = checkProfileFile(path);

        QSettings settings((scratchDir() / "check.ini").c_str(), QSettings::IniFormat);
        ScriptedPrompts prompts;
        CVeltrinoDlg window(prompts, settings);
        auto* check = window.findChild<QPushButton*>(QStringLiteral("checkButton"));
        QVERIFY(!check->isEnabled());
        QVERIFY(window.openProfile(path));
        QVERIFY(check->isEnabled());

        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QStringList severities, tags;
        QString copied;
        const auto read = [&](CCheckDlg& dialog) {
            auto* list = get<QTreeWidget>(dialog, "findingList");
            for (int i = 0; i < list->topLevelItemCount(); ++i) {
                severities << list->topLevelItem(i)->text(0);
                tags << list->topLevelItem(i)->text(2);
            }
            click(dialog, "copyButton");
            copied = QApplication::clipboard()->text();
            if (tags.contains("priv"))
                emit list->itemDoubleClicked(list->topLevelItem(tags.indexOf("priv")), 3);
            dialog.accept();
        };
        QVERIFY(whileOpen<CCheckDlg>(
            [&] { QTest::keyClick(&window, Qt::Key_K, Qt::ControlModifier); }, read));

        QCOMPARE(severities.size(), static_cast<qsizetype>(report.findings.size()));
        QCOMPARE(severities.front(), "error");
        QCOMPARE(severities.back(), "info");
        QCOMPARE(copied, QString::fromStdString(reportText(path, report)));
        auto* tagList = window.findChild<QTreeWidget*>(QStringLiteral("tagList"));
        QCOMPARE(tagList->indexOfTopLevelItem(tagList->currentItem()), 1);

        // Saved here from a profile with an ID, the window knows the ID that save hashed.
        const std::string saved = (scratchDir() / "check-window-saved.icc").string();
        QVERIFY(window.openProfile(kSrgb));
        prompts.answers = {saved};
        window.saveAs();
        tags.clear();
        QVERIFY(whileOpen<CCheckDlg>([&] { window.checkProfile(); }, read));
        QVERIFY(copied.contains("warning 84 - id-veltrino: "));
    }
};

[[maybe_unused]] const bool registered = registerGuiTest<CheckWindowTest>();

#include "check_window_test.moc"
