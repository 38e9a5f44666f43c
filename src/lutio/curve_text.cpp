#include "lutio/curve_text.h"

#include "lutio/exchange_files.h"
#include "lutio/exchange_text.h"

#include <algorithm>
#include <new>
#include <vector>

namespace {

// A file's first words, compared over the characters given (so "Count" accepts "Count:" and
// "Counts", while "Type:" demands its colon).
constexpr std::string_view kCurvType = "Data_Type: curv";
constexpr std::string_view kParaType = "Data_Type: para";
constexpr std::string_view kAnyType = "Data_Type:";

template <class Format> icStatus formatted(Format format) {
    try {
        return format();
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
}

template <class Curve, class Format>
icStatus writeFile(const Curve& curve, const std::filesystem::path& path, Format format) {
    return formatted([&] {
        std::string text;
        if (icStatus s = format(curve, text); s != icOk)
            return s;
        return writeTextFile(path, text);
    });
}

template <class Curve, class Parse>
icStatus readFile(Curve& curve, const std::filesystem::path& path, Parse parse) {
    return formatted([&] {
        std::string text;
        if (icStatus s = readTextFile(path, text); s != icOk)
            return s;
        return parse(curve, text);
    });
}

} // namespace

icStatus formatCurveText(const iccCurveType& curve, std::string& text) {
    return formatted([&] {
        icTextOut out;
        const std::uint32_t count = curve.count();
        out.reserve(32 + 14 * std::size_t(std::min<std::size_t>(count, curve.entries().size())));
        out.text("Data_Type: curv\nCount: ").u(count).ch('\n');
        if (count == 1) {
            out.f(curve.gamma()).ch('\n');
        } else if (count >= 2) {
            const auto& entries = curve.entries();
            for (std::size_t i = 0; i < std::min<std::size_t>(count, entries.size()); ++i)
                out.u(i).ch(' ').u(entries[i]).ch('\n');
        }
        text = out.str();
        return icOk;
    });
}

icStatus formatParametricText(const iccParametricCurveType& curve, std::string& text) {
    return formatted([&] {
        icTextOut out;
        // The count as the object holds it: an unknown type's -1 prints as "%u" prints it.
        out.text("Data_Type: para\nType: ").u(curve.functionType).ch('\n');
        out.text("Count: ").u(static_cast<std::uint32_t>(curve.parameterCount)).ch('\n');
        const std::size_t n = std::min<std::size_t>(
            curve.parameters.size(), static_cast<std::size_t>(std::max(curve.parameterCount, 0)));
        for (std::size_t i = 0; i < n; ++i)
            out.u(i).ch(' ').f(curve.parameters[i]).ch('\n');
        text = out.str();
        return icOk;
    });
}

icStatus parseCurveText(iccCurveType& curve, std::string_view text) {
    return formatted([&]() -> icStatus {
        icTextIn in(text);
        const auto first = in.line();
        if (!first || !first->starts_with(kAnyType))
            return icErrFile;
        std::uint32_t count = 0;
        if (!labelledNumber(in.line(), "Count", count) || count > kMaxCurveFileEntries)
            return icErrFile;
        if (count == 0)
            return curve.build(std::span<const double>());
        // After the two lines the values are a free stream of tokens: line breaks and blanks
        // between them do not matter, the index before each value does.
        std::vector<double> values(count);
        if (count == 1) {
            if (!in.real(values[0]))
                return icErrFile;
        } else {
            for (std::uint32_t n = 0; n < count; ++n) {
                std::uint64_t index = 0;
                if (!in.u64(index) || index != n || !in.real(values[n]))
                    return icErrFile;
            }
        }
        return curve.build(values);
    });
}

icStatus parseParametricText(iccParametricCurveType& curve, std::string_view text) {
    return formatted([&]() -> icStatus {
        icTextIn in(text);
        const auto first = in.line();
        if (!first || !first->starts_with(kParaType))
            return icErrFile;
        std::uint32_t type = 0, count = 0;
        if (!labelledNumber(in.line(), "Type:", type) || type > UINT16_MAX)
            return icErrFile;
        if (!labelledNumber(in.line(), "Count:", count) || count < 1 ||
            count > kMaxParametricFileParameters)
            return icErrFile;
        // Unlike a 'curv' file, each parameter must stand on a line of its own.
        std::vector<double> values(count);
        for (std::uint32_t n = 0; n < count; ++n) {
            const auto line = in.line();
            if (!line)
                return icErrFile;
            std::string_view rest = *line;
            std::uint64_t index = 0;
            if (!scanU64(rest, index) || index != n || !scanDouble(rest, values[n]))
                return icErrFile;
        }
        return curve.build(static_cast<std::uint16_t>(type), static_cast<std::int32_t>(count),
                           values);
    });
}

icStatus parseCurveElementText(iccCurveElement& element, std::string_view text) {
    element.clear();
    const auto first = icTextIn(text).line();
    if (!first)
        return icErrFile;
    if (first->starts_with(kCurvType)) {
        if (icStatus s = element.create(iccCurveType::kSignature); s != icOk)
            return s;
        return parseCurveText(*element.curve(), text);
    }
    if (first->starts_with(kParaType)) {
        if (icStatus s = element.create(iccParametricCurveType::kSignature); s != icOk)
            return s;
        return parseParametricText(*element.parametric(), text);
    }
    return icErrFile;
}

icStatus WriteCurveTextFile(const iccCurveType& curve, const std::filesystem::path& path) {
    return writeFile(curve, path, formatCurveText);
}

icStatus WriteParametricTextFile(const iccParametricCurveType& curve,
                                 const std::filesystem::path& path) {
    return writeFile(curve, path, formatParametricText);
}

icStatus ReadCurveTextFile(iccCurveType& curve, const std::filesystem::path& path) {
    return readFile(curve, path, parseCurveText);
}

icStatus ReadParametricTextFile(iccParametricCurveType& curve, const std::filesystem::path& path) {
    return readFile(curve, path, parseParametricText);
}

icStatus WriteCurveElementFile(const iccCurveElement& element, const std::filesystem::path& path) {
    if (const iccCurveType* curve = element.curve())
        return WriteCurveTextFile(*curve, path);
    if (const iccParametricCurveType* para = element.parametric())
        return WriteParametricTextFile(*para, path);
    return icErrGeneral;
}

icStatus ReadCurveElementFile(iccCurveElement& element, const std::filesystem::path& path) {
    element.clear();
    return readFile(element, path, parseCurveElementText);
}
