#include "viewers/xyz_model.h"

#include "document/text_format.h"
#include "profile/byte_io.h"
#include "tagtypes/xyz_type.h"
#include "viewers/curve_model.h"

#include <algorithm>
#include <charconv>
#include <cmath>

icChromaticity chromaticity(double X, double Y, double Z) {
    const double s = X + Y + Z;
    if (s > 1e-5)
        return {X / s, Y / s};
    return {0.3333, 0.3333};
}

icRgb8 displayColor(double X, double Y, double Z) {
    double rgb[3] = {
        (7.5066 * X - 3.725 * Y - 1.16487 * Z) * 100,
        (-2.7922 * X + 5.1657 * Y + 0.0919 * Z) * 100,
        (0.1985 * X - 0.6945 * Y + 3.7027 * Z) * 100,
    };
    for (double& c : rgb)
        if (!(c > 0)) // negatives, and NaN from hostile values
            c = 0;
    const double largest = std::max({rgb[0], rgb[1], rgb[2]});
    if (largest > 255)
        for (double& c : rgb)
            c *= 255 / largest;
    auto low8 = [](double c) { return static_cast<std::uint8_t>(truncToInt64(c) & 0xFF); };
    return {low8(rgb[0]), low8(rgb[1]), low8(rgb[2])};
}

const std::array<icLocusPoint, 37> kSpectralLocus{{
    {{0.1733, 0.0048}, {0, 0, 255}},   {{0.1726, 0.0048}, {0, 5, 255}},
    {{0.1714, 0.0051}, {0, 10, 255}},  {{0.1689, 0.0069}, {0, 20, 255}},
    {{0.1644, 0.0109}, {0, 30, 255}},  {{0.1566, 0.0177}, {0, 50, 255}},
    {{0.1440, 0.0297}, {0, 100, 255}}, {{0.1241, 0.0578}, {0, 150, 255}},
    {{0.0913, 0.1327}, {0, 255, 255}}, {{0.0454, 0.2950}, {0, 255, 220}},
    {{0.0082, 0.5384}, {0, 255, 200}}, {{0.0139, 0.7502}, {0, 255, 150}},
    {{0.0743, 0.8338}, {0, 255, 100}}, {{0.1547, 0.8059}, {0, 255, 50}},
    {{0.2296, 0.7543}, {0, 255, 10}},  {{0.3016, 0.6923}, {0, 255, 0}},
    {{0.3731, 0.6245}, {50, 255, 0}},  {{0.4441, 0.5547}, {100, 255, 0}},
    {{0.5125, 0.4866}, {255, 255, 0}}, {{0.5752, 0.4242}, {250, 150, 0}},
    {{0.6270, 0.3725}, {255, 128, 0}}, {{0.6658, 0.3340}, {255, 100, 0}},
    {{0.6915, 0.3083}, {255, 90, 0}},  {{0.7079, 0.2920}, {255, 80, 0}},
    {{0.7190, 0.2809}, {255, 60, 0}},  {{0.7140, 0.2859}, {255, 40, 0}},
    {{0.7300, 0.2700}, {255, 20, 0}},  {{0.7320, 0.2680}, {255, 10, 0}},
    {{0.7334, 0.2666}, {255, 5, 0}},   {{0.7344, 0.2656}, {255, 0, 0}},
    {{0.7347, 0.2653}, {255, 0, 0}},   {{0.6411, 0.2219}, {220, 0, 32}},
    {{0.5476, 0.1785}, {128, 0, 92}},  {{0.4540, 0.1351}, {100, 0, 120}},
    {{0.3604, 0.0916}, {60, 0, 150}},  {{0.2669, 0.0482}, {30, 0, 200}},
    {{0.1733, 0.0048}, {0, 0, 255}},
}};

std::array<icChromaticity, 3> srgbPrimaries() {
    return {chromaticity(0.43607, 0.22249, 0.01392), chromaticity(0.38515, 0.71787, 0.09708),
            chromaticity(0.14307, 0.06061, 0.7141)};
}

ChromaticityMapping chromaticityDiagramMapping(icPlotArea bounds) {
    const icPlotArea area = insetArea(bounds, kDiagramLabelRoom + kDiagramLeftMargin,
                                      kDiagramTopMargin, kDiagramRightMargin, kDiagramBottomStrip);
    return ChromaticityMapping(area.width, area.height,
                               {bounds.left + kDiagramLabelRoom, area.top});
}

std::array<icPlotPoint, 37> ChromaticityMapping::locus() const {
    std::array<icPlotPoint, 37> points;
    for (std::size_t i = 0; i < points.size(); ++i)
        points[i] = map(kSpectralLocus[i].xy);
    return points;
}

std::array<icPlotPoint, 4> ChromaticityMapping::srgbTriangle() const {
    const auto p = srgbPrimaries();
    return {map(p[0]), map(p[1]), map(p[2]), map(p[0])};
}

XyzModel::XyzModel(double X, double Y, double Z, std::string_view title)
    : X_(X), Y_(Y), Z_(Z),
      title_((title.empty() ? kXyzDefaultCaption : title).substr(0, kViewerTitleLimit)) {}

XyzModel::XyzModel(const iccXYZType& xyz, std::string_view title)
    : XyzModel(xyz.X, xyz.Y, xyz.Z, title) {}

void XyzModel::setXYZ(double X, double Y, double Z) {
    X_ = X;
    Y_ = Y;
    Z_ = Z;
}

void XyzModel::setXYZ(std::string_view X, std::string_view Y, std::string_view Z) {
    setXYZ(parseValueText(X), parseValueText(Y), parseValueText(Z));
}

double XyzModel::parseValueText(std::string_view text) {
    // Read as the C library's atof would, but free of the process locale: leading blanks, an
    // optional sign, then as much of a number as there is. A decimal comma, as a user of such a
    // locale types it, counts as the point.
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t'))
        text.remove_prefix(1);
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    std::string number(text);
    std::replace(number.begin(), number.end(), ',', '.');
    double value = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
    if (error != std::errc() || !std::isfinite(value))
        return 0;
    return value;
}

std::optional<std::string> XyzModel::valueRefusal(std::string_view label, std::string_view text) {
    std::string number(text);
    number.erase(0, number.find_first_not_of(" \t"));
    number.erase(number.find_last_not_of(" \t") + 1);
    std::replace(number.begin(), number.end(), ',', '.');
    const char* first = number.data() + (number.starts_with('+') ? 1 : 0);
    double value = 0;
    const auto [end, error] = std::from_chars(first, number.data() + number.size(), value);
    constexpr double kLargest = 32767 + 65535 / 65536.0;
    if (!number.empty() && error == std::errc() && end == number.data() + number.size() &&
        value >= -32768 && value <= kLargest)
        return std::nullopt;
    return std::string(label) + " \"" + std::string(text) +
           "\" is not a number from -32768 to 32767.99998. The old value is kept.";
}

std::string XyzModel::valueText(double v) const {
    return formatText("%1.5lf", v);
}

std::string XyzModel::chromaticityText(double v) const {
    return formatText("%lf", v);
}

std::vector<std::string> XyzModel::lines() const {
    const icChromaticity xy = chromaticity();
    return {"X: " + valueText(X_), "Y: " + valueText(Y_), "Z: " + valueText(Z_),
            "x: " + chromaticityText(xy.x), "y: " + chromaticityText(xy.y)};
}
