#include "catalogue/reports.h"

#include "document/text_format.h"
#include "profile/byte_io.h"
#include "tagtypes/profile_sequence_desc_type.h"

#include <algorithm>
#include <array>
#include <new>
#include <utility>

namespace {

constexpr std::string_view kBytesTooSmall = "Tag bytes too small.";
// The reporter's wording of the same failure, spelled as users have always seen it.
constexpr std::string_view kByesTooSmall = "Tag byes too small.";

icReportBox infoBox(std::string_view caption, std::string text) {
    return {icBoxKind::info, std::string(caption), std::move(text)};
}

// A stop box of its own, without a code.
icReportBox stopBox(std::string_view text) {
    return {icBoxKind::stop, std::string(kCaption), std::string(text)};
}

// What the error reporter shows for a code.
icReportBox reporterBox(icStatus code, std::string_view message) {
    return {icBoxKind::stop, std::string(kCaption), errorReportText(code, message)};
}

icReport failed(icStatus status) {
    return {status, {}};
}

// Reports build their texts in memory; running out of it is a status like any other.
template <class Build> icReport guarded(Build build) {
    try {
        return build();
    } catch (const std::bad_alloc&) {
        return failed(icErrNoMemory);
    }
}

// The type signature at the start of the tag; 0 when the tag is too short to hold one.
icSignature typeOf(std::span<const std::uint8_t> tag) {
    return tag.size() >= 4 ? loadBE32(tag.data()) : 0;
}

struct WordEntry {
    icSignature signature;
    const char* word;
};

constexpr std::array<WordEntry, 22> kTechnologies{{
    {icSig("fscn"), "Film Scanner"},
    {icSig("dcam"), "Digital Camera"},
    {icSig("rscn"), "Reflective Scanner"},
    {icSig("ijet"), "Inkjet Printer"},
    {icSig("twax"), "Thernam Wax Printer"},
    {icSig("epho"), "Electrophotographic Printer"},
    {icSig("esta"), "Electrostatic Printer"},
    {icSig("dsub"), "Dye Sublimation Printer"},
    {icSig("rpho"), "Photographic Paper Printer"},
    {icSig("fprn"), "Film Writer"},
    {icSig("vidm"), "Video Monitor"},
    {icSig("vidc"), "Video Camera"},
    {icSig("pjtv"), "Projection Television"},
    {icSig("CRT "), "CRT Display"},
    {icSig("PMD "), "Passive Matrix Display"},
    {icSig("AMD "), "Active Matrix Display"},
    {icSig("KPCD"), "Photo CD"},
    {icSig("imgs"), "Photo Image Setter"},
    {icSig("grav"), "Gravure"},
    {icSig("offs"), "Offset Lithography"},
    {icSig("silk"), "Silkscreen"},
    {icSig("flex"), "Flexography"},
}};

// Words indexed by a small enumerated field; the last entry is the text for any other value.
template <std::size_t N>
const char* enumWord(const std::array<const char*, N>& words, std::uint32_t value) {
    return value < N - 1 ? words[value] : words[N - 1];
}

constexpr std::array<const char*, 4> kObservers{
    "Standard Observer: unknown.\n",
    "Standard Observer: 1931 2 degree Observer.\n",
    "Standard Observer: 1964 10 degree Observer.\n",
    "Standard Observer: invalid value.\n",
};

constexpr std::array<const char*, 4> kGeometries{
    "Measurement Geometry: unknown.\n",
    "Measurement Geometry: 0/45 or 45/0.\n",
    "Measurement Geometry: 0/d or d/0.\n",
    "Measurement Geometry: invalid value.\n",
};

constexpr std::array<const char*, 10> kMeasurementIlluminants{
    "Standard Illuminant: unknown.\n", "Standard Illuminant: D50.\n",
    "Standard Illuminant: D65.\n",     "Standard Illuminant: D93.\n",
    "Standard Illuminant: F2.\n",      "Standard Illuminant: D55.\n",
    "Standard Illuminant: A.\n",       "Standard Illuminant: Equi-Power (E).\n",
    "Standard Illuminant: F8.\n",      "Standard Illuminant: invalid value.\n",
};

constexpr std::array<const char*, 10> kViewingIlluminants{
    "unknown\n", "D50\n", "D65\n", "D93\n", "F2\n",
    "D55\n",     "A\n",   "E\n",   "F8\n",  "Invalid value\n",
};

constexpr std::array<const char*, 9> kSpotShapes{
    "\tSpot Shape: unknown\n", "\tSpot Shape: printer default\n", "\tSpot Shape: round\n",
    "\tSpot Shape: diamond\n", "\tSpot Shape: ellipse\n",         "\tSpot Shape: line\n",
    "\tSpot Shape: square\n",  "\tSpot Shape: cross\n",           "\tSpot Shape: invalid value\n",
};

constexpr std::array<WordEntry, 5> kPlatforms{{
    {icSig("APPL"), "Platform: 'APPL'\n"},
    {icSig("MSFT"), "Platform: 'MSFT'\n"},
    {icSig("SUNW"), "Platform: 'SUNW'\n"},
    {icSig("SGI "), "Platform: 'SGI '\n"},
    {icSig("TGNT"), "Platform: 'TGNT'\n"},
}};

constexpr std::array<WordEntry, 9> kMeasurementUnits{{
    {icSig("DN  "), "DIN \n"},
    {icSig("DN P"), "DIN with Polarising Filter \n"},
    {icSig("DNN "), "Narrow Band DIN \n"},
    {icSig("DNNP"), "Narrow Band DIN with Polarising Filter\n"},
    {icSig("StaA"), "Status A \n"},
    {icSig("StaE"), "Status E \n"},
    {icSig("StaI"), " Status I\n"},
    {icSig("StaM"), "Status M \n"},
    {icSig("StaT"), "Status T \n"},
}};

template <std::size_t N>
const char* lookupWord(const std::array<WordEntry, N>& table, icSignature signature,
                       const char* otherwise) {
    for (const WordEntry& entry : table)
        if (entry.signature == signature)
            return entry.word;
    return otherwise;
}

} // namespace

// ---- presentation ---------------------------------------------------------------------------

void presentText(Presenter& presenter, std::string_view caption, std::string_view text) {
    if (text.size() >= kLargeTextThreshold)
        presenter.showLargeText(caption, text);
    else
        presenter.messageBox(icBoxKind::info, caption, text);
}

void presentReport(Presenter& presenter, const icReport& report, bool largeText) {
    for (const icReportBox& box : report.boxes) {
        if (largeText && box.kind == icBoxKind::info)
            presentText(presenter, box.caption, box.text);
        else
            presenter.messageBox(box.kind, box.caption, box.text);
    }
}

const char* technologyWord(std::uint32_t signature) {
    return lookupWord(kTechnologies, signature, nullptr);
}

// ---- simple tags ----------------------------------------------------------------------------

icReport reportChromaticAdaptation(std::span<const std::uint8_t> tag, std::string_view label) {
    return guarded([&] {
        // Read by position whatever the type signature says, as the matrix type reads it.
        const std::size_t values = tag.size() >= 8 ? (tag.size() - 8) / 4 : 0;
        if (values < 9)
            return icReport{};
        iccReader r(tag);
        r.skip(8);
        std::array<double, 9> m{};
        for (double& v : m)
            v = r.s15f16();
        return icReport{
            icOk,
            {infoBox(label, formatText("%f    %f    %f    \n%f    %f    %f\n%f    "
                                       "%f    %f\n",
                                       m[0], m[1], m[2], m[3], m[4], m[5], m[6], m[7], m[8]))}};
    });
}

icReport reportDateTime(std::span<const std::uint8_t> tag, std::string_view label) {
    return guarded([&] {
        if (typeOf(tag) != icSig("dtim"))
            return failed(icErrWrongType);
        if (tag.size() < 20)
            return failed(icErrTruncated);
        iccReader r(tag);
        r.skip(8);
        const unsigned year = r.u16(), month = r.u16(), day = r.u16();
        const unsigned hours = r.u16(), minutes = r.u16(), seconds = r.u16();
        return icReport{icOk,
                        {infoBox(label, formatText("Date = %d/%d/%d \nTime = %d:%d:%d\n", month,
                                                   day, year, hours, minutes, seconds))}};
    });
}

std::string luminanceText(double y) {
    return formatText("%f candelas per square meter", y);
}

icReport reportData(std::span<const std::uint8_t> tag, std::string_view label) {
    return guarded([&] {
        if (typeOf(tag) != icSig("data"))
            return icReport{icErrWrongType, {stopBox("Incorrect Tag signature.")}};
        if (tag.size() < 12)
            return failed(icErrTruncated);
        if (loadBE32(tag.data() + 8) != 0)
            return icReport{icOk,
                            {infoBox(label, formatText("Binary data\nSize = %d bytes",
                                                       static_cast<int>(tag.size() - 12)))}};
        // ASCII data ends at its NUL, or at the tag's end when it has none.
        const auto text = tag.subspan(12);
        const auto end = std::find(text.begin(), text.end(), std::uint8_t(0));
        return icReport{icOk, {infoBox(label, std::string(text.begin(), end))}};
    });
}

// ---- measurement, viewing and device tags ---------------------------------------------------

icReport reportMeasurement(std::span<const std::uint8_t> tag, std::string_view label) {
    return guarded([&] {
        if (tag.size() < 36)
            return icReport{icErrBadProfile, {stopBox(kBytesTooSmall)}};
        if (typeOf(tag) != icSig("meas"))
            return failed(icErrWrongType);
        iccReader r(tag);
        r.skip(8);
        const std::uint32_t observer = r.u32();
        const double x = r.s15f16(), y = r.s15f16(), z = r.s15f16();
        const std::uint32_t geometry = r.u32();
        const double flare = r.u16f16();
        const std::uint32_t illuminant = r.u32();
        std::string text = enumWord(kObservers, observer);
        text += formatText("Measurement Backing: X = %f, Y = %f, Z = %f\n", x, y, z);
        text += enumWord(kGeometries, geometry);
        text += formatText("Measurement Flare: %f\n", flare);
        text += enumWord(kMeasurementIlluminants, illuminant);
        return icReport{icOk, {infoBox(label, std::move(text))}};
    });
}

icReport reportViewingConditions(std::span<const std::uint8_t> tag, std::string_view label) {
    return guarded([&] {
        if (tag.size() < 36)
            return icReport{icErrBadProfile, {reporterBox(icErrBadProfile, kByesTooSmall)}};
        if (typeOf(tag) != icSig("view"))
            return failed(icErrWrongType);
        iccReader r(tag);
        r.skip(8);
        std::string text = "Veiwing Conditions Information\n";
        text += "\nCIE XYZ value for illuminant in cd/m^2:\n";
        for (const char* line : {"\tX = %f\n", "\tY = %f\n", "\tZ = %f\n"})
            text += formatText(line, r.s15f16());
        text += "\nCIE XYZ value for surround in cd/m^2:\n";
        for (const char* line : {"\tX = %f\n", "\tY = %f\n", "\tZ = %f\n"})
            text += formatText(line, r.s15f16());
        text += "\nIlluminant Type: ";
        text += enumWord(kViewingIlluminants, r.u32());
        return icReport{icOk, {infoBox(label, std::move(text))}};
    });
}

icReport reportTechnology(std::span<const std::uint8_t> tag, std::string_view label) {
    return guarded([&] {
        if (tag.size() < 12)
            return icReport{icErrBadProfile, {reporterBox(icErrBadProfile, kByesTooSmall)}};
        if (typeOf(tag) != icSig("sig "))
            return failed(icErrWrongType);
        const icSignature technology = loadBE32(tag.data() + 8);
        std::string text = "Device Technology: ";
        if (const char* word = technologyWord(technology))
            text += word;
        else
            text += formatText("unknown technology type\n  Signuature code: 0x%04x", technology);
        return icReport{icOk, {infoBox(label, std::move(text))}};
    });
}

icReport reportScreening(std::span<const std::uint8_t> tag, std::string_view label) {
    return guarded([&] {
        if (tag.size() < 28)
            return icReport{icErrBadProfile, {stopBox(kBytesTooSmall)}};
        if (typeOf(tag) != icSig("scrn"))
            return failed(icErrWrongType);
        iccReader r(tag);
        r.skip(8);
        const std::uint32_t flags = r.u32();
        const std::uint32_t channels = r.u32();
        std::string text = "Screening data\n\n";
        // Both lines follow the whole flags word, not its two bits.
        text += flags != 0 ? "Use printer default screens\nFrequency units in Lines/Inch\n"
                           : "Do not use printer default screens\nFrequency units in Lines/cm\n";
        text += formatText("Number of channels: %u\n\n", channels);
        for (std::uint32_t i = 0; i < channels && r.remaining() >= 12; ++i) {
            const double frequency = r.s15f16();
            const double angle = r.s15f16();
            const std::uint32_t shape = r.u32();
            text += formatText("Channel #%u:\n\tFrequency: %f\n\tScreen Angle: %f degrees\n", i,
                               frequency, angle);
            text += enumWord(kSpotShapes, shape);
        }
        return icReport{icOk, {infoBox(label, std::move(text))}};
    });
}

// ---- device settings ------------------------------------------------------------------------

namespace {

// The walk of a 'devs' tag trusts the sizes it finds, so a hostile tag can make records overlap
// or repeat in place. Every record of a well-formed tag occupies its own bytes, so the words
// read never exceed a small multiple of the tag's words; past that budget the walk stops.
class WordBudget {
public:
    explicit WordBudget(std::size_t tagSize) : left_(4 * (tagSize / 4) + 64) {}
    bool spend(std::size_t words) {
        if (words > left_)
            return false;
        left_ -= words;
        return true;
    }

private:
    std::size_t left_;
};

std::string quotedSignature(icSignature sig) {
    return "'" + sigToText(sig) + "'";
}

} // namespace

icReport reportDeviceSettings(std::span<const std::uint8_t> tag, std::string_view label) {
    return guarded([&] {
        if (typeOf(tag) != icSig("devs"))
            return failed(icErrWrongType);
        if (tag.size() < 12)
            return failed(icErrTruncated);
        const std::uint32_t platforms = loadBE32(tag.data() + 8);
        if (platforms == 0)
            return icReport{icOk, {infoBox(label, "Platform count = 0\n")}};

        icReport report;
        const std::uint64_t end = tag.size();
        WordBudget budget(tag.size());
        auto word = [&](std::uint64_t at) { return loadBE32(tag.data() + at); };
        std::uint64_t platform = 12;
        for (std::uint32_t p = 0; p < platforms; ++p) {
            if (platform + 12 > end || !budget.spend(3))
                break;
            const icSignature platformSig = word(platform);
            const std::uint32_t platformSize = word(platform + 4);
            const std::uint32_t combinations = word(platform + 8);
            std::string text = formatText("PLATFORM #%u OF %u\n\n", p, platforms);
            text += lookupWord(kPlatforms, platformSig, "Platform: unknown\n");
            text += formatText("Bytes of the structure: %u\n", platformSize);
            text += formatText("Setting combinations: %u\n\n", combinations);

            std::uint64_t combination = platform + 12;
            for (std::uint32_t c = 0; c < combinations; ++c) {
                if (combination + 8 > end || !budget.spend(2))
                    break;
                const std::uint32_t combinationSize = word(combination);
                const std::uint32_t structures = word(combination + 4);
                text += formatText("  Platform Setting #%u of %u\n", c, combinations);
                text += formatText("    Number of setting structures: %u\n", structures);
                text += formatText("    Bytes of the structure: %u\n", combinationSize);

                std::uint64_t setting = combination + 8;
                for (std::uint32_t s = 0; s < structures; ++s) {
                    if (setting + 12 > end || !budget.spend(3))
                        break;
                    const icSignature settingSig = word(setting);
                    const std::uint32_t byteCount = word(setting + 4);
                    const std::uint32_t values = word(setting + 8);
                    text += formatText("\n    Structure Setting #%u of %u\n", s, structures);
                    text += "      Setting signature: " + quotedSignature(settingSig) + "\n";
                    text += formatText("      Bytes of the structure: %u\n", byteCount);
                    std::uint64_t value = setting + 12;
                    for (std::uint32_t v = 0; v < values; ++v, value += 4) {
                        if (value + 4 > end || !budget.spend(1))
                            break;
                        text += formatText("      Setting #%u of %u\n", v, values);
                        text += formatText("        Setting Value: %u\n", word(value));
                    }
                    setting += 12 + std::uint64_t(byteCount);
                }
                combination += combinationSize;
            }
            report.boxes.push_back(infoBox(label, std::move(text)));
            platform += platformSize;
        }
        return report;
    });
}

// ---- response curves ------------------------------------------------------------------------

icReport reportResponseCurves(std::span<const std::uint8_t> tag, std::string_view label) {
    return guarded([&] {
        if (typeOf(tag) != icSig("rcs2"))
            return failed(icErrWrongType);
        if (tag.size() < 12)
            return failed(icErrTruncated);
        iccReader r(tag);
        r.skip(8);
        const std::uint32_t channels = r.u16();
        const std::uint32_t types = r.u16();
        // Both counts are 16-bit, so these hold at most 65535 numbers each.
        std::vector<std::uint32_t> counts(channels), offsets(types);

        icReport report;
        report.boxes.push_back(infoBox(label, formatText("Number of channels: %u \nNumber of "
                                                         "measurement types: %u \n",
                                                         channels, types)));
        for (std::uint32_t& offset : offsets)
            offset = r.u32();
        // The measurements are read as one stream after the offsets, which are printed only.
        for (std::uint32_t t = 0; t < types && r.ok() && r.remaining() >= 4; ++t) {
            std::string text = formatText("INFORMATION FOR MEASUREMENT TYPE #%u\n\n", t);
            text +=
                formatText("Byte offset: %d (0x%x)\n", static_cast<int>(offsets[t]), offsets[t]);
            text += "Measurement Unit: ";
            text += lookupWord(kMeasurementUnits, r.sig(), "Unknown\n");
            for (std::uint32_t& count : counts)
                count = r.u32();
            for (std::uint32_t ch = 0; ch < channels && r.ok(); ++ch) {
                const double x = r.s15f16(), y = r.s15f16(), z = r.s15f16();
                if (!r.ok())
                    break;
                text += formatText("CIE XYZ value for Channel #%u\n", ch);
                text += formatText("    %f, %f, %f\n", x, y, z);
            }
            if (r.ok()) {
                // The type's number picks the channel whose count is shown; a type without such
                // a channel shows 0.
                text += formatText("Measurement Counts: %u\n", t < channels ? counts[t] : 0u);
            }
            for (std::uint32_t ch = 0; ch < channels && r.ok(); ++ch) {
                text += formatText("Response data for Channel #%u\n", ch);
                if (counts[ch] == 0)
                    text += "no data\n";
                for (std::uint32_t k = 0; k < counts[ch]; ++k) {
                    const std::uint32_t device = r.u16();
                    r.skip(2);
                    const double measurement = r.s15f16();
                    if (!r.ok())
                        break;
                    text += formatText("    %u, %f\n", device, measurement);
                }
            }
            report.boxes.push_back(infoBox(label, std::move(text)));
        }
        return report;
    });
}

// ---- profile sequence -----------------------------------------------------------------------

std::string sequenceCountText(std::uint32_t count) {
    return formatText("Number of profile sequence descriptions: %u\n", count);
}

std::string sequenceCaption(std::uint32_t index) {
    return formatText("Profile Sequence #%u", index);
}

std::string sequenceDescriptionText(const icProfileDescription& d) {
    // The device attribute bits are read from the first attribute word, as in the header.
    const std::uint32_t attributes = d.attributes[0];
    std::string text = "Device Maufacturer: " + sigToText(d.manufacturer);
    text += "\nDevice Model: " + sigToText(d.model);
    text += (attributes & 1) ? "\nDevice attributes: transparency, "
                             : "\nDevice attributes: reflective, ";
    text += (attributes & 2) ? "matte" : "glossy";
    text += "\nDevice Technology: ";
    const char* word = technologyWord(d.technology);
    text += word ? std::string(word) + "\n" : std::string("unknown\n");
    return text;
}

namespace {

std::string asciiOf(const iccTextHolder& holder) {
    const iccTextDescriptionType* desc = holder.desc();
    return desc ? std::string(desc->asciiText()) : std::string();
}

} // namespace

icReport reportSequenceV2(const iccProfileSequenceDescType& sequence, std::string_view label) {
    return guarded([&] {
        icReport report;
        // Each box carries everything shown before it: the text keeps growing.
        std::string text = sequenceCountText(sequence.recordCount());
        report.boxes.push_back(infoBox(label, text));
        for (std::uint32_t i = 0; i < sequence.recordCount(); ++i) {
            const icProfileDescription& d = sequence.records[i];
            text += sequenceDescriptionText(d);
            text += "\nDevice manufacture description:\n\t" + asciiOf(d.manufacturerText) + "\n";
            text += "Device model description:\n\t" + asciiOf(d.modelText) + "\n";
            report.boxes.push_back(infoBox(sequenceCaption(i), text));
        }
        return report;
    });
}
