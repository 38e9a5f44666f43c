#include "lutio/lut_folder.h"

#include "lutio/exchange_text.h"

#include <algorithm>
#include <array>
#include <new>
#include <optional>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kHeaderFile = "header.txt";
constexpr std::string_view kMatrixFile = "matrix.txt";
constexpr std::string_view kInputFile = "InputCurves.txt";
constexpr std::string_view kOutputFile = "OutputCurves.txt";
constexpr std::string_view kClutFile = "clut.txt";

template <class Lut> constexpr bool isWide() {
    return sizeof(typename Lut::value_type) == 2;
}

// The header's labels as they are compared on import: the written label without its colon, and
// for Output_Entries only its first 13 characters, a looseness that folders in the wild rely on.
constexpr std::array<std::string_view, 6> kLut16Labels = {
    "Tag_Bytes", "InputChan", "OutputChan", "Input_Entries", "Output_Entrie", "Clut_Size"};
constexpr std::array<std::string_view, 4> kLut8Labels = {"Tag_Bytes", "InputChan", "OutputChan",
                                                         "Clut_Size"};

// Grid points of the CLUT: one row of output values each. A table without outputs has none.
template <class Lut> std::uint32_t clutRows(const Lut& tag) {
    return tag.outputChannels() == 0 ? 0 : tag.clutValueCount() / tag.outputChannels();
}

// Rows of "%u " numbers: the row index, then `columns` values, then a line feed.
template <class Value, class ValueAt>
void tableLines(icTextOut& out, std::uint32_t rows, std::uint32_t columns, ValueAt valueAt) {
    // At most: the widest index, the widest value, each with its blank, and the line feed; so
    // the buffer never has to move.
    constexpr std::size_t valueWidth = sizeof(Value) == 2 ? 6 : 4;
    std::size_t indexWidth = 2;
    for (std::uint32_t r = rows; r >= 10; r /= 10)
        ++indexWidth;
    out.reserve(out.size() + std::size_t(rows) * (indexWidth + 1 + valueWidth * columns));
    for (std::uint32_t row = 0; row < rows; ++row) {
        out.u(row).ch(' ');
        for (std::uint32_t column = 0; column < columns; ++column)
            out.u(valueAt(row, column)).ch(' ');
        out.ch('\n');
    }
}

template <class Lut> icStatus exportFolder(const Lut& tag, const fs::path& folder) {
    using Value = typename Lut::value_type;
    if (!tag.tablesMatchDimensions())
        return icErrInvalidArg;
    try {
        // An existing folder is fine: its five files are overwritten and anything else stays.
        std::error_code ec;
        fs::create_directory(folder, ec);
        // One buffer for all five files; it grows to the largest.
        icTextOut out;
        const auto write = [&folder, &out](std::string_view name) {
            const icStatus s = writeTextFile(folder / name, out.str());
            out.clear();
            return s;
        };
        {
            char signature[5];
            SignatureToText(signature, tag.ownSignature());
            out.text("icTagTypeSignature: ").text(signature).ch('\n');
            out.text("Tag_Bytes: ").u(tag.rawSize()).ch('\n');
            out.text("InputChan: ").u(tag.inputChannels()).ch('\n');
            out.text("OutputChan: ").u(tag.outputChannels()).ch('\n');
            if constexpr (isWide<Lut>()) {
                out.text("Input_Entries: ").u(tag.inputEntries()).ch('\n');
                out.text("Output_Entries: ").u(tag.outputEntries()).ch('\n');
            }
            out.text("Clut_Size: ").u(tag.gridPoints()).ch('\n');
            if (icStatus s = write(kHeaderFile); s != icOk)
                return s;
        }
        for (std::uint32_t i = 0; i < tag.matrix.size(); ++i)
            out.u(i).ch(' ').f(tag.matrixValue(i)).ch('\n');
        if (icStatus s = write(kMatrixFile); s != icOk)
            return s;
        // Tables lie channel after channel; a line holds one entry of every channel.
        const auto channelTable = [](const std::vector<Value>& tables, std::uint32_t entries) {
            return [&tables, entries](std::uint32_t i, std::uint32_t c) {
                return tables[std::size_t(c) * entries + i];
            };
        };
        tableLines<Value>(out, tag.inputEntries(), tag.inputChannels(),
                          channelTable(tag.inputTables, tag.inputEntries()));
        if (icStatus s = write(kInputFile); s != icOk)
            return s;
        tableLines<Value>(out, tag.outputEntries(), tag.outputChannels(),
                          channelTable(tag.outputTables, tag.outputEntries()));
        if (icStatus s = write(kOutputFile); s != icOk)
            return s;
        const std::uint32_t outputs = tag.outputChannels();
        tableLines<Value>(out, clutRows(tag), outputs, [&tag, outputs](auto k, auto o) {
            return tag.clut[std::size_t(k) * outputs + o];
        });
        if (icStatus s = write(kClutFile); s != icOk)
            return s;
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    return icOk;
}

struct LutHeader {
    std::uint32_t tagBytes = 0;
    std::uint32_t inputs = 0;
    std::uint32_t outputs = 0;
    std::uint32_t inputEntries = 256;
    std::uint32_t outputEntries = 256;
    std::uint32_t grid = 0;
};

template <class Lut> icStatus readHeader(icExchangeSource& files, LutHeader& header) {
    std::string_view text;
    if (icStatus s = files.read(kHeaderFile, text); s != icOk)
        return s;
    icTextIn in(text);
    // The signature word is packed from its first four characters.
    const auto type = signatureLine(in);
    if (!type || textToSig(*type) != Lut::kSignature)
        return icErrFile;
    std::array<std::uint32_t, kLut16Labels.size()> values{};
    std::span<const std::string_view> labels = kLut8Labels;
    if constexpr (isWide<Lut>())
        labels = kLut16Labels;
    if (!labelledNumbers(in, labels, values))
        return icErrFile;
    header.tagBytes = values[0];
    header.inputs = values[1];
    header.outputs = values[2];
    if constexpr (isWide<Lut>()) {
        header.inputEntries = values[3];
        header.outputEntries = values[4];
        header.grid = values[5];
    } else {
        header.grid = values[3];
    }
    return icOk;
}

// base^exponent, saturating far above anything a tag can hold.
std::uint64_t saturatedPower(std::uint64_t base, std::uint32_t exponent) {
    constexpr std::uint64_t kSaturated = std::uint64_t(1) << 40;
    std::uint64_t value = 1;
    for (std::uint32_t i = 0; i < exponent && value != 0; ++i)
        value = std::min(value * base, kSaturated);
    return value;
}

// The shortest text that holds `numbers` numbers: one digit and one separator each.
constexpr std::uint64_t minimumText(std::uint64_t numbers) {
    return numbers == 0 ? 0 : 2 * numbers - 1;
}

// Large tables are allocated only when the folder's table files can fill them (see
// kUnbackedTableBytes). Small ones are set up as the header says, whatever the files hold.
template <class Lut> bool tablesBacked(icExchangeSource& files, const LutHeader& h) {
    constexpr std::uint64_t width = sizeof(typename Lut::value_type);
    // Dimensions the encoding cannot hold are refused by the re-initialisation as well.
    if (h.inputs > Lut::kMaxDimension || h.outputs > Lut::kMaxDimension ||
        h.grid > Lut::kMaxDimension || h.inputEntries > UINT16_MAX || h.outputEntries > UINT16_MAX)
        return true;
    const std::uint64_t nodes = saturatedPower(h.grid, h.inputs);
    const std::uint64_t size =
        Lut::kTablesOffset + width * (std::uint64_t(h.inputs) * h.inputEntries + nodes * h.outputs +
                                      std::uint64_t(h.outputs) * h.outputEntries);
    // Beyond 32 bits the re-initialisation refuses the dimensions without allocating.
    if (size <= kUnbackedTableBytes || size > UINT32_MAX)
        return true;
    const auto holds = [&files](std::string_view name, std::uint64_t rows, std::uint64_t columns) {
        const auto bytes = files.size(name);
        return bytes && *bytes >= minimumText(rows * (columns + 1));
    };
    return holds(kInputFile, h.inputEntries, h.inputs) &&
           holds(kOutputFile, h.outputEntries, h.outputs) &&
           holds(kClutFile, h.outputs == 0 ? 0 : nodes, h.outputs);
}

// Rows [row, end) of a table file, each its index and then `columns` numbers, read as a free
// stream of numbers from the front of `text`, which is advanced past them. `store(row, numbers)`
// takes each row's numbers and stores each cut to the table's width, without a range check.
// False at the first number that does not read (an index beyond 32 bits among them) or index
// that does not match.
template <class Store>
bool scanRows(std::string_view& text, std::uint32_t row, std::uint32_t end, std::uint32_t columns,
              Store& store) {
    // A row holds at most 255 values: the channel counts of both table types are single bytes.
    std::array<std::uint32_t, 256> numbers;
    const auto wanted = std::span(numbers).first(std::min<std::size_t>(columns + 1, 256));
    for (; row < end; ++row) {
        if (scanU32s(text, wanted) != wanted.size() || numbers[0] != row)
            return false;
        store(row, wanted.subspan(1));
    }
    return true;
}

// Large table files are read in parts, one per core, each from a line feed on: a part takes its
// first number for the index of its first row and reads up to the next part's. Where every part
// holds exactly its rows, the parts read as the whole stream does; anything else (rows that span
// line feeds, a malformed number) reads the whole stream again, and that result stands.
constexpr std::size_t kMinPartBytes = 1u << 20;
constexpr std::size_t kMaxParts = 8;

template <class Store>
icStatus readRows(icExchangeSource& files, std::string_view name, std::uint32_t rows,
                  std::uint32_t columns, Store store) {
    std::string_view text;
    if (icStatus s = files.read(name, text); s != icOk)
        return s;
    struct Part {
        std::string_view text;
        std::uint32_t row, end;
        bool read = false;
    };
    std::vector<Part> parts;
    const std::size_t wanted =
        std::min<std::size_t>({std::max(1u, std::thread::hardware_concurrency()), kMaxParts,
                               text.size() / kMinPartBytes});
    std::size_t begin = 0;
    std::uint32_t row = 0;
    for (std::size_t p = 1; p < wanted; ++p) {
        const std::size_t cut = text.find('\n', std::max(begin, text.size() / wanted * p));
        if (cut == std::string_view::npos)
            break;
        std::string_view next = text.substr(cut + 1);
        std::uint32_t index = 0;
        if (!scanU32(next, index) || index <= row || index >= rows)
            break;
        parts.push_back({text.substr(begin, cut + 1 - begin), row, index});
        begin = cut + 1;
        row = index;
    }
    parts.push_back({text.substr(begin), row, rows});
    const auto readPart = [&](Part& part) {
        std::string_view rest = part.text;
        part.read = scanRows(rest, part.row, part.end, columns, store) &&
                    (&part == &parts.back() || std::all_of(rest.begin(), rest.end(), isScanSpace));
    };
    if (parts.size() > 1) {
        std::vector<std::jthread> helpers;
        helpers.reserve(parts.size() - 1);
        std::size_t p = 1;
        try {
            for (; p < parts.size(); ++p)
                helpers.emplace_back(readPart, std::ref(parts[p]));
        } catch (const std::system_error&) {
            // No more threads: the remaining parts are read here.
        }
        for (; p < parts.size(); ++p)
            readPart(parts[p]);
        readPart(parts[0]);
        helpers.clear(); // joins
        if (std::all_of(parts.begin(), parts.end(), [](const Part& part) { return part.read; }))
            return icOk;
    }
    return scanRows(text, 0, rows, columns, store) ? icOk : icErrFile;
}

template <class Value>
icStatus readChannelTables(icExchangeSource& files, std::string_view name, std::uint32_t channels,
                           std::uint32_t entries, std::vector<Value>& tables) {
    tables.assign(std::size_t(channels) * entries, 0);
    return readRows(files, name, entries, channels,
                    [&tables, entries](std::uint32_t i, std::span<const std::uint32_t> values) {
                        for (std::size_t c = 0; c < values.size(); ++c)
                            tables[c * entries + i] = static_cast<Value>(values[c]);
                    });
}

template <class Lut>
icStatus importFiles(Lut& tag, icExchangeSource& files, std::uint32_t* tagBytes) {
    using Value = typename Lut::value_type;
    try {
        LutHeader h;
        if (icStatus s = readHeader<Lut>(files, h); s != icOk)
            return s;
        if (tagBytes)
            *tagBytes = h.tagBytes;
        if (!tablesBacked<Lut>(files, h))
            return icErrFile;
        icStatus s = icOk;
        if constexpr (isWide<Lut>())
            s = tag.initialize(h.inputs, h.inputEntries, h.outputs, h.outputEntries, h.grid);
        else
            s = tag.initialize(h.inputs, h.outputs, h.grid);
        if (s != icOk)
            return s;
        // A header that disagrees with itself leaves the fresh tables; the viewer's size
        // comparison is what refuses such a folder.
        if (tag.rawSize() != h.tagBytes)
            return icOk;

        std::vector<Value> values;
        if ((s = readChannelTables(files, kInputFile, tag.inputChannels(), tag.inputEntries(),
                                   values)) != icOk ||
            (s = tag.setInputTables(values)) != icOk)
            return s;
        if ((s = readChannelTables(files, kOutputFile, tag.outputChannels(), tag.outputEntries(),
                                   values)) != icOk ||
            (s = tag.setOutputTables(values)) != icOk)
            return s;

        {
            std::string_view text;
            if ((s = files.read(kMatrixFile, text)) != icOk)
                return s;
            icTextIn in(text);
            std::array<double, 9> matrix{};
            for (std::uint64_t n = 0; n < matrix.size(); ++n) {
                std::uint64_t index = 0;
                if (!in.u64(index) || index != n || !in.real(matrix[n]))
                    return icErrFile;
            }
            tag.setMatrix(matrix);
        }

        // Read straight into the fresh CLUT, which holds zeros again when the file fails, and
        // then written into the bytes with everything else.
        const std::uint32_t outputs = tag.outputChannels();
        std::vector<Value>& clut = tag.clut;
        if ((s = readRows(files, kClutFile, clutRows(tag), outputs,
                          [&clut, outputs](std::uint32_t k, std::span<const std::uint32_t> values) {
                              std::transform(values.begin(), values.end(),
                                             clut.begin() + std::ptrdiff_t(k) * outputs,
                                             [](std::uint32_t v) { return static_cast<Value>(v); });
                          })) != icOk) {
            std::fill(clut.begin(), clut.end(), Value(0));
            return s;
        }
        return tag.rebuild();
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
}

} // namespace

void SignatureToText(char (&text)[5], icSignature signature) {
    for (int i = 0; i < 4; ++i)
        text[i] = static_cast<char>(signature >> (24 - 8 * i));
    text[4] = '\0';
}

icStatus ExportLut8Folder(const iccLut8Type& tag, const fs::path& folder) {
    return exportFolder(tag, folder);
}

icStatus ExportLut16Folder(const iccLut16Type& tag, const fs::path& folder) {
    return exportFolder(tag, folder);
}

icStatus ImportLut8Files(iccLut8Type& tag, icExchangeSource& files, std::uint32_t* tagBytes) {
    return importFiles(tag, files, tagBytes);
}

icStatus ImportLut16Files(iccLut16Type& tag, icExchangeSource& files, std::uint32_t* tagBytes) {
    return importFiles(tag, files, tagBytes);
}

icStatus ImportLut8Folder(iccLut8Type& tag, const fs::path& folder, std::uint32_t* tagBytes) {
    return withFolder(folder,
                      [&](icExchangeSource& files) { return importFiles(tag, files, tagBytes); });
}

icStatus ImportLut16Folder(iccLut16Type& tag, const fs::path& folder, std::uint32_t* tagBytes) {
    return withFolder(folder,
                      [&](icExchangeSource& files) { return importFiles(tag, files, tagBytes); });
}
