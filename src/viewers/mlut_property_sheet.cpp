#include "viewers/mlut_property_sheet.h"

#include "document/prompt_service.h"
#include "lutio/exchange_procedures.h"
#include "tagtypes/lut_atob_type.h"
#include "viewers/clut_node_controls.h"
#include "viewers/curve_plot.h"
#include "viewers/dialog_widgets.h"
#include "viewers/dump_clut_model.h"
#include "viewers/lut_exchange.h"
#include "viewers/sheet_parts.h"

#include <QFontDatabase>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

#include <optional>
#include <string>
#include <vector>

namespace {

// The curve pages leave a strip right of and under the plot, as the sheet always has.
constexpr int kCurveStripWidth = 120;
constexpr int kCurveStripHeight = 20;

} // namespace

// ---- "LUT Info" -------------------------------------------------------------------------------

CLutB2APropertyPage1::CLutB2APropertyPage1(MlutModel& model, QWidget* parent)
    : QWidget(parent), model_(model), typeLabel_(new QLabel(this)),
      export_(namedButton(tr("Export..."), QStringLiteral("exportButton"), this)),
      import_(namedButton(tr("Import..."), QStringLiteral("importButton"), this)) {
    static constexpr const char* kNames[] = {
        "chainValue",   "inputChannelsValue", "outputChannelsValue", "bCurvesOffset",
        "matrixOffset", "mCurvesOffset",      "clutOffset",          "aCurvesOffset"};
    for (std::size_t i = 0; i < values_.size(); ++i)
        values_[i] = readOnlyBox(this, QLatin1String(kNames[i]));
    typeLabel_->setObjectName(QStringLiteral("typeLabel"));

    // The labels are the model's, so they read exactly as the lines veltrino-cli prints.
    const std::vector<std::string> lines = model_.infoLines();
    auto* top = new QFormLayout;
    top->addRow(typeLabel_, values_[0]);
    top->addRow(splitLabelLine(lines[1]).first, values_[1]);
    top->addRow(splitLabelLine(lines[2]).first, values_[2]);
    auto* offsets =
        new QGroupBox(tr("Offsets from the beginning of the tag (decimal and hex):"), this);
    auto* offsetForm = new QFormLayout(offsets);
    for (std::size_t i = 3; i < values_.size(); ++i)
        offsetForm->addRow(splitLabelLine(lines[i]).first, values_[i]);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(offsets);
    layout->addStretch();
    layout->addLayout(buttonRow(import_, export_));
    refresh();
}

void CLutB2APropertyPage1::refresh() {
    const std::vector<std::string> lines = model_.infoLines();
    const auto [type, chain] = splitLabelLine(lines[0]);
    typeLabel_->setText(type);
    values_[0]->setText(chain);
    values_[0]->setCursorPosition(0);
    for (std::size_t i = 1; i < values_.size() && i < lines.size(); ++i)
        values_[i]->setText(splitLabelLine(lines[i]).second);
}

// ---- the three curve pages --------------------------------------------------------------------

CLutB2ACurvePage::CLutB2ACurvePage(MlutModel& model, icMlutCurves which, QWidget* parent)
    : QWidget(parent), model_(model), which_(which), plot_(new CCurvePlot(this)) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, kCurveStripWidth, kCurveStripHeight);
    layout->addWidget(plot_);
}

icStatus CLutB2ACurvePage::refresh() {
    // A tag without this element gets the plot's empty state.
    return plot_->setCurves(model_.curves(which_));
}

// ---- "Matrix" ---------------------------------------------------------------------------------

CLutB2APropertyPage3::CLutB2APropertyPage3(MlutModel& model, QWidget* parent)
    : QWidget(parent), model_(model) {
    auto* matrix = new QGridLayout;
    for (std::size_t i = 0; i < values_.size(); ++i) {
        values_[i] = readOnlyBox(this, QStringLiteral("matrix%1").arg(i));
        values_[i]->setAlignment(Qt::AlignRight);
        values_[i]->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    }
    for (std::size_t i = 0; i < 9; ++i)
        matrix->addWidget(values_[i], int(i / 3), int(i % 3));
    auto* offsets = new QGridLayout;
    for (std::size_t i = 9; i < 12; ++i)
        offsets->addWidget(values_[i], 0, int(i - 9));

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(tr("Matrix:"), this));
    layout->addLayout(matrix);
    layout->addWidget(new QLabel(tr("Offsets:"), this));
    layout->addLayout(offsets);
    layout->addStretch();
    refresh();
}

void CLutB2APropertyPage3::refresh() {
    const std::vector<std::string> texts = model_.matrixTexts();
    for (std::size_t i = 0; i < values_.size(); ++i)
        values_[i]->setText(sheetText(texts[i]));
}

// ---- "Multidimensional LUT" -------------------------------------------------------------------

CLutB2APropertyPage5::CLutB2APropertyPage5(MlutModel& model, PromptService& prompts,
                                           QWidget* parent)
    : QWidget(parent), model_(model), prompts_(prompts),
      precision_(readOnlyBox(this, QStringLiteral("precisionValue"))),
      nodes_(new ClutNodeControls(this)) {
    connect(nodes_, &ClutNodeControls::scrollRequested, this, &CLutB2APropertyPage5::scroll);

    auto* precisionRow = new QFormLayout;
    precisionRow->addRow(tr("Precision:"), precision_);

    auto* nodeBox = new QGroupBox(tr("Input Channels (grid node)"), this);
    auto* nodeLayout = new QVBoxLayout(nodeBox);
    nodeLayout->addWidget(nodes_);

    auto* valueBox = new QGroupBox(tr("Output Values"), this);
    auto* grid = new QGridLayout(valueBox);
    for (std::size_t o = 0; o < kMlutPageControls; ++o) {
        rowLabels_[o] = new QLabel(QStringLiteral("#%1").arg(o), valueBox);
        values_[o] = readOnlyBox(valueBox, QStringLiteral("value%1").arg(o));
        values_[o]->setFixedWidth(
            values_[o]->fontMetrics().horizontalAdvance(QStringLiteral("65535 (255)")) + 16);
        const int row = int(o % 6), col = int(o / 6) * 2;
        grid->addWidget(rowLabels_[o], row, col);
        grid->addWidget(values_[o], row, col + 1);
    }
    grid->setColumnStretch(4, 1);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(precisionRow);
    layout->addWidget(nodeBox, 1);
    layout->addWidget(valueBox);
    refresh();
}

void CLutB2APropertyPage5::activate() {
    if (const auto warning = model_.clutPageWarning())
        prompts_.stop(kCaption, *warning);
    refresh();
}

void CLutB2APropertyPage5::refresh() {
    if (!model_.hasClut()) {
        // Every control is there but greyed; there is nothing to walk.
        nodes_->setVisibleChannels(ClutNodeControls::kChannels);
        nodes_->setControlsEnabled(false);
        precision_->clear();
        for (std::size_t o = 0; o < kMlutPageControls; ++o) {
            rowLabels_[o]->setVisible(false);
            values_[o]->setVisible(false);
        }
        return;
    }
    nodes_->setControlsEnabled(true);
    precision_->setText(sheetText(model_.precisionText()));
    const int inputs = int(model_.visibleInputs());
    nodes_->setVisibleChannels(inputs);
    // Every bar runs to the first channel's end; each label says the channel's own.
    for (int c = 0; c < inputs; ++c) {
        nodes_->setChannel(c, int(model_.scrollMaximum()),
                           sheetText(model_.rangeLabel(std::uint32_t(c))));
        nodes_->showIndex(c, int(model_.nodeIndex(std::uint32_t(c))),
                          sheetText(model_.nodeIndexText(std::uint32_t(c))));
    }
    showValues();
}

void CLutB2APropertyPage5::scroll(int channel, icScrollRequest request, int thumb) {
    if (model_.scroll(std::uint32_t(channel), request, thumb) != icOk)
        return;
    nodes_->showIndex(channel, int(model_.nodeIndex(std::uint32_t(channel))),
                      sheetText(model_.nodeIndexText(std::uint32_t(channel))));
    showValues();
}

void CLutB2APropertyPage5::showValues() {
    const std::vector<std::string> values = model_.nodeValues();
    for (std::size_t o = 0; o < kMlutPageControls; ++o) {
        const bool shown = o < values.size();
        rowLabels_[o]->setVisible(shown);
        values_[o]->setVisible(shown);
        values_[o]->setText(shown ? sheetText(values[o]) : QString());
    }
}

// ---- the sheet ---------------------------------------------------------------------------------

CLutB2APropertySheet::CLutB2APropertySheet(iccMlutType& lut, std::string_view caption,
                                           PromptService& prompts, QWidget* parent)
    : CEditingViewerDlg(prompts, parent), lut_(lut), model_(lut), pages_(new QTabWidget(this)) {
    setWindowTitle(sheetText(caption.empty() ? kMlutDefaultCaption : caption));
    setModal(true);

    info_ = new CLutB2APropertyPage1(model_, pages_);
    bCurves_ = new CLutB2APropertyPage2(model_, pages_);
    matrix_ = new CLutB2APropertyPage3(model_, pages_);
    mCurves_ = new CLutB2APropertyPage4(model_, pages_);
    clut_ = new CLutB2APropertyPage5(model_, prompts_, pages_);
    aCurves_ = new CLutB2APropertyPage6(model_, pages_);
    pages_->setObjectName(QStringLiteral("pages"));
    addPage(*pages_, info_, QStringLiteral("infoPage"), tr("LUT Info"));
    addPage(*pages_, bCurves_, QStringLiteral("bCurvesPage"), tr("\"B\" Curve"));
    addPage(*pages_, matrix_, QStringLiteral("matrixPage"), tr("Matrix"));
    addPage(*pages_, mCurves_, QStringLiteral("mCurvesPage"), tr("\"M\" Curve"));
    addPage(*pages_, clut_, QStringLiteral("clutPage"), tr("Multidimensional LUT"));
    addPage(*pages_, aCurves_, QStringLiteral("aCurvesPage"), tr("\"A\" Curve"));
    connect(pages_, &QTabWidget::currentChanged, this, &CLutB2APropertySheet::pageActivated);
    connect(info_->exportButton(), &QPushButton::clicked, this, &CLutB2APropertySheet::exportTable);
    connect(info_->importButton(), &QPushButton::clicked, this, &CLutB2APropertySheet::importTable);
    // Only running out of memory for the plots stops the sheet from opening.
    if (refreshAll() == icErrNoMemory)
        setupStatus_ = icErrNoMemory;

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(pages_);
    addOkCancel(*this, *layout);
    resize(760, 560);
}

void CLutB2APropertySheet::pageActivated(int index) {
    QWidget* page = pages_->widget(index);
    if (page == info_)
        info_->refresh();
    else if (page == matrix_)
        matrix_->refresh();
    else if (page == clut_)
        clut_->activate();
    else if (auto* curves = qobject_cast<CLutB2ACurvePage*>(page))
        (void)curves->refresh();
}

icStatus CLutB2APropertySheet::refreshAll() {
    info_->refresh();
    matrix_->refresh();
    clut_->refresh();
    for (CLutB2ACurvePage* page : {bCurves_, mCurves_, aCurves_})
        if (icStatus s = page->refresh(); s != icOk)
            return s;
    return icOk;
}

void CLutB2APropertySheet::exportTable() {
    (void)runExchange(this, prompts_, kClutFolderMlutMode, tr("Exporting the table..."),
                      [this](Presenter& boxes, const std::string& folder) {
                          return runMlutExport(boxes, lut_, folder);
                      });
}

void CLutB2APropertySheet::importTable() {
    // The folder goes into a copy made from the tag's bytes; the shown tag takes the result only
    // when the whole import succeeded, so a failure at any step leaves it as it was.
    std::optional<iccMlutType> work;
    const auto import = [&](Presenter& boxes, const std::string& folder) {
        iccMlutType& copy = work.emplace(lut_.typeSignature());
        if (icStatus s = copy.setData(lut_.raw()); s != icOk) {
            boxes.messageBox(icBoxKind::info, kCaption, "Failed in importing files...\n");
            return s;
        }
        return runMlutImport(boxes, copy, folder);
    };
    const auto finish = [&](icStatus status) {
        if (status != icOk)
            return;
        if (lut_.setData(work->raw()) != icOk) {
            prompts_.info(kCaption, "Error in updating the LUT. Please exit the program!\n");
            return;
        }
        model_.markModified();
        model_.clampNodes();
        (void)refreshAll();
        pages_->setCurrentWidget(info_);
    };
    (void)runExchange(this, prompts_, kClutFolderMlutMode, tr("Importing the table..."), import,
                      finish);
}
