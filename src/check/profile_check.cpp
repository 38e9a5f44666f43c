#include "check/profile_check.h"

#include "check/check_context.h"
#include "check/check_tables.h"
#include "profile/file_io.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <exception>
#include <new>

namespace {

constexpr auto kIdOffset = static_cast<std::uint32_t>(kProfileIdOffset);

std::string hexWord(std::uint32_t value) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(value));
    return text;
}

std::string fixed(double value, int decimals) {
    char text[48];
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    return text;
}

// ---- header ---------------------------------------------------------------------------------

void checkVersion(CheckContext& c) {
    const std::uint32_t version = c.header.version;
    const std::uint32_t major = version >> 24;
    const std::uint32_t minor = (version >> 20) & 0xF;
    const std::string shown = num(major) + "." + num(minor) + "." + num((version >> 16) & 0xF);
    if (major == 5) {
        c.add(icSeverity::warning, "version", 8,
              "Version " + shown +
                  " is an iccMAX profile: Veltrino reads it by the version 4 rules and does not "
                  "check what iccMAX adds.");
    } else if (major != 2 && major != 4) {
        c.add(icSeverity::error, "version", 8,
              "Version " + shown + " (" + hexWord(version) +
                  ") has no major version 2 or 4: readers cannot tell which rules the profile "
                  "follows, and Veltrino reads it as version " +
                  (c.isVersion4() ? "4." : "2."));
    } else if (minor > 4) {
        c.add(icSeverity::warning, "version", 9,
              "Version " + shown + " names a minor version the ICC has not published (the " +
                  "last is " + num(major) + ".4): readers treat it as the latest they know.");
    }
    if ((version & 0xFFFF) != 0)
        c.add(icSeverity::warning, "version-reserved", 10,
              "Bytes 10-11 of the version field are reserved and must be zero; they hold " +
                  hexWord(version & 0xFFFF) + ". Readers ignore them.");
}

void checkSpaces(CheckContext& c) {
    const icHeader& h = c.header;
    if (!isDeviceClass(h.deviceClass))
        c.add(icSeverity::error, "device-class", 12,
              "Device class " + quoted(h.deviceClass) +
                  " is not one of the ICC's seven classes: readers do not know which tags to "
                  "use for a transform.");
    if (colorSpaceChannels(h.colorSpace) == 0)
        c.add(icSeverity::error, "color-space", 16,
              "Colour space " + quoted(h.colorSpace) +
                  " is not an ICC colour space: readers cannot tell how many channels the data "
                  "has.");
    const bool link = h.deviceClass == icSig("link");
    if (link ? colorSpaceChannels(h.pcs) == 0 : !isPcs(h.pcs))
        c.add(icSeverity::error, "pcs", 20,
              link ? "The output colour space of this device link, " + quoted(h.pcs) +
                         ", is not an ICC colour space: readers cannot tell how many channels "
                         "it produces."
                   : "The PCS " + quoted(h.pcs) +
                         " is neither 'XYZ ' nor 'Lab ': readers cannot connect this profile to "
                         "another.");
}

bool validDate(const icDateTimeNumber& d) {
    constexpr int kDays[] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (d.month < 1 || d.month > 12 || d.day < 1 || d.hours > 23 || d.minutes > 59 ||
        d.seconds > 59)
        return false;
    const bool leap = (d.year % 4 == 0 && d.year % 100 != 0) || d.year % 400 == 0;
    const int days = d.month == 2 && !leap ? 28 : kDays[d.month - 1];
    return d.day <= days;
}

void checkDate(CheckContext& c) {
    const icDateTimeNumber& d = c.header.date;
    if (validDate(d))
        return;
    char text[64];
    std::snprintf(text, sizeof text, "%u-%02u-%02u %02u:%02u:%02u", d.year, d.month, d.day, d.hours,
                  d.minutes, d.seconds);
    c.add(icSeverity::warning, "date", 24,
          std::string("The creation date ") + text +
              " is not a valid date and time: readers show it as it stands or not at all.");
}

void checkIlluminant(CheckContext& c) {
    const icXYZNumber& i = c.header.illuminant;
    const double xyz[3] = {s15Fixed16ToDouble(i.X), s15Fixed16ToDouble(i.Y),
                           s15Fixed16ToDouble(i.Z)};
    const double d50[3] = {0.9642, 1.0, 0.8249};
    double worst = 0;
    bool rounded = true;
    for (int k = 0; k < 3; ++k) {
        worst = std::max(worst, std::fabs(xyz[k] - d50[k]));
        rounded = rounded && std::lround(xyz[k] * 1e4) == std::lround(d50[k] * 1e4);
    }
    if (rounded)
        return;
    const std::string shown = fixed(xyz[0], 5) + ", " + fixed(xyz[1], 5) + ", " + fixed(xyz[2], 5);
    // Veltrino's own header check warns beyond 0.005.
    if (worst > 0.005)
        c.add(icSeverity::error, "illuminant", 68,
              "The PCS illuminant (" + shown +
                  ") is not D50: PCS values are defined under D50, so readers that trust this "
                  "field convert colours wrongly; Veltrino's window warns about the header.");
    else
        c.add(icSeverity::warning, "illuminant", 68,
              "The PCS illuminant (" + shown +
                  ") does not round to D50 (0.9642, 1.0, 0.8249) at four decimals, as the ICC "
                  "asks; readers use D50 all the same.");
}

void checkMagic(CheckContext& c) {
    if (c.header.magic != kMagic)
        c.add(icSeverity::error, "magic", 36,
              "Bytes 36-39 hold " + quoted(c.header.magic) +
                  " instead of 'acsp': readers, Veltrino among them, do not take the file for "
                  "an ICC profile.");
}

// Flags, attributes and rendering intent.
void checkHeaderBits(CheckContext& c) {
    const icHeader& h = c.header;
    if (h.flags & 0x0000FFFC)
        c.add(icSeverity::warning, "flags", 44,
              "Flag bits 2-15 are reserved for the ICC and must be zero; the flags are " +
                  hexWord(h.flags) + ". Readers ignore them.");
    // The ICC's attribute bits are the low word of the 64-bit field, bytes 60-63.
    if (h.attributes[1] & 0xFFFFFFF0)
        c.add(icSeverity::warning, "attributes", 60,
              "Attribute bits 4-31 (bytes 60-63) are reserved for the ICC and must be zero; "
              "they are " +
                  hexWord(h.attributes[1]) + ". Readers ignore them.");
    if (h.renderingIntent > 3)
        c.add(icSeverity::warning, "intent", 64,
              "Rendering intent " + num(h.renderingIntent) +
                  " is not 0-3: readers that take the intent from the header fall back to "
                  "perceptual.");
}

void checkReserved(CheckContext& c) {
    const auto reserved = c.bytes.subspan(100, 28);
    const auto nonzero = std::find_if(reserved.begin(), reserved.end(), [](auto b) { return b; });
    if (nonzero != reserved.end())
        c.add(icSeverity::warning, "reserved",
              100 + static_cast<std::uint32_t>(nonzero - reserved.begin()),
              "Header bytes 100-127 are reserved and must be zero; readers ignore them, and a "
              "later version of the format may give them a meaning.");
}

void checkSize(CheckContext& c) {
    const std::uint64_t length = c.bytes.size();
    const std::uint32_t size = c.header.size;
    if (size > length)
        c.add(icSeverity::error, "size", 0,
              "The header gives the profile " + num(size) + " bytes but the file holds " +
                  num(length) +
                  ": the file is cut short. Readers that trust the size read past its end; "
                  "Veltrino reads the bytes there are.");
    else if (size < length)
        c.add(icSeverity::error, "size", 0,
              "The header gives the profile " + num(size) + " bytes but the file holds " +
                  num(length) + ": readers ignore the last " + num(length - size) +
                  " bytes, or refuse a tag that lies in them.");
}

// ---- Profile ID -----------------------------------------------------------------------------

// The MD5 of the profile with `header` in place of its first 128 bytes; `asSaved` hashes the
// header as a save does (attributes and rendering intent cleared).
std::optional<icDigest> digestWithHeader(std::span<const std::uint8_t> profile,
                                         const std::array<std::uint8_t, kHeaderSize>& header,
                                         bool asSaved = false) {
    icProfileIdHash hash;
    icDigest digest{};
    if (!(asSaved ? hash.header(header) : hash.update(header)) ||
        !hash.update(profile.subspan(kHeaderSize)) || !hash.finish(digest))
        return std::nullopt;
    return digest;
}

std::array<std::uint8_t, kHeaderSize> headerCopy(std::span<const std::uint8_t> profile) {
    std::array<std::uint8_t, kHeaderSize> header{};
    std::copy_n(profile.begin(), kHeaderSize, header.begin());
    return header;
}

// The ICC's rule: flags, rendering intent and the ID itself cleared.
std::optional<icDigest> iccRuleId(std::span<const std::uint8_t> profile) {
    auto header = headerCopy(profile);
    std::fill_n(header.begin() + 44, 4, 0);
    std::fill_n(header.begin() + 64, 4, 0);
    std::fill_n(header.begin() + kIdOffset, 16, 0);
    return digestWithHeader(profile, header);
}

// Veltrino's rule: attributes and rendering intent cleared, and in the ID field the ID the
// profile was loaded with before it was saved.
std::optional<icDigest> veltrinoRuleId(std::span<const std::uint8_t> profile,
                                       const icDigest& previous) {
    auto header = headerCopy(profile);
    std::copy(previous.begin(), previous.end(), header.begin() + kIdOffset);
    return digestWithHeader(profile, header, true);
}

constexpr std::string_view kIccRule = "the ICC rule (MD5 with flags, rendering intent and "
                                      "Profile ID cleared)";

void checkVersion4Id(CheckContext& c, std::span<const std::uint8_t> profile,
                     const icCheckOptions& options) {
    const icDigest& stored = c.header.profileID;
    const auto icc = iccRuleId(profile);
    if (!icc) {
        c.add(icSeverity::error, "id-unchecked", kIdOffset,
              "The Profile ID could not be computed (MD5 failed).");
        return;
    }
    if (*icc == stored) {
        c.add(icSeverity::info, "id-icc", kIdOffset,
              "The Profile ID matches " + std::string(kIccRule) + ".");
        return;
    }
    std::vector<icDigest> previous{icDigest{}};
    previous.insert(previous.end(), options.previousIds.begin(), options.previousIds.end());
    for (const icDigest& earlier : previous) {
        if (veltrinoRuleId(profile, earlier) != stored)
            continue;
        const bool none = earlier == icDigest{};
        c.add(icSeverity::warning, "id-veltrino", kIdOffset,
              "The Profile ID does not match " + std::string(kIccRule) +
                  " but matches Veltrino's: attributes and rendering intent cleared and " +
                  (none ? std::string("no earlier ID")
                        : "the earlier ID " + formatProfileId(earlier)) +
                  " in the ID field. Veltrino saved this profile; readers that verify IDs will "
                  "call it corrupt, although its bytes are intact.");
        return;
    }
    c.add(icSeverity::error, "id-mismatch", kIdOffset,
          "The Profile ID " + formatProfileId(stored) + " matches neither " +
              std::string(kIccRule) + " nor Veltrino's (attributes and rendering intent cleared, " +
              (options.previousIds.empty() ? "no earlier ID" : "none of the earlier IDs given") +
              "): the profile changed after its ID was computed, or Veltrino saved it from a "
              "profile that already had an ID, which its ID covers and the file no longer "
              "holds. Readers that verify IDs will call it corrupt.");
}

} // namespace

// ---- the context ----------------------------------------------------------------------------

CheckContext::CheckContext(std::span<const std::uint8_t> b, icCheckReport& report)
    : bytes(b), report_(report) {}

int CheckContext::find(icSignature sig) const {
    for (std::size_t i = 0; i < entries.size(); ++i)
        if (entries[i].sig == sig)
            return static_cast<int>(i);
    return -1;
}

std::span<const std::uint8_t> CheckContext::tagBytes(int index) const {
    if (index < 0 || static_cast<std::size_t>(index) >= entries.size())
        return {};
    const icTag& entry = entries[static_cast<std::size_t>(index)];
    return inFile(entry) ? bytes.subspan(entry.offset, entry.size)
                         : std::span<const std::uint8_t>();
}

bool CheckContext::listing(std::string_view code) {
    const auto listed = listed_.find(code);
    if (listed == listed_.end() || listed->second < kListedPerCode)
        return true;
    ++unlisted_[std::string(code)];
    return false;
}

void CheckContext::addUnlisted() {
    for (const auto& [code, count] : unlisted_)
        add(icSeverity::info, "unlisted", std::nullopt,
            num(static_cast<std::uint32_t>(count)) + " more '" + code +
                "' findings like those above are not listed.");
}

void CheckContext::add(icSeverity severity, std::string_view code,
                       std::optional<std::uint32_t> offset, std::string message) {
    ++listed_[std::string(code)];
    report_.findings.push_back({severity, std::string(code), offset, -1, {}, std::move(message)});
}

void CheckContext::addTag(icSeverity severity, std::string_view code, int index,
                          std::string message, std::optional<std::uint32_t> offset) {
    const icTag& entry = entries.at(static_cast<std::size_t>(index));
    ++listed_[std::string(code)];
    report_.findings.push_back({severity, std::string(code), offset ? offset : entry.offset, index,
                                entry.sig, std::move(message)});
}

void CheckContext::addMissing(icSeverity severity, std::string_view code, icSignature sig,
                              std::string message) {
    ++listed_[std::string(code)];
    report_.findings.push_back(
        {severity, std::string(code), std::nullopt, -1, sig, std::move(message)});
}

std::string quoted(icSignature sig, int bytes) {
    std::string text = "'";
    for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8) {
        const auto c = static_cast<unsigned char>(sig >> shift);
        if (c >= 0x20 && c < 0x7F) {
            text += static_cast<char>(c);
        } else {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\x%02X", c);
            text += escaped;
        }
    }
    return text + "'";
}

std::string num(std::uint64_t value) {
    return std::to_string(value);
}

// In the order of the fields.
void checkHeader(CheckContext& c) {
    checkSize(c);
    checkVersion(c);
    checkSpaces(c);
    checkDate(c);
    checkMagic(c);
    checkHeaderBits(c);
    checkIlluminant(c);
    checkReserved(c);
}

void checkProfileId(CheckContext& c, const icCheckOptions& options) {
    const icDigest& stored = c.header.profileID;
    if (stored == icDigest{}) {
        if (c.isVersion4())
            c.add(icSeverity::info, "id-zero", kIdOffset,
                  "The Profile ID is all zeros: the profile has none, which the ICC allows; "
                  "readers skip the check.");
        return;
    }
    // The profile is what the header's size covers, or the file when that is shorter.
    const std::size_t size = c.header.size >= kHeaderSize && c.header.size < c.bytes.size()
                                 ? c.header.size
                                 : c.bytes.size();
    const auto profile = c.bytes.first(size);
    if (c.isVersion4())
        return checkVersion4Id(c, profile, options);
    const bool valid = iccRuleId(profile) == stored;
    c.add(valid ? icSeverity::info : icSeverity::warning, "id-version2", kIdOffset,
          valid ? "Bytes 84-99, reserved before version 4, hold a Profile ID that matches " +
                      std::string(kIccRule) + "; readers of version 2 profiles ignore it."
                : std::string("Bytes 84-99 are reserved before version 4 and should be zero; "
                              "they hold no valid Profile ID. Readers ignore them."));
}

// ---- the report -----------------------------------------------------------------------------

std::string_view severityName(icSeverity severity) {
    constexpr std::string_view kNames[] = {"error", "warning", "info"};
    return kNames[static_cast<int>(severity)];
}

std::size_t icCheckReport::count(icSeverity severity) const {
    return static_cast<std::size_t>(
        std::count_if(findings.begin(), findings.end(),
                      [&](const icFinding& f) { return f.severity == severity; }));
}

icVerdict icCheckReport::verdict() const {
    if (count(icSeverity::error) > 0)
        return icVerdict::errors;
    return count(icSeverity::warning) > 0 ? icVerdict::warnings : icVerdict::valid;
}

namespace {

void readDirectory(CheckContext& c) {
    const std::span<const std::uint8_t> bytes = c.bytes;
    if (bytes.size() < kHeaderSize + 4) {
        c.add(icSeverity::error, "tag-count", kHeaderSize,
              "The file ends before the tag count at byte 128: there is no tag directory.");
        return;
    }
    c.declaredCount = loadBE32(bytes.data() + kHeaderSize);
    const std::uint64_t room = (bytes.size() - kHeaderSize - 4) / 12;
    const std::uint64_t present = std::min<std::uint64_t>(c.declaredCount, room);
    c.entries.reserve(static_cast<std::size_t>(present));
    for (std::uint64_t i = 0; i < present; ++i) {
        const std::uint8_t* p = bytes.data() + kHeaderSize + 4 + 12 * i;
        c.entries.push_back({loadBE32(p), loadBE32(p + 4), loadBE32(p + 8)});
    }
}

// Opens the profile as the window does: from the file when there is one, which spares a copy
// of the whole profile in memory.
void loadAsTheWindowDoes(CheckContext& c, const std::string* path) {
    c.profile = std::make_unique<iccProfileRW>();
    const icStatus s = path ? c.profile->loadFromFile(*path) : c.profile->loadFromMemory(c.bytes);
    if (s == icOk)
        return;
    c.profile.reset();
    c.add(icSeverity::error, "refused", std::nullopt,
          "Veltrino refuses to open this profile (status " + std::to_string(s) + ": " +
              std::string(statusMeaning(s)) +
              "); its tags are checked from the file's bytes alone.");
}

icFinding aboutTheFile(std::string_view code, std::string message) {
    return {icSeverity::error, std::string(code), std::nullopt, -1, {}, std::move(message)};
}

// The check of `bytes`, read from `path` when it is given.
icCheckReport check(std::span<const std::uint8_t> bytes, const icCheckOptions& options,
                    const std::string* path) {
    icCheckReport report;
    try {
        CheckContext c(bytes, report);
        if (bytes.size() < kHeaderSize) {
            report.findings.push_back(
                aboutTheFile("too-short", "The file holds " + num(bytes.size()) +
                                              " bytes, fewer than the 128 of a profile header: "
                                              "it is no profile."));
            return report;
        }
        c.header = headerFromBytes(bytes);
        checkHeader(c);
        checkProfileId(c, options);
        readDirectory(c);
        checkLayout(c);
        loadAsTheWindowDoes(c, path);
        checkContent(c);
        c.addUnlisted();
    } catch (const std::exception&) {
        // Only memory can run out here; whatever it was, the check ends with what it found.
        try {
            report.findings.push_back(aboutTheFile(
                "out-of-memory", "The check ran out of memory; what it found so far is listed."));
        } catch (const std::exception&) {
            // Nothing more can be said; the findings so far stand.
        }
    }
    return report;
}

} // namespace

icCheckReport checkProfile(std::span<const std::uint8_t> bytes, const icCheckOptions& options) {
    return check(bytes, options, nullptr);
}

icCheckReport checkProfileFile(const std::string& path, const icCheckOptions& options) {
    std::vector<std::uint8_t> bytes;
    if (readWholeFile(path, bytes) != icOk) {
        icCheckReport report;
        try {
            report.findings.push_back(
                aboutTheFile("unreadable", "The file cannot be opened or read."));
        } catch (const std::exception&) {
            // An empty report: nothing could be read, nothing can be said.
        }
        return report;
    }
    return check(bytes, options, &path);
}
