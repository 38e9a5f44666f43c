#include "viewers/lut_property_sheet.h"

#include "document/prompt_service.h"
#include "document/text_format.h"
#include "lutio/exchange_procedures.h"
#include "tagtypes/lut16_type.h"
#include "viewers/clut_node_controls.h"
#include "viewers/curve_plot.h"
#include "viewers/dialog_widgets.h"
#include "viewers/dump_clut_model.h"
#include "viewers/lut_exchange.h"
#include "viewers/sheet_parts.h"

#include <QFontDatabase>
#include <QFontMetrics>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <new>
#include <optional>
#include <string>
#include <vector>

// ---- "LUT Info" -------------------------------------------------------------------------------

CiccLutPropertyPage1::CiccLutPropertyPage1(LutModel& model, QWidget* parent)
    : QWidget(parent), model_(model),
      export_(namedButton(tr("Export..."), QStringLiteral("exportButton"), this)),
      import_(namedButton(tr("Import..."), QStringLiteral("importButton"), this)) {
    static constexpr const char* kNames[] = {"lutTypeValue",       "inputChannelsValue",
                                             "inputEntriesValue",  "outputChannelsValue",
                                             "outputEntriesValue", "clutPointsValue"};
    const std::vector<std::string> lines = model_.lines();
    auto* form = new QFormLayout;
    for (std::size_t i = 0; i < values_.size(); ++i) {
        values_[i] = readOnlyBox(this, QLatin1String(kNames[i]));
        form->addRow(splitLabelLine(lines[i]).first, values_[i]);
    }

    auto* matrix = new QGridLayout;
    for (std::size_t i = 0; i < matrix_.size(); ++i) {
        matrix_[i] = readOnlyBox(this, QStringLiteral("matrix%1").arg(i));
        matrix_[i]->setAlignment(Qt::AlignRight);
        matrix_[i]->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
        matrix->addWidget(matrix_[i], int(i / 3), int(i % 3));
    }
    form->addRow(tr("Matrix:"), matrix);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addStretch();
    layout->addLayout(buttonRow(export_, import_));
    refresh();
}

void CiccLutPropertyPage1::refresh() {
    const std::vector<std::string> lines = model_.lines();
    for (std::size_t i = 0; i < values_.size(); ++i)
        values_[i]->setText(splitLabelLine(lines[i]).second);
    // After "Matrix:" come three rows of three "%f" values.
    for (std::size_t row = 0; row < 3; ++row) {
        const QStringList cells = sheetText(lines[7 + row]).split(QLatin1Char(' '));
        for (std::size_t col = 0; col < 3; ++col)
            matrix_[3 * row + col]->setText(cells.value(qsizetype(col)));
    }
}

// ---- "Input Channels" and "Output Channels" ---------------------------------------------------

CiccLutCurvePage::CiccLutCurvePage(LutModel& model, bool input, QWidget* parent)
    : QWidget(parent), model_(model), input_(input), plot_(new CCurvePlot(this)) {
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(plot_, 1);
}

QString CiccLutCurvePage::pointsText() const {
    return sheetText(plot_->data().legendFooter);
}

icStatus CiccLutCurvePage::refresh() {
    try {
        const icLutCurveSet set = input_ ? model_.inputCurves() : model_.outputCurves();
        icCurvePlotData data;
        data.style = icCurvePlotStyle::table;
        // The tables run over entries 0 .. entries - 1 and values 0 .. full scale.
        data.valueScale = set.fullScale;
        data.inputRange = set.entries > 1 ? set.entries - 1 : 1;
        for (std::size_t c = 0; c < set.channels.size(); ++c) {
            data.curves.emplace_back(set.channels[c].begin(), set.channels[c].end());
            data.labels.push_back(formatText("Channel #%d", static_cast<int>(c)));
        }
        data.legendFooter = formatText("%d points", static_cast<int>(set.entries));
        plot_->setData(std::move(data));
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    return icOk;
}

// ---- "CLUT" -----------------------------------------------------------------------------------

CiccLutPropertyPage3::CiccLutPropertyPage3(LutModel& model, PromptService& prompts, QWidget* parent)
    : QWidget(parent), model_(model), prompts_(prompts), nodes_(new ClutNodeControls(this)) {
    connect(nodes_, &ClutNodeControls::scrollRequested, this, &CiccLutPropertyPage3::scroll);

    auto* valueBox = new QGroupBox(tr("Output Values"), this);
    auto* grid = new QGridLayout(valueBox);
    for (std::size_t o = 0; o < kLutPageChannels; ++o) {
        rowLabels_[o] = new QLabel(QStringLiteral("#%1").arg(o), valueBox);
        values_[o] = new QLineEdit(valueBox);
        values_[o]->setObjectName(QStringLiteral("value%1").arg(o));
        connect(values_[o], &QLineEdit::returnPressed, this, &CiccLutPropertyPage3::acceptChange);
        values_[o]->setFixedWidth(
            values_[o]->fontMetrics().horizontalAdvance(QStringLiteral("0000000")) + 12);
        notes_[o] = new QLabel(valueBox);
        notes_[o]->setObjectName(QStringLiteral("note%1").arg(o));
        // Fixed to the widest second text: a label whose size may change lays the whole sheet
        // out again and repaints it on every node step.
        const QFontMetrics metrics = notes_[o]->fontMetrics();
        notes_[o]->setFixedSize(std::max(metrics.horizontalAdvance(QStringLiteral("(100x2.55)")),
                                         metrics.horizontalAdvance(QStringLiteral("(-128+128)"))),
                                values_[o]->sizeHint().height());
        // Two columns of six rows keep the page short enough for twelve outputs.
        const int row = int(o % 6), col = int(o / 6) * 3;
        grid->addWidget(rowLabels_[o], row, col);
        grid->addWidget(values_[o], row, col + 1);
        grid->addWidget(notes_[o], row, col + 2);
    }
    // The room left over goes to the right of the boxes.
    grid->setColumnStretch(6, 1);
    auto* accept = namedButton(tr("Accept Change"), QStringLiteral("acceptButton"), valueBox);
    connect(accept, &QPushButton::clicked, this, &CiccLutPropertyPage3::acceptChange);
    grid->addWidget(accept, 6, 0, 1, 7, Qt::AlignRight);

    auto* nodeBox = new QGroupBox(tr("Input Channels (grid node)"), this);
    auto* nodeLayout = new QVBoxLayout(nodeBox);
    nodeLayout->addWidget(nodes_);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(nodeBox, 1);
    layout->addWidget(valueBox);
    refresh();
}

void CiccLutPropertyPage3::activate() {
    // The page goes on after the warning; the channels beyond its controls stay at node 0.
    if (const auto warning = model_.clutPageWarning())
        prompts_.stop(kCaption, *warning);
    refresh();
}

void CiccLutPropertyPage3::refresh() {
    const int inputs = int(model_.visibleInputs());
    nodes_->setVisibleChannels(inputs);
    const QString highest = sheetText(model_.highestNodeText());
    for (int c = 0; c < inputs; ++c) {
        nodes_->setChannel(c, int(model_.gridPoints()) - 1, highest);
        nodes_->showIndex(c, int(model_.nodeIndex(std::uint32_t(c))),
                          sheetText(model_.nodeIndexText(std::uint32_t(c))));
    }
    const std::uint32_t outputs = model_.visibleOutputs();
    for (std::uint32_t o = 0; o < kLutPageChannels; ++o) {
        rowLabels_[o]->setVisible(o < outputs);
        values_[o]->setVisible(o < outputs);
        notes_[o]->setVisible(o < outputs);
    }
    showValues();
}

void CiccLutPropertyPage3::scroll(int channel, icScrollRequest request, int thumb) {
    if (model_.scroll(std::uint32_t(channel), request, thumb) != icOk)
        return;
    nodes_->showIndex(channel, int(model_.nodeIndex(std::uint32_t(channel))),
                      sheetText(model_.nodeIndexText(std::uint32_t(channel))));
    showValues();
}

void CiccLutPropertyPage3::showValues() {
    const std::vector<icNodeValueText> values = model_.nodeValues();
    for (std::size_t o = 0; o < values.size() && o < kLutPageChannels; ++o) {
        values_[o]->setText(sheetText(values[o].value));
        notes_[o]->setText(sheetText(values[o].second));
    }
}

void CiccLutPropertyPage3::acceptChange() {
    std::vector<std::string> boxes;
    for (std::uint32_t o = 0; o < model_.visibleOutputs(); ++o) {
        boxes.push_back(values_[o]->text().toStdString());
        values_[o]->setModified(false);
    }
    // The boxes keep what was typed; the stored (clamped) values show when the page is shown
    // again. The second texts follow the stored values at once.
    (void)model_.acceptChange(boxes);
    const std::vector<icNodeValueText> values = model_.nodeValues();
    for (std::size_t o = 0; o < values.size() && o < kLutPageChannels; ++o)
        notes_[o]->setText(sheetText(values[o].second));
}

bool CiccLutPropertyPage3::hasTypedValues() const {
    return std::any_of(values_.begin(), values_.end(),
                       [](const QLineEdit* box) { return box->isModified(); });
}

// ---- the sheet ---------------------------------------------------------------------------------

CiccLutPropertySheet::CiccLutPropertySheet(iccMftLut& lut, icSignature outputSpace,
                                           std::string_view caption, PromptService& prompts,
                                           QWidget* parent)
    : CEditingViewerDlg(prompts, parent), lut_(lut), model_(lut_, outputSpace),
      pages_(new QTabWidget(this)) {
    setWindowTitle(sheetText(caption.empty() ? kLutDefaultCaption : caption));
    setModal(true);

    info_ = new CiccLutPropertyPage1(model_, pages_);
    inputs_ = new CiccLutPropertyPage2(model_, pages_);
    clut_ = new CiccLutPropertyPage3(model_, prompts_, pages_);
    outputs_ = new CiccLutPropertyPage4(model_, pages_);
    pages_->setObjectName(QStringLiteral("pages"));
    addPage(*pages_, info_, QStringLiteral("infoPage"), tr("LUT Info"));
    addPage(*pages_, inputs_, QStringLiteral("inputCurvesPage"), tr("Input Channels"));
    addPage(*pages_, clut_, QStringLiteral("clutPage"), tr("CLUT"));
    addPage(*pages_, outputs_, QStringLiteral("outputCurvesPage"), tr("Output Channels"));
    connect(pages_, &QTabWidget::currentChanged, this, &CiccLutPropertySheet::pageActivated);
    connect(info_->exportButton(), &QPushButton::clicked, this, &CiccLutPropertySheet::exportTable);
    connect(info_->importButton(), &QPushButton::clicked, this, &CiccLutPropertySheet::importTable);
    // Only running out of memory for the plots stops the sheet from opening.
    if (inputs_->refresh() == icErrNoMemory || outputs_->refresh() == icErrNoMemory)
        setupStatus_ = icErrNoMemory;

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(pages_);
    addOkCancel(*this, *layout);
    resize(720, 560);
}

void CiccLutPropertySheet::pageActivated(int index) {
    // Each page shows the table as it stands when it comes to the front.
    QWidget* page = pages_->widget(index);
    if (page == info_)
        info_->refresh();
    else if (page == clut_)
        clut_->activate();
    else if (page == inputs_)
        (void)inputs_->refresh();
    else if (page == outputs_)
        (void)outputs_->refresh();
}

void CiccLutPropertySheet::takeTypedValues() {
    if (clut_->hasTypedValues())
        clut_->acceptChange();
}

void CiccLutPropertySheet::refreshAll() {
    info_->refresh();
    (void)inputs_->refresh();
    clut_->refresh();
    (void)outputs_->refresh();
}

void CiccLutPropertySheet::exportTable() {
    (void)runExchange(this, prompts_, kClutFolderLutMode, tr("Exporting the table..."),
                      [this](Presenter& boxes, const std::string& folder) {
                          return runLutExport(boxes, lut_, folder);
                      });
}

void CiccLutPropertySheet::importTable() {
    // The folder is imported into a copy; the shown table takes it only when the whole import
    // succeeded, so a failure at any step leaves it as it was.
    std::unique_ptr<iccMftLut> work;
    const auto import = [&](Presenter& boxes, const std::string& folder) {
        work = visitMftLut(lut_, [](const auto& lut) -> std::unique_ptr<iccMftLut> {
            return std::make_unique<std::decay_t<decltype(lut)>>(lut);
        });
        return runLutImport(boxes, *work, folder);
    };
    const auto finish = [&](icStatus status) {
        if (status != icOk)
            return;
        visitMftLut(lut_, [&work](auto& lut) {
            lut = std::move(static_cast<std::decay_t<decltype(lut)>&>(*work));
        });
        model_.markModified();
        model_.clampNodes();
        refreshAll();
    };
    (void)runExchange(this, prompts_, kClutFolderLutMode, tr("Importing the table..."), import,
                      finish);
}
