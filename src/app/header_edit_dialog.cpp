#include "app/header_edit_dialog.h"

#include "viewers/dialog_widgets.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace {

// Signatures are bytes; Latin-1 maps each byte to one character and back.
QString sigText(const std::string& text) {
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

QString trimmedLineEnd(std::string text) {
    while (!text.empty() && text.back() == '\n')
        text.pop_back();
    return sigText(text);
}

std::string sigFrom(const QLineEdit* edit) {
    return edit->text().toLatin1().toStdString();
}

QLineEdit* makeEdit(QWidget* parent, const char* name, const QString& text, int maxLength = 0) {
    auto* edit = new QLineEdit(text, parent);
    edit->setObjectName(QLatin1String(name));
    if (maxLength > 0)
        edit->setMaxLength(maxLength);
    return edit;
}

QLineEdit* makeReadOnly(QWidget* parent, const char* name, const QString& text) {
    QLineEdit* edit = readOnlyBox(parent, QLatin1String(name));
    edit->setText(text);
    edit->setCursorPosition(0);
    return edit;
}

template <std::size_t N>
QComboBox* makeList(QWidget* parent, const char* name, const std::array<std::string_view, N>& items,
                    int position) {
    auto* list = new QComboBox(parent);
    list->setObjectName(QLatin1String(name));
    for (std::string_view item : items)
        list->addItem(QString::fromLatin1(item.data(), static_cast<qsizetype>(item.size())));
    // A position past the end shows an empty list, as the preset rule requires.
    list->setCurrentIndex(position);
    return list;
}

QWidget* row(QWidget* parent, std::initializer_list<QWidget*> widgets) {
    auto* box = new QWidget(parent);
    auto* layout = new QHBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    for (QWidget* w : widgets)
        layout->addWidget(w);
    return box;
}

} // namespace

CEditHeaderDlg::CEditHeaderDlg(icHeader& header, Presenter& presenter, QWidget* parent)
    : QDialog(parent), header_(header), presenter_(presenter) {
    setWindowTitle(tr("Header"));
    setModal(true);
    const HeaderEditFields f = headerEditFields(header);

    cmmType_ = makeEdit(this, "cmmTypeEdit", sigText(f.cmmType), 4);
    version_ = makeEdit(this, "versionEdit", sigText(f.version));
    date_ = makeEdit(this, "dateEdit", sigText(f.date));
    time_ = makeEdit(this, "timeEdit", sigText(f.time));
    platform_ = makeEdit(this, "platformEdit", sigText(f.platform), 4);
    manufacturer_ = makeEdit(this, "manufacturerEdit", sigText(f.manufacturer), 4);
    model_ = makeEdit(this, "modelEdit", sigText(f.model));
    creator_ = makeEdit(this, "creatorEdit", sigText(f.creator), 4);
    embedded_ = makeList(this, "embeddedList", kEmbeddedItems, f.embedded);
    independent_ = makeList(this, "independentList", kIndependentItems, f.independent);
    for (std::size_t i = 0; i < attributes_.size(); ++i) {
        const std::string name = "attributeList" + std::to_string(i);
        attributes_[i] = makeList(this, name.c_str(), kAttributeItems[i], f.attributes[i]);
    }
    intent_ = makeList(this, "intentList", kIntentItems, f.intent);

    const struct {
        const char* label;
        QWidget* control;
        const char* hint;
    } rows[] = {
        {"Size:", makeReadOnly(this, "sizeField", sigText(f.size)), "(to be updated if necessary)"},
        {"CMM Type:", cmmType_, "(up to 4 characters)"},
        {"Version:", version_, nullptr},
        {"Device Class:", makeReadOnly(this, "deviceClassField", sigText(f.deviceClass)), nullptr},
        {"Color Space:", makeReadOnly(this, "colorSpaceField", sigText(f.colorSpace)), nullptr},
        {"PCS:", makeReadOnly(this, "pcsField", sigText(f.pcs)), nullptr},
        {"Date and Time:", row(this, {date_, time_}), "(to be updated to current date and time)"},
        {"Magic:", makeReadOnly(this, "magicField", sigText(f.magic)), nullptr},
        {"Platform:", platform_, "(up to 4 characters: APPL, MSFT, ...)"},
        {"Flag:", row(this, {embedded_, independent_}), nullptr},
        {"Manufacture:", manufacturer_, "(up to 4 characters)"},
        {"Model:", model_, nullptr},
        {"Attributes:", row(this, {attributes_[0], attributes_[1], attributes_[2], attributes_[3]}),
         nullptr},
        {"Intent:", intent_, nullptr},
        {"Illuminant:", makeReadOnly(this, "illuminantField", trimmedLineEnd(f.illuminant)),
         nullptr},
        {"Creator:", creator_, "(up to 4 characters)"},
        {"Profile ID:", makeReadOnly(this, "profileIdField", sigText(f.profileId)),
         "(to be updated automatically)"},
    };

    auto* grid = new QGridLayout;
    int r = 0;
    for (const auto& item : rows) {
        auto* label = new QLabel(QString::fromLatin1(item.label), this);
        label->setBuddy(item.control);
        grid->addWidget(label, r, 0);
        grid->addWidget(item.control, r, 1);
        if (item.hint)
            grid->addWidget(new QLabel(QString::fromLatin1(item.hint), this), r, 2);
        ++r;
    }
    grid->setColumnStretch(1, 1);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->setObjectName(QStringLiteral("buttons"));
    connect(buttons, &QDialogButtonBox::accepted, this, &CEditHeaderDlg::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addWidget(buttons);
    // Wide enough for the longest value, the Profile ID.
    const int idWidth = fontMetrics().horizontalAdvance(QString(40, QLatin1Char('0')));
    findChild<QLineEdit*>(QStringLiteral("profileIdField"))->setMinimumWidth(idWidth);
}

HeaderEditFields CEditHeaderDlg::fields(const HeaderEditFields& shown) const {
    HeaderEditFields f = shown;
    f.cmmType = sigFrom(cmmType_);
    f.version = version_->text().toStdString();
    f.date = date_->text().toStdString();
    f.time = time_->text().toStdString();
    f.platform = sigFrom(platform_);
    f.manufacturer = sigFrom(manufacturer_);
    f.model = model_->text().toStdString();
    f.creator = sigFrom(creator_);
    f.embedded = embedded_->currentIndex();
    f.independent = independent_->currentIndex();
    for (std::size_t i = 0; i < attributes_.size(); ++i)
        f.attributes[i] = attributes_[i]->currentIndex();
    f.intent = intent_->currentIndex();
    return f;
}

void CEditHeaderDlg::accept() {
    const HeaderEditFields shown = headerEditFields(header_);
    const HeaderEditFields typed = fields(shown);
    if (const auto refusal = refuseHeaderEdit(typed, shown)) {
        const std::pair<std::string HeaderEditFields::*, QLineEdit*> boxes[] = {
            {&HeaderEditFields::version, version_},
            {&HeaderEditFields::date, date_},
            {&HeaderEditFields::time, time_},
            {&HeaderEditFields::model, model_}};
        for (const auto& [field, box] : boxes)
            if (field == refusal->field) {
                box->setText(sigText(shown.*field));
                box->setFocus();
            }
        presenter_.messageBox(icBoxKind::warning, windowTitle().toStdString(), refusal->message);
        return;
    }
    for (const std::string& warning : applyHeaderEdit(typed, header_))
        presenter_.messageBox(icBoxKind::info, kCaption, warning);
    QDialog::accept();
}
