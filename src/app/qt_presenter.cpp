#include "app/qt_presenter.h"

#include "viewers/hex_dump_dialog.h"
#include "viewers/large_text_dialog.h"

#include <QFile>
#include <QFileDialog>
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
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return std::nullopt;
    return QFile::encodeName(dialog.selectedFiles().constFirst()).toStdString();
}

} // namespace

std::unique_ptr<QMessageBox> makeMessageBox(icBoxKind kind, std::string_view caption,
                                            std::string_view text) {
    QMessageBox::Icon icon = QMessageBox::Information;
    if (kind == icBoxKind::warning)
        icon = QMessageBox::Warning;
    else if (kind == icBoxKind::stop)
        icon = QMessageBox::Critical;
    auto box =
        std::make_unique<QMessageBox>(icon, toQString(caption), toQString(text), QMessageBox::Ok);
    box->setWindowModality(Qt::ApplicationModal);
    return box;
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
    QMessageBox::about(parent_, toQString(caption), toQString(text));
}

std::optional<std::string> QtPresenter::askOpenPath(const FileDialogRequest& request) {
    return runFileDialog(parent_, request, QFileDialog::AcceptOpen);
}

std::optional<std::string> QtPresenter::askSavePath(const FileDialogRequest& request) {
    return runFileDialog(parent_, request, QFileDialog::AcceptSave);
}
