// The lutAToB/lutBToA viewer: a property sheet of six pages over one 'mAB ' or 'mBA ' tag. "LUT
// Info" shows the chain of elements and where each lies in the tag, and exports or imports the
// tag as a folder; three pages plot the B, M and A curve sets; "Matrix" shows the matrix and its
// offsets; "Multidimensional LUT" walks the CLUT node by node. Nothing is edited value by value.
#pragma once

#include "profile/status.h"
#include "viewers/mlut_model.h"
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
class iccMlutType;

// "LUT Info".
class CLutB2APropertyPage1 : public QWidget {
    Q_OBJECT
public:
    CLutB2APropertyPage1(MlutModel& model, QWidget* parent = nullptr);
    void refresh();

    QPushButton* exportButton() const { return export_; }
    QPushButton* importButton() const { return import_; }

private:
    MlutModel& model_;
    QLabel* typeLabel_;
    // The chain, the two channel counts and the five offsets.
    std::array<QLineEdit*, 8> values_{};
    QPushButton* export_;
    QPushButton* import_;
};

// One of the three curve sets, all its curves in one plot: "\"B\" Curve", "\"M\" Curve" or
// "\"A\" Curve".
class CLutB2ACurvePage : public QWidget {
    Q_OBJECT
public:
    CLutB2ACurvePage(MlutModel& model, icMlutCurves which, QWidget* parent = nullptr);
    // -10 when the plot data cannot be built.
    [[nodiscard]] icStatus refresh();

private:
    MlutModel& model_;
    icMlutCurves which_;
    CCurvePlot* plot_;
};

// "\"B\" Curve".
class CLutB2APropertyPage2 : public CLutB2ACurvePage {
public:
    explicit CLutB2APropertyPage2(MlutModel& model, QWidget* parent = nullptr)
        : CLutB2ACurvePage(model, icMlutCurves::b, parent) {}
};

// "\"M\" Curve".
class CLutB2APropertyPage4 : public CLutB2ACurvePage {
public:
    explicit CLutB2APropertyPage4(MlutModel& model, QWidget* parent = nullptr)
        : CLutB2ACurvePage(model, icMlutCurves::m, parent) {}
};

// "\"A\" Curve".
class CLutB2APropertyPage6 : public CLutB2ACurvePage {
public:
    explicit CLutB2APropertyPage6(MlutModel& model, QWidget* parent = nullptr)
        : CLutB2ACurvePage(model, icMlutCurves::a, parent) {}
};

// "Matrix".
class CLutB2APropertyPage3 : public QWidget {
    Q_OBJECT
public:
    CLutB2APropertyPage3(MlutModel& model, QWidget* parent = nullptr);
    void refresh();

private:
    MlutModel& model_;
    std::array<QLineEdit*, 12> values_{};
};

// "Multidimensional LUT".
class CLutB2APropertyPage5 : public QWidget {
    Q_OBJECT
public:
    CLutB2APropertyPage5(MlutModel& model, PromptService& prompts, QWidget* parent = nullptr);
    // Brought to the front: the warning for tables wider than the page is meant for, then the
    // controls and the current node's values.
    void activate();
    void refresh();

private:
    void scroll(int channel, icScrollRequest request, int thumb);
    void showValues();

    MlutModel& model_;
    PromptService& prompts_;
    QLineEdit* precision_;
    ClutNodeControls* nodes_;
    std::array<QLabel*, kMlutPageControls> rowLabels_{};
    std::array<QLineEdit*, kMlutPageControls> values_{};
};

class CLutB2APropertySheet : public CEditingViewerDlg {
    Q_OBJECT
public:
    // Boxes and the folder dialog go through `prompts`.
    CLutB2APropertySheet(iccMlutType& lut, std::string_view caption, PromptService& prompts,
                         QWidget* parent = nullptr);

    // Raised by a successful import only; the caller writes the tag back when the sheet closes
    // with OK and this is set.
    bool modified() const override { return model_.modified(); }
    // Not 0 when the sheet could not be built (-10: no memory for the plots).
    icStatus setupStatus() const { return setupStatus_; }

    QTabWidget* pages() const { return pages_; }

private:
    void pageActivated(int index);
    [[nodiscard]] icStatus refreshAll();
    void exportTable();
    void importTable();

    iccMlutType& lut_;
    MlutModel model_;
    icStatus setupStatus_ = icOk;
    QTabWidget* pages_;
    CLutB2APropertyPage1* info_;
    CLutB2ACurvePage* bCurves_;
    CLutB2APropertyPage3* matrix_;
    CLutB2ACurvePage* mCurves_;
    CLutB2APropertyPage5* clut_;
    CLutB2ACurvePage* aCurves_;
};
