// The "Import/Export CLUT" folder dialog without widgets: its modes, the file names it lists
// and what OK does to the shared data folder.
#pragma once

#include "document/settings_model.h"

#include <cstdint>
#include <string_view>

inline constexpr std::string_view kDumpClutTitle = "Import/Export CLUT";
// The lut8/lut16 viewer opens the dialog in mode 2, the lutAToB/lutBToA viewer in mode 4; every
// mode from 4 on lists the lutAToB/lutBToA files.
inline constexpr std::uint32_t kClutFolderLutMode = 2;
inline constexpr std::uint32_t kClutFolderMlutMode = 4;

// The rows of the dialog's file list. They only tell the user what kind of files a folder holds:
// the capitalised names are the dialog's own look, not the exact names the exchange writes.
struct icClutFolderLabels {
    std::string_view header = "header.txt";
    std::string_view firstCurveRow;
    std::string_view firstCurve;
    std::string_view clut = "CLUT.txt";
    std::string_view matrix = "Matrix.txt";
    std::string_view secondCurveRow;
    std::string_view secondCurve;
    // The M-curve row keeps its title in both modes; only its file text changes.
    std::string_view mCurveRow = "\"M\" Curve";
    std::string_view mCurve;
};

constexpr icClutFolderLabels clutFolderLabels(std::uint32_t mode) {
    icClutFolderLabels labels;
    if (mode >= kClutFolderMlutMode) {
        labels.firstCurveRow = "\"B\" Curve";
        labels.firstCurve = "BCurve.txt";
        labels.secondCurveRow = "\"A\" Curve";
        labels.secondCurve = "ACurve.txt";
        labels.mCurve = "MCurve.txt";
    } else {
        labels.firstCurveRow = "Input Curve";
        labels.firstCurve = "InputCurves.txt";
        labels.secondCurveRow = "Output Curve";
        labels.secondCurve = "OutputCurves.txt";
        labels.mCurve = "Not Available";
    }
    return labels;
}

// OK: the folder becomes the shared data folder, cut to its longest length, so that the next
// export or import (in either viewer) proposes it. The export or import now running uses the
// folder in full.
inline void acceptClutFolder(std::string_view folder) {
    DataFolder::set(folder);
}
