// Comparing two profiles by meaning rather than byte by byte: the header in the words of the
// header panel, the tag directory, and every tag whose bytes differ decoded by its type. The
// report is plain data, free of any toolkit: veltrino-cli prints it as text or JSON and the
// window shows it as a tree.
#pragma once

#include "profile/profile.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// One difference, or one line that sums several up. `a` and `b` are the two sides' values as
// text (both set for a pair of differing values, one of them for a directory entry on one side
// only, neither for a summing-up line).
struct icDiffEntry {
    std::string what;   // "Intent", "X", "matrix e5", "CLUT node 12 at (0, 1, 2)", "only in A"
    std::string tag;    // directory entries: the tag signature
    std::string a, b;   // the values
    std::string detail; // delta, position or count words
    std::optional<double> delta;     // the numeric difference where there is one
    std::vector<std::uint32_t> node; // CLUT nodes: the grid coordinates, first input first
    bool hasValues() const { return !a.empty() || !b.empty(); }
};

enum class icDiffSectionKind { header, directory, tag };

struct icDiffSection {
    icDiffSectionKind kind = icDiffSectionKind::tag;
    std::string title;
    // Tag sections: the tag signature, its label, the directory index in A and the type
    // signatures on either side.
    icSignature signature = 0;
    std::string label;
    int indexA = -1;
    icSignature typeA = 0, typeB = 0;
    // Further entries of A (and, alike, of B) that share this tag's bytes.
    std::vector<icSignature> sharedWith;
    std::vector<icDiffEntry> entries;
};

struct icProfileDiff {
    // Header, directory and then one section per tag in A's directory order; a section is
    // there only when it lists something.
    std::vector<icDiffSection> sections;
    std::size_t headerFields = 0;
    std::size_t directoryChanges = 0;
    std::size_t tags = 0;
    // Tags whose bytes differ but whose every numeric difference is within the tolerance.
    std::size_t tagsWithinTolerance = 0;
    bool equivalent() const { return sections.empty(); }
};

struct icDiffOptions {
    // Numeric differences up to this much, in each tag's own units (XYZ and matrix values, the
    // 0..65535 scale of curves, the stored CLUT and table values), are not differences.
    double tolerance = 0;
};

// Compares A with B. Tags are matched by signature (the n-th entry of a signature with the n-th
// of the same signature). Tags with equal bytes are not decoded. Only -10 (out of memory) can
// fail: a tag that cannot be decoded is compared byte by byte, with the decoder's status.
[[nodiscard]] icStatus diffProfiles(iccProfile& a, iccProfile& b, const icDiffOptions& options,
                                    icProfileDiff& out);

// "what: a -> b (detail)", with the parts an entry has.
std::string diffEntryText(const icDiffEntry& entry);
// "Summary: the profiles are equivalent" or the counts of what differs.
std::string diffSummaryText(const icProfileDiff& diff);
// Each section's title, its entries indented by two blanks, then the summary; one line feed
// after each line.
std::string diffReportText(const icProfileDiff& diff);
