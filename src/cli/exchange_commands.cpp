#include "cli/exchange_commands.h"

#include "catalogue/catalogue.h"
#include "cli/cli_session.h"
#include "lutio/exchange_procedures.h"
#include "tagtypes/curve_type.h"
#include "tagtypes/lut16_type.h"
#include "tagtypes/lut_atob_type.h"
#include "tagtypes/tag_factory.h"

#include <cstdio>

namespace {

// The tag a command works on, loaded by the class its data's type signature names: a lookup
// table, or a curve held as the curve viewer holds it.
class ExchangeTag {
public:
    // Loads the tag at `index`. Returns an exit status when it has no exchange files or cannot
    // be loaded, after saying why.
    std::optional<int> load(CliSession& session, int index) {
        iccProfileRW& profile = session.profile();
        index_ = index;
        const icSignature type = profile.getTagTypeSignature(index);
        if (makeTagType(type, tag_) != icOk || !(lut() || mlut() || isCurve())) {
            std::fprintf(stderr,
                         "veltrino-cli: tag #%d holds '%s' data, which has no exchange files\n",
                         index, sigToText(type).c_str());
            return kExitFailed;
        }
        icStatus s = tag_->loadByIndex(index, profile);
        if (isCurve()) {
            // As the curve viewer's handler loads it, and with its box when that fails.
            if (s == icOk)
                s = curve_.adopt(std::move(tag_));
            if (icFailed(s)) {
                reportError(session.presenter(), s, kCaption, kInvalidFormat);
                return kExitFailed;
            }
        } else if (icFailed(s)) {
            // The window opens no viewer for such a table and shows nothing.
            std::fprintf(stderr, "veltrino-cli: tag #%d ('%s' data) cannot be decoded: %s (%d)\n",
                         index, sigToText(type).c_str(), std::string(statusMeaning(s)).c_str(),
                         static_cast<int>(s));
            return kExitFailed;
        }
        return std::nullopt;
    }

    // The viewer's Export or Import button for the kind of tag loaded.
    icStatus exchange(Presenter& p, const std::string& path, bool import) {
        if (iccMftLut* table = lut())
            return import ? runLutImport(p, *table, path) : runLutExport(p, *table, path);
        if (iccMlutType* table = mlut())
            return import ? runMlutImport(p, *table, path) : runMlutExport(p, *table, path);
        return import ? runCurveImport(p, curve_, path) : runCurveExport(p, curve_, path);
    }

    // The write-back of a viewer that closed with OK and reported a change.
    bool store(CliSession& session) {
        const bool curve = tag_ == nullptr;
        return writeBackTag(session.presenter(), session.profile(), index_,
                            curve ? curve_.data() : tag_->getData(),
                            curve ? kCurveWriteFailed : kLutWriteFailed);
    }

private:
    iccMftLut* lut() { return dynamic_cast<iccMftLut*>(tag_.get()); }
    iccMlutType* mlut() { return dynamic_cast<iccMlutType*>(tag_.get()); }
    bool isCurve() const {
        return dynamic_cast<iccCurveType*>(tag_.get()) != nullptr ||
               dynamic_cast<iccParametricCurveType*>(tag_.get()) != nullptr;
    }

    int index_ = -1;
    std::unique_ptr<iccTagType> tag_; // null once a curve moved into curve_
    iccCurveElement curve_;
};

// Opens the profile and loads the tag TAG names; an exit status when either fails.
std::optional<int> openTag(CliSession& session, ExchangeTag& tag, const std::string& profilePath,
                           const std::string& tagText) {
    int index = -1;
    if (const auto exit = session.openAt(profilePath, tagText, index))
        return exit;
    return tag.load(session, index);
}

} // namespace

int runExportCommand(const std::string& profilePath, const std::string& tagText,
                     const std::string& path) {
    CliSession session;
    ExchangeTag tag;
    if (const auto exit = openTag(session, tag, profilePath, tagText))
        return *exit;
    return tag.exchange(session.presenter(), path, false) == icOk ? kExitOk : kExitFailed;
}

int runImportCommand(const std::string& profilePath, const std::string& tagText,
                     const std::string& path, const std::string& outputPath) {
    CliSession session;
    ExchangeTag tag;
    if (const auto exit = openTag(session, tag, profilePath, tagText))
        return *exit;
    if (tag.exchange(session.presenter(), path, true) != icOk || !tag.store(session))
        return kExitFailed;
    return session.document().saveAs(outputPath) == icOk ? kExitOk : kExitFailed;
}
