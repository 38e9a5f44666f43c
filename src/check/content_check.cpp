// What the tags hold: the tags the device class needs, the type each tag may have, whether each
// decodes, and the checks of curves, colorants, adaptation, lookup tables and texts.
#include "check/check_context.h"
#include "check/check_tables.h"
#include "numeric/matrix.h"
#include "tagtypes/curve_type.h"
#include "tagtypes/lut16_type.h"
#include "tagtypes/lut_atob_type.h"
#include "tagtypes/multi_localized_unicode_type.h"
#include "tagtypes/s15fixed16_array_type.h"
#include "tagtypes/tag_factory.h"
#include "tagtypes/text_description_type.h"
#include "tagtypes/xyz_type.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <set>

namespace {

// Colorant sums, white points and adaptations agree when no coordinate differs by more.
constexpr double kWhiteTolerance = 0.01;
constexpr icVector3 kD50 = {0.9642, 1.0, 0.8249};
// A profile the loader refuses may hold any number of entries: decode at most this many blocks.
constexpr int kMaxDecodedBlocks = 100;

std::string xyzText(const icVector3& v) {
    char text[96];
    std::snprintf(text, sizeof text, "%.4f, %.4f, %.4f", v[0], v[1], v[2]);
    return text;
}

bool near(const icVector3& a, const icVector3& b) {
    for (int k = 0; k < 3; ++k)
        if (!(std::fabs(a[k] - b[k]) <= kWhiteTolerance))
            return false;
    return true;
}

// The tag decoded as the window decodes it; from the file's bytes when the loader refused the
// profile.
icStatus decodeTag(CheckContext& c, int index, std::unique_ptr<iccTagType>& out) {
    if (c.profile)
        return loadTagType(*c.profile, index, out);
    const auto bytes = c.tagBytes(index);
    out.reset();
    if (bytes.size() < 4)
        return icErrBadProfile;
    if (icStatus s = makeTagType(loadBE32(bytes.data()), out, c.entries[index].sig); s != icOk)
        return s;
    return out->setData(bytes);
}

template <class Tag>
const Tag* decodeAs(CheckContext& c, icSignature sig, std::unique_ptr<iccTagType>& holder) {
    const int index = c.find(sig);
    if (index < 0 || decodeTag(c, index, holder) != icOk)
        return nullptr;
    return dynamic_cast<const Tag*>(holder.get());
}

std::optional<icVector3> decodeXYZ(CheckContext& c, icSignature sig) {
    std::unique_ptr<iccTagType> holder;
    const auto* xyz = decodeAs<iccXYZType>(c, sig, holder);
    return xyz ? std::optional<icVector3>(icVector3{xyz->X, xyz->Y, xyz->Z}) : std::nullopt;
}

// ---- required tags --------------------------------------------------------------------------

std::string className(icSignature deviceClass) {
    constexpr std::pair<icSignature, std::string_view> kNames[] = {
        {icSig("scnr"), "input"},        {icSig("mntr"), "display"},
        {icSig("prtr"), "output"},       {icSig("link"), "device link"},
        {icSig("spac"), "colour space"}, {icSig("abst"), "abstract"},
        {icSig("nmcl"), "named colour"}};
    for (const auto& [sig, name] : kNames)
        if (sig == deviceClass)
            return std::string(name);
    return quoted(deviceClass);
}

void requireTags(CheckContext& c, std::initializer_list<const char*> tags, icSeverity severity,
                 std::string_view why) {
    for (const char* text : tags) {
        const icSignature sig = textToSig(text);
        if (c.find(sig) < 0)
            c.addMissing(severity, "missing-tag", sig,
                         "The " + className(c.header.deviceClass) +
                             " profile lacks the required tag " + quoted(sig) + ": " +
                             std::string(why));
    }
}

void checkRequiredTags(CheckContext& c) {
    const icSignature cls = c.header.deviceClass;
    const icSignature space = c.header.colorSpace;
    constexpr std::string_view kNoTransform = "readers cannot convert colours with it.";
    requireTags(c, {"desc", "cprt"}, icSeverity::warning,
                "readers show no name or notice for it (Veltrino adds one when it saves).");
    if (cls != icSig("link"))
        requireTags(c, {"wtpt"}, icSeverity::warning,
                    "readers cannot render absolute colorimetric with it.");
    const bool hasAToB = c.find(icSig("A2B0")) >= 0;
    if (cls == icSig("scnr") || cls == icSig("mntr")) {
        if (space == icSig("GRAY") && !hasAToB)
            requireTags(c, {"kTRC"}, icSeverity::error, kNoTransform);
        else if (space == icSig("RGB ") && !hasAToB)
            requireTags(c, {"rXYZ", "gXYZ", "bXYZ", "rTRC", "gTRC", "bTRC"}, icSeverity::error,
                        kNoTransform);
        else if (!hasAToB)
            requireTags(c, {"A2B0"}, icSeverity::error, kNoTransform);
        else if (cls == icSig("mntr") && c.isVersion4())
            requireTags(c, {"B2A0"}, icSeverity::warning,
                        "readers cannot convert colours to this display with it.");
    } else if (cls == icSig("prtr")) {
        if (space == icSig("GRAY") && !hasAToB) {
            requireTags(c, {"kTRC"}, icSeverity::error, kNoTransform);
        } else {
            requireTags(c, {"A2B0", "B2A0"}, icSeverity::error, kNoTransform);
            requireTags(c, {"A2B1", "A2B2", "B2A1", "B2A2"}, icSeverity::warning,
                        "readers fall back to the perceptual tables for that intent.");
            requireTags(c, {"gamt"}, icSeverity::warning,
                        "readers cannot tell which colours the printer reaches.");
        }
    } else if (cls == icSig("link")) {
        requireTags(c, {"A2B0"}, icSeverity::error, kNoTransform);
        requireTags(c, {"pseq"}, icSeverity::warning,
                    "readers cannot tell which profiles the link was made from.");
    } else if (cls == icSig("spac")) {
        requireTags(c, {"A2B0", "B2A0"}, icSeverity::error, kNoTransform);
    } else if (cls == icSig("abst")) {
        requireTags(c, {"A2B0"}, icSeverity::error, kNoTransform);
    } else if (cls == icSig("nmcl")) {
        requireTags(c, {"ncl2"}, icSeverity::error, "readers find no named colours in it.");
    }
}

// ---- one tag --------------------------------------------------------------------------------

void checkTagType(CheckContext& c, int index, icSignature type) {
    const icSignature sig = c.entries[static_cast<std::size_t>(index)].sig;
    const icTagTypeRule* rule = findTagTypeRule(sig);
    if (rule == nullptr) {
        if (c.listing("private-tag"))
            c.addTag(icSeverity::info, "private-tag", index,
                     quoted(sig) + " is not a tag the ICC registers; readers that do not know it "
                                   "ignore it.");
        return;
    }
    if (rule->text) {
        const icSignature expected = c.isVersion4() ? icSig("mluc") : rule->types[0];
        const icSignature other = c.isVersion4() ? rule->types[0] : icSig("mluc");
        if (type == expected)
            return;
        if (type == other) {
            if (c.listing("tag-type"))
                c.addTag(icSeverity::warning, "tag-type", index,
                         quoted(sig) + " holds " + quoted(type) + " data, the type of version " +
                             (c.isVersion4() ? "2, in a version 4" : "4, in a version 2") +
                             " profile: readers of this version may not read it.");
            return;
        }
    } else if (std::find(rule->types.begin(), rule->types.end(), type) != rule->types.end()) {
        return;
    }
    if (!c.listing("tag-type"))
        return;
    std::string allowed;
    for (icSignature t : rule->types)
        if (t != 0)
            allowed += (allowed.empty() ? "" : ", ") + quoted(t);
    if (rule->text)
        allowed += ", 'mluc'";
    c.addTag(icSeverity::error, "tag-type", index,
             quoted(sig) + " holds " + quoted(type) + " data where the ICC allows " + allowed +
                 ": readers that look for this tag cannot read it.");
}

// `firstValueOffset` is where the stored values begin; none for values sampled from a function.
void checkMonotonic(CheckContext& c, int index, std::span<const std::uint16_t> values,
                    std::optional<std::uint32_t> firstValueOffset) {
    int direction = 0;
    for (std::size_t k = 1; k < values.size(); ++k) {
        const int step = values[k] > values[k - 1] ? 1 : values[k] < values[k - 1] ? -1 : 0;
        if (step == 0)
            continue;
        if (direction == 0) {
            direction = step;
            continue;
        }
        if (step == direction)
            continue;
        c.addTag(
            icSeverity::warning, "non-monotonic", index,
            "The curve " + std::string(direction > 0 ? "rises, then falls" : "falls, then rises") +
                " from " + num(values[k - 1]) + " to " + num(values[k]) +
                (firstValueOffset ? " at entry " : " at sample ") + num(k) + " of " +
                num(values.size()) +
                ": it cannot be inverted, so readers that need the reverse direction get "
                "ambiguous results.",
            firstValueOffset ? std::optional(*firstValueOffset + 2 * static_cast<std::uint32_t>(k))
                             : std::nullopt);
        return;
    }
}

void checkCurve(CheckContext& c, int index, const iccTagType& tag) {
    const std::uint32_t offset = c.entries[static_cast<std::size_t>(index)].offset;
    if (const auto* curve = dynamic_cast<const iccCurveType*>(&tag)) {
        checkMonotonic(c, index, curve->entries(), offset + 12);
    } else if (const auto* para = dynamic_cast<const iccParametricCurveType*>(&tag)) {
        std::vector<std::uint16_t> samples;
        if (para->resample(256, samples) == icOk)
            checkMonotonic(c, index, samples, std::nullopt);
    }
}

// Inputs and outputs of a lookup table by its tag and the header's colour spaces; 0 where the
// space is unknown.
std::pair<std::uint32_t, std::uint32_t> expectedChannels(const CheckContext& c, icSignature sig) {
    const std::uint32_t space = colorSpaceChannels(c.header.colorSpace);
    const std::uint32_t pcs = colorSpaceChannels(c.header.pcs);
    if (sig >= icSig("A2B0") && sig <= icSig("A2B2"))
        return {space, pcs};
    if (sig >= icSig("B2A0") && sig <= icSig("B2A2"))
        return {pcs, space};
    if (sig == icSig("gamt"))
        return {pcs, 1};
    if (sig >= icSig("pre0") && sig <= icSig("pre2"))
        return {pcs, pcs};
    return {0, 0}; // a table under a tag of its own: nothing to compare with
}

void checkLut(CheckContext& c, int index, const iccTagType& tag) {
    std::uint32_t inputs = 0, outputs = 0;
    std::vector<std::uint32_t> grid;
    std::uint32_t gridOffset = 10;
    if (const auto* mft = dynamic_cast<const iccMftLut*>(&tag)) {
        inputs = mft->inputChannels();
        outputs = mft->outputChannels();
        grid.assign(1, mft->gridPoints());
    } else if (const auto* mlut = dynamic_cast<const iccMlutType*>(&tag)) {
        inputs = mlut->inputChannels;
        outputs = mlut->outputChannels;
        gridOffset = mlut->offsetClut;
        if (mlut->clut)
            for (std::uint32_t k = 0; k < std::min(inputs, iccClut::kMaxInputs); ++k)
                grid.push_back(mlut->clut->gridPoints(k));
    } else {
        return;
    }
    const icTag& entry = c.entries[static_cast<std::size_t>(index)];
    const auto [wantIn, wantOut] = expectedChannels(c, entry.sig);
    if ((wantIn && inputs != wantIn) || (wantOut && outputs != wantOut))
        c.addTag(icSeverity::error, "lut-channels", index,
                 "The table has " + num(inputs) + " inputs and " + num(outputs) +
                     " outputs, but the header's colour spaces (" + quoted(c.header.colorSpace) +
                     ", " + quoted(c.header.pcs) + ") call for " + num(wantIn) + " and " +
                     num(wantOut) + ": readers refuse the table or feed it the wrong channels.",
                 entry.offset + 8);
    const auto fewest = std::min_element(grid.begin(), grid.end());
    if (fewest != grid.end() && *fewest < 2)
        c.addTag(*fewest == 0 ? icSeverity::error : icSeverity::warning, "lut-grid", index,
                 "The colour lookup table has " + num(*fewest) + " grid points on an input: " +
                     (*fewest == 0 ? "it holds no values, and readers refuse it."
                                   : "every input maps to one node, so the table is flat."),
                 entry.offset + gridOffset);
}

bool isLetters(std::uint16_t code, char low, char high) {
    const char a = static_cast<char>(code >> 8), b = static_cast<char>(code & 0xFF);
    return a >= low && a <= high && b >= low && b <= high;
}

void checkMluc(CheckContext& c, int index, const iccMultiLocalizedUnicodeType& mluc) {
    const std::uint32_t offset = c.entries[static_cast<std::size_t>(index)].offset;
    for (std::size_t k = 0; k < mluc.records.size(); ++k) {
        const icNameRecord& r = mluc.records[k];
        // Country 0 leaves the country open, which some writers do.
        if ((isLetters(r.language, 'a', 'z') &&
             (r.country == 0 || isLetters(r.country, 'A', 'Z'))) ||
            !c.listing("mluc-code"))
            continue;
        c.addTag(icSeverity::warning, "mluc-code", index,
                 "Record " + num(k) + " has language " + quoted(r.language, 2) + " and country " +
                     quoted(r.country, 2) +
                     ", not an ISO 639 language in lower case and an ISO 3166 country in upper "
                     "case: readers cannot pick it for a user's language.",
                 offset + 16 + 12 * static_cast<std::uint32_t>(k));
    }
    std::vector<std::size_t> order(mluc.records.size());
    for (std::size_t k = 0; k < order.size(); ++k)
        order[k] = k;
    const auto begin = [&](std::size_t k) { return std::uint64_t(mluc.records[k].offset); };
    const auto end = [&](std::size_t k) { return begin(k) + mluc.records[k].length; };
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return begin(a) != begin(b) ? begin(a) < begin(b) : end(a) < end(b);
    });
    std::optional<std::size_t> reach;
    for (std::size_t k : order) {
        const bool same = reach && begin(k) == begin(*reach) && end(k) == end(*reach);
        if (reach && !same && begin(k) < end(*reach) && mluc.records[k].length > 0 &&
            c.listing("mluc-overlap")) {
            c.addTag(icSeverity::warning, "mluc-overlap", index,
                     "The string of record " + num(k) + " overlaps that of record " + num(*reach) +
                         " without being the same string: readers show text "
                         "that runs into another language's.",
                     offset + 16 + 12 * static_cast<std::uint32_t>(k));
        }
        if (!reach || end(k) > end(*reach))
            reach = k;
    }
}

void checkDesc(CheckContext& c, int index, const iccTextDescriptionType& desc) {
    const auto nul = std::find(desc.ascii.begin(), desc.ascii.end(), 0);
    const std::uint32_t offset = c.entries[static_cast<std::size_t>(index)].offset + 8;
    if (nul == desc.ascii.end())
        c.addTag(icSeverity::warning, "desc-count", index,
                 "The ASCII description's count (" + num(desc.asciiCount) +
                     ") includes no terminating NUL: readers that rely on the NUL read past the "
                     "text into the Unicode part.",
                 offset);
    else if (nul + 1 != desc.ascii.end())
        c.addTag(icSeverity::warning, "desc-count", index,
                 "The ASCII description ends at a NUL after " +
                     num(static_cast<std::uint64_t>(nul - desc.ascii.begin())) +
                     " characters, but its count is " + num(desc.asciiCount) +
                     ": readers that trust the count show what follows the NUL.",
                 offset);
}

// Decodes the tag and runs the checks of its type.
void checkTagContent(CheckContext& c, int index) {
    std::unique_ptr<iccTagType> tag;
    const icStatus s = decodeTag(c, index, tag);
    const icTag& entry = c.entries[static_cast<std::size_t>(index)];
    if (s != icOk) {
        c.addTag(icSeverity::error, "decode", index,
                 "The " + quoted(tag ? tag->ownSignature() : 0) + " data of " + quoted(entry.sig) +
                     " does not decode (status " + std::to_string(s) + ": " +
                     std::string(statusMeaning(s)) +
                     "): Veltrino cannot show it, and other readers will likely refuse it.");
        return;
    }
    checkCurve(c, index, *tag);
    checkLut(c, index, *tag);
    if (const auto* mluc = dynamic_cast<const iccMultiLocalizedUnicodeType*>(tag.get()))
        checkMluc(c, index, *mluc);
    if (const auto* desc = dynamic_cast<const iccTextDescriptionType*>(tag.get()))
        checkDesc(c, index, *desc);
}

void checkTags(CheckContext& c) {
    int decoded = 0;
    std::set<std::pair<std::uint32_t, std::uint32_t>> blocks; // offset and size decoded so far
    for (std::size_t k = 0; k < c.entries.size(); ++k) {
        const int index = static_cast<int>(k);
        const auto bytes = c.tagBytes(index);
        if (bytes.size() < 4)
            continue; // the layout check has said why
        const icSignature type = loadBE32(bytes.data());
        checkTagType(c, index, type);
        // A block several entries share is decoded once, under the first.
        if (!isDecodedTagType(type) ||
            !blocks.emplace(c.entries[k].offset, c.entries[k].size).second)
            continue;
        if (!c.profile && ++decoded > kMaxDecodedBlocks) {
            c.add(icSeverity::info, "unchecked", std::nullopt,
                  "Only the first " + num(kMaxDecodedBlocks) +
                      " tags were decoded; the rest were not checked.");
            return;
        }
        checkTagContent(c, index);
    }
}

// ---- relations between tags -----------------------------------------------------------------

void checkColorants(CheckContext& c) {
    const auto r = decodeXYZ(c, icSig("rXYZ")), g = decodeXYZ(c, icSig("gXYZ")),
               b = decodeXYZ(c, icSig("bXYZ"));
    if (!r || !g || !b)
        return;
    const icVector3 sum = {(*r)[0] + (*g)[0] + (*b)[0], (*r)[1] + (*g)[1] + (*b)[1],
                           (*r)[2] + (*g)[2] + (*b)[2]};
    const auto white = decodeXYZ(c, icSig("wtpt"));
    if (near(sum, kD50) || (white && near(sum, *white)))
        return;
    c.addTag(icSeverity::warning, "colorant-sum", c.find(icSig("rXYZ")),
             "The red, green and blue colorants sum to " + xyzText(sum) +
                 ", which is neither D50 " +
                 (white ? "nor the media white point (" + xyzText(*white) + ")" : std::string()) +
                 " within 0.01" +
                 ": full red, green and blue together do not make white, so readers show a "
                 "colour cast on neutrals.");
}

void checkAdaptation(CheckContext& c) {
    std::unique_ptr<iccTagType> holder;
    const auto* chad = decodeAs<iccChromaticAdaptationType>(c, icSig("chad"), holder);
    if (!chad)
        return;
    const int index = c.find(icSig("chad"));
    icMatrix3 inverse{};
    if (invert3x3(chad->matrix, inverse) != icOk) {
        c.addTag(icSeverity::warning, "chad", index,
                 "The chromatic adaptation matrix is singular: readers cannot undo the "
                 "adaptation to recover the measured colours.");
        return;
    }
    // A display's media white point is either D50 (the adaptation already applied) or its own
    // white, which the adaptation must then take to D50.
    const auto white = decodeXYZ(c, icSig("wtpt"));
    if (c.header.deviceClass != icSig("mntr") || !white || near(*white, kD50))
        return;
    const icVector3 adapted = apply3x3(chad->matrix, *white);
    if (!near(adapted, kD50))
        c.addTag(icSeverity::warning, "chad", index,
                 "The chromatic adaptation matrix takes the media white point (" + xyzText(*white) +
                     ") to " + xyzText(adapted) +
                     ", not to D50: readers that undo the adaptation get a different white.");
}

} // namespace

void checkContent(CheckContext& c) {
    checkRequiredTags(c);
    checkTags(c);
    checkColorants(c);
    checkAdaptation(c);
}
