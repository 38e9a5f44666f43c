// The prompt service of the desktop program: real message boxes, viewer windows and file
// dialogs.
#pragma once

#include "document/prompt_service.h"

#include <QMessageBox>
#include <QPointer>
#include <QWidget>

#include <memory>

// The box that messageBox() runs: the icon the kind calls for, one "OK" button, and modal for
// the whole application, since a library message may come while any window is up. The box is
// wide enough for its whole caption, and a table of numbers is set in the fixed-width font.
std::unique_ptr<QMessageBox> makeMessageBox(icBoxKind kind, std::string_view caption,
                                            std::string_view text);
// The question before changes would be lost: the keeping button, "Discard" and "Cancel".
std::unique_ptr<QMessageBox> makeCloseQuestion(icKeepButton keep, std::string_view caption,
                                               std::string_view text);

class QtPresenter : public PromptService {
public:
    // Viewers and file dialogs are centred on `parent` once it is set.
    explicit QtPresenter(QWidget* parent = nullptr) : parent_(parent) {}
    void setParent(QWidget* parent) { parent_ = parent; }

    void messageBox(icBoxKind kind, std::string_view caption, std::string_view text) override;
    void showLargeText(std::string_view caption, std::string_view text) override;
    void showHexDump(std::string_view caption, const std::vector<std::string>& lines) override;
    void about(std::string_view caption, std::string_view text) override;
    std::optional<std::string> askOpenPath(const FileDialogRequest& request) override;
    std::optional<std::string> askSavePath(const FileDialogRequest& request) override;
    std::optional<std::string> askClutFolder(std::uint32_t mode) override;
    icCloseAnswer askBeforeClosing(icKeepButton keep, std::string_view caption,
                                   std::string_view text) override;
    icViewerResult lutViewer(std::string_view caption, iccMftLut& lut,
                             icSignature outputSpace) override;
    icViewerResult mlutViewer(std::string_view caption, iccMlutType& lut) override;
    icViewerResult curveViewer(std::string_view caption, iccCurveElement& curve) override;
    icViewerResult xyzViewer(std::string_view caption, iccXYZType& xyz) override;
    icViewerResult namedColorViewer(std::string_view caption, const icNamedColor2& colors,
                                    icSignature pcs) override;
    icViewerResult mlucViewer(std::string_view caption,
                              const iccMultiLocalizedUnicodeType& strings) override;

private:
    QPointer<QWidget> parent_;
};
