// One input of the exchange-file fuzzer: the readers of curve text files, lut8/lut16 folders,
// CLUT text files and lutAToB/lutBToA folders, all fed from memory.
//
// Input layout: the first byte picks the reader (its value modulo 6), the rest is split at NUL
// bytes into the files that reader opens, in this order:
//   0  a curve element file           1  a 'curv' file        2  a 'para' file
//   3  a CLUT file
//   4  lut8 and 5  lut16 folders:      header.txt, matrix.txt, InputCurves.txt,
//                                      OutputCurves.txt, clut.txt
//   (4 also) lutAToB/lutBToA folders:  header.txt, matrix.txt, clut.txt, then BCurve_0.txt,
//                                      MCurve_0.txt, ACurve_0.txt, BCurve_1.txt, ...
// A missing part is a missing file. Whatever a reader accepts is written out again and must read
// back: the writers and readers are each other's oracle. The text must even come back the same,
// except for a 'para', whose negative parameters move one unit toward zero on every reading.
#include "lutio/curve_text.h"
#include "lutio/exchange_files.h"
#include "lutio/lut_folder.h"
#include "lutio/mlut_folder.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace {

std::vector<std::string_view> parts(std::string_view rest) {
    std::vector<std::string_view> out;
    for (;;) {
        const std::size_t end = rest.find('\0');
        out.push_back(rest.substr(0, end));
        if (end == std::string_view::npos)
            return out;
        rest.remove_prefix(end + 1);
    }
}

// A text the writer produced must read back, into an object that writes the same text when
// `sameText` is set.
template <class Object, class Format, class Parse>
void expectStableText(const Object& object, Format format, Parse parse, bool sameText = true) {
    std::string text, again;
    if (format(object, text) != icOk)
        return;
    Object reread;
    if (parse(reread, text) != icOk || format(reread, again) != icOk || (sameText && again != text))
        std::abort();
}

void curveElement(std::string_view text) {
    iccCurveElement element;
    if (parseCurveElementText(element, text) != icOk)
        return;
    if (const iccCurveType* curve = element.curve())
        expectStableText(*curve, formatCurveText, parseCurveText);
    else if (const iccParametricCurveType* para = element.parametric())
        expectStableText(*para, formatParametricText, parseParametricText, false);
}

void lutFolders(const std::vector<std::string_view>& files) {
    static constexpr const char* kLutNames[] = {"header.txt", "matrix.txt", "InputCurves.txt",
                                                "OutputCurves.txt", "clut.txt"};
    icMemorySource lut;
    for (std::size_t i = 0; i < files.size() && i < std::size(kLutNames); ++i)
        lut.files[kLutNames[i]] = std::string(files[i]);
    iccLut8Type lut8;
    if (ImportLut8Files(lut8, lut) == icOk)
        (void)lut8.getData();
    iccLut16Type lut16;
    if (ImportLut16Files(lut16, lut) == icOk)
        (void)lut16.getData();

    // The same parts as an 'mAB '/'mBA ' folder.
    icMemorySource mlut;
    static constexpr const char* kMlutNames[] = {"header.txt", "matrix.txt", "clut.txt"};
    static constexpr const char* kSets[] = {"B", "M", "A"};
    for (std::size_t i = 0; i < files.size(); ++i) {
        const std::string name = i < 3 ? std::string(kMlutNames[i])
                                       : std::string(kSets[(i - 3) % 3]) + "Curve_" +
                                             std::to_string((i - 3) / 3) + ".txt";
        mlut.files[name] = std::string(files[i]);
    }
    iccMlutType table;
    if (ImportMlutFiles(table, mlut) == icOk) {
        (void)table.getData();
        if (table.clut)
            expectStableText(*table.clut, formatClutText, parseClutText);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const std::string_view rest(reinterpret_cast<const char*>(data) + 1, size - 1);
    switch (data[0] % 6) {
    case 0:
        curveElement(rest);
        break;
    case 1: {
        iccCurveType curve;
        if (parseCurveText(curve, rest) == icOk)
            expectStableText(curve, formatCurveText, parseCurveText);
        break;
    }
    case 2: {
        iccParametricCurveType para;
        if (parseParametricText(para, rest) == icOk)
            expectStableText(para, formatParametricText, parseParametricText, false);
        break;
    }
    case 3: {
        iccClut clut;
        if (parseClutText(clut, rest) == icOk)
            expectStableText(clut, formatClutText, parseClutText);
        break;
    }
    default:
        lutFolders(parts(rest));
        break;
    }
    return 0;
}
