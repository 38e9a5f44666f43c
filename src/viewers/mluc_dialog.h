// The viewer of a multi-localized Unicode structure ('mluc'): its record count and size, then one
// name record at a time with its codes, length, offset and the hex dump of its UTF-16 string.
// It only displays.
#pragma once

#include "viewers/mluc_model.h"

#include <QDialog>

#include <array>
#include <string_view>

class QGroupBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QScrollBar;
class iccMultiLocalizedUnicodeType;

class CulmcDlg : public QDialog {
    Q_OBJECT
public:
    // An empty caption gives "MultiLocalizedUnicodeType".
    CulmcDlg(const iccMultiLocalizedUnicodeType& strings, std::string_view caption,
             QWidget* parent = nullptr);

    const MlucModel& model() const { return model_; }

private:
    void moveTo(icScrollRequest request, int thumb);
    void showRecord(int index);

    MlucModel model_;
    QScrollBar* scroll_;
    QLabel* currentIndex_;
    QGroupBox* record_;
    std::array<QLineEdit*, 4> fields_{};
    QListWidget* dump_;
};
