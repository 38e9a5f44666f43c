#include "viewers/xyz_dialog.h"

#include "viewers/chromaticity_diagram.h"
#include "viewers/dialog_widgets.h"

#include "document/presenter.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

QString toQString(const std::string& text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

CcieXYZDlg::CcieXYZDlg(double X, double Y, double Z, std::string_view title, Presenter& boxes,
                       QWidget* parent)
    : QDialog(parent), model_(X, Y, Z, title), given_(model_), boxes_(boxes),
      diagram_(new CChromaticityDiagram(this)) {
    setWindowTitle(toQString(model_.title()));
    setModal(true);

    auto* fields = new QFormLayout;
    const char* valueNames[] = {"valueXEdit", "valueYEdit", "valueZEdit"};
    const char* valueLabels[] = {"X:", "Y:", "Z:"};
    const double values[] = {model_.X(), model_.Y(), model_.Z()};
    for (int i = 0; i < 3; ++i) {
        values_[i] = new QLineEdit(toQString(model_.valueText(values[i])), this);
        values_[i]->setObjectName(QLatin1String(valueNames[i]));
        // Every keystroke moves the circle, so the user sees where a value lands as it is typed.
        connect(values_[i], &QLineEdit::textEdited, this, &CcieXYZDlg::readValues);
        fields->addRow(QLatin1String(valueLabels[i]), values_[i]);
    }
    const char* chromaticityNames[] = {"chromaticityXEdit", "chromaticityYEdit"};
    const char* chromaticityLabels[] = {"x:", "y:"};
    for (int i = 0; i < 2; ++i) {
        chromaticity_[i] = readOnlyBox(this, QLatin1String(chromaticityNames[i]));
        fields->addRow(QLatin1String(chromaticityLabels[i]), chromaticity_[i]);
    }

    auto* ok = new QPushButton(tr("&OK"), this);
    ok->setObjectName(QStringLiteral("okButton"));
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    auto* cancel = new QPushButton(tr("&Cancel"), this);
    cancel->setObjectName(QStringLiteral("cancelButton"));
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

    auto* side = new QVBoxLayout;
    side->addLayout(fields);
    side->addStretch();
    side->addWidget(ok);
    side->addWidget(cancel);
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(diagram_, 1);
    layout->addLayout(side);

    // The boxes are as wide as their longest useful text, a negative five-digit value.
    const int boxWidth =
        values_[0]->fontMetrics().horizontalAdvance(QStringLiteral("-00000.000000"));
    for (QLineEdit* box : values_)
        box->setMinimumWidth(boxWidth);

    showChromaticity();
    resize(660, 500);
}

void CcieXYZDlg::readValues() {
    double values[] = {model_.X(), model_.Y(), model_.Z()};
    for (int i = 0; i < 3; ++i) {
        const std::string text = values_[i]->text().toStdString();
        if (text != model_.valueText(values[i]) && !XyzModel::valueRefusal("", text))
            values[i] = XyzModel::parseValueText(text);
    }
    model_.setXYZ(values[0], values[1], values[2]);
    showChromaticity();
}

void CcieXYZDlg::accept() {
    static constexpr const char* kLabels[] = {"X:", "Y:", "Z:"};
    const double given[] = {given_.X(), given_.Y(), given_.Z()};
    for (int i = 0; i < 3; ++i)
        if (const auto refusal =
                XyzModel::valueRefusal(kLabels[i], values_[i]->text().toStdString())) {
            values_[i]->setText(toQString(model_.valueText(given[i])));
            values_[i]->setFocus();
            double values[] = {model_.X(), model_.Y(), model_.Z()};
            values[i] = given[i];
            model_.setXYZ(values[0], values[1], values[2]);
            showChromaticity();
            boxes_.messageBox(icBoxKind::warning, model_.title(), *refusal);
            return;
        }
    QDialog::accept();
}

void CcieXYZDlg::showChromaticity() {
    const icChromaticity xy = model_.chromaticity();
    chromaticity_[0]->setText(toQString(model_.chromaticityText(xy.x)));
    chromaticity_[1]->setText(toQString(model_.chromaticityText(xy.y)));
    diagram_->setValue({xy, model_.displayColor()});
}
