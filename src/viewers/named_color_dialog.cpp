#include "viewers/named_color_dialog.h"

#include "document/presenter.h"
#include "viewers/dialog_widgets.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

CNameColor2Dlg::CNameColor2Dlg(const icNamedColor2& colors, icSignature pcs,
                               std::string_view caption, Presenter& prompts, QWidget* parent)
    : QDialog(parent), model_(colors, pcs), prompts_(prompts) {
    setWindowTitle(latin1Text(caption.empty() ? kNamedColorDefaultCaption : caption));
    setModal(true);

    auto* header = new QFormLayout;
    const char* headerNames[] = {"vendorFlagEdit", "colorCountEdit", "devicePlanesEdit",
                                 "prefixEdit", "suffixEdit"};
    const auto headerValues = model_.headerValues();
    for (std::size_t i = 0; i < headerValues.size(); ++i) {
        QLineEdit* box = readOnlyBox(this, QLatin1String(headerNames[i]));
        box->setText(latin1Text(headerValues[i]));
        header->addRow(latin1Text(kNamedColorHeaderLabels[i]), box);
    }

    // The box takes 0 to 65535 by itself; the highest colour is checked after that.
    indexBox_ = new QLineEdit(this);
    indexBox_->setObjectName(QStringLiteral("indexEdit"));
    indexBox_->setValidator(new QIntValidator(0, 65535, indexBox_));
    indexBox_->setMaximumWidth(
        indexBox_->fontMetrics().horizontalAdvance(QStringLiteral("000000")) + 16);
    connect(indexBox_, &QLineEdit::textEdited, this, &CNameColor2Dlg::indexEdited);
    scroll_ = new QScrollBar(Qt::Horizontal, this);
    scroll_->setObjectName(QStringLiteral("colorScroll"));
    scroll_->setRange(0, std::max(model_.maxIndex(), 0));
    scroll_->setSingleStep(1);
    scroll_->setPageStep(std::max(model_.maxIndex() + 1, 0) / 10);
    connect(scroll_, &QAbstractSlider::actionTriggered, this, &CNameColor2Dlg::scrollRequested);
    connect(scroll_, &QAbstractSlider::sliderReleased, this,
            [this] { moveTo(icScrollRequest::thumbPosition, scroll_->sliderPosition()); });
    auto* indexRow = new QHBoxLayout;
    indexRow->addWidget(indexBox_);
    indexRow->addWidget(scroll_, 1);
    header->addRow(tr("Color #:"), indexRow);
    rootName_ = readOnlyBox(this, QStringLiteral("rootNameEdit"));
    header->addRow(tr("Root name:"), rootName_);

    auto* pcsGroup = new QGroupBox(tr("PCS Coordinates:"), this);
    auto* pcsForm = new QFormLayout(pcsGroup);
    const auto pcsLabels = model_.pcsLabels();
    for (std::size_t i = 0; i < pcs_.size(); ++i) {
        auto* label = new QLabel(latin1Text(pcsLabels[i]), pcsGroup);
        label->setObjectName(QStringLiteral("pcsLabel%1").arg(i));
        pcs_[i] = readOnlyBox(pcsGroup, QStringLiteral("pcsEdit%1").arg(i));
        pcsForm->addRow(label, pcs_[i]);
    }

    auto* deviceGroup = new QGroupBox(tr("Device Coordinates:"), this);
    auto* deviceForm = new QFormLayout(deviceGroup);
    for (std::size_t c = 0; c < channels_.size(); ++c) {
        channelLabels_[c] = new QLabel(tr("Channel %1:").arg(c), deviceGroup);
        channelLabels_[c]->setObjectName(QStringLiteral("channelLabel%1").arg(c));
        channels_[c] = readOnlyBox(deviceGroup, QStringLiteral("channelEdit%1").arg(c));
        deviceForm->addRow(channelLabels_[c], channels_[c]);
    }

    auto* ok = new QPushButton(tr("OK"), this);
    ok->setObjectName(QStringLiteral("okButton"));
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ok);

    auto* coordinates = new QHBoxLayout;
    coordinates->addWidget(pcsGroup, 1, Qt::AlignTop);
    coordinates->addWidget(deviceGroup, 1, Qt::AlignTop);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(header);
    layout->addLayout(coordinates);
    layout->addStretch();
    layout->addLayout(buttons);

    if (!model_.openingMessage()) {
        // Only the tag's planes keep their labels; with nine or more all eight stay up, empty.
        for (std::size_t c = model_.visibleChannels(); c < channels_.size(); ++c) {
            channelLabels_[c]->hide();
            channels_[c]->hide();
        }
    }
    if (model_.showsColors()) {
        indexBox_->setText(QStringLiteral("0"));
        showColor(0);
    } else {
        indexBox_->setEnabled(false);
        scroll_->setEnabled(false);
    }
    resize(std::max(sizeHint().width(), 560), sizeHint().height());
}

void CNameColor2Dlg::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (opened_)
        return;
    opened_ = true;
    if (const auto message = model_.openingMessage())
        prompts_.messageBox(icBoxKind::info, kCaption, *message);
}

void CNameColor2Dlg::indexEdited(const QString& text) {
    QString typed = text;
    int position = 0;
    // Text the box does not accept yet (empty, or past 65535) asks for no colour.
    if (indexBox_->validator()->validate(typed, position) != QValidator::Acceptable ||
        !model_.showsColors())
        return;
    if (const auto message = model_.setIndexFromBox(typed.toInt())) {
        prompts_.messageBox(icBoxKind::info, kCaption, *message);
        indexBox_->setText(QString::number(model_.index()));
    }
    scroll_->setValue(model_.index());
    showColor(model_.index());
}

void CNameColor2Dlg::scrollRequested(int action) {
    moveTo(scrollRequestOf(action), scroll_->sliderPosition());
}

// The bar has already moved by its own rules when a request arrives; it is put where the model
// says before it takes the position as its value.
void CNameColor2Dlg::moveTo(icScrollRequest request, int thumb) {
    if (!model_.showsColors())
        return;
    model_.scroll(request, thumb);
    scroll_->setSliderPosition(model_.index());
    indexBox_->setText(QString::number(model_.index()));
    showColor(model_.index());
}

void CNameColor2Dlg::showColor(int index) {
    rootName_->setText(latin1Text(model_.rootName(index)));
    const auto pcs = model_.pcsValues(index);
    for (std::size_t i = 0; i < pcs_.size(); ++i)
        pcs_[i]->setText(latin1Text(pcs[i]));
    const auto device = model_.deviceValues(index);
    for (std::size_t c = 0; c < device.size(); ++c)
        channels_[c]->setText(latin1Text(device[c]));
}
