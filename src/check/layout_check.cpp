// The byte map: where every tag's data lies against the header, the directory, the end of the
// file and the other tags.
#include "check/check_context.h"

#include <algorithm>
#include <unordered_map>

namespace {

std::string range(std::uint64_t begin, std::uint64_t end) {
    return num(begin) + "-" + num(end - 1);
}

// One block of tag data, shared by every entry with the same offset and size.
struct Block {
    std::uint64_t begin, end;
    int index; // the first entry that names it
};

void checkCount(CheckContext& c) {
    if (c.declaredCount > c.entries.size())
        c.add(icSeverity::error, "tag-count", kHeaderSize,
              "The tag count is " + num(c.declaredCount) + " but the file has room for " +
                  num(c.entries.size()) +
                  " directory entries after byte 132: readers fail at the directory or read "
                  "tag data as entries.");
    if (c.declaredCount > static_cast<std::uint32_t>(kMaxTags) &&
        c.declaredCount <= c.entries.size())
        c.add(icSeverity::warning, "tag-count", kHeaderSize,
              "The directory holds " + num(c.declaredCount) + " tags; Veltrino opens at most " +
                  num(kMaxTags) + " and refuses the profile, although other readers take it.");
}

// Alignment, the end of the file, the header and directory, tiny and duplicate entries.
void checkEntries(CheckContext& c) {
    const std::uint64_t directoryEnd = kHeaderSize + 4 + 12 * std::uint64_t(c.declaredCount);
    std::unordered_map<icSignature, int> first;
    for (std::size_t k = 0; k < c.entries.size(); ++k) {
        const int i = static_cast<int>(k);
        const icTag& e = c.entries[k];
        const std::uint64_t end = std::uint64_t(e.offset) + e.size;
        if (const auto [it, added] = first.try_emplace(e.sig, i); !added && c.listing("duplicate"))
            c.addTag(icSeverity::error, "duplicate", i,
                     "Entry " + num(k) + " repeats the signature " + quoted(e.sig) + " of entry " +
                         num(static_cast<std::uint32_t>(it->second)) +
                         ": readers find the first and never see this one.");
        if (e.offset % 4 != 0 && c.listing("misaligned"))
            c.addTag(icSeverity::error, "misaligned", i,
                     "The data of " + quoted(e.sig) + " starts at offset " + num(e.offset) +
                         ", not on a 4-byte boundary as the ICC requires: strict readers refuse "
                         "the profile, and Veltrino's window warns when it opens it.");
        if (end > c.bytes.size()) {
            if (c.listing("past-end"))
                c.addTag(icSeverity::error, "past-end", i,
                         "The data of " + quoted(e.sig) + " (offset " + num(e.offset) + ", " +
                             num(e.size) + " bytes) ends at byte " + num(end) +
                             ", past the end of the file (" + num(c.bytes.size()) +
                             " bytes): readers cannot read the tag, and Veltrino refuses the "
                             "profile.");
        } else if (e.size > 0 && e.offset < directoryEnd && c.listing("in-directory")) {
            c.addTag(icSeverity::error, "in-directory", i,
                     "The data of " + quoted(e.sig) + " (offset " + num(e.offset) +
                         ") starts inside the header and tag directory, which end at byte " +
                         num(directoryEnd) +
                         ": its bytes are read both as header or directory and as tag data.");
        }
        if (e.size < 8 && c.listing("tag-size"))
            c.addTag(icSeverity::error, "tag-size", i,
                     "The data of " + quoted(e.sig) + " is " + num(e.size) +
                         " bytes long, too short for a type signature and reserved word: "
                         "readers cannot tell its type.");
    }
}

// Shared blocks, overlaps, gaps and bytes after the last tag.
void checkByteMap(CheckContext& c) {
    // Blocks that run past the end of the file count up to it.
    std::vector<Block> blocks;
    for (std::size_t k = 0; k < c.entries.size(); ++k) {
        const icTag& e = c.entries[k];
        const std::uint64_t end =
            std::min<std::uint64_t>(std::uint64_t(e.offset) + e.size, c.bytes.size());
        if (e.offset < end)
            blocks.push_back({e.offset, end, static_cast<int>(k)});
    }
    std::sort(blocks.begin(), blocks.end(), [](const Block& a, const Block& b) {
        return a.begin != b.begin ? a.begin < b.begin
               : a.end != b.end   ? a.end < b.end
                                  : a.index < b.index;
    });
    const Block* reach = nullptr; // the block reaching furthest so far
    const Block* owner = nullptr; // the first entry of a run of equal blocks
    std::uint64_t covered = kHeaderSize + 4 + 12 * std::uint64_t(c.declaredCount);
    for (const Block& b : blocks) {
        const icSignature sig = c.entries[static_cast<std::size_t>(b.index)].sig;
        if (owner && owner->begin == b.begin && owner->end == b.end) {
            if (c.listing("shared"))
                c.addTag(icSeverity::info, "shared", b.index,
                         "The data of " + quoted(sig) + " is that of " +
                             quoted(c.entries[static_cast<std::size_t>(owner->index)].sig) +
                             " (same offset and size): readers see the same bytes for both.");
            continue;
        }
        if (reach && b.begin < reach->end) {
            const icSignature other = c.entries[static_cast<std::size_t>(reach->index)].sig;
            if (c.listing("overlap"))
                c.addTag(icSeverity::error, "overlap", b.index,
                         "The data of " + quoted(sig) + " (bytes " + range(b.begin, b.end) +
                             ") overlaps that of " + quoted(other) + " (bytes " +
                             range(reach->begin, reach->end) +
                             "): the bytes they share are read as both tags, and changing either "
                             "tag damages the other" +
                             (b.begin == reach->begin
                                  ? "; Veltrino reads both from the first entry's block."
                                  : "."));
        } else if (b.begin > roundUp4(covered) && c.listing("gap")) {
            const std::uint64_t from = roundUp4(covered); // padding is no gap
            c.add(icSeverity::info, "gap", static_cast<std::uint32_t>(from),
                  num(b.begin - from) + " bytes at " + range(from, b.begin) +
                      " belong to no tag; readers skip them.");
        }
        owner = &b;
        if (!reach || b.end > reach->end)
            reach = &b;
        covered = std::max(covered, b.end);
    }
    const std::uint64_t profileEnd = std::min<std::uint64_t>(c.header.size, c.bytes.size());
    if (const std::uint64_t from = roundUp4(covered); profileEnd > from)
        c.add(icSeverity::info, "trailing", static_cast<std::uint32_t>(from),
              num(profileEnd - from) + " bytes at " + range(from, profileEnd) +
                  ", after the last tag, belong to no tag; readers skip them.");
    if (c.header.version >= 0x04200000 && c.header.size % 4 != 0)
        c.add(icSeverity::warning, "size-multiple", 0,
              "The profile size " + num(c.header.size) +
                  " is not a multiple of 4, as version 4.2 and later require; readers do not "
                  "mind, but the last tag misses its padding.");
}

} // namespace

void checkLayout(CheckContext& c) {
    checkCount(c);
    checkEntries(c);
    checkByteMap(c);
}
