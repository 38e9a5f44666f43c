#include "diff/profile_diff.h"

#include "catalogue/catalogue.h"
#include "document/header_model.h"
#include "document/text_format.h"
#include "tagtypes/curve_type.h"
#include "tagtypes/lut16_type.h"
#include "tagtypes/lut_atob_type.h"
#include "tagtypes/multi_localized_unicode_type.h"
#include "tagtypes/s15fixed16_array_type.h"
#include "tagtypes/tag_factory.h"
#include "tagtypes/text_description_type.h"
#include "tagtypes/text_type.h"
#include "tagtypes/xyz_type.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <new>
#include <utility>

namespace {

// CLUT nodes listed one by one; the rest are only counted.
constexpr std::size_t kListedNodes = 10;
// Points at which two curves are compared when neither is a table.
constexpr std::uint32_t kCurvePoints = 4096;

using Bytes = std::span<const std::uint8_t>;

bool sameBytes(Bytes a, Bytes b) {
    return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size()) == 0);
}

std::string typeText(icSignature type) {
    return "'" + sigToText(type) + "'";
}
std::string fixedText(double v) {
    return formatText("%.6f", v);
}
std::string levelText(double v) {
    return formatText("%.6g", v);
}
std::string withoutLineFeeds(std::string_view text) {
    while (!text.empty() && text.back() == '\n')
        text.remove_suffix(1);
    return std::string(text);
}
std::string hexText(Bytes bytes) {
    std::string text;
    for (std::uint8_t byte : bytes)
        text += formatText("%02x", byte);
    return text;
}
// A text in double quotes on one line: quotes, backslashes and control characters escaped.
std::string quoted(std::string_view text) {
    std::string out = "\"";
    for (char c : text) {
        if (c == '"' || c == '\\')
            out += {'\\', c};
        else if (c == '\n')
            out += "\\n";
        else if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F)
            out += formatText("\\x%02x", static_cast<unsigned char>(c));
        else
            out += c;
    }
    return out + "\"";
}
std::string listText(const std::vector<std::uint32_t>& values, const char* separator) {
    std::string text;
    for (std::size_t i = 0; i < values.size(); ++i)
        text += (i ? separator : "") + std::to_string(values[i]);
    return text;
}

// UTF-16 code units as UTF-8; an unpaired surrogate becomes U+FFFD.
std::string utf8FromUtf16(const std::vector<std::uint16_t>& units) {
    std::string out;
    for (std::size_t i = 0; i < units.size(); ++i) {
        std::uint32_t c = units[i];
        if (c >= 0xD800 && c < 0xDC00 && i + 1 < units.size() && units[i + 1] >= 0xDC00 &&
            units[i + 1] < 0xE000)
            c = 0x10000 + ((c - 0xD800) << 10) + (units[++i] - 0xDC00);
        else if (c >= 0xD800 && c < 0xE000)
            c = 0xFFFD;
        if (c < 0x80) {
            out += static_cast<char>(c);
        } else if (c < 0x800) {
            out += static_cast<char>(0xC0 | (c >> 6));
            out += static_cast<char>(0x80 | (c & 0x3F));
        } else if (c < 0x10000) {
            out += static_cast<char>(0xE0 | (c >> 12));
            out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (c & 0x3F));
        } else {
            out += static_cast<char>(0xF0 | (c >> 18));
            out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
            out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (c & 0x3F));
        }
    }
    return out;
}

std::string trimmedAtNul(std::string text) {
    while (!text.empty() && text.back() == '\0')
        text.pop_back();
    return text;
}

icDiffEntry makeEntry(std::string what, std::string a, std::string b, std::string detail = {},
                      std::optional<double> delta = std::nullopt,
                      std::vector<std::uint32_t> node = {}) {
    return {std::move(what),   {},    std::move(a),   std::move(b),
            std::move(detail), delta, std::move(node)};
}

// ---- header ---------------------------------------------------------------------------------

// Where each of the seventeen panel fields starts in the 128 header bytes, in panel order; each
// ends where the next begins, the Profile ID at the reserved bytes.
constexpr std::array<std::size_t, kHeaderFieldCount + 2> kFieldStarts{
    0, 4, 8, 12, 16, 20, 24, 36, 40, 44, 48, 52, 56, 64, 68, 80, 84, 100, kHeaderSize};

std::vector<icDiffEntry> compareHeaders(const icHeader& a, const icHeader& b) {
    const auto bytesA = headerToBytes(a), bytesB = headerToBytes(b);
    const HeaderFields textsA = headerFieldTexts(a), textsB = headerFieldTexts(b);
    std::vector<icDiffEntry> entries;
    auto compare = [&](std::string label, std::size_t field, std::string textA, std::string textB) {
        const std::size_t at = kFieldStarts[field], size = kFieldStarts[field + 1] - at;
        const Bytes rawA(bytesA.data() + at, size), rawB(bytesB.data() + at, size);
        if (sameBytes(rawA, rawB))
            return;
        // The panel's words hide some bits (flags, attributes, illuminant decimals): show the
        // stored bytes beside them when the words alone look the same. The reserved bytes have
        // no words.
        if (textA == textB) {
            textA = textA.empty() ? hexText(rawA) : textA + " (" + hexText(rawA) + ")";
            textB = textB.empty() ? hexText(rawB) : textB + " (" + hexText(rawB) + ")";
        }
        entries.push_back(makeEntry(std::move(label), std::move(textA), std::move(textB)));
    };
    auto panelText = [](const HeaderField& field) {
        const std::string text = withoutLineFeeds(field.text);
        return text.empty() ? std::string("(empty)") : text;
    };
    for (std::size_t i = 0; i < kHeaderFieldCount; ++i) {
        std::string_view label = textsA[i].label;
        label.remove_suffix(label.ends_with(':') ? 1 : 0);
        compare(std::string(label), i, panelText(textsA[i]), panelText(textsB[i]));
    }
    compare("Reserved", kHeaderFieldCount, "", "");
    return entries;
}

// ---- tags -----------------------------------------------------------------------------------

// The differences found in one tag. Numeric differences within the tolerance are noted but not
// listed, so a tag whose bytes differ can be told apart: listed, within the tolerance, or with
// no difference in its decoded values at all (then its bytes are compared).
class TagComparison {
public:
    explicit TagComparison(double tolerance) : tolerance_(tolerance) {}

    // Whether a difference goes beyond the tolerance (NaN does).
    bool beyond(double difference) {
        if (difference != 0)
            found_ = true;
        return !(std::fabs(difference) <= tolerance_);
    }
    void add(icDiffEntry entry) {
        found_ = true;
        entries.push_back(std::move(entry));
    }
    void add(std::string what, std::string a, std::string b, std::string detail = {}) {
        add(makeEntry(std::move(what), std::move(a), std::move(b), std::move(detail)));
    }
    // Two fixed-point values (XYZ, matrices) with their delta.
    void value(std::string what, double a, double b) {
        const double delta = b - a;
        if (a == b || !beyond(delta))
            return;
        add(makeEntry(std::move(what), fixedText(a), fixedText(b),
                      "delta " + formatText("%+.6f", delta), delta));
    }
    void count(std::string what, std::uint64_t a, std::uint64_t b) {
        if (a != b)
            add(std::move(what), std::to_string(a), std::to_string(b));
    }
    bool found() const { return found_; }

    std::vector<icDiffEntry> entries;

private:
    double tolerance_;
    bool found_ = false;
};

std::string curveText(const iccCurveElement& curve) {
    if (const iccCurveType* c = curve.curve()) {
        if (c->count() == 0)
            return "identity";
        if (c->count() == 1)
            return formatText("gamma %g", c->gamma());
        return formatText("%u points", c->count());
    }
    if (const iccParametricCurveType* p = curve.parametric()) {
        std::string text = formatText("parametric type %u", unsigned(p->functionType));
        for (std::size_t i = 0; i < p->parameters.size(); ++i)
            text += (i ? ", " : ": ") + formatText("%g", p->parameters[i]);
        return text;
    }
    return "none";
}

std::uint32_t tablePoints(const iccCurveElement& curve) {
    const iccCurveType* c = curve.curve();
    return c && c->count() >= 2 ? c->count() : 0;
}

void throwIfOutOfMemory(icStatus s) {
    if (s == icErrNoMemory)
        throw std::bad_alloc();
}

// Both curves sampled at the larger table's points (or kCurvePoints): the largest and the
// mean absolute difference on the 0..65535 scale, and where the largest lies.
void compareCurves(TagComparison& d, const std::string& what, const iccCurveElement& a,
                   const iccCurveElement& b) {
    const std::string textA = curveText(a), textB = curveText(b);
    std::uint32_t points = std::max(tablePoints(a), tablePoints(b));
    if (points < 2)
        points = kCurvePoints;
    std::vector<double> va, vb;
    const icStatus sa = a.resample(points, va), sb = b.resample(points, vb);
    throwIfOutOfMemory(sa);
    throwIfOutOfMemory(sb);
    if (sa != icOk || sb != icOk || va.size() != vb.size()) {
        if (textA != textB)
            d.add(what, textA, textB);
        return;
    }
    double largest = 0, sum = 0;
    std::size_t at = 0;
    for (std::size_t i = 0; i < va.size(); ++i) {
        const double difference = std::fabs(vb[i] - va[i]);
        sum += difference;
        if (!(difference <= largest)) {
            largest = difference;
            at = i;
        }
    }
    // Another kind or length of curve is always told; its values only beyond the tolerance.
    const bool listed = d.beyond(largest);
    if (textA != textB)
        d.add(what, textA, textB,
              largest == 0 ? formatText("same values on %u points", points)
              : listed     ? std::string()
                           : "values within the tolerance");
    if (listed)
        d.add(makeEntry(what + " values", levelText(va[at]), levelText(vb[at]),
                        formatText("max difference %s at point %zu of %u, mean %s",
                                   levelText(largest).c_str(), at, points,
                                   levelText(sum / points).c_str()),
                        largest));
}

// The curve tags themselves: each decoded object moves into a curve element.
void compareCurveTags(TagComparison& d, std::unique_ptr<iccTagType> a,
                      std::unique_ptr<iccTagType> b) {
    iccCurveElement ea, eb;
    throwIfOutOfMemory(ea.adopt(std::move(a)));
    throwIfOutOfMemory(eb.adopt(std::move(b)));
    compareCurves(d, "curve", ea, eb);
}

bool isCurve(const iccTagType* tag) {
    return dynamic_cast<const iccCurveType*>(tag) ||
           dynamic_cast<const iccParametricCurveType*>(tag);
}

// Every whole XYZ number of the tags, not only the first one the type decodes.
void compareXyz(TagComparison& d, const iccXYZType& a, const iccXYZType& b) {
    auto numbers = [](const iccXYZType& t) {
        return t.rawSize() < 8 ? std::size_t(0) : (t.rawSize() - 8) / 12;
    };
    const std::size_t na = numbers(a), nb = numbers(b);
    d.count("XYZ numbers", na, nb);
    iccReader ra(a.raw().subspan(std::min<std::size_t>(8, a.rawSize())));
    iccReader rb(b.raw().subspan(std::min<std::size_t>(8, b.rawSize())));
    for (std::size_t i = 0; i < std::min(na, nb); ++i) {
        const std::string suffix = i == 0 ? "" : formatText(" #%zu", i + 1);
        for (const char* axis : {"X", "Y", "Z"})
            d.value(axis + suffix, ra.s15f16(), rb.s15f16());
    }
}

void compareArrays(TagComparison& d, const iccS15Fixed16ArrayType& a,
                   const iccS15Fixed16ArrayType& b) {
    d.count("values", a.valueCount(), b.valueCount());
    for (std::size_t i = 0; i < std::min(a.valueCount(), b.valueCount()); ++i)
        d.value(formatText("value %zu", i), a.value(i), b.value(i));
}

void compareChad(TagComparison& d, const iccChromaticAdaptationType& a,
                 const iccChromaticAdaptationType& b) {
    for (std::size_t i = 0; i < 9; ++i)
        d.value(formatText("matrix e%zu", i + 1), a.matrix[i], b.matrix[i]);
}

// Tables of `entries` values per channel, channel after channel: per channel the largest
// difference, where it lies and how many entries differ.
template <class Value>
void compareTables(TagComparison& d, const char* what, const std::vector<Value>& a,
                   const std::vector<Value>& b, std::uint32_t channels, std::uint32_t entries) {
    if (a.size() != b.size() || a.size() != std::size_t(channels) * entries)
        return;
    for (std::uint32_t c = 0; c < channels; ++c) {
        const std::size_t first = std::size_t(c) * entries;
        double largest = 0;
        std::size_t at = 0, differing = 0;
        for (std::size_t i = 0; i < entries; ++i) {
            const double difference = std::fabs(double(b[first + i]) - double(a[first + i]));
            if (difference > 0 && d.beyond(difference))
                ++differing;
            if (difference > largest) {
                largest = difference;
                at = i;
            }
        }
        if (differing > 0)
            d.add(makeEntry(formatText("%s %u", what, c), levelText(a[first + at]),
                            levelText(b[first + at]),
                            formatText("max difference %s at entry %zu, %zu of %u entries differ",
                                       levelText(largest).c_str(), at, differing, entries),
                            largest));
    }
}

// The grid coordinates of node `index`, the first input channel varying slowest.
std::vector<std::uint32_t> nodeCoordinates(std::uint64_t index,
                                           const std::vector<std::uint32_t>& grid) {
    std::vector<std::uint32_t> node(grid.size());
    for (std::size_t i = grid.size(); i-- > 0;) {
        node[i] = grid[i] ? static_cast<std::uint32_t>(index % grid[i]) : 0;
        index = grid[i] ? index / grid[i] : 0;
    }
    return node;
}

// A CLUT as stored: `valueBytes` bytes per value, `outputs` values per node, read by `read`.
struct ClutBytes {
    Bytes values;
    std::size_t valueBytes;
    std::uint32_t (*read)(const std::uint8_t*);
};

// Counts the nodes that differ beyond the tolerance, names the largest difference and lists
// the first kListedNodes nodes with their values on both sides. Equal stretches are skipped
// with one memcmp per block, so a table that differs in one node costs little more than a
// memcmp of its bytes.
void compareCluts(TagComparison& d, const std::vector<std::uint32_t>& grid, std::uint32_t outputs,
                  const ClutBytes& a, const ClutBytes& b) {
    const std::size_t nodeBytes = std::size_t(outputs) * a.valueBytes;
    if (nodeBytes == 0 || a.values.size() != b.values.size() || sameBytes(a.values, b.values))
        return;
    const std::uint64_t nodes = a.values.size() / nodeBytes;
    const std::uint64_t block = std::max<std::uint64_t>(1, 4096 / nodeBytes);
    std::uint64_t differing = 0, largestNode = 0;
    std::uint32_t largestOutput = 0;
    double largest = 0;
    std::vector<icDiffEntry> listed;
    auto valuesText = [&](const ClutBytes& t, std::uint64_t node) {
        std::string text;
        for (std::uint32_t o = 0; o < outputs; ++o)
            text += (o ? " " : "") +
                    std::to_string(t.read(t.values.data() + node * nodeBytes + o * t.valueBytes));
        return text;
    };
    for (std::uint64_t first = 0; first < nodes; first += block) {
        const std::uint64_t last = std::min(nodes, first + block);
        const std::size_t offset = first * nodeBytes, size = (last - first) * nodeBytes;
        if (std::memcmp(a.values.data() + offset, b.values.data() + offset, size) == 0)
            continue;
        for (std::uint64_t node = first; node < last; ++node) {
            const std::uint8_t* pa = a.values.data() + node * nodeBytes;
            const std::uint8_t* pb = b.values.data() + node * nodeBytes;
            if (std::memcmp(pa, pb, nodeBytes) == 0)
                continue;
            double nodeLargest = 0;
            for (std::uint32_t o = 0; o < outputs; ++o) {
                const double difference = std::fabs(double(b.read(pb + o * b.valueBytes)) -
                                                    double(a.read(pa + o * a.valueBytes)));
                if (difference > nodeLargest)
                    nodeLargest = difference;
                if (difference > largest) {
                    largest = difference;
                    largestNode = node;
                    largestOutput = o;
                }
            }
            if (!d.beyond(nodeLargest))
                continue;
            if (++differing > kListedNodes)
                continue;
            auto coordinates = nodeCoordinates(node, grid);
            const std::string what =
                formatText("CLUT node %llu at (%s)", static_cast<unsigned long long>(node),
                           listText(coordinates, ", ").c_str());
            listed.push_back(makeEntry(what, valuesText(a, node), valuesText(b, node),
                                       "max difference " + levelText(nodeLargest), nodeLargest,
                                       std::move(coordinates)));
        }
    }
    if (differing == 0)
        return;
    auto coordinates = nodeCoordinates(largestNode, grid);
    const std::string detail = formatText(
        "%llu of %llu nodes differ, largest difference %s at (%s) output %u",
        static_cast<unsigned long long>(differing), static_cast<unsigned long long>(nodes),
        levelText(largest).c_str(), listText(coordinates, ", ").c_str(), largestOutput);
    d.add(makeEntry("CLUT", {}, {}, detail, largest, std::move(coordinates)));
    for (icDiffEntry& entry : listed)
        d.add(std::move(entry));
}

template <class Value> std::uint32_t readHost(const std::uint8_t* p) {
    Value v;
    std::memcpy(&v, p, sizeof v);
    return v;
}
std::uint32_t readBE16(const std::uint8_t* p) {
    return loadBE16(p);
}
std::uint32_t readU8(const std::uint8_t* p) {
    return *p;
}

void compareMft(TagComparison& d, const iccMftLut& a, const iccMftLut& b) {
    const std::size_t before = d.entries.size();
    d.count("input channels", a.inputChannels(), b.inputChannels());
    d.count("output channels", a.outputChannels(), b.outputChannels());
    d.count("input entries", a.inputEntries(), b.inputEntries());
    d.count("output entries", a.outputEntries(), b.outputEntries());
    d.count("grid points", a.gridPoints(), b.gridPoints());
    if (d.entries.size() != before || a.isLut8() != b.isLut8())
        return;
    for (std::size_t i = 0; i < 9; ++i)
        d.value(formatText("matrix e%zu", i + 1), a.matrixValue(i), b.matrixValue(i));
    visitMftLut(a, [&](const auto& ta) {
        const auto& tb = static_cast<decltype(ta)>(b);
        using Value = typename std::remove_cvref_t<decltype(ta)>::value_type;
        compareTables(d, "input table", ta.inputTables, tb.inputTables, a.inputChannels(),
                      a.inputEntries());
        if (ta.clut.size() == tb.clut.size()) {
            const std::vector<std::uint32_t> grid(a.inputChannels(), a.gridPoints());
            auto bytes = [](const auto& v) {
                return Bytes(reinterpret_cast<const std::uint8_t*>(v.data()),
                             v.size() * sizeof(Value));
            };
            compareCluts(d, grid, a.outputChannels(),
                         {bytes(ta.clut), sizeof(Value), readHost<Value>},
                         {bytes(tb.clut), sizeof(Value), readHost<Value>});
        }
        compareTables(d, "output table", ta.outputTables, tb.outputTables, a.outputChannels(),
                      a.outputEntries());
    });
}

void compareCurveSets(TagComparison& d, const char* name,
                      const std::optional<std::vector<iccCurveElement>>& a,
                      const std::optional<std::vector<iccCurveElement>>& b) {
    if (!a || !b)
        return;
    for (std::size_t i = 0; i < std::min(a->size(), b->size()); ++i)
        compareCurves(d, formatText("%s curve %zu", name, i), (*a)[i], (*b)[i]);
}

std::vector<std::uint32_t> clutGrid(const iccClut& clut) {
    std::vector<std::uint32_t> grid;
    for (std::uint32_t i = 0; i < clut.inputChannels(); ++i)
        grid.push_back(clut.gridPoints(i));
    return grid;
}

void compareMlut(TagComparison& d, const iccMlutType& a, const iccMlutType& b) {
    const std::size_t before = d.entries.size();
    d.count("input channels", a.inputChannels, b.inputChannels);
    d.count("output channels", a.outputChannels, b.outputChannels);
    if (d.entries.size() != before)
        return;
    auto presence = [&](const char* what, bool inA, bool inB) {
        if (inA != inB)
            d.add(what, inA ? "present" : "absent", inB ? "present" : "absent");
    };
    presence("B curves", a.bCurves.has_value(), b.bCurves.has_value());
    presence("matrix", a.matrix.has_value(), b.matrix.has_value());
    presence("M curves", a.mCurves.has_value(), b.mCurves.has_value());
    presence("CLUT", a.clut.has_value(), b.clut.has_value());
    presence("A curves", a.aCurves.has_value(), b.aCurves.has_value());

    compareCurveSets(d, "B", a.bCurves, b.bCurves);
    if (a.matrix && b.matrix)
        for (std::size_t i = 0; i < 12; ++i)
            d.value(formatText("matrix e%zu", i + 1), s15Fixed16ToDouble((*a.matrix)[i]),
                    s15Fixed16ToDouble((*b.matrix)[i]));
    compareCurveSets(d, "M", a.mCurves, b.mCurves);
    if (a.clut && b.clut) {
        const auto gridA = clutGrid(*a.clut), gridB = clutGrid(*b.clut);
        const std::uint8_t precision = a.clut->precision();
        if (gridA != gridB)
            d.add("CLUT grid points", listText(gridA, "x"), listText(gridB, "x"));
        else if (precision != b.clut->precision())
            d.count("CLUT precision", precision, b.clut->precision());
        else if (precision == 1 || precision == 2)
            compareCluts(d, gridA, a.clut->outputChannels(),
                         {a.clut->valueBytes(), precision, precision == 2 ? readBE16 : readU8},
                         {b.clut->valueBytes(), precision, precision == 2 ? readBE16 : readU8});
    }
    compareCurveSets(d, "A", a.aCurves, b.aCurves);
}

// The strings of the text types, each under a name: "text"; "ASCII", "Unicode", "ScriptCode";
// or each record's "language/country". None for other types.
using TextRecords = std::vector<std::pair<std::string, std::string>>;

std::optional<TextRecords> textRecords(const iccTagType& tag) {
    TextRecords records;
    if (const auto* text = dynamic_cast<const iccTextType*>(&tag)) {
        records.emplace_back("text", std::string(text->text()));
    } else if (const auto* desc = dynamic_cast<const iccTextDescriptionType*>(&tag)) {
        records.emplace_back("ASCII", std::string(desc->asciiText()));
        if (desc->unicodeCount > 0)
            records.emplace_back("Unicode", trimmedAtNul(utf8FromUtf16(desc->unicode)));
        if (desc->scriptCount > 0)
            records.emplace_back(
                "ScriptCode",
                trimmedAtNul(std::string(desc->scriptText.begin(),
                                         desc->scriptText.begin() +
                                             std::min<std::size_t>(desc->scriptCount, 67))));
    } else if (const auto* mluc = dynamic_cast<const iccMultiLocalizedUnicodeType*>(&tag)) {
        for (std::size_t i = 0; i < mluc->records.size() && i < mluc->strings.size(); ++i) {
            const icNameRecord& r = mluc->records[i];
            const auto& bytes = mluc->strings[i];
            std::vector<std::uint16_t> units(bytes.size() / 2);
            for (std::size_t k = 0; k < units.size(); ++k)
                units[k] = loadBE16(&bytes[2 * k]);
            // "en/US", or "en" without a country; the codes are two letters each.
            std::string name = sigToText((std::uint32_t(r.language) << 16) | r.country);
            if (name.size() > 2)
                name.insert(2, "/");
            // A language named twice is told apart by its place.
            for (const auto& [other, text] : records)
                if (other == name)
                    name += formatText(" #%zu", i + 1);
            records.emplace_back(std::move(name), trimmedAtNul(utf8FromUtf16(units)));
        }
    } else {
        return std::nullopt;
    }
    return records;
}

void compareTexts(TagComparison& d, const TextRecords& a, const TextRecords& b) {
    auto find = [](const TextRecords& records, const std::string& name) {
        return std::find_if(records.begin(), records.end(),
                            [&](const auto& r) { return r.first == name; });
    };
    for (const auto& [name, text] : a) {
        const auto other = find(b, name);
        if (other == b.end())
            d.add(name, quoted(text), "(none)");
        else if (other->second != text)
            d.add(name, quoted(text), quoted(other->second));
    }
    for (const auto& [name, text] : b)
        if (find(a, name) == a.end())
            d.add(name, "(none)", quoted(text));
}

// Any other type: where the bytes first differ and how many do.
void compareBytes(TagComparison& d, Bytes a, Bytes b) {
    const std::size_t common = std::min(a.size(), b.size());
    std::size_t differing = std::max(a.size(), b.size()) - common, first = common;
    for (std::size_t i = 0; i < common; ++i)
        if (a[i] != b[i]) {
            first = std::min(first, i);
            ++differing;
        }
    if (a.size() != b.size())
        d.add("size", formatText("%zu bytes", a.size()), formatText("%zu bytes", b.size()));
    d.add("bytes", {}, {},
          formatText("%zu of %zu differ, first at offset %zu", differing,
                     std::max(a.size(), b.size()), first));
}

// Compares both objects as a T when both are one.
template <class T, class Compare>
bool compareAs(TagComparison& d, const iccTagType& a, const iccTagType& b, Compare compare) {
    const auto* ta = dynamic_cast<const T*>(&a);
    const auto* tb = dynamic_cast<const T*>(&b);
    if (ta && tb)
        compare(d, *ta, *tb);
    return ta && tb;
}

// The decoded comparison for the pairs of classes that have one; false for any other pair.
bool compareDecoded(TagComparison& d, std::unique_ptr<iccTagType>& a,
                    std::unique_ptr<iccTagType>& b) {
    if (isCurve(a.get()) && isCurve(b.get())) {
        compareCurveTags(d, std::move(a), std::move(b));
        return true;
    }
    if (compareAs<iccXYZType>(d, *a, *b, compareXyz) ||
        compareAs<iccChromaticAdaptationType>(d, *a, *b, compareChad) ||
        compareAs<iccS15Fixed16ArrayType>(d, *a, *b, compareArrays) ||
        compareAs<iccMftLut>(d, *a, *b, compareMft) ||
        compareAs<iccMlutType>(d, *a, *b, compareMlut))
        return true;
    const auto ra = textRecords(*a), rb = textRecords(*b);
    if (ra && rb)
        compareTexts(d, *ra, *rb);
    return ra && rb;
}

struct TagResult {
    bool sameBytes = false;
    bool listed = false;
    bool withinTolerance = false;
    icDiffSection section;
};

TagResult compareTag(iccProfile& pa, int ia, iccProfile& pb, int ib, double tolerance) {
    TagResult result;
    const Bytes bytesA = pa.getTagData(ia), bytesB = pb.getTagData(ib);
    result.sameBytes = sameBytes(bytesA, bytesB);
    if (result.sameBytes)
        return result;
    const icSignature typeA = pa.getTagTypeSignature(ia), typeB = pb.getTagTypeSignature(ib);
    TagComparison d(tolerance);
    if (typeA != typeB)
        d.add("type", typeText(typeA), typeText(typeB));

    std::unique_ptr<iccTagType> ta, tb;
    const icStatus sa = loadTagType(pa, ia, ta), sb = loadTagType(pb, ib, tb);
    throwIfOutOfMemory(sa);
    throwIfOutOfMemory(sb);
    bool compared = false;
    if (!icFailed(sa) && !icFailed(sb) && ta && tb) {
        compared = compareDecoded(d, ta, tb);
    } else {
        // A type with a class whose decoder refused the bytes: say so, then compare bytes.
        auto refused = [&d](const char* side, const iccTagType* tag, icStatus s) {
            if (tag && icFailed(s))
                d.add("decoding", {}, {},
                      formatText("fails in %s: %s (%d)", side,
                                 std::string(statusMeaning(s)).c_str(), int(s)));
        };
        refused("A", ta.get(), sa);
        refused("B", tb.get(), sb);
    }
    if (d.entries.empty() && compared && d.found()) {
        result.withinTolerance = true;
        return result;
    }
    // Nothing decoded differs, so the difference lies in bytes no decoder reads.
    if (d.entries.empty() || (!compared && typeA == typeB))
        compareBytes(d, bytesA, bytesB);

    const icTag& entry = *pa.getEntry(ia);
    result.listed = true;
    icDiffSection& s = result.section;
    s.kind = icDiffSectionKind::tag;
    s.signature = entry.sig;
    s.label = std::string(chooseTagHandler(entry.sig, pa.header().version).label);
    s.indexA = ia;
    s.typeA = typeA;
    s.typeB = typeB;
    s.title = "Tag " + sigToText(entry.sig) + " (" + s.label + ", " + typeText(typeA) +
              (typeA == typeB ? "" : " -> " + typeText(typeB)) + ")";
    s.entries = std::move(d.entries);
    return result;
}

// ---- directory ------------------------------------------------------------------------------

// A directory entry by signature and by its place among the entries of that signature.
struct TagKey {
    icSignature sig;
    int occurrence;
    friend bool operator==(const TagKey&, const TagKey&) = default;
};

TagKey keyOf(const iccProfile& p, int index) {
    const icSignature sig = p.getEntry(index)->sig;
    int occurrence = 0;
    for (int i = 0; i < index; ++i)
        if (p.getEntry(i)->sig == sig)
            ++occurrence;
    return {sig, occurrence};
}

int findKey(const iccProfile& p, const TagKey& key) {
    for (int i = 0; i < p.tagCount(); ++i)
        if (p.getEntry(i)->sig == key.sig && keyOf(p, i) == key)
            return i;
    return -1;
}

// Whether entries i and j of a profile are one block: same offset and size, not empty.
bool sameBlock(const iccProfile& p, int i, int j) {
    const icTag* x = p.getEntry(i);
    const icTag* y = p.getEntry(j);
    return i >= 0 && j >= 0 && x && y && x->offset == y->offset && x->size == y->size &&
           x->size > 0;
}

// The first entry that is one block with entry `index` (itself when none comes before).
int firstSharing(const iccProfile& p, int index) {
    for (int i = 0; i < index; ++i)
        if (sameBlock(p, i, index))
            return i;
    return index;
}

// "with bTRC, gTRC": the other entries whose bytes lie at the same offset, in signature order
// so that two directories in another order read alike.
std::string sharingText(const iccProfile& p, int index) {
    const icTag& tag = *p.getEntry(index);
    std::vector<std::string> others;
    for (int i = 0; i < p.tagCount(); ++i) {
        const icTag& other = *p.getEntry(i);
        if (i != index && other.offset == tag.offset && other.size > 0 && tag.size > 0)
            others.push_back(sigToText(other.sig));
    }
    std::sort(others.begin(), others.end());
    std::string text;
    for (const std::string& other : others)
        text += (text.empty() ? "with " : ", ") + other;
    return text.empty() ? "not shared" : text;
}

std::string entryText(iccProfile& p, int index) {
    return formatText("%s, %u bytes", typeText(p.getTagTypeSignature(index)).c_str(),
                      p.getEntry(index)->size);
}

icDiffEntry directoryEntry(const char* what, icSignature sig, std::string a, std::string b) {
    icDiffEntry entry = makeEntry(what, std::move(a), std::move(b));
    entry.tag = sigToText(sig);
    return entry;
}

} // namespace

icStatus diffProfiles(iccProfile& a, iccProfile& b, const icDiffOptions& options,
                      icProfileDiff& out) {
    try {
        icProfileDiff diff;
        icDiffSection header;
        header.kind = icDiffSectionKind::header;
        header.title = "Header";
        header.entries = compareHeaders(a.header(), b.header());
        diff.headerFields = header.entries.size();
        if (!header.entries.empty())
            diff.sections.push_back(std::move(header));

        std::vector<icDiffEntry> onlyA, onlyB, moved, shared;
        std::vector<icDiffSection> tags;
        // Per entry of A: how its tag compared, and the place of its section in `tags`.
        std::vector<TagResult> results(static_cast<std::size_t>(a.tagCount()));
        std::vector<std::size_t> sectionOf(results.size(), SIZE_MAX);
        for (int ia = 0; ia < a.tagCount(); ++ia) {
            const icTag& entry = *a.getEntry(ia);
            const int ib = findKey(b, keyOf(a, ia));
            if (ib < 0) {
                onlyA.push_back(directoryEntry("only in A", entry.sig, entryText(a, ia), {}));
                continue;
            }
            const std::string shareA = sharingText(a, ia), shareB = sharingText(b, ib);
            TagResult& result = results[static_cast<std::size_t>(ia)];
            // A block that several entries share on both sides is compared once, under its
            // first entry; the section names the others.
            const int first = shareA == shareB ? firstSharing(a, ia) : ia;
            if (first != ia && sameBlock(b, findKey(b, keyOf(a, first)), ib)) {
                const TagResult& covering = results[static_cast<std::size_t>(first)];
                result.sameBytes = covering.sameBytes;
                if (const std::size_t at = sectionOf[static_cast<std::size_t>(first)];
                    at != SIZE_MAX)
                    tags[at].sharedWith.push_back(entry.sig);
            } else {
                result = compareTag(a, ia, b, ib, options.tolerance);
                if (result.listed) {
                    sectionOf[static_cast<std::size_t>(ia)] = tags.size();
                    tags.push_back(std::move(result.section));
                }
                diff.tagsWithinTolerance += result.withinTolerance;
            }
            if (shareA != shareB)
                shared.push_back(directoryEntry("shared differently", entry.sig, shareA, shareB));
            else if (result.sameBytes && entry.offset != b.getEntry(ib)->offset)
                moved.push_back(directoryEntry("moved", entry.sig,
                                               formatText("offset %u", entry.offset),
                                               formatText("offset %u", b.getEntry(ib)->offset)));
        }
        for (int ib = 0; ib < b.tagCount(); ++ib)
            if (findKey(a, keyOf(b, ib)) < 0)
                onlyB.push_back(
                    directoryEntry("only in B", b.getEntry(ib)->sig, {}, entryText(b, ib)));

        icDiffSection directory;
        directory.kind = icDiffSectionKind::directory;
        directory.title = "Directory";
        for (auto* group : {&onlyA, &onlyB, &moved, &shared})
            for (icDiffEntry& e : *group)
                directory.entries.push_back(std::move(e));
        diff.directoryChanges = directory.entries.size();
        if (!directory.entries.empty())
            diff.sections.push_back(std::move(directory));
        diff.tags = tags.size();
        for (icDiffSection& s : tags) {
            for (std::size_t i = 0; i < s.sharedWith.size(); ++i)
                s.title += (i ? ", " : ", shared with ") + sigToText(s.sharedWith[i]);
            diff.sections.push_back(std::move(s));
        }
        out = std::move(diff);
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    return icOk;
}

std::string diffEntryText(const icDiffEntry& e) {
    std::string line = e.what + ":";
    if (!e.tag.empty())
        line += " " + e.tag;
    const bool pair = !e.a.empty() && !e.b.empty();
    if (pair)
        line += " " + e.a + " -> " + e.b;
    else if (e.hasValues())
        line += " " + e.a + e.b;
    if (!e.detail.empty())
        line += pair ? " (" + e.detail + ")" : " " + e.detail;
    return line;
}

std::string diffSummaryText(const icProfileDiff& diff) {
    auto counted = [](std::size_t n, const char* one, const char* many) {
        return std::to_string(n) + " " + (n == 1 ? one : many);
    };
    std::string text = "Summary: ";
    if (diff.equivalent()) {
        text += "the profiles are equivalent";
    } else {
        std::vector<std::string> parts;
        if (diff.headerFields)
            parts.push_back(counted(diff.headerFields, "header field", "header fields"));
        if (diff.directoryChanges)
            parts.push_back(
                counted(diff.directoryChanges, "directory change", "directory changes"));
        if (diff.tags)
            parts.push_back(counted(diff.tags, "tag", "tags"));
        text += "the profiles differ in ";
        for (std::size_t i = 0; i < parts.size(); ++i)
            text += (i == 0 ? "" : i + 1 == parts.size() ? " and " : ", ") + parts[i];
    }
    if (diff.tagsWithinTolerance)
        text += "; " + counted(diff.tagsWithinTolerance, "tag differs", "tags differ") +
                " within the tolerance";
    return text;
}

std::string diffReportText(const icProfileDiff& diff) {
    std::string text;
    for (const icDiffSection& section : diff.sections) {
        text += section.title + '\n';
        for (const icDiffEntry& entry : section.entries)
            text += "  " + diffEntryText(entry) + '\n';
    }
    return text + diffSummaryText(diff) + '\n';
}
