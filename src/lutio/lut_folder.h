// lut8 ('mft1') and lut16 ('mft2') tags as a folder of five text files, for editing the matrix,
// the input and output tables and the CLUT with any text editor or spreadsheet:
//
//   header.txt        icTagTypeSignature, Tag_Bytes, InputChan, OutputChan,
//                     Input_Entries and Output_Entries (lut16 only), Clut_Size
//   matrix.txt        "i value" for the nine elements, row by row
//   InputCurves.txt   "i v0 v1 ... " per table entry, one value per input channel
//   OutputCurves.txt  the same for the output tables
//   clut.txt          "k v0 v1 ... " per grid point, in the tag's storage order
//
// The table files are read as streams of numbers, so their line breaks do not matter; their
// index numbers do.
#pragma once

#include "lutio/exchange_files.h"
#include "profile/byte_io.h"
#include "profile/status.h"
#include "tagtypes/lut16_type.h"

#include <cstdint>
#include <filesystem>

// The four characters of a signature, most significant byte first, and a terminating NUL.
void SignatureToText(char (&text)[5], icSignature signature);

// Creates the folder if it does not exist (a failure to do so is noticed only when the first
// file cannot be created) and writes the five files, stopping at the first that cannot be
// created. 0, -10, or -100.
[[nodiscard]] icStatus ExportLut8Folder(const iccLut8Type& tag,
                                        const std::filesystem::path& folder);
[[nodiscard]] icStatus ExportLut16Folder(const iccLut16Type& tag,
                                         const std::filesystem::path& folder);

// Re-initialises the tag from header.txt and fills it from the table files. When the size the
// header's dimensions give differs from its Tag_Bytes, the tag keeps its fresh identity tables,
// no table file is read, and the result is still 0: the caller compares sizes. Otherwise 0,
// -10, -100 (a missing or malformed file, a wrong label, signature or index, a short table), or
// the re-initialisation's status. A failure after the re-initialisation leaves the tables read
// so far in the tag.
//
// `tagBytes`, when given, receives the header's Tag_Bytes once the header has been read.
[[nodiscard]] icStatus ImportLut8Folder(iccLut8Type& tag, const std::filesystem::path& folder,
                                        std::uint32_t* tagBytes = nullptr);
[[nodiscard]] icStatus ImportLut16Folder(iccLut16Type& tag, const std::filesystem::path& folder,
                                         std::uint32_t* tagBytes = nullptr);
[[nodiscard]] icStatus ImportLut8Files(iccLut8Type& tag, icExchangeSource& files,
                                       std::uint32_t* tagBytes = nullptr);
[[nodiscard]] icStatus ImportLut16Files(iccLut16Type& tag, icExchangeSource& files,
                                        std::uint32_t* tagBytes = nullptr);
