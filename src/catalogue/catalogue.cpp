#include "catalogue/catalogue.h"

#include "catalogue/named_color2.h"
#include "catalogue/reports.h"
#include "tagtypes/curve_type.h"
#include "tagtypes/lut16_type.h"
#include "tagtypes/lut_atob_type.h"
#include "tagtypes/multi_localized_unicode_type.h"
#include "tagtypes/profile_sequence_desc_type.h"
#include "tagtypes/tag_factory.h"
#include "tagtypes/text_description_type.h"
#include "tagtypes/text_type.h"
#include "tagtypes/xyz_type.h"

#include <new>

namespace {

constexpr std::string_view kXYZWriteFailed = "Error in updating XYZ values.\n";

// Everything a handler needs about the tag it shows.
struct TagContext {
    Presenter& presenter;
    iccProfileRW& profile;
    int index;
    std::string_view label;

    icSignature signature() const { return profile.getEntry(index)->sig; }
    std::span<const std::uint8_t> bytes() const { return profile.getTagData(index); }
    icSignature typeSignature() const { return profile.getTagTypeSignature(index); }
};

// The measurement, device, settings and sequence reports show message boxes, one per element,
// whatever their length. The simple reports open the large-text window from 500 characters on,
// like the text tags, so that long PostScript data reads as long text does.
enum class LongText { largeTextWindow, messageBox };

icStatus showReport(const TagContext& tag, const icReport& report, LongText longText) {
    presentReport(tag.presenter, report, longText == LongText::largeTextWindow);
    return report.status;
}

void storeTag(const TagContext& tag, std::span<const std::uint8_t> bytes,
              std::string_view failedText) {
    writeBackTag(tag.presenter, tag.profile, tag.index, bytes, failedText);
}

void plainBox(const TagContext& tag, std::string_view text) {
    tag.presenter.messageBox(icBoxKind::info, kCaption, text);
}

// ---- viewers --------------------------------------------------------------------------------

icStatus showCurve(const TagContext& tag) {
    iccCurveElement curve;
    std::unique_ptr<iccTagType> loaded;
    icStatus s = loadTagType(tag.profile, tag.index, loaded);
    if (s == icOk)
        s = curve.adopt(std::move(loaded));
    if (icFailed(s))
        return reportError(tag.presenter, s, kCaption, kInvalidFormat);
    const icViewerResult result = tag.presenter.curveViewer(tag.label, curve);
    if (icFailed(result.status)) {
        plainBox(tag, "Error in displaying curve.");
        return result.status;
    }
    if (result.accepted && result.modified)
        storeTag(tag, curve.data(), kCurveWriteFailed);
    return icOk;
}

icStatus showXYZ(const TagContext& tag) {
    iccXYZType xyz;
    if (icStatus s = xyz.loadByIndex(tag.index, tag.profile); icFailed(s))
        return reportError(tag.presenter, s, kCaption, kInvalidFormat);
    const icViewerResult result = tag.presenter.xyzViewer(tag.label, xyz);
    if (icFailed(result.status))
        return result.status;
    // OK stores the three values whether or not they were changed.
    if (result.accepted && xyz.setXYZ(xyz.X, xyz.Y, xyz.Z) != icOk)
        plainBox(tag, kXYZWriteFailed);
    else if (result.accepted)
        storeTag(tag, xyz.raw(), kXYZWriteFailed);
    return icOk;
}

// The LUT rows are shown by the type of their data; another type of table shows nothing and
// reports nothing. Lookup tables are written back only when the viewer closed with OK and
// reports a change.
icStatus showLut(const TagContext& tag) {
    std::unique_ptr<iccTagType> lut;
    if (makeTagType(tag.typeSignature(), lut) != icOk)
        return icOk;
    auto* mft = dynamic_cast<iccMftLut*>(lut.get());
    auto* mlut = dynamic_cast<iccMlutType*>(lut.get());
    if (mft == nullptr && mlut == nullptr)
        return icOk;
    if (icStatus s = lut->loadByIndex(tag.index, tag.profile); icFailed(s))
        return s;
    const icViewerResult result =
        mft ? tag.presenter.lutViewer(tag.label, *mft,
                                      lutOutputSpace(tag.signature(), tag.profile.header()))
            : tag.presenter.mlutViewer(tag.label, *mlut);
    if (icFailed(result.status))
        return result.status;
    if (result.accepted && result.modified)
        storeTag(tag, lut->getData(), kLutWriteFailed);
    return icOk;
}

icStatus showLocalizedText(const TagContext& tag) {
    iccMultiLocalizedUnicodeType strings;
    if (icStatus s = strings.loadByIndex(tag.index, tag.profile); icFailed(s))
        return reportError(tag.presenter, s, kCaption, "Error in tag data.");
    if (strings.records.empty()) {
        tag.presenter.messageBox(icBoxKind::info, tag.label, "No strings exist in the tag.");
        return icOk;
    }
    return tag.presenter.mlucViewer(tag.label, strings).status;
}

icStatus showNamedColor(const TagContext& tag) {
    icNamedColor2 colors;
    if (icStatus s = decodeNamedColor2(tag.bytes(), colors); icFailed(s))
        return s;
    return tag.presenter.namedColorViewer(tag.label, colors, tag.profile.header().pcs).status;
}

icStatus showHexDump(const TagContext& tag) {
    tag.presenter.hexDumpViewer(tag.label, tag.bytes());
    return icOk;
}

icStatus showCrdInfo(const TagContext& tag) {
    tag.presenter.messageBox(icBoxKind::info, tag.label, "PostScript CRD Info.");
    return icOk;
}

// ---- reports ------------------------------------------------------------------------------

template <icReport (*Report)(std::span<const std::uint8_t>, std::string_view),
          LongText longText = LongText::messageBox>
icStatus showByteReport(const TagContext& tag) {
    return showReport(tag, Report(tag.bytes(), tag.label), longText);
}

icStatus showLuminance(const TagContext& tag) {
    iccXYZType xyz;
    if (icStatus s = xyz.loadByIndex(tag.index, tag.profile); icFailed(s))
        return s;
    presentText(tag.presenter, tag.label, luminanceText(xyz.Y));
    return icOk;
}

icStatus showText(const TagContext& tag) {
    iccTextType text;
    if (icStatus s = text.loadByIndex(tag.index, tag.profile); icFailed(s))
        return s;
    presentText(tag.presenter, tag.label, text.text());
    return icOk;
}

icStatus showTextDescription(const TagContext& tag) {
    iccTextDescriptionType desc;
    if (icStatus s = desc.loadByIndex(tag.index, tag.profile); icFailed(s))
        return reportError(tag.presenter, s, kCaption, kInvalidFormat);
    presentText(tag.presenter, tag.label, desc.asciiText());
    return icOk;
}

icStatus loadSequence(const TagContext& tag, iccProfileSequenceDescType& sequence) {
    if (icStatus s = sequence.loadByIndex(tag.index, tag.profile); icFailed(s))
        return reportError(tag.presenter, s, kCaption, "Tag data fromat incorrect.");
    return icOk;
}

icStatus showSequenceV2(const TagContext& tag) {
    iccProfileSequenceDescType sequence;
    if (icStatus s = loadSequence(tag, sequence); icFailed(s))
        return s;
    return showReport(tag, reportSequenceV2(sequence, tag.label), LongText::messageBox);
}

// The version-4 form opens each description's localized texts in their own viewer.
icStatus showSequenceV4(const TagContext& tag) {
    iccProfileSequenceDescType sequence;
    if (icStatus s = loadSequence(tag, sequence); icFailed(s))
        return s;
    Presenter& presenter = tag.presenter;
    presenter.messageBox(icBoxKind::info, tag.label, sequenceCountText(sequence.recordCount()));
    for (std::uint32_t i = 0; i < sequence.recordCount(); ++i) {
        const icProfileDescription& d = sequence.records[i];
        const std::string caption = sequenceCaption(i);
        presenter.messageBox(icBoxKind::info, caption, sequenceDescriptionText(d));
        const std::pair<const iccTextHolder*, std::string_view> texts[] = {
            {&d.manufacturerText, kNoManufacturerNames},
            {&d.modelText, kNoModelNames},
        };
        for (const auto& [holder, missing] : texts) {
            const iccMultiLocalizedUnicodeType* strings = holder->mluc();
            if (strings != nullptr && !strings->records.empty()) {
                if (icStatus s = presenter.mlucViewer(kLocalizedViewerCaption, *strings).status;
                    icFailed(s))
                    return s;
            } else {
                presenter.messageBox(icBoxKind::info, caption, missing);
            }
        }
    }
    return icOk;
}

using HandlerFn = icStatus (*)(const TagContext&);

struct HandlerEntry {
    icTagHandler kind;
    HandlerFn run;
};

// In the order of icTagHandler, so a handler is found by its value.
constexpr std::array kHandlers{
    HandlerEntry{icTagHandler::lut, showLut},
    HandlerEntry{icTagHandler::curve, showCurve},
    HandlerEntry{icTagHandler::xyz, showXYZ},
    HandlerEntry{icTagHandler::chromaticAdaptation,
                 showByteReport<reportChromaticAdaptation, LongText::largeTextWindow>},
    HandlerEntry{icTagHandler::dateTime, showByteReport<reportDateTime, LongText::largeTextWindow>},
    HandlerEntry{icTagHandler::luminance, showLuminance},
    HandlerEntry{icTagHandler::data, showByteReport<reportData, LongText::largeTextWindow>},
    HandlerEntry{icTagHandler::text, showText},
    HandlerEntry{icTagHandler::textDescription, showTextDescription},
    HandlerEntry{icTagHandler::localizedText, showLocalizedText},
    HandlerEntry{icTagHandler::measurement, showByteReport<reportMeasurement>},
    HandlerEntry{icTagHandler::viewingConditions, showByteReport<reportViewingConditions>},
    HandlerEntry{icTagHandler::technology, showByteReport<reportTechnology>},
    HandlerEntry{icTagHandler::screening, showByteReport<reportScreening>},
    HandlerEntry{icTagHandler::deviceSettings, showByteReport<reportDeviceSettings>},
    HandlerEntry{icTagHandler::sequenceV2, showSequenceV2},
    HandlerEntry{icTagHandler::sequenceV4, showSequenceV4},
    HandlerEntry{icTagHandler::responseCurves, showByteReport<reportResponseCurves>},
    HandlerEntry{icTagHandler::namedColor, showNamedColor},
    HandlerEntry{icTagHandler::crdInfo, showCrdInfo},
    HandlerEntry{icTagHandler::hexDump, showHexDump},
};

constexpr bool handlersInOrder() {
    for (std::size_t i = 0; i < kHandlers.size(); ++i)
        if (static_cast<std::size_t>(kHandlers[i].kind) != i)
            return false;
    return kHandlers.size() == static_cast<std::size_t>(icTagHandler::hexDump) + 1;
}
static_assert(handlersInOrder(), "kHandlers must list every handler in enum order");

} // namespace

bool writeBackTag(Presenter& presenter, iccProfileRW& profile, int index,
                  std::span<const std::uint8_t> bytes, std::string_view failedText) {
    const icTag* entry = profile.getEntry(index);
    if (entry != nullptr && bytes.data() != nullptr &&
        profile.setTagData(entry->sig, bytes) == icOk)
        return true;
    presenter.messageBox(icBoxKind::info, kCaption, failedText);
    return false;
}

icStatus runTagHandler(icTagHandler handler, Presenter& presenter, iccProfileRW& profile, int index,
                       std::string_view label) {
    if (index < 0 || index >= profile.tagCount())
        return icErrInvalidArg;
    try {
        return kHandlers[static_cast<std::size_t>(handler)].run(
            TagContext{presenter, profile, index, label});
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
}

icStatus showTag(Presenter& presenter, iccProfileRW& profile, int index) {
    if (index < 0 || index >= profile.tagCount())
        return icOk;
    const icTagChoice choice =
        chooseTagHandler(profile.getEntry(index)->sig, profile.header().version);
    const icStatus s = runTagHandler(choice.handler, presenter, profile, index, choice.label);
    if (!icFailed(s))
        return s;
    if (s == icErrNoMemory) {
        presenter.outOfMemory();
        return s;
    }
    return reportError(presenter, s, kCaption, "Failed in displaying tag.");
}
