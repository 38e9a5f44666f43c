#include "viewers/dump_clut_dialog.h"

#include "document/settings_model.h"
#include "viewers/dump_clut_model.h"
#include "viewers/sheet_parts.h"

#include <QFile>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

QLabel* fileLabel(QWidget* parent, const char* name) {
    auto* label = new QLabel(parent);
    label->setObjectName(QLatin1String(name));
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

} // namespace

CDumpCLUT::CDumpCLUT(std::uint32_t mode, QWidget* parent)
    : QDialog(parent), mode_(mode), folderEdit_(new QLineEdit(this)),
      firstCurveRow_(new QLabel(this)), secondCurveRow_(new QLabel(this)),
      mCurveRow_(new QLabel(this)), header_(fileLabel(this, "headerFile")),
      firstCurve_(fileLabel(this, "firstCurveFile")), clut_(fileLabel(this, "clutFile")),
      matrix_(fileLabel(this, "matrixFile")), secondCurve_(fileLabel(this, "secondCurveFile")),
      mCurve_(fileLabel(this, "mCurveFile")) {
    setWindowTitle(sheetText(kDumpClutTitle));
    setModal(true);

    folderEdit_->setObjectName(QStringLiteral("folderEdit"));
    folderEdit_->setText(QFile::decodeName(DataFolder::get().c_str()));
    // Typing in the box only refreshes the file list; the folder is taken on OK.
    connect(folderEdit_, &QLineEdit::textChanged, this, &CDumpCLUT::setLabels);
    // There is no folder browser: the folder is typed or pasted.
    auto* browse = new QPushButton(QStringLiteral("..."), this);
    browse->setObjectName(QStringLiteral("browseButton"));
    browse->setEnabled(false);
    browse->setFixedWidth(browse->fontMetrics().horizontalAdvance(QStringLiteral("....")) + 16);

    auto* folderRow = new QHBoxLayout;
    folderRow->addWidget(folderEdit_, 1);
    folderRow->addWidget(browse);

    firstCurveRow_->setObjectName(QStringLiteral("firstCurveRow"));
    secondCurveRow_->setObjectName(QStringLiteral("secondCurveRow"));
    mCurveRow_->setObjectName(QStringLiteral("mCurveRow"));
    mCurveRow_->setText(sheetText(icClutFolderLabels{}.mCurveRow));
    auto* files = new QGroupBox(tr("Files"), this);
    auto* form = new QFormLayout(files);
    form->addRow(tr("Header"), header_);
    form->addRow(firstCurveRow_, firstCurve_);
    form->addRow(tr("CLUT"), clut_);
    form->addRow(tr("Matrix"), matrix_);
    form->addRow(secondCurveRow_, secondCurve_);
    form->addRow(mCurveRow_, mCurve_);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(tr("Folder to save CLUT:"), this));
    layout->addLayout(folderRow);
    layout->addWidget(files);
    // OK reaches the overridden accept(), which takes the folder over.
    addOkCancel(*this, *layout);
    setLabels();
    resize(qMax(sizeHint().width(), 460), sizeHint().height());
}

std::string CDumpCLUT::folder() const {
    return QFile::encodeName(folderEdit_->text()).toStdString();
}

void CDumpCLUT::accept() {
    acceptClutFolder(folder());
    QDialog::accept();
}

void CDumpCLUT::setLabels() {
    const icClutFolderLabels labels = clutFolderLabels(mode_);
    header_->setText(sheetText(labels.header));
    firstCurveRow_->setText(sheetText(labels.firstCurveRow));
    firstCurve_->setText(sheetText(labels.firstCurve));
    clut_->setText(sheetText(labels.clut));
    matrix_->setText(sheetText(labels.matrix));
    secondCurveRow_->setText(sheetText(labels.secondCurveRow));
    secondCurve_->setText(sheetText(labels.secondCurve));
    // In lut mode the M-curve row keeps the title it was built with.
    if (mode_ >= kClutFolderMlutMode)
        mCurveRow_->setText(sheetText(labels.mCurveRow));
    mCurve_->setText(sheetText(labels.mCurve));
}
