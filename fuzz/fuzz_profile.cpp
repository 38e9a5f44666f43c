// One input of the profile fuzzer: check arbitrary bytes as a profile, load them, and on success
// walk everything the desktop program does right after opening it (header panel, tag table in
// both modes), decode every tag of a type we know, rebuild it, and save the whole profile again.
// libFuzzer calls it directly; fuzz/replay_main.cpp runs it over files so the sanitizer build of
// the tests replays real and hostile profiles through exactly the same code.
// Built with VELTRINO_FUZZ_IMAGES, the input is an image instead: the image reader takes it from
// memory, and the profile it finds, if any, goes the same way.
#include "catalogue/catalogue.h"
#include "check/check_report.h"
#include "diff/profile_diff.h"
#include "document/header_model.h"
#ifdef VELTRINO_FUZZ_IMAGES
#include "image/embedded_profile.h"
#endif
#include "profile/profile.h"
#include "tagtypes/curve_type.h"
#include "tagtypes/lut16_type.h"
#include "tagtypes/lut_atob_type.h"
#include "tagtypes/profile_save.h"
#include "tagtypes/tag_factory.h"
#include "tagtypes/xyz_type.h"
#include "viewers/curve_model.h"
#include "viewers/lut_model.h"
#include "viewers/mluc_model.h"
#include "viewers/mlut_model.h"
#include "viewers/named_color_model.h"
#include "viewers/xyz_model.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <vector>

namespace {

// Reads every byte of a span a library call handed out, so that a span claiming more than its
// buffer holds shows up under AddressSanitizer here rather than somewhere downstream.
void touch(std::span<const std::uint8_t> bytes) {
    volatile std::uint8_t sink = 0;
    for (std::uint8_t b : bytes)
        sink = sink ^ b;
    (void)sink;
}

// Every tag the factory has a class for: decoded, rebuilt, and the rebuilt bytes decoded again
// into a fresh object.
void decodeKnownTags(iccProfileRW& profile) {
    for (int i = 0; i < profile.tagCount(); ++i) {
        touch(profile.getTagData(i));
        std::unique_ptr<iccTagType> tag;
        if (loadTagType(profile, i, tag) != icOk)
            continue;
        const auto rebuilt = tag->getData();
        touch(rebuilt);
        if (rebuilt.data() == nullptr)
            continue;
        const std::vector<std::uint8_t> copy(rebuilt.begin(), rebuilt.end());
        std::unique_ptr<iccTagType> again;
        if (makeTagType(tag->ownSignature(), again, profile.getEntry(i)->sig) == icOk) {
            (void)again->setData(copy);
            touch(again->raw());
        }
    }
}

void buildTexts(const iccProfileRW& profile) {
    std::size_t length = 0;
    for (const HeaderField& field : headerFieldTexts(profile.header()))
        length += field.text.size();
    for (bool hexadecimal : {false, true})
        for (const TagRow& row : tagTableRows(profile, hexadecimal))
            length += row.index.size() + row.signature.size() + row.offset.size() + row.size.size();
    volatile std::size_t sink = length;
    (void)sink;
}

// Every tag through Show selected tag, as a double click runs it: reports, viewer models and
// the write-back of a viewer closed with OK. What would be shown is built and dropped.
class DroppingPresenter : public Presenter {
public:
    void messageBox(icBoxKind, std::string_view caption, std::string_view text) override {
        sink(caption.size() + text.size());
    }
    void showHexDump(std::string_view, const std::vector<std::string>& lines) override {
        sink(lines.size());
    }
    icViewerResult curveViewer(std::string_view c, iccCurveElement& curve) override {
        return shown(CurveModel(curve, c).lines());
    }
    icViewerResult xyzViewer(std::string_view c, iccXYZType& xyz) override {
        return shown(XyzModel(xyz, c).lines());
    }
    icViewerResult lutViewer(std::string_view, iccMftLut& lut, icSignature space) override {
        LutModel model(lut, space);
        sink(model.nodeValues().size());
        return shown(model.lines());
    }
    icViewerResult mlutViewer(std::string_view, iccMlutType& lut) override {
        MlutModel model(lut);
        sink(model.nodeValues().size());
        return shown(model.lines());
    }
    icViewerResult namedColorViewer(std::string_view, const icNamedColor2& colors,
                                    icSignature pcs) override {
        return shown(NamedColorModel(colors, pcs).lines());
    }
    icViewerResult mlucViewer(std::string_view,
                              const iccMultiLocalizedUnicodeType& strings) override {
        return shown(MlucModel(strings).lines());
    }

private:
    static void sink(std::size_t n) {
        volatile std::size_t s = n;
        (void)s;
    }
    static icViewerResult shown(const std::vector<std::string>& lines) {
        sink(lines.size());
        return {true, false, icOk};
    }
};

void showEveryTag(iccProfileRW& profile) {
    DroppingPresenter presenter;
    for (int i = 0; i < profile.tagCount(); ++i)
        (void)showTag(presenter, profile, i);
}

// The comparison with a copy in which every tag has one byte changed after its type signature,
// so that every tag goes through its type's comparison on both sides.
void diffWithChangedCopy(iccProfileRW& profile, std::span<const std::uint8_t> data) {
    iccProfileRW changed;
    if (changed.loadFromMemory(data) != icOk)
        return;
    for (int i = 0; i < changed.tagCount(); ++i) {
        const auto bytes = changed.getTagData(i);
        if (bytes.size() <= 8)
            continue;
        std::vector<std::uint8_t> copy(bytes.begin(), bytes.end());
        copy[8 + (copy.size() - 8) / 2] ^= 1;
        (void)changed.setTagData(changed.getEntry(i)->sig, copy);
    }
    icProfileDiff diff;
    if (diffProfiles(profile, changed, {}, diff) == icOk) {
        volatile std::size_t sink = diffReportText(diff).size();
        (void)sink;
    }
}

// What we write we must be able to read: a saved profile that does not load again is a writer
// fault, so it stops the run like a crash would.
void checkReloads(const std::vector<std::uint8_t>& saved) {
    iccProfileRW reloaded;
    if (const icStatus s = reloaded.loadFromMemory(saved); s != icOk) {
        std::fprintf(stderr, "saved profile (%zu bytes) does not load again: status %d\n",
                     saved.size(), static_cast<int>(s));
        std::abort();
    }
}

// The check and both its reports, on every input: it speaks about files the loader refuses too.
void checkAndReport(std::span<const std::uint8_t> bytes) {
    const std::vector<icCheckedFile> files{{"input", checkProfile(bytes)}};
    volatile std::size_t sink =
        reportsJson(files).size() + reportText(files[0].first, files[0].second).size();
    (void)sink;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::span<const std::uint8_t> input(data, size);
#ifdef VELTRINO_FUZZ_IMAGES
    const icEmbeddedProfile image = readEmbeddedProfile(input);
    touch(image.bytes);
    if (image.status != icEmbeddedStatus::found)
        return 0;
    input = image.bytes;
#endif
    checkAndReport(input);
    iccProfileRW profile;
    if (profile.loadFromMemory(input) != icOk)
        return 0;
    buildTexts(profile);
    decodeKnownTags(profile);
    showEveryTag(profile);
    diffWithChangedCopy(profile, input);
    std::vector<std::uint8_t> saved;
    if (saveProfileToMemory(profile, saved) == icOk)
        checkReloads(saved);
    return 0;
}
