// The node controls of the two CLUT pages: for each of up to twelve input channels a vertical
// scroll bar over the channel's grid, a label with the highest node, and a box with the current
// node index. The page's model decides every step; the bars only report the user's requests.
#pragma once

#include "viewers/scroll_request.h"

#include <QAbstractSlider>
#include <QWidget>

#include <array>

class QLabel;
class QLineEdit;
class QScrollBar;

class ClutNodeControls : public QWidget {
    Q_OBJECT
public:
    static constexpr int kChannels = 12;

    explicit ClutNodeControls(QWidget* parent = nullptr);

    // Shows the first `count` columns and hides the rest.
    void setVisibleChannels(int count);
    // Every bar, box and label, enabled or not (a table without a CLUT).
    void setControlsEnabled(bool enabled);
    // Bar `channel` runs from 0 to `maximum`; its label says `rangeText`.
    void setChannel(int channel, int maximum, const QString& rangeText);
    // The bar's position (kept in its range by the bar) and the index box's text.
    void showIndex(int channel, int index, const QString& text);

    QScrollBar* bar(int channel) const { return columns_[std::size_t(channel)].bar; }

signals:
    // The user asked bar `channel` to move; `thumb` is where its thumb stands.
    void scrollRequested(int channel, icScrollRequest request, int thumb);

private:
    struct Column {
        QWidget* box = nullptr;
        QScrollBar* bar = nullptr;
        QLabel* range = nullptr;
        QLineEdit* index = nullptr;
    };
    std::array<Column, kChannels> columns_;
};
