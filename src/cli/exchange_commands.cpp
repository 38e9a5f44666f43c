#include "cli/exchange_commands.h"

#include "app/document.h"
#include "cli/cli_presenter.h"
#include "lutio/exchange_procedures.h"
#include "tagtypes/curve_type.h"
#include "tagtypes/lut16_type.h"
#include "tagtypes/lut_atob_type.h"

#include <charconv>
#include <cstdio>
#include <optional>
#include <type_traits>

namespace {

constexpr int kExitOk = 0;
constexpr int kExitFailed = 1;
constexpr int kExitUsage = 2;

constexpr std::string_view kInvalidFormat = "Invalid ICC format.";
constexpr std::string_view kLutWriteFailed = "Error in writing the modified MLUT tag.\n";
constexpr std::string_view kCurveWriteFailed = "Error in updating the curve data.\n";

// What a TAG argument names: digits only are a directory index, anything else a signature of up
// to four characters, padded on the right with blanks.
struct TagName {
    std::optional<std::uint64_t> index;
    icSignature signature = 0;
};

std::optional<TagName> parseTagName(const std::string& text) {
    if (text.empty())
        return std::nullopt;
    if (text.find_first_not_of("0123456789") == std::string::npos) {
        std::uint64_t index = 0;
        // An index too long for 64 bits is out of range like any beyond the directory.
        if (std::from_chars(text.data(), text.data() + text.size(), index).ec != std::errc())
            index = UINT64_MAX;
        return TagName{index, 0};
    }
    if (text.size() > 4)
        return std::nullopt;
    std::string padded = text;
    padded.resize(4, ' ');
    return TagName{std::nullopt, textToSig(padded)};
}

// The loaded tag the command works on, of the kind its data's type signature names.
struct ExchangeTag {
    int index = -1;
    icSignature type = 0;
    iccLut8Type lut8;
    iccLut16Type lut16;
    iccLutAToBType aToB;
    iccLutBToAType bToA;
    iccCurveElement curve;
};

// The command's one profile and presenter; the boxes of opening go to standard error.
class Session {
public:
    Session() : presenter_(stdout), document_(presenter_) {}

    // Opens the profile and loads the tag. Returns an exit status when that fails.
    std::optional<int> open(const std::string& profilePath, const std::string& tagText) {
        const auto name = parseTagName(tagText);
        if (!name) {
            std::fprintf(stderr,
                         "veltrino-cli: TAG must be an index or a signature of up to four "
                         "characters: %s\n",
                         tagText.c_str());
            return kExitUsage;
        }
        presenter_.setOutput(stderr);
        const bool opened = document_.open(profilePath);
        presenter_.setOutput(stdout);
        if (!opened)
            return kExitFailed;
        iccProfileRW& profile = document_.profile();
        int index = -1;
        if (name->index)
            index = *name->index < static_cast<std::uint64_t>(profile.tagCount())
                        ? static_cast<int>(*name->index)
                        : -1;
        else
            index = profile.findTag(name->signature);
        if (index < 0) {
            std::fprintf(stderr, "veltrino-cli: no tag %s in %s\n", tagText.c_str(),
                         profilePath.c_str());
            return kExitFailed;
        }
        return load(index);
    }

    // Runs `action` on the loaded tag object (a lookup table or the curve element).
    template <class Action> icStatus visit(Action action) {
        switch (tag_.type) {
        case iccLut8Type::kSignature:
            return action(tag_.lut8);
        case iccLut16Type::kSignature:
            return action(tag_.lut16);
        case iccMlutType::kAToB:
            return action(static_cast<iccMlutType&>(tag_.aToB));
        case iccMlutType::kBToA:
            return action(static_cast<iccMlutType&>(tag_.bToA));
        default:
            return action(tag_.curve);
        }
    }

    // The write-back of a viewer that closed with OK and reported a change: the tag's encoded
    // bytes replace the tag (a shared block for every entry that shares it).
    bool storeTag() {
        const bool isCurve = tag_.type == iccCurveType::kSignature ||
                             tag_.type == iccParametricCurveType::kSignature;
        const auto bytes = visitBytes();
        iccProfileRW& profile = document_.profile();
        if (bytes.data() != nullptr &&
            profile.setTagData(profile.getEntry(tag_.index)->sig, bytes) == icOk)
            return true;
        presenter_.messageBox(icBoxKind::info, kCaption,
                              isCurve ? kCurveWriteFailed : kLutWriteFailed);
        return false;
    }

    CliPresenter& presenter() { return presenter_; }
    iccDocument& document() { return document_; }

private:
    std::optional<int> load(int index) {
        iccProfileRW& profile = document_.profile();
        tag_.index = index;
        tag_.type = profile.getTagTypeSignature(index);
        icStatus s = icOk;
        switch (tag_.type) {
        case iccLut8Type::kSignature:
            s = tag_.lut8.loadByIndex(index, profile);
            break;
        case iccLut16Type::kSignature:
            s = tag_.lut16.loadByIndex(index, profile);
            break;
        case iccMlutType::kAToB:
            s = tag_.aToB.loadByIndex(index, profile);
            break;
        case iccMlutType::kBToA:
            s = tag_.bToA.loadByIndex(index, profile);
            break;
        case iccCurveType::kSignature:
        case iccParametricCurveType::kSignature:
            // As the curve viewer's handler loads it, and with its box when that fails.
            s = tag_.curve.create(tag_.type);
            if (s == icOk)
                s = tag_.curve.curve() ? tag_.curve.curve()->loadByIndex(index, profile)
                                       : tag_.curve.parametric()->loadByIndex(index, profile);
            if (icFailed(s)) {
                reportError(presenter_, s, kCaption, kInvalidFormat);
                return kExitFailed;
            }
            return std::nullopt;
        default:
            std::fprintf(stderr,
                         "veltrino-cli: tag #%d holds '%s' data, which has no exchange files\n",
                         index, sigToText(tag_.type).c_str());
            return kExitFailed;
        }
        if (icFailed(s)) {
            // The window opens no viewer for such a table and shows nothing.
            std::fprintf(stderr, "veltrino-cli: tag #%d ('%s' data) cannot be decoded: %s (%d)\n",
                         index, sigToText(tag_.type).c_str(), std::string(statusMeaning(s)).c_str(),
                         static_cast<int>(s));
            return kExitFailed;
        }
        return std::nullopt;
    }

    std::span<const std::uint8_t> visitBytes() {
        std::span<const std::uint8_t> bytes;
        visit([&bytes](auto& tag) {
            if constexpr (std::is_same_v<std::decay_t<decltype(tag)>, iccCurveElement>)
                bytes = tag.data();
            else
                bytes = tag.getData();
            return icOk;
        });
        return bytes;
    }

    CliPresenter presenter_;
    iccDocument document_;
    ExchangeTag tag_;
};

// The viewer's Export or Import button for the kind of tag loaded.
template <class Tag>
icStatus exchangeTag(Presenter& p, Tag& tag, const std::string& path, bool import) {
    if constexpr (std::is_same_v<Tag, iccCurveElement>)
        return import ? runCurveImport(p, tag, path) : runCurveExport(p, tag, path);
    else if constexpr (std::is_same_v<Tag, iccMlutType>)
        return import ? runMlutImport(p, tag, path) : runMlutExport(p, tag, path);
    else
        return import ? runLutImport(p, tag, path) : runLutExport(p, tag, path);
}

} // namespace

int runExportCommand(const std::string& profilePath, const std::string& tagText,
                     const std::string& path) {
    Session session;
    if (const auto exit = session.open(profilePath, tagText))
        return *exit;
    const icStatus s = session.visit([&session, &path](auto& tag) {
        return exchangeTag(session.presenter(), tag, path, false);
    });
    return s == icOk ? kExitOk : kExitFailed;
}

int runImportCommand(const std::string& profilePath, const std::string& tagText,
                     const std::string& path, const std::string& outputPath) {
    Session session;
    if (const auto exit = session.open(profilePath, tagText))
        return *exit;
    const icStatus s = session.visit(
        [&session, &path](auto& tag) { return exchangeTag(session.presenter(), tag, path, true); });
    if (s != icOk || !session.storeTag())
        return kExitFailed;
    return session.document().saveAs(outputPath) == icOk ? kExitOk : kExitFailed;
}
