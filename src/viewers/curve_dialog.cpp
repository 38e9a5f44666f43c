#include "viewers/curve_dialog.h"

#include "document/prompt_service.h"
#include "tagtypes/curve_type.h"
#include "viewers/curve_plot.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

CicCurveDlg::CicCurveDlg(iccCurveElement& curve, std::string_view label, PromptService& prompts,
                         QWidget* parent)
    : CEditingViewerDlg(prompts, parent), model_(curve, label), plot_(new CCurvePlot(this)) {
    setWindowTitle(
        QString::fromUtf8(model_.title().data(), static_cast<qsizetype>(model_.title().size())));
    setModal(true);
    setupStatus_ = plot_->setCurves({&model_.curve(), 1});

    auto* exportButton = new QPushButton(tr("Export..."), this);
    exportButton->setObjectName(QStringLiteral("exportButton"));
    connect(exportButton, &QPushButton::clicked, this, &CicCurveDlg::exportCurve);
    auto* importButton = new QPushButton(tr("Import..."), this);
    importButton->setObjectName(QStringLiteral("importButton"));
    connect(importButton, &QPushButton::clicked, this, &CicCurveDlg::importCurve);
    auto* ok = new QPushButton(tr("OK"), this);
    ok->setObjectName(QStringLiteral("okButton"));
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);

    auto* buttons = new QVBoxLayout;
    buttons->addWidget(exportButton);
    buttons->addWidget(importButton);
    buttons->addStretch();
    buttons->addWidget(ok);
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(plot_, 1);
    layout->addLayout(buttons);
    resize(640, 460);
}

void CicCurveDlg::exportCurve() {
    model_.exportCurve(prompts_);
}

void CicCurveDlg::importCurve() {
    if (!model_.importCurve(prompts_))
        return;
    // The curve has changed already, so it stays marked modified even if the plot cannot show
    // it; the plot then keeps the old line.
    if (plot_->setCurves({&model_.curve(), 1}) != icOk)
        prompts_.messageBox(icBoxKind::info, kCaption, kCurvePlotUpdateFailed);
}
