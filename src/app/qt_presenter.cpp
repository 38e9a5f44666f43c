#include "app/qt_presenter.h"

#include "app/about_dialog.h"
#include "tagtypes/xyz_type.h"
#include "viewers/curve_dialog.h"
#include "viewers/dump_clut_dialog.h"
#include "viewers/hex_dump_dialog.h"
#include "viewers/hex_dump_model.h"
#include "viewers/large_text_dialog.h"
#include "viewers/lut_property_sheet.h"
#include "viewers/mluc_dialog.h"
#include "viewers/mlut_property_sheet.h"
#include "viewers/named_color_dialog.h"
#include "viewers/xyz_dialog.h"

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QFontDatabase>
#include <QGridLayout>
#include <QLabel>
#include <QSpacerItem>
#include <QStringList>

namespace {

QString toQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::optional<std::string> runFileDialog(QWidget* parent, const FileDialogRequest& request,
                                         QFileDialog::AcceptMode mode) {
    QStringList filters;
    for (const std::string& filter : request.filters)
        filters << toQString(filter);
    QFileDialog dialog(parent, toQString(request.caption),
                       QFile::decodeName(request.directory.c_str()));
    dialog.setAcceptMode(mode);
    dialog.setFileMode(mode == QFileDialog::AcceptOpen ? QFileDialog::ExistingFile
                                                       : QFileDialog::AnyFile);
    dialog.setNameFilters(filters);
    dialog.setDefaultSuffix(toQString(request.defaultSuffix));
    if (!request.fileName.empty())
        dialog.selectFile(QFile::decodeName(request.fileName.c_str()));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return std::nullopt;
    return QFile::encodeName(dialog.selectedFiles().constFirst()).toStdString();
}

// Room for the whole caption in the title bar: its text in a bold title font, and the window
// manager's icon and buttons beside it. A box sizes itself to its contents alone otherwise, and
// the title bar cuts a long caption (the name of the tag) short.
constexpr int kTitleBarDecorations = 160;

std::unique_ptr<QMessageBox> applicationModalBox(QMessageBox::Icon icon, std::string_view caption,
                                                 std::string_view text,
                                                 QMessageBox::StandardButtons buttons) {
    auto box = std::make_unique<QMessageBox>(icon, toQString(caption), toQString(text), buttons);
    box->setWindowModality(Qt::ApplicationModal);
    QFont titleFont = QApplication::font("QMdiSubWindowTitleBar");
    titleFont.setBold(true);
    const int captionWidth =
        QFontMetrics(titleFont).horizontalAdvance(box->windowTitle()) + kTitleBarDecorations;
    if (auto* grid = qobject_cast<QGridLayout*>(box->layout()))
        grid->addItem(new QSpacerItem(captionWidth, 0, QSizePolicy::Minimum), grid->rowCount(), 0,
                      1, grid->columnCount());
    return box;
}

} // namespace

std::unique_ptr<QMessageBox> makeMessageBox(icBoxKind kind, std::string_view caption,
                                            std::string_view text) {
    QMessageBox::Icon icon = QMessageBox::Information;
    if (kind == icBoxKind::warning)
        icon = QMessageBox::Warning;
    else if (kind == icBoxKind::stop)
        icon = QMessageBox::Critical;
    auto box = applicationModalBox(icon, caption, text, QMessageBox::Ok);
    if (auto* label = box->findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
        label && isNumberTable(text))
        label->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    return box;
}

std::unique_ptr<QMessageBox> makeCloseQuestion(icKeepButton keep, std::string_view caption,
                                               std::string_view text) {
    const QMessageBox::StandardButton keeping =
        keep == icKeepButton::save ? QMessageBox::Save : QMessageBox::Apply;
    auto box = applicationModalBox(QMessageBox::Question, caption, text,
                                   keeping | QMessageBox::Discard | QMessageBox::Cancel);
    box->setDefaultButton(keeping);
    box->setEscapeButton(QMessageBox::Cancel);
    return box;
}

icCloseAnswer QtPresenter::askBeforeClosing(icKeepButton keep, std::string_view caption,
                                            std::string_view text) {
    const auto box = makeCloseQuestion(keep, caption, text);
    const int answer = box->exec();
    if (answer == QMessageBox::Save || answer == QMessageBox::Apply)
        return icCloseAnswer::keep;
    return answer == QMessageBox::Discard ? icCloseAnswer::discard : icCloseAnswer::stay;
}

void QtPresenter::messageBox(icBoxKind kind, std::string_view caption, std::string_view text) {
    makeMessageBox(kind, caption, text)->exec();
}

void QtPresenter::showLargeText(std::string_view caption, std::string_view text) {
    CLargeTextDlg dialog(caption, text, parent_);
    dialog.exec();
}

void QtPresenter::showHexDump(std::string_view caption, const std::vector<std::string>& lines) {
    CHexDlg dialog(caption, lines, parent_);
    dialog.exec();
}

void QtPresenter::about(std::string_view caption, std::string_view text) {
    CAboutDlg dialog(caption, text, parent_);
    dialog.exec();
}

std::optional<std::string> QtPresenter::askOpenPath(const FileDialogRequest& request) {
    return runFileDialog(parent_, request, QFileDialog::AcceptOpen);
}

std::optional<std::string> QtPresenter::askSavePath(const FileDialogRequest& request) {
    return runFileDialog(parent_, request, QFileDialog::AcceptSave);
}

std::optional<std::string> QtPresenter::askClutFolder(std::uint32_t mode) {
    CDumpCLUT dialog(mode, parent_);
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return dialog.folder();
}

namespace {

// A viewer that keeps a modified flag: its setup failure, or how it closed and whether it
// changed the object, for the catalogue to write back.
template <class Viewer> icViewerResult runEditingViewer(Viewer& viewer) {
    if (viewer.setupStatus() != icOk)
        return {false, false, viewer.setupStatus()};
    const bool accepted = viewer.exec() == QDialog::Accepted;
    return {accepted, viewer.modified(), icOk};
}

} // namespace

icViewerResult QtPresenter::lutViewer(std::string_view caption, iccMftLut& lut,
                                      icSignature outputSpace) {
    CiccLutPropertySheet sheet(lut, outputSpace, caption, *this, parent_);
    return runEditingViewer(sheet);
}

icViewerResult QtPresenter::mlutViewer(std::string_view caption, iccMlutType& lut) {
    CLutB2APropertySheet sheet(lut, caption, *this, parent_);
    return runEditingViewer(sheet);
}

// An import in the curve viewer changes the curve in place; the catalogue encodes and stores it
// when the result says OK and modified.
icViewerResult QtPresenter::curveViewer(std::string_view caption, iccCurveElement& curve) {
    CicCurveDlg dialog(curve, caption, *this, parent_);
    if (dialog.setupStatus() != icOk)
        return {false, false, dialog.setupStatus()};
    const bool accepted = dialog.exec() == QDialog::Accepted;
    return {accepted, dialog.modified(), icOk};
}

// "&OK" hands the three values back whether or not they were changed.
icViewerResult QtPresenter::xyzViewer(std::string_view caption, iccXYZType& xyz) {
    CcieXYZDlg dialog(xyz.X, xyz.Y, xyz.Z, caption, *this, parent_);
    if (dialog.exec() != QDialog::Accepted)
        return {};
    const bool changed = xyz.X != dialog.X() || xyz.Y != dialog.Y() || xyz.Z != dialog.Z();
    xyz.X = dialog.X();
    xyz.Y = dialog.Y();
    xyz.Z = dialog.Z();
    return {true, changed, icOk};
}

icViewerResult QtPresenter::namedColorViewer(std::string_view caption, const icNamedColor2& colors,
                                             icSignature pcs) {
    CNameColor2Dlg dialog(colors, pcs, caption, *this, parent_);
    return {dialog.exec() == QDialog::Accepted, false, icOk};
}

icViewerResult QtPresenter::mlucViewer(std::string_view caption,
                                       const iccMultiLocalizedUnicodeType& strings) {
    CulmcDlg dialog(strings, caption, parent_);
    return {dialog.exec() == QDialog::Accepted, false, icOk};
}
