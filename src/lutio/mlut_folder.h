// lutAToB ('mAB ') and lutBToA ('mBA ') tags as a folder of text files, one per element:
//
//   header.txt        signature, Tag_Bytes, channels, the five stored offsets, curve counts
//   BCurve_0.txt ...  one curve text file per B curve; likewise MCurve_%d.txt, ACurve_%d.txt
//   matrix.txt        "i value" for the 3x3 matrix row by row, then its three offsets
//   clut.txt          the CLUT text file below
//
// The offsets and the size are those of the tag as it stands; an import lays the elements out
// at them again, so a folder goes back into a tag of the same shape.
//
// clut.txt:
//   Data_Type: none
//   InputChan: 3
//   OutputChan: 3
//   ByteDepth: 2
//   LUT_Size:
//   InputChan: 0 9          one line per input channel: channel number, grid points
//   ...
//   Data_Begine:            (so spelled)
//   0 v v v                 one line per grid point, first input channel slowest
//   ...
//   Data_End                (no final line feed)
#pragma once

#include "lutio/exchange_files.h"
#include "profile/status.h"
#include "tagtypes/lut_atob_type.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

// Writes header.txt, the B, M and A curve files, clut.txt and matrix.txt of the elements the
// tag has. 0, -10, -100 (a file cannot be created), or the first failing curve or CLUT writer's
// status (-1 for a curve slot that holds no curve).
[[nodiscard]] icStatus ExportMlutFolder(const iccMlutType& tag,
                                        const std::filesystem::path& folder);

// Re-initialises the tag from header.txt, reads the files of the elements present (an element
// is present when its stored offset is not 0; the curve counts follow from the channels, not
// from the Number_ lines), and encodes the tag with every element at its stored offset. 0, -10,
// -100, the re-initialisation's status, a curve or CLUT reader's status, or the encoding's.
[[nodiscard]] icStatus ImportMlutFolder(iccMlutType& tag, const std::filesystem::path& folder);
[[nodiscard]] icStatus ImportMlutFiles(iccMlutType& tag, icExchangeSource& files);

[[nodiscard]] icStatus formatClutText(const iccClut& clut, std::string& text);
// Re-initialises the CLUT from the text's dimensions and fills it. 0, -10, -100 (malformed), or
// the CLUT's re-initialisation status.
[[nodiscard]] icStatus parseClutText(iccClut& clut, std::string_view text);
[[nodiscard]] icStatus WriteClutTextFile(const iccClut& clut, const std::filesystem::path& path);

// Encodes the tag's elements at its stored offsets into `size` bytes (the header, then each
// element; gaps, padding and reserved bytes zero) and takes those bytes as the tag, decoding
// them. -1001 for offsets or a structure decoding refuses; -11 when the elements do not fit
// the offsets and the size, overlap, or leave more than kMaxLayoutSlack bytes unused; -1 when
// a curve or the CLUT was never set.
[[nodiscard]] icStatus encodeMlutAtStoredOffsets(iccMlutType& tag, std::uint32_t size);
