#include "viewers/clut_node_controls.h"

#include "viewers/dialog_widgets.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QVBoxLayout>

ClutNodeControls::ClutNodeControls(QWidget* parent) : QWidget(parent) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    for (int c = 0; c < kChannels; ++c) {
        Column& column = columns_[std::size_t(c)];
        column.box = new QWidget(this);
        column.bar = new QScrollBar(Qt::Vertical, column.box);
        column.bar->setObjectName(QStringLiteral("nodeBar%1").arg(c));
        column.bar->setSingleStep(1);
        column.bar->setPageStep(2);
        column.bar->setMinimumHeight(120);
        column.range = new QLabel(column.box);
        column.range->setObjectName(QStringLiteral("nodeRange%1").arg(c));
        column.range->setAlignment(Qt::AlignHCenter);
        column.index = readOnlyBox(column.box, QStringLiteral("nodeIndex%1").arg(c));
        column.index->setText(QStringLiteral("0"));
        column.index->setAlignment(Qt::AlignHCenter);
        column.index->setFixedWidth(
            column.index->fontMetrics().horizontalAdvance(QStringLiteral("0000")) + 12);

        auto* layout = new QVBoxLayout(column.box);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(new QLabel(QStringLiteral("0"), column.box), 0, Qt::AlignHCenter);
        layout->addWidget(column.bar, 1, Qt::AlignHCenter);
        layout->addWidget(column.range, 0, Qt::AlignHCenter);
        layout->addWidget(column.index, 0, Qt::AlignHCenter);
        row->addWidget(column.box);

        // The bar has already moved by its own rules when the action arrives; the page puts it
        // where the model says, before the bar takes the position as its value.
        connect(column.bar, &QAbstractSlider::actionTriggered, this, [this, c](int action) {
            emit scrollRequested(c, scrollRequestOf(action),
                                 columns_[std::size_t(c)].bar->sliderPosition());
        });
        connect(column.bar, &QAbstractSlider::sliderReleased, this, [this, c] {
            emit scrollRequested(c, icScrollRequest::thumbPosition,
                                 columns_[std::size_t(c)].bar->sliderPosition());
        });
    }
    row->addStretch();
}

void ClutNodeControls::setVisibleChannels(int count) {
    for (int c = 0; c < kChannels; ++c)
        columns_[std::size_t(c)].box->setVisible(c < count);
}

void ClutNodeControls::setControlsEnabled(bool enabled) {
    for (const Column& column : columns_) {
        column.bar->setEnabled(enabled);
        column.range->setEnabled(enabled);
        column.index->setEnabled(enabled);
    }
}

void ClutNodeControls::setChannel(int channel, int maximum, const QString& rangeText) {
    const Column& column = columns_[std::size_t(channel)];
    column.bar->setRange(0, std::max(maximum, 0));
    column.range->setText(rangeText);
}

void ClutNodeControls::showIndex(int channel, int index, const QString& text) {
    const Column& column = columns_[std::size_t(channel)];
    // Inside an action the bar takes the slider position as its value once the slot returns;
    // outside one the value is set directly.
    column.bar->setSliderPosition(index);
    column.bar->setValue(index);
    column.index->setText(text);
}
