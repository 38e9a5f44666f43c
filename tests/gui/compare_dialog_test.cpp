// "Compare with...": the second profile asked through the prompt service, the comparison tree
// with its highlighted values, and a double click on a tag section opening that tag.
#include "app/compare_dialog.h"
#include "app/veltrino_dialog.h"
#include "gui/gui_test.h"

#include <QSettings>
#include <QTreeWidget>

class CompareDialogTest : public QObject {
    Q_OBJECT

private slots:
    void comparesAndOpensTheTagOfASection() {
        if (!std::filesystem::exists(kSrgbV2) || !std::filesystem::exists(kSrgb))
            QSKIP("the two sRGB profiles are not installed");
        QSettings settings(q((scratchDir() / "compare.ini").string()), QSettings::IniFormat);
        ScriptedPrompts prompts;
        CVeltrinoDlg window(prompts, settings);
        auto* button = get<QPushButton>(window, "compareButton");
        QVERIFY(!button->isEnabled());
        QVERIFY(window.openProfile(kSrgbV2));
        QVERIFY(button->isEnabled());

        QStringList titles;
        QString highlighted;
        prompts.answers.push_back(kSrgb);
        QVERIFY(
            whileOpen<CCompareDlg>([&] { button->click(); },
                                   [&](CCompareDlg& dialog) {
                                       auto* tree = get<QTreeWidget>(dialog, "compareTree");
                                       for (int i = 0; i < tree->topLevelItemCount(); ++i)
                                           titles << tree->topLevelItem(i)->text(0);
                                       QTreeWidgetItem* desc = tree->topLevelItem(titles.indexOf(
                                           "Tag desc (Profile Description Tag, 'desc' -> 'mluc')"));
                                       QVERIFY(desc);
                                       for (int i = 0; i < desc->childCount(); ++i)
                                           if (desc->child(i)->background(2).style() != Qt::NoBrush)
                                               highlighted += desc->child(i)->text(0) + " ";
                                       emit tree->itemDoubleClicked(desc->child(0), 0);
                                   }));
        QCOMPARE(prompts.requests.back().caption, "Compare with an ICC Profile");
        QCOMPARE(titles.mid(0, 2), (QStringList{"Header", "Directory"}));
        QCOMPARE(highlighted, "type ASCII en/US ");
        QCOMPARE(prompts.take(), QStringList{"info | Profile Description Tag | sRGB"});
    }
};

static const bool registered = registerGuiTest<CompareDialogTest>();

#include "compare_dialog_test.moc"
