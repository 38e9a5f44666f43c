#include "cli/cli_presenter.h"

#include "viewers/curve_model.h"
#include "viewers/lut_model.h"
#include "viewers/mluc_model.h"
#include "viewers/mlut_model.h"
#include "viewers/named_color_model.h"
#include "viewers/xyz_model.h"

namespace {

std::string_view kindName(icBoxKind kind) {
    switch (kind) {
    case icBoxKind::info:
        return "info";
    case icBoxKind::warning:
        return "warning";
    case icBoxKind::stop:
        return "stop";
    }
    return "info";
}

void write(std::FILE* out, std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), out);
}

} // namespace

void CliPresenter::messageBox(icBoxKind kind, std::string_view caption, std::string_view text) {
    block(kindName(kind), caption, text);
}

void CliPresenter::showLargeText(std::string_view caption, std::string_view text) {
    block("text", caption, text);
}

void CliPresenter::showHexDump(std::string_view caption, const std::vector<std::string>& lines) {
    viewerBlock("hexdump", caption, lines);
}

namespace {

constexpr icViewerResult kClosedWithOk{true, false, icOk};

} // namespace

icViewerResult CliPresenter::curveViewer(std::string_view caption, iccCurveElement& curve) {
    viewerBlock("curve", caption, CurveModel(curve, caption).lines());
    return kClosedWithOk;
}

icViewerResult CliPresenter::xyzViewer(std::string_view caption, iccXYZType& xyz) {
    viewerBlock("xyz", caption, XyzModel(xyz, caption).lines());
    return kClosedWithOk;
}

icViewerResult CliPresenter::lutViewer(std::string_view caption, iccMftLut& lut,
                                       icSignature outputSpace) {
    viewerBlock("lut", caption, LutModel(lut, outputSpace).lines());
    return kClosedWithOk;
}

icViewerResult CliPresenter::mlutViewer(std::string_view caption, iccMlutType& lut) {
    viewerBlock("mlut", caption, MlutModel(lut).lines());
    return kClosedWithOk;
}

icViewerResult CliPresenter::namedColorViewer(std::string_view caption, const icNamedColor2& colors,
                                              icSignature pcs) {
    const NamedColorModel model(colors, pcs);
    viewerBlock("namedcolor", caption, model.lines());
    // The dialog raises its box while it opens, after its fields are filled.
    if (const auto message = model.openingMessage())
        messageBox(icBoxKind::info, kCaption, *message);
    return kClosedWithOk;
}

icViewerResult CliPresenter::mlucViewer(std::string_view caption,
                                        const iccMultiLocalizedUnicodeType& strings) {
    viewerBlock("mluc", caption, MlucModel(strings).lines());
    return kClosedWithOk;
}

void CliPresenter::viewerBlock(std::string_view name, std::string_view caption,
                               const std::vector<std::string>& lines) {
    write(out_, "--- viewer ");
    write(out_, name);
    write(out_, " | ");
    write(out_, caption);
    write(out_, "\n");
    for (std::string_view line : lines) {
        while (!line.empty() && line.back() == '\n')
            line.remove_suffix(1);
        write(out_, line);
        write(out_, "\n");
    }
}

void CliPresenter::block(std::string_view kind, std::string_view caption, std::string_view text) {
    while (!text.empty() && text.back() == '\n')
        text.remove_suffix(1);
    write(out_, "--- ");
    write(out_, kind);
    write(out_, " | ");
    write(out_, caption);
    write(out_, "\n");
    write(out_, text);
    write(out_, "\n");
}
