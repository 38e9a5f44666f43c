#include "lutio/mlut_folder.h"

#include "lutio/curve_text.h"
#include "lutio/exchange_text.h"
#include "lutio/lut_folder.h"

#include <algorithm>
#include <array>
#include <new>
#include <optional>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kHeaderFile = "header.txt";
constexpr std::string_view kMatrixFile = "matrix.txt";
constexpr std::string_view kClutFile = "clut.txt";
constexpr std::uint32_t kTagHeaderSize = 32;
constexpr std::uint32_t kMatrixSize = 48;

// The header's numeric lines, compared without their colons.
constexpr std::array<std::string_view, 11> kHeaderLabels = {
    "Tag_Bytes",     "InputChan",     "OutputChan",   "Offset_BCurve",
    "Offset_Matrix", "Offset_MCurve", "Offset_CLut",  "Offset_ACurve",
    "Number_BCurve", "Number_MCurve", "Number_ACurve"};

std::string curveFileName(std::string_view set, std::size_t i) {
    icTextOut name;
    name.text(set).text("Curve_").u(i).text(".txt");
    return std::string(name.str());
}

// The curve sets with the letters of their file names, in the order they are exported and read.
template <class Tag> auto curveSets(Tag& tag) {
    return std::array{std::pair{std::string_view("B"), &tag.bCurves},
                      std::pair{std::string_view("M"), &tag.mCurves},
                      std::pair{std::string_view("A"), &tag.aCurves}};
}

// Product of the grid points of the CLUT's input channels (1 without inputs), saturating far
// above anything a tag can hold.
std::uint64_t gridNodes(std::uint32_t inputs, const std::uint8_t* grid) {
    constexpr std::uint64_t kSaturated = std::uint64_t(1) << 40;
    std::uint64_t nodes = 1;
    for (std::uint32_t c = 0; c < inputs; ++c)
        nodes = std::min(nodes * grid[c], kSaturated);
    return nodes;
}

constexpr std::uint64_t minimumText(std::uint64_t numbers) {
    return numbers == 0 ? 0 : 2 * numbers - 1;
}

icStatus readMatrix(icExchangeSource& files, std::array<std::int32_t, 12>& matrix) {
    std::string_view text;
    if (icStatus s = files.read(kMatrixFile, text); s != icOk)
        return s;
    icTextIn in(text);
    for (std::uint64_t n = 0; n < matrix.size(); ++n) {
        std::uint64_t index = 0;
        double value = 0;
        if (!in.u64(index) || index != n || !in.real(value))
            return icErrFile;
        matrix[n] = doubleToS15Fixed16(value);
    }
    return icOk;
}

icStatus importFiles(iccMlutType& tag, icExchangeSource& files) {
    std::string_view text;
    if (icStatus s = files.read(kHeaderFile, text); s != icOk)
        return s;
    icTextIn in(text);
    // The signature word must be the three letters exactly: "mABx" is refused.
    const auto type = signatureLine(in);
    if (!type || (*type != "mAB" && *type != "mBA"))
        return icErrFile;
    std::array<std::uint32_t, kHeaderLabels.size()> values{};
    if (!labelledNumbers(in, kHeaderLabels, values))
        return icErrFile;
    const auto [tagBytes, inputs, outputs, offsetB, offsetMatrix, offsetM, offsetClut, offsetA,
                numberB, numberM, numberA] = values;

    const icMlutElements present{offsetB != 0, offsetMatrix != 0, offsetM != 0, offsetClut != 0,
                                 offsetA != 0};
    const icSignature signature = *type == "mAB" ? iccMlutType::kAToB : iccMlutType::kBToA;
    if (icStatus s = tag.createLayout(signature, inputs, outputs, present); s != icOk)
        return s;
    tag.offsetB = offsetB;
    tag.offsetMatrix = offsetMatrix;
    tag.offsetM = offsetM;
    tag.offsetClut = offsetClut;
    tag.offsetA = offsetA;

    for (auto [set, curves] : curveSets(tag)) {
        if (!*curves)
            continue;
        for (std::size_t i = 0; i < (*curves)->size(); ++i) {
            iccCurveElement& element = (**curves)[i];
            element.clear();
            if (icStatus s = files.read(curveFileName(set, i), text); s != icOk)
                return s;
            if (icStatus s = parseCurveElementText(element, text); s != icOk)
                return s;
        }
    }
    if (tag.matrix) {
        if (icStatus s = readMatrix(files, *tag.matrix); s != icOk)
            return s;
    }
    if (tag.clut) {
        if (icStatus s = files.read(kClutFile, text); s != icOk)
            return s;
        if (icStatus s = parseClutText(*tag.clut, text); s != icOk)
            return s;
    }
    return encodeMlutAtStoredOffsets(tag, tagBytes);
}

// One element of the stored layout: where it starts and the bytes it takes (without the padding
// after its last part).
struct Piece {
    std::uint32_t offset;
    std::uint64_t length;
    enum { curves, matrix, clut } kind;
    std::vector<iccCurveElement>* set;
};

// The curve's bytes as they stand. Not data(): that rebuilds a 'para' from its doubles, and each
// such encoding moves a negative parameter one unit toward zero.
std::span<const std::uint8_t> heldBytes(const iccCurveElement& curve) {
    if (const iccCurveType* curv = curve.curve())
        return curv->raw();
    if (const iccParametricCurveType* para = curve.parametric())
        return para->raw();
    return {};
}

// Bytes of a curve set laid out from one offset: each curve padded to 4 but the last.
icStatus curveSetLength(const std::vector<iccCurveElement>& curves, std::uint64_t& length) {
    length = 0;
    for (const auto& curve : curves) {
        const auto bytes = heldBytes(curve);
        if (bytes.empty())
            return icErrGeneral;
        length = roundUp4(length) + bytes.size();
    }
    return icOk;
}

} // namespace

icStatus encodeMlutAtStoredOffsets(iccMlutType& tag, std::uint32_t size) {
    if (icStatus s = tag.validate(); s != icOk)
        return s;
    try {
        std::vector<Piece> pieces;
        const std::array<std::pair<std::uint32_t, std::optional<std::vector<iccCurveElement>>*>, 3>
            sets{{{tag.offsetB, &tag.bCurves},
                  {tag.offsetM, &tag.mCurves},
                  {tag.offsetA, &tag.aCurves}}};
        for (auto [offset, curves] : sets) {
            if (!*curves)
                continue;
            std::uint64_t length = 0;
            if (icStatus s = curveSetLength(**curves, length); s != icOk)
                return s;
            pieces.push_back({offset, length, Piece::curves, &**curves});
        }
        if (tag.matrix)
            pieces.push_back({tag.offsetMatrix, kMatrixSize, Piece::matrix, nullptr});
        if (tag.clut) {
            if (tag.clut->byteSize() < iccClut::kHeaderSize)
                return icErrGeneral;
            pieces.push_back({tag.offsetClut, tag.clut->byteSize(), Piece::clut, nullptr});
        }
        std::sort(pieces.begin(), pieces.end(),
                  [](const Piece& a, const Piece& b) { return a.offset < b.offset; });

        // Each element after the header and the one before it, all within the size, and the
        // size not beyond what the elements and some gaps and padding can explain.
        std::uint64_t end = kTagHeaderSize;
        std::uint64_t used = kTagHeaderSize;
        for (const Piece& piece : pieces) {
            if (piece.offset < end)
                return icErrInvalidArg;
            end = piece.offset + piece.length;
            used += piece.length;
        }
        if (end > size || size - used > kMaxLayoutSlack)
            return icErrInvalidArg;

        std::vector<std::uint8_t> bytes(size, 0);
        storeBE32(bytes.data(), tag.typeSignature());
        bytes[8] = static_cast<std::uint8_t>(tag.inputChannels);
        bytes[9] = static_cast<std::uint8_t>(tag.outputChannels);
        const std::uint32_t offsets[] = {tag.offsetB, tag.offsetMatrix, tag.offsetM, tag.offsetClut,
                                         tag.offsetA};
        for (std::size_t i = 0; i < 5; ++i)
            storeBE32(bytes.data() + 12 + 4 * i, offsets[i]);
        for (const Piece& piece : pieces) {
            std::uint8_t* at = bytes.data() + piece.offset;
            switch (piece.kind) {
            case Piece::curves:
                for (const auto& curve : *piece.set) {
                    const auto data = heldBytes(curve);
                    std::copy(data.begin(), data.end(), at);
                    at += roundUp4(data.size());
                }
                break;
            case Piece::matrix:
                for (std::int32_t v : *tag.matrix) {
                    storeBE32(at, static_cast<std::uint32_t>(v));
                    at += 4;
                }
                break;
            case Piece::clut: {
                const auto encoded = tag.clut->encoded();
                std::copy(encoded.begin(), encoded.end(), at);
                break;
            }
            }
        }
        return tag.setData(bytes);
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
}

namespace {

// The CLUT text into `out`; throws std::bad_alloc.
icStatus formatClut(const iccClut& clut, icTextOut& out) {
    const std::uint32_t inputs = clut.inputChannels();
    const std::uint32_t outputs = clut.outputChannels();
    std::array<std::uint8_t, iccClut::kMaxInputs> grid{};
    for (std::uint32_t c = 0; c < std::min(inputs, iccClut::kMaxInputs); ++c)
        grid[c] = clut.gridPoints(c);
    const std::uint64_t nodes = gridNodes(std::min(inputs, iccClut::kMaxInputs), grid.data());
    // A CLUT without outputs holds no values whatever its grid; its grid is not written out
    // node by node beyond what a real table could have.
    if (nodes * std::max(outputs, 1u) > UINT32_MAX)
        return icErrInvalidArg;
    out.reserve(std::size_t(nodes) * (9 + 6 * std::size_t(outputs)) + 256);
    out.text("Data_Type: none\nInputChan: ").u(inputs).text("\nOutputChan: ").u(outputs);
    out.text("\nByteDepth: ").d(clut.precision()).text("\nLUT_Size:\n");
    for (std::uint32_t c = 0; c < inputs; ++c)
        out.text("InputChan: ").u(c).ch(' ').d(clut.gridPoints(c)).ch('\n');
    out.text("Data_Begine:");
    std::uint64_t index = 0;
    for (std::uint64_t k = 0; k < nodes; ++k) {
        out.ch('\n').u(k).ch(' ');
        for (std::uint32_t o = 0; o < outputs; ++o)
            out.u(clut.value(index++)).ch(' ');
    }
    out.text("\nData_End");
    return icOk;
}

} // namespace

icStatus formatClutText(const iccClut& clut, std::string& text) {
    try {
        icTextOut out;
        if (icStatus s = formatClut(clut, out); s != icOk)
            return s;
        text = out.str();
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    return icOk;
}

icStatus parseClutText(iccClut& clut, std::string_view text) {
    icTextIn in(text);
    const auto first = in.line();
    if (!first || !first->starts_with("Data_Type:"))
        return icErrFile;
    std::array<std::uint32_t, 3> dims{};
    constexpr std::array<std::string_view, 3> labels = {"InputChan", "OutputChan", "ByteDepth"};
    if (!labelledNumbers(in, labels, dims))
        return icErrFile;
    const auto [inputs, outputs, depth] = dims;
    if (depth != 1 && depth != 2)
        return icErrFile;
    if (const auto line = in.line(); !line || !line->starts_with("LUT_Size"))
        return icErrFile;

    // The channel number on each line says whose grid count it gives, and reading goes on
    // with the channel after it; so lines out of order skip channels (their counts stay 0) or
    // end the list early. Counts are bytes in the encoding: 256 is kept as 0.
    std::array<std::uint8_t, iccClut::kMaxInputs> grid{};
    for (std::uint64_t next = 0; next < inputs;) {
        const auto line = in.line();
        if (!line)
            return icErrFile;
        std::string_view rest = *line, word;
        std::uint64_t channel = 0;
        std::int64_t count = 0;
        if (!scanWord(rest, word) || !scanU64(rest, channel) || !scanI64(rest, count))
            return icErrFile;
        if (channel < grid.size())
            grid[channel] = static_cast<std::uint8_t>(count);
        next = channel + 1;
        if (next == 0)
            break;
    }

    // Every grid point needs a line of at least its index and its values: a large table is
    // allocated only when the rest of the text can fill it.
    const std::uint64_t nodes = inputs <= iccClut::kMaxInputs ? gridNodes(inputs, grid.data()) : 0;
    const std::uint64_t size = nodes * outputs * depth + iccClut::kHeaderSize;
    if (inputs <= iccClut::kMaxInputs && size > kUnbackedTableBytes && size <= UINT32_MAX &&
        in.rest().size() < minimumText(nodes * (std::uint64_t(outputs) + 1)))
        return icErrFile;
    if (icStatus s = clut.init(inputs, outputs, static_cast<std::uint8_t>(depth), grid); s != icOk)
        return s;

    if (const auto line = in.line(); !line || !line->starts_with("Data_Begine"))
        return icErrFile;
    // Each grid point must stand on one line of its own.
    const auto valueBytes = clut.valueBytes();
    std::size_t at = 0;
    for (std::uint64_t k = 0; k < nodes; ++k) {
        const auto line = in.line();
        if (!line)
            return icErrFile;
        std::string_view rest = *line;
        std::uint64_t index = 0;
        if (!scanU64(rest, index) || index != k)
            return icErrFile;
        for (std::uint32_t o = 0; o < outputs; ++o) {
            std::uint32_t v = 0;
            if (!scanU32(rest, v))
                return icErrFile;
            if (depth == 1) {
                valueBytes[at++] = static_cast<std::uint8_t>(v);
            } else {
                storeBE16(&valueBytes[at], static_cast<std::uint16_t>(v));
                at += 2;
            }
        }
    }
    if (const auto line = in.line(); !line || !line->starts_with("Data_End"))
        return icErrFile;
    return icOk;
}

icStatus WriteClutTextFile(const iccClut& clut, const fs::path& path) {
    try {
        icTextOut out;
        if (icStatus s = formatClut(clut, out); s != icOk)
            return s;
        return writeTextFile(path, out.str());
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
}

icStatus ExportMlutFolder(const iccMlutType& tag, const fs::path& folder) {
    try {
        std::error_code ec;
        fs::create_directory(folder, ec);
        {
            char signature[5];
            SignatureToText(signature, tag.typeSignature());
            const auto count = [](const std::optional<std::vector<iccCurveElement>>& curves) {
                return curves ? curves->size() : 0;
            };
            icTextOut out;
            out.text("icTagTypeSignature: ").text(signature).ch('\n');
            out.text("Tag_Bytes: ").u(tag.rawSize()).ch('\n');
            out.text("InputChan: ").u(tag.inputChannels).ch('\n');
            out.text("OutputChan: ").u(tag.outputChannels).ch('\n');
            out.text("Offset_BCurve: ").u(tag.offsetB).ch('\n');
            out.text("Offset_Matrix: ").u(tag.offsetMatrix).ch('\n');
            out.text("Offset_MCurve: ").u(tag.offsetM).ch('\n');
            out.text("Offset_CLut: ").u(tag.offsetClut).ch('\n');
            out.text("Offset_ACurve: ").u(tag.offsetA).ch('\n');
            out.text("Number_BCurve: ").u(count(tag.bCurves)).ch('\n');
            out.text("Number_MCurve: ").u(count(tag.mCurves)).ch('\n');
            out.text("Number_ACurve: ").u(count(tag.aCurves)).ch('\n');
            if (icStatus s = writeTextFile(folder / kHeaderFile, out.str()); s != icOk)
                return s;
        }
        for (auto [set, curves] : curveSets(tag)) {
            if (!*curves)
                continue;
            for (std::size_t i = 0; i < (*curves)->size(); ++i)
                if (icStatus s =
                        WriteCurveElementFile((**curves)[i], folder / curveFileName(set, i));
                    s != icOk)
                    return s;
        }
        if (tag.clut) {
            if (icStatus s = WriteClutTextFile(*tag.clut, folder / kClutFile); s != icOk)
                return s;
        }
        if (tag.matrix) {
            icTextOut out;
            for (std::size_t i = 0; i < tag.matrix->size(); ++i)
                out.u(i).ch(' ').f(s15Fixed16ToDouble((*tag.matrix)[i])).ch('\n');
            if (icStatus s = writeTextFile(folder / kMatrixFile, out.str()); s != icOk)
                return s;
        }
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    return icOk;
}

icStatus ImportMlutFiles(iccMlutType& tag, icExchangeSource& files) {
    try {
        return importFiles(tag, files);
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
}

icStatus ImportMlutFolder(iccMlutType& tag, const fs::path& folder) {
    return withFolder(folder,
                      [&tag](icExchangeSource& files) { return ImportMlutFiles(tag, files); });
}
