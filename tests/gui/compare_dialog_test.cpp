// "Compare with...": the second profile asked through the prompt service, the comparison tree
// with its highlighted values, and a double click on a tag section opening that tag.
#include "app/compare_dialog.h"
#include "app/veltrino_dialog.h"
#include "gui/gui_test.h"
#include "support/test_support.h"

#include <QApplication>
#include <QSettings>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

namespace {

const std::string kSrgbV2 = "/usr/share/color/icc/sRGB.icc";
const std::string kSrgbV4 = "/usr/share/color/icc/colord/sRGB.icc";

} // namespace

class CompareDialogTest : public QObject {
    Q_OBJECT

private slots:
    void comparesAndOpensTheTagOfASection() {
        if (!std::filesystem::exists(kSrgbV2) || !std::filesystem::exists(kSrgbV4))
            QSKIP("the two sRGB profiles are not installed");
        QSettings settings(QString::fromStdString((scratchDir() / "compare.ini").string()),
                           QSettings::IniFormat);
        ScriptedPrompts prompts;
        CVeltrinoDlg window(prompts, settings);
        auto* button = window.findChild<QPushButton*>(QStringLiteral("compareButton"));
        QVERIFY(!button->isEnabled());
        QVERIFY(window.openProfile(kSrgbV2));
        QVERIFY(button->isEnabled());

        QStringList titles;
        QString highlighted;
        QTimer::singleShot(0, [&] {
            auto* dialog = qobject_cast<CCompareDlg*>(QApplication::activeModalWidget());
            QVERIFY(dialog);
            auto* tree = dialog->findChild<QTreeWidget*>(QStringLiteral("compareTree"));
            for (int i = 0; i < tree->topLevelItemCount(); ++i)
                titles << tree->topLevelItem(i)->text(0);
            QTreeWidgetItem* desc = tree->topLevelItem(
                titles.indexOf("Tag desc (Profile Description Tag, 'desc' -> 'mluc')"));
            QVERIFY(desc);
            for (int i = 0; i < desc->childCount(); ++i)
                if (desc->child(i)->background(2).style() != Qt::NoBrush)
                    highlighted += desc->child(i)->text(0) + " ";
            emit tree->itemDoubleClicked(desc->child(0), 0);
            dialog->reject();
        });
        prompts.answers.push_back(kSrgbV4);
        button->click();
        QCOMPARE(prompts.requests.back().caption, "Compare with an ICC Profile");
        QCOMPARE(titles.mid(0, 2), (QStringList{"Header", "Directory"}));
        QCOMPARE(highlighted, "type ASCII en/US ");
        QCOMPARE(prompts.take(), QStringList{"info | Profile Description Tag | sRGB"});
    }
};

static const bool registered = registerGuiTest<CompareDialogTest>();

#include "compare_dialog_test.moc"
