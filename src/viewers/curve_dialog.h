// The viewer of one tone curve ('rTRC', 'gTRC', 'bTRC', 'kTRC'): the plot with the curve's
// label, and "Export..." / "Import..." of the curve as a text file.
#pragma once

#include "profile/status.h"
#include "viewers/curve_model.h"
#include "viewers/sheet_parts.h"

#include <string_view>

class CCurvePlot;
class PromptService;
class QPushButton;
class iccCurveElement;

class CicCurveDlg : public CEditingViewerDlg {
    Q_OBJECT
public:
    // The curve stays the caller's; an import replaces it in place and marks the dialog
    // modified. File dialogs and boxes go through `prompts`.
    CicCurveDlg(iccCurveElement& curve, std::string_view label, PromptService& prompts,
                QWidget* parent = nullptr);

    // The plot's status when the curve was handed to it; a dialog that failed here is not run.
    icStatus setupStatus() const { return setupStatus_; }
    // Read by the caller after the dialog closed with OK: the curve must be written back.
    bool modified() const override { return model_.modified(); }
    const CCurvePlot& plot() const { return *plot_; }

    void exportCurve();
    void importCurve();

private:
    CurveModel model_;
    CCurvePlot* plot_;
    icStatus setupStatus_ = icOk;
};
