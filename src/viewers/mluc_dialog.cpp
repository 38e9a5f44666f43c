#include "viewers/mluc_dialog.h"

#include "viewers/dialog_widgets.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

namespace {

// A full dump line: offset, sixteen bytes in two groups and sixteen characters.
constexpr int kDumpLineChars = 82;

} // namespace

CulmcDlg::CulmcDlg(const iccMultiLocalizedUnicodeType& strings, std::string_view caption,
                   QWidget* parent)
    : QDialog(parent), model_(strings) {
    setWindowTitle(latin1Text(caption.empty() ? kMlucDefaultCaption : caption));
    setModal(true);

    auto* header = new QFormLayout;
    QLineEdit* count = readOnlyBox(this, QStringLiteral("nameCountEdit"));
    count->setText(latin1Text(model_.recordCountText()));
    header->addRow(tr("Number of Names:"), count);
    QLineEdit* size = readOnlyBox(this, QStringLiteral("recordSizeEdit"));
    header->addRow(tr("Name Record Size:"), size);

    scroll_ = new QScrollBar(Qt::Horizontal, this);
    scroll_->setObjectName(QStringLiteral("recordScroll"));
    scroll_->setSingleStep(1);
    scroll_->setPageStep(2);
    connect(scroll_, &QAbstractSlider::actionTriggered, this,
            [this](int action) { moveTo(scrollRequestOf(action), scroll_->sliderPosition()); });
    connect(scroll_, &QAbstractSlider::sliderReleased, this,
            [this] { moveTo(icScrollRequest::thumbPosition, scroll_->sliderPosition()); });
    auto* lowest = new QLabel(QStringLiteral("0"), this);
    auto* highest = new QLabel(this);
    highest->setObjectName(QStringLiteral("highestIndexLabel"));
    currentIndex_ = new QLabel(this);
    currentIndex_->setObjectName(QStringLiteral("currentIndexLabel"));
    currentIndex_->setMinimumWidth(
        currentIndex_->fontMetrics().horizontalAdvance(QStringLiteral("00000")));
    auto* select = new QHBoxLayout;
    select->addWidget(lowest);
    select->addWidget(scroll_, 1);
    select->addWidget(highest);
    select->addSpacing(12);
    select->addWidget(currentIndex_);
    header->addRow(tr("Select Name Record:"), select);

    record_ = new QGroupBox(tr("Name Record:"), this);
    record_->setObjectName(QStringLiteral("recordGroup"));
    auto* fields = new QFormLayout(record_);
    const char* names[] = {"languageEdit", "countryEdit", "lengthEdit", "offsetEdit"};
    for (std::size_t i = 0; i < fields_.size(); ++i) {
        fields_[i] = readOnlyBox(record_, QLatin1String(names[i]));
        fields->addRow(latin1Text(kMlucRecordLabels[i]), fields_[i]);
    }
    dump_ = new QListWidget(record_);
    dump_->setObjectName(QStringLiteral("dumpList"));
    // The columns only line up in a fixed-pitch font; a narrow window scrolls sideways over the
    // widest line rather than cutting it. Item sizes are not taken as uniform: the first line
    // measured would stand for every later record, and a short one would cut the long ones.
    const QFont mono = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    dump_->setFont(mono);
    dump_->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    fields->addRow(new QLabel(tr("Unicode Characters:"), record_));
    fields->addRow(dump_);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(header);
    layout->addWidget(record_, 1);
    layout->addWidget(buttons);

    if (model_.recordCount() > 0) {
        highest->setText(latin1Text(model_.highestIndexText()));
        size->setText(latin1Text(model_.recordSizeText()));
        scroll_->setRange(0, static_cast<int>(model_.recordCount()) - 1);
        scroll_->setValue(0);
        showRecord(0);
    } else {
        scroll_->setRange(0, 0);
        scroll_->setEnabled(false);
    }
    // Wide enough at first for a whole dump line beside the labels.
    const int lineWidth =
        QFontMetrics(mono).horizontalAdvance(QString(kDumpLineChars, QLatin1Char('0')));
    resize(std::max(sizeHint().width(), lineWidth + 80), std::max(sizeHint().height(), 480));
}

void CulmcDlg::moveTo(icScrollRequest request, int thumb) {
    if (model_.recordCount() == 0)
        return;
    model_.scroll(request, thumb);
    scroll_->setSliderPosition(model_.index());
    showRecord(model_.index());
}

void CulmcDlg::showRecord(int index) {
    currentIndex_->setText(latin1Text(model_.indexText()));
    record_->setTitle(latin1Text(model_.recordTitle(index)));
    const auto values = model_.recordValues(index);
    for (std::size_t i = 0; i < fields_.size(); ++i)
        fields_[i]->setText(latin1Text(values[i]));
    dump_->clear();
    for (const std::string& line : model_.dumpLines(index))
        dump_->addItem(latin1Text(line));
}
