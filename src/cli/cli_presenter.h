// Prints every box the window would open as a "--- KIND | CAPTION" block.
#pragma once

#include "document/presenter.h"

#include <cstdio>

class CliPresenter : public Presenter {
public:
    explicit CliPresenter(std::FILE* out) : out_(out) {}
    void setOutput(std::FILE* out) { out_ = out; }

    void messageBox(icBoxKind kind, std::string_view caption, std::string_view text) override;
    void showLargeText(std::string_view caption, std::string_view text) override;
    void showHexDump(std::string_view caption, const std::vector<std::string>& lines) override;

    // Each viewer prints its block and closes with OK, changing nothing.
    icViewerResult curveViewer(std::string_view caption, iccCurveElement& curve) override;
    icViewerResult xyzViewer(std::string_view caption, iccXYZType& xyz) override;
    icViewerResult lutViewer(std::string_view caption, iccMftLut& lut,
                             icSignature outputSpace) override;
    icViewerResult mlutViewer(std::string_view caption, iccMlutType& lut) override;
    icViewerResult namedColorViewer(std::string_view caption, const icNamedColor2& colors,
                                    icSignature pcs) override;
    icViewerResult mlucViewer(std::string_view caption,
                              const iccMultiLocalizedUnicodeType& strings) override;

    // One block: the header line, then the text without its trailing line feeds.
    void block(std::string_view kind, std::string_view caption, std::string_view text);
    // A viewer block: the header line, then one line per field (none for an empty viewer).
    void viewerBlock(std::string_view name, std::string_view caption,
                     const std::vector<std::string>& lines);

private:
    std::FILE* out_;
};
