#include "lutio/exchange_procedures.h"

#include "lutio/curve_text.h"
#include "lutio/lut_folder.h"
#include "lutio/mlut_folder.h"
#include "tagtypes/curve_type.h"
#include "tagtypes/lut16_type.h"
#include "tagtypes/lut_atob_type.h"

#include <new>
#include <type_traits>

namespace {

constexpr std::string_view kExportFailed = "Failed in exporting...\n";
constexpr std::string_view kImportFailed = "Failed in importing files...\n";
constexpr std::string_view kMismatch =
    "Error: Tag signatures are mismatched or the tag sizes are different.\n";
constexpr std::string_view kLutUpdateFailed = "Error in updating LUT. Please exit the program.\n";
constexpr std::string_view kMlutUpdateFailed =
    "Error in updating the LUT. Please exit the program!\n";
// The curve viewer has always used the save wording for a failed read as well.
constexpr std::string_view kCurveFileFailed = "Error in saving file!\n";

void box(Presenter& presenter, std::string_view text) {
    presenter.messageBox(icBoxKind::info, kCaption, text);
}

// A success box: the text, the path right after it, and a line feed.
icStatus success(Presenter& presenter, std::string_view text, const std::string& path) {
    try {
        box(presenter, std::string(text) + path + "\n");
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    return icOk;
}

template <class Lut> std::string_view lutName() {
    return std::is_same_v<Lut, iccLut8Type> ? "Lut8" : "Lut16";
}

template <class Lut>
icStatus importLut(Lut& tag, icExchangeSource& files, std::uint32_t& tagBytes) {
    if constexpr (std::is_same_v<Lut, iccLut8Type>)
        return ImportLut8Files(tag, files, &tagBytes);
    else
        return ImportLut16Files(tag, files, &tagBytes);
}

template <class Lut>
icStatus exportLut(Presenter& presenter, const Lut& tag, const std::string& folder) {
    icStatus s = icOk;
    if constexpr (std::is_same_v<Lut, iccLut8Type>)
        s = ExportLut8Folder(tag, folder);
    else
        s = ExportLut16Folder(tag, folder);
    if (s != icOk) {
        box(presenter, kExportFailed);
        return s;
    }
    return success(
        presenter,
        "Successfully export a " + std::string(lutName<Lut>()) + " tag to folder:", folder);
}

// The size a scratch table's content takes laid out without gaps: for a lut8/lut16 the size of
// its dimensions, which its import sets; for an mlut its elements one after another, as a rebuild
// lays them out (its import keeps the folder's offsets and Tag_Bytes, gaps included).
template <class Lut> icStatus contentSize(Lut& scratch, std::uint32_t& size) {
    size = scratch.rawSize();
    return icOk;
}
icStatus contentSize(iccMlutType& scratch, std::uint32_t& size) {
    const icStatus s = scratch.rebuild();
    size = scratch.rawSize();
    return s;
}

// The two-pass import shared by both kinds of lookup table, with one comparison: the scratch
// table's signature and content size against the shown tag's signature and size as loaded, so a
// shown tag whose elements leave a gap is refused. The Tag_Bytes the folder states must be that
// size too: a lut8/lut16 header whose dimensions disagree with it is imported without its
// tables, and an mlut import would otherwise resize the shown tag.
template <class Tag, class Import>
icStatus importTwice(Presenter& presenter, Tag& tag, Tag& scratch, const std::string& folder,
                     Import import, std::string_view updateFailed) {
    const std::uint32_t loadedSize = tag.rawSize();
    return withFolder(folder, [&](icFolderSource& files) {
        std::uint32_t stated = 0, size = 0;
        if (icStatus s = import(scratch, files, stated);
            s != icOk || (s = contentSize(scratch, size)) != icOk) {
            box(presenter, kImportFailed);
            return s;
        }
        if (scratch.typeSignature() != tag.typeSignature() || size != loadedSize ||
            stated != loadedSize) {
            box(presenter, kMismatch);
            return icErrBadProfile;
        }
        // The second pass. A lut8/lut16 folder that still holds the bytes the scratch was read
        // from would read into the same table again (an import re-initialises its tag from the
        // folder alone), so the shown tag takes the scratch's. An mlut scratch was laid out again
        // to be measured, so its folder is read anew.
        if constexpr (!std::is_same_v<Tag, iccMlutType>) {
            if (files.unchanged()) {
                try {
                    tag = scratch;
                    return icOk;
                } catch (const std::bad_alloc&) {
                    box(presenter, updateFailed);
                    return icErrNoMemory;
                }
            }
        }
        icFolderSource again(folder);
        if (icStatus s = import(tag, again, stated); s != icOk) {
            box(presenter, updateFailed);
            return s;
        }
        return icOk;
    });
}

template <class Lut> icStatus lutImport(Presenter& presenter, Lut& tag, const std::string& folder) {
    Lut scratch;
    const icStatus s =
        importTwice(presenter, tag, scratch, folder, importLut<Lut>, kLutUpdateFailed);
    if (s != icOk)
        return s;
    try {
        return success(
            presenter,
            "Successfully import a " + std::string(lutName<Lut>()) + " tag from folder:", folder);
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
}

} // namespace

icStatus runLutExport(Presenter& presenter, const iccMftLut& tag, const std::string& folder) {
    try {
        return visitMftLut(tag, [&](const auto& lut) { return exportLut(presenter, lut, folder); });
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
}

icStatus runLutImport(Presenter& presenter, iccMftLut& tag, const std::string& folder) {
    return visitMftLut(tag, [&](auto& lut) { return lutImport(presenter, lut, folder); });
}

icStatus runMlutExport(Presenter& presenter, const iccMlutType& tag, const std::string& folder) {
    if (icStatus s = ExportMlutFolder(tag, folder); s != icOk) {
        box(presenter, kExportFailed);
        return s;
    }
    return success(presenter, "Successfully export MLUT to folder:", folder);
}

icStatus runMlutImport(Presenter& presenter, iccMlutType& tag, const std::string& folder) {
    // The scratch table takes whichever of the two signatures the folder names; the comparison
    // then refuses one that differs from the shown tag's.
    iccMlutType scratch;
    const auto import = [](iccMlutType& into, icExchangeSource& files, std::uint32_t& stated) {
        const icStatus s = ImportMlutFiles(into, files);
        stated = into.rawSize(); // the folder's Tag_Bytes, which the import encodes into
        return s;
    };
    if (icStatus s = importTwice(presenter, tag, scratch, folder, import, kMlutUpdateFailed);
        s != icOk)
        return s;
    return success(presenter, "Successfully import MLUT from folder:", folder);
}

icStatus runCurveExport(Presenter& presenter, const iccCurveElement& curve,
                        const std::string& path) {
    if (icStatus s = WriteCurveElementFile(curve, path); s != icOk) {
        box(presenter, kCurveFileFailed);
        return s;
    }
    return icOk;
}

icStatus runCurveImport(Presenter& presenter, iccCurveElement& curve, const std::string& path) {
    // Read twice, first into a scratch curve, so that a bad file leaves the shown curve as it was.
    const auto readTwice = [&](auto& shown, auto scratch, auto read) {
        if (icStatus s = read(scratch, path); s != icOk) {
            box(presenter, kCurveFileFailed);
            return s;
        }
        if (icStatus s = read(shown, path); s != icOk) {
            box(presenter, kCurveFileFailed);
            return s;
        }
        return icOk;
    };
    if (iccCurveType* shown = curve.curve())
        return readTwice(*shown, iccCurveType(), [](iccCurveType& c, const std::string& p) {
            return ReadCurveTextFile(c, p);
        });
    if (iccParametricCurveType* shown = curve.parametric())
        return readTwice(*shown, iccParametricCurveType(),
                         [](iccParametricCurveType& c, const std::string& p) {
                             return ReadParametricTextFile(c, p);
                         });
    box(presenter, kCurveFileFailed);
    return icErrGeneral;
}
