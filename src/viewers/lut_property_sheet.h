// The lut8/lut16 viewer: a property sheet of four pages over one table. "LUT Info" shows the
// dimensions and the matrix and exports or imports the table as a folder; "Input Channels" and
// "Output Channels" plot the channel tables; "CLUT" walks the grid node by node and changes the
// output values of a node.
#pragma once

#include "profile/byte_io.h"
#include "profile/status.h"
#include "viewers/lut_model.h"
#include "viewers/sheet_parts.h"

#include <QWidget>

#include <array>
#include <string_view>

class CCurvePlot;
class ClutNodeControls;
class PromptService;
class QLabel;
class QLineEdit;
class QPushButton;
class QTabWidget;
class iccMftLut;

// "LUT Info".
class CiccLutPropertyPage1 : public QWidget {
    Q_OBJECT
public:
    CiccLutPropertyPage1(LutModel& model, QWidget* parent = nullptr);
    void refresh();

    QPushButton* exportButton() const { return export_; }
    QPushButton* importButton() const { return import_; }

private:
    LutModel& model_;
    std::array<QLineEdit*, 6> values_{};
    std::array<QLineEdit*, 9> matrix_{};
    QPushButton* export_;
    QPushButton* import_;
};

// The plot of one side's tables, every channel in one diagram: "Input Channels" or "Output
// Channels".
class CiccLutCurvePage : public QWidget {
    Q_OBJECT
public:
    CiccLutCurvePage(LutModel& model, bool input, QWidget* parent = nullptr);
    // -10 when the plot data cannot be built; the plot then keeps what it showed.
    [[nodiscard]] icStatus refresh();
    // "%d points" with the number of table entries, as the legend closes with it.
    QString pointsText() const;

private:
    LutModel& model_;
    bool input_;
    CCurvePlot* plot_;
};

// "Input Channels".
class CiccLutPropertyPage2 : public CiccLutCurvePage {
public:
    explicit CiccLutPropertyPage2(LutModel& model, QWidget* parent = nullptr)
        : CiccLutCurvePage(model, true, parent) {}
};

// "Output Channels".
class CiccLutPropertyPage4 : public CiccLutCurvePage {
public:
    explicit CiccLutPropertyPage4(LutModel& model, QWidget* parent = nullptr)
        : CiccLutCurvePage(model, false, parent) {}
};

// "CLUT".
class CiccLutPropertyPage3 : public QWidget {
    Q_OBJECT
public:
    CiccLutPropertyPage3(LutModel& model, PromptService& prompts, QWidget* parent = nullptr);
    // What the page does each time it is brought to the front: the warning for tables wider than
    // its controls, then the controls and the current node's values.
    void activate();
    void refresh();
    // "Accept Change", also run by Enter in a value box: the boxes' values go into the node.
    // The boxes keep what was typed; the second texts show what was stored.
    void acceptChange();
    // Whether a value box holds typing that "Accept Change" has not taken.
    bool hasTypedValues() const;

private:
    void scroll(int channel, icScrollRequest request, int thumb);
    void showValues();

    LutModel& model_;
    PromptService& prompts_;
    ClutNodeControls* nodes_;
    std::array<QLabel*, kLutPageChannels> rowLabels_{};
    std::array<QLineEdit*, kLutPageChannels> values_{};
    std::array<QLabel*, kLutPageChannels> notes_{};
};

class CiccLutPropertySheet : public CEditingViewerDlg {
    Q_OBJECT
public:
    // A lut8 or lut16 table; `outputSpace` is the colour space of its outputs. Boxes and the
    // folder dialog go through `prompts`.
    CiccLutPropertySheet(iccMftLut& lut, icSignature outputSpace, std::string_view caption,
                         PromptService& prompts, QWidget* parent = nullptr);

    // Raised by "Accept Change" and by a successful import; the caller writes the table back
    // when the sheet closes with OK and this is set.
    bool modified() const override { return model_.modified(); }
    // Not 0 when the sheet could not be built (-10: no memory for the plots).
    icStatus setupStatus() const { return setupStatus_; }

    QTabWidget* pages() const { return pages_; }

protected:
    bool pendingChanges() const override { return modified() || clut_->hasTypedValues(); }
    void takeTypedValues() override;

private:
    void pageActivated(int index);
    void refreshAll();
    void exportTable();
    void importTable();

    iccMftLut& lut_;
    LutModel model_;
    icStatus setupStatus_ = icOk;
    QTabWidget* pages_;
    CiccLutPropertyPage1* info_;
    CiccLutCurvePage* inputs_;
    CiccLutPropertyPage3* clut_;
    CiccLutCurvePage* outputs_;
};
