#include "app/veltrino_dialog.h"

#include "app/changes_model.h"
#include "app/check_dialog.h"
#include "app/compare_dialog.h"
#include "app/header_edit_dialog.h"
#include "app/settings.h"
#include "catalogue/catalogue.h"
#include "document/settings_model.h"
#include "viewers/dialog_widgets.h"

#include <QAction>
#include <QApplication>
#include <QButtonGroup>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QSettings>
#include <QShortcut>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <numeric>

#ifndef VELTRINO_VERSION
#define VELTRINO_VERSION "0.0.0"
#endif

namespace {

// Object names of the seventeen header fields, in panel order.
constexpr std::array<const char*, kHeaderFieldCount> kFieldNames = {
    "sizeField",         "cmmTypeField",  "versionField",   "deviceClassField", "colorSpaceField",
    "pcsField",          "dateField",     "magicField",     "platformField",    "flagsField",
    "manufacturerField", "modelField",    "attributeField", "intentField",      "illuminantField",
    "creatorField",      "profileIdField"};

constexpr std::array<int, 4> kColumnWidths = {50, 100, 100, 100};

// Field texts are bytes (signatures may hold any byte); Latin-1 shows each byte as one
// character. The illuminant's closing line feed has no place in a one-line field.
QString fieldText(std::string_view text) {
    while (!text.empty() && text.back() == '\n')
        text.remove_suffix(1);
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

QString localPath(const std::string& path) {
    return QFile::decodeName(path.c_str());
}

// Three overlapping primaries: the window's icon, drawn so that no image file has to be found.
QIcon drawAppIcon() {
    QPixmap pixmap(64, 64);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setCompositionMode(QPainter::CompositionMode_Plus);
    const QColor colors[] = {QColor(230, 0, 0), QColor(0, 200, 0), QColor(0, 0, 230)};
    const QPointF centres[] = {{32, 22}, {22, 40}, {42, 40}};
    for (int i = 0; i < 3; ++i) {
        painter.setBrush(colors[i]);
        painter.drawEllipse(centres[i], 19, 19);
    }
    return QIcon(pixmap);
}

bool isModifierOnly(int key) {
    switch (key) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Meta:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
    case Qt::Key_ScrollLock:
        return true;
    default:
        return false;
    }
}

} // namespace

CVeltrinoDlg::CVeltrinoDlg(PromptService& prompts, QSettings& settings,
                           const std::string& commandLineFile, QWidget* parent)
    : QDialog(parent), prompts_(prompts), settings_(settings),
      document_(prompts, readEmbeddedProfile) {
    DataFolder::set(QFile::encodeName(loadDataDir(settings_)).toStdString());
    buildLayout();
    // Space bar state is only known to whoever sees the key go down, so watch all keys.
    qApp->installEventFilter(this);

    if (!commandLineFile.empty())
        openProfile(commandLineFile);
    enableCommands();
}

CVeltrinoDlg::~CVeltrinoDlg() {
    saveDataDir(settings_, QFile::decodeName(DataFolder::get().c_str()));
}

void CVeltrinoDlg::buildLayout() {
    setWindowTitle(tr("Veltrino"));
    setWindowIcon(drawAppIcon());
    setWindowFlags(windowFlags() | Qt::WindowMinMaxButtonsHint);
    setSizeGripEnabled(true);
    setAcceptDrops(true);

    browseButton_ = new QPushButton(tr("&Browse..."), this);
    browseButton_->setObjectName(QStringLiteral("browseButton"));
    pathField_ = new QLineEdit(this);
    pathField_->setObjectName(QStringLiteral("pathField"));
    setReadOnlyLook(*pathField_);
    saveAsButton_ = new QPushButton(tr("Save As..."), this);
    saveAsButton_->setObjectName(QStringLiteral("saveAsButton"));
    auto* top = new QHBoxLayout;
    top->addWidget(browseButton_);
    top->addWidget(pathField_, 1);
    top->addWidget(saveAsButton_);
    compareButton_ = new QPushButton(tr("Compare with..."), this);
    compareButton_->setObjectName(QStringLiteral("compareButton"));
    compareButton_->setToolTip(tr("Compare this profile with another one (Ctrl+D)"));
    top->addWidget(compareButton_);

    headerGroup_ = new QGroupBox(tr("Header Info:"), this);
    auto* fields = new QGridLayout;
    // Wide enough for the longest texts the panel shows, the attributes and the Profile ID.
    const int fieldWidth = fontMetrics().horizontalAdvance(
                               QStringLiteral("transparency, matte, negative black & white")) +
                           24;
    const HeaderFields labels = headerFieldTexts(icHeader{});
    for (std::size_t i = 0; i < kHeaderFieldCount; ++i) {
        auto* field = new QLineEdit(headerGroup_);
        field->setObjectName(QLatin1String(kFieldNames[i]));
        setReadOnlyLook(*field);
        field->setMinimumWidth(fieldWidth);
        auto* label = new QLabel(fieldText(labels[i].label), headerGroup_);
        label->setBuddy(field);
        fields->addWidget(label, static_cast<int>(i), 0);
        fields->addWidget(field, static_cast<int>(i), 1);
        headerFields_[i] = field;
    }
    fields->setVerticalSpacing(3);
    fields->setColumnStretch(1, 1);
    modifyButton_ = new QPushButton(tr("Modify..."), headerGroup_);
    modifyButton_->setObjectName(QStringLiteral("modifyButton"));
    checkButton_ = new QPushButton(tr("Check..."), headerGroup_);
    checkButton_->setObjectName(QStringLiteral("checkButton"));
    auto* modifyRow = new QHBoxLayout;
    modifyRow->addStretch();
    modifyRow->addWidget(checkButton_);
    modifyRow->addWidget(modifyButton_);
    auto* headerLayout = new QVBoxLayout(headerGroup_);
    headerLayout->addLayout(fields);
    headerLayout->addLayout(modifyRow);
    headerLayout->addStretch();

    tagGroup_ = new QGroupBox(tr("Tag Table:"), this);
    tagList_ = new QTreeWidget(tagGroup_);
    tagList_->setObjectName(QStringLiteral("tagList"));
    tagList_->setColumnCount(4);
    tagList_->setHeaderLabels({tr("#"), tr("Signature"), tr("Offset"), tr("Size")});
    for (int c = 0; c < 4; ++c)
        tagList_->setColumnWidth(c, kColumnWidths[static_cast<std::size_t>(c)]);
    tagList_->setRootIsDecorated(false);
    tagList_->setItemsExpandable(false);
    tagList_->setUniformRowHeights(true);
    tagList_->setSelectionMode(QAbstractItemView::SingleSelection);
    tagList_->setSelectionBehavior(QAbstractItemView::SelectRows);
    tagList_->setAllColumnsShowFocus(true);
    tagList_->setSortingEnabled(false);
    tagList_->setMinimumWidth(360);
    decimalButton_ = new QRadioButton(tr("Decimal"), tagGroup_);
    decimalButton_->setObjectName(QStringLiteral("decimalButton"));
    hexadecimalButton_ = new QRadioButton(tr("Hexadecimal"), tagGroup_);
    hexadecimalButton_->setObjectName(QStringLiteral("hexadecimalButton"));
    decimalButton_->setChecked(true);
    auto* radix = new QButtonGroup(this);
    radix->addButton(decimalButton_);
    radix->addButton(hexadecimalButton_);
    auto* radixRow = new QHBoxLayout;
    radixRow->addWidget(decimalButton_);
    radixRow->addWidget(hexadecimalButton_);
    radixRow->addStretch();
    auto* tagLayout = new QVBoxLayout(tagGroup_);
    tagLayout->addWidget(tagList_, 1);
    tagLayout->addLayout(radixRow);

    auto* middle = new QHBoxLayout;
    middle->addWidget(headerGroup_, 2);
    middle->addWidget(tagGroup_, 3);

    aboutAction_ = new QAction(tr("&About Veltrino..."), this);
    aboutAction_->setObjectName(QStringLiteral("aboutAction"));
    addAction(aboutAction_);
    setContextMenuPolicy(Qt::ActionsContextMenu);
    auto* aboutButton = new QPushButton(aboutAction_->text(), this);
    aboutButton->setObjectName(QStringLiteral("aboutButton"));
    aboutButton->setAutoDefault(false);
    closeButton_ = new QPushButton(tr("&Close"), this);
    closeButton_->setObjectName(QStringLiteral("closeButton"));
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(aboutButton);
    bottom->addStretch();
    bottom->addWidget(closeButton_);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(middle, 1);
    layout->addLayout(bottom);

    // No button reacts to Enter: the window has no default action.
    for (QPushButton* b : findChildren<QPushButton*>())
        b->setAutoDefault(false);

    connect(browseButton_, &QPushButton::clicked, this, &CVeltrinoDlg::browse);
    connect(saveAsButton_, &QPushButton::clicked, this, &CVeltrinoDlg::saveAs);
    connect(modifyButton_, &QPushButton::clicked, this, &CVeltrinoDlg::modifyHeader);
    connect(checkButton_, &QPushButton::clicked, this, &CVeltrinoDlg::checkProfile);
    connect(decimalButton_, &QRadioButton::clicked, this, &CVeltrinoDlg::rewriteNumberColumns);
    connect(hexadecimalButton_, &QRadioButton::clicked, this, &CVeltrinoDlg::rewriteNumberColumns);
    connect(tagList_, &QTreeWidget::itemDoubleClicked, this, &CVeltrinoDlg::openSelectedTag);
    connect(aboutAction_, &QAction::triggered, this, &CVeltrinoDlg::showAbout);
    connect(aboutButton, &QPushButton::clicked, aboutAction_, &QAction::trigger);
    connect(closeButton_, &QPushButton::clicked, this, &QDialog::accept);
    // click() does nothing on a disabled button, so the shortcuts follow the buttons' state.
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_O), this), &QShortcut::activated,
            browseButton_, &QPushButton::click);
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S), this),
            &QShortcut::activated, saveAsButton_, &QPushButton::click);
    connect(compareButton_, &QPushButton::clicked, this, &CVeltrinoDlg::compareWith);
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_D), this), &QShortcut::activated,
            compareButton_, &QPushButton::click);
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_K), this), &QShortcut::activated,
            checkButton_, &QPushButton::click);

    resize(sizeHint().expandedTo(QSize(880, 0)));
}

FileDialogRequest CVeltrinoDlg::openRequest() {
    return {"Open an ICC Profile",
            {"ICC Files (*.icm *.icc)", "All Files (*)",
             "Images with profiles (*.jpg *.jpeg *.png *.tif *.tiff *.webp)"},
            "",
            ""};
}

FileDialogRequest CVeltrinoDlg::saveRequest() {
    return {"Save ICC Profile", {"ICC Files (*.icc *.icm)", "All Files (*)"}, "icc", ""};
}

std::string CVeltrinoDlg::currentFolder() const {
    if (!document_.isOpen())
        return {};
    return QFile::encodeName(QFileInfo(localPath(document_.path())).absolutePath()).toStdString();
}

bool CVeltrinoDlg::openProfile(const std::string& path) {
    const bool ok = document_.open(path);
    if (ok) {
        setWindowModified(false);
        showProfile();
    }
    enableCommands();
    return ok;
}

void CVeltrinoDlg::enableCommands() {
    for (QPushButton* button : {modifyButton_, saveAsButton_, compareButton_, checkButton_})
        button->setEnabled(document_.isOpen());
}

void CVeltrinoDlg::showProfile() {
    // A profile taken from an image goes by the image's name, marked as embedded.
    const QString mark = document_.isEmbedded() ? QString::fromLatin1(kEmbeddedMark) : QString();
    pathField_->setText(localPath(document_.path()) + mark);
    pathField_->setCursorPosition(0);
    // "[*]" shows as "*" while the profile has unsaved changes.
    setWindowTitle(
        tr("%1[*] - Veltrino").arg(QFileInfo(localPath(document_.path())).fileName() + mark));
    showHeaderFields();
    showTagTable();
}

void CVeltrinoDlg::showHeaderFields() {
    const HeaderFields& fields = document_.headerFields();
    for (std::size_t i = 0; i < kHeaderFieldCount; ++i) {
        headerFields_[i]->setText(fieldText(fields[i].text));
        headerFields_[i]->setCursorPosition(0);
    }
}

void CVeltrinoDlg::showTagTable() {
    tagList_->clear();
    tagGroup_->setTitle(QString::fromStdString(tagTableCaption(document_.profile().tagCount())));
    QList<QTreeWidgetItem*> items;
    for (const TagRow& row : document_.tagRows(hexadecimal_))
        items << new QTreeWidgetItem(QStringList{fieldText(row.index), fieldText(row.signature),
                                                 fieldText(row.offset), fieldText(row.size)});
    tagList_->addTopLevelItems(items);
}

void CVeltrinoDlg::rewriteNumberColumns() {
    hexadecimal_ = hexadecimalButton_->isChecked();
    const std::vector<TagRow> rows = document_.tagRows(hexadecimal_);
    for (int i = 0; i < tagList_->topLevelItemCount() && i < static_cast<int>(rows.size()); ++i) {
        QTreeWidgetItem* item = tagList_->topLevelItem(i);
        item->setText(2, fieldText(rows[static_cast<std::size_t>(i)].offset));
        item->setText(3, fieldText(rows[static_cast<std::size_t>(i)].size));
    }
}

void CVeltrinoDlg::browse() {
    FileDialogRequest request = openRequest();
    request.directory = currentFolder();
    if (const auto path = prompts_.askOpenPath(request); path && mayDropChanges())
        openProfile(*path);
}

void CVeltrinoDlg::saveAs() {
    FileDialogRequest request = saveRequest();
    request.directory = currentFolder();
    // Never the image itself: its profile is proposed as a profile file of the image's name.
    if (document_.isEmbedded())
        request.fileName =
            QFile::encodeName(QFileInfo(localPath(document_.path())).completeBaseName() + ".icc")
                .toStdString();
    const auto path = prompts_.askSavePath(request);
    if (!path)
        return;
    // The save stamps the header with the local date and time, lays the profile out, writes it
    // and reads the written file back, so the window shows exactly what is on disk.
    if (document_.saveAs(*path, true) == icOk) {
        setWindowModified(false);
        showProfile();
    }
    enableCommands();
}

void CVeltrinoDlg::modifyHeader() {
    if (!document_.isOpen())
        return;
    icHeader& header = document_.profile().header();
    const ProfileSnapshot before(document_.profile());
    CEditHeaderDlg editor(header, prompts_, this);
    if (editor.exec() != QDialog::Accepted)
        return;
    // A Profile ID belongs to version 4; an older profile must not carry a stale one.
    if (header.version < kVersion4)
        header.profileID.fill(0);
    noteChanges(before);
    if (document_.refreshHeader() == icOk)
        showHeaderFields();
}

void CVeltrinoDlg::checkProfile() {
    if (!document_.isOpen())
        return;
    // The file as it is on disk; the ID a save here hashed lets the check confirm Veltrino's
    // rule for the file that save wrote.
    icCheckOptions options;
    if (const auto& id = document_.savedOverId())
        options.previousIds.push_back(*id);
    CCheckDlg dialog(document_.path(), checkProfileFile(document_.path(), options), this);
    connect(&dialog, &CCheckDlg::tagChosen, this, [this](int index) {
        if (QTreeWidgetItem* row = tagList_->topLevelItem(index)) {
            tagList_->setCurrentItem(row);
            tagList_->scrollToItem(row);
        }
    });
    dialog.exec();
}

void CVeltrinoDlg::openSelectedTag() {
    const QModelIndexList selected = tagList_->selectionModel()->selectedRows();
    int index = -1;
    for (const QModelIndex& row : selected)
        if (index < 0 || row.row() < index)
            index = row.row();
    showTagNotingChanges(index);
}

void CVeltrinoDlg::showTagNotingChanges(int index) {
    const ProfileSnapshot before(document_.profile());
    showTag(prompts_, document_.profile(), index);
    noteChanges(before);
}

void CVeltrinoDlg::noteChanges(const ProfileSnapshot& before) {
    if (before.differsFrom(document_.profile()))
        setWindowModified(true);
}

bool CVeltrinoDlg::mayDropChanges() {
    if (!isWindowModified())
        return true;
    const QString name = QFileInfo(localPath(document_.path())).fileName();
    switch (prompts_.askBeforeClosing(icKeepButton::save, kCaption,
                                      saveChangesQuestion(name.toStdString()))) {
    case icCloseAnswer::keep:
        // "Save As..." as its button runs it; a cancelled or failed save keeps the window.
        saveAs();
        return !isWindowModified();
    case icCloseAnswer::discard:
        return true;
    case icCloseAnswer::stay:
        break;
    }
    return false;
}

void CVeltrinoDlg::done(int result) {
    if (mayDropChanges())
        QDialog::done(result);
}

void CVeltrinoDlg::stretchColumns() {
    const int opening = std::accumulate(kColumnWidths.begin(), kColumnWidths.end(), 0);
    const int room = tagList_->viewport()->width();
    for (int c = 0; c < 4; ++c) {
        const int width = kColumnWidths[static_cast<std::size_t>(c)];
        tagList_->setColumnWidth(c, std::max(width, width * room / opening));
    }
}

void CVeltrinoDlg::showAbout() {
    prompts_.about("About Veltrino", "Veltrino Version " VELTRINO_VERSION
                                     "\n\nInspects and edits ICC colour profiles.");
}

void CVeltrinoDlg::compareWith() {
    FileDialogRequest request = openRequest();
    request.caption = "Compare with an ICC Profile";
    request.directory = currentFolder();
    compareWithFile(prompts_, document_, request, this,
                    [this](int index) { showTagNotingChanges(index); });
}

bool CVeltrinoDlg::tagListKeyPressed(const QKeyEvent& key) {
    switch (key.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return true; // swallowed: Enter neither opens the tag nor closes the window
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
    case Qt::Key_Escape:
        return false; // focus moves and closing stay the window's
    default:
        // Modifiers alone are not keystrokes: they would open the tag before every shortcut.
        if (!isModifierOnly(key.key()))
            openSelectedTag();
        return false;
    }
}

bool CVeltrinoDlg::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease: {
        const auto& key = static_cast<const QKeyEvent&>(*event);
        if (key.key() == Qt::Key_Space && !key.isAutoRepeat())
            spaceHeld_ = event->type() == QEvent::KeyPress;
        if (watched == tagList_ && event->type() == QEvent::KeyPress)
            return tagListKeyPressed(key);
        break;
    }
    case QEvent::FocusIn:
        if (watched == tagList_ && spaceHeld_)
            openSelectedTag();
        break;
    case QEvent::Resize:
        if (watched == tagList_->viewport())
            stretchColumns();
        break;
    case QEvent::ApplicationDeactivate:
        spaceHeld_ = false;
        break;
    default:
        break;
    }
    return QDialog::eventFilter(watched, event);
}

void CVeltrinoDlg::dragEnterEvent(QDragEnterEvent* event) {
    const QList<QUrl> urls = event->mimeData()->urls();
    if (urls.size() == 1 && urls.front().isLocalFile())
        event->acceptProposedAction();
}

void CVeltrinoDlg::dropEvent(QDropEvent* event) {
    const QList<QUrl> urls = event->mimeData()->urls();
    if (urls.size() != 1 || !urls.front().isLocalFile())
        return;
    event->acceptProposedAction();
    if (mayDropChanges())
        openProfile(QFile::encodeName(urls.front().toLocalFile()).toStdString());
}
