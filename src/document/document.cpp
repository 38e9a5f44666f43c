#include "document/document.h"
#include "tagtypes/profile_save.h"

#include <cerrno>
#include <filesystem>
#include <system_error>

iccDocument::iccDocument(Presenter& presenter, EmbeddedProfileReader images)
    : presenter_(presenter), images_(images), profile_(std::make_unique<iccProfileRW>()) {}

bool iccDocument::open(const std::string& path) {
    icEmbeddedProfile image = images_ ? images_(path) : icEmbeddedProfile{};
    if (image.status == icEmbeddedStatus::noProfile) {
        presenter_.messageBox(icBoxKind::info, kCaption, path + " holds no ICC profile.");
        return false;
    }
    // Load into a fresh object so that a failure cannot damage the profile being shown.
    auto loaded = std::make_unique<iccProfileRW>();
    const icStatus read =
        image.status == icEmbeddedStatus::found        ? loaded->loadFromMemory(image.bytes)
        : image.status == icEmbeddedStatus::unreadable ? icErrFile
                                                       : loaded->loadFromFile(path);
    HeaderFields fields{};
    if (read != icOk || fillHeaderPanel(loaded->header(), presenter_, fields) != icOk) {
        presenter_.messageBox(icBoxKind::info, kCaption,
                              "Error in reading ICC profile: " + path + ".\n");
        return false;
    }
    warnAboutTagOffsets(*loaded, presenter_);
    profile_ = std::move(loaded);
    path_ = path;
    embedded_ = std::move(image.bytes);
    savedOverId_.reset();
    fields_ = std::move(fields);
    return true;
}

icStatus iccDocument::saveAs(const std::string& path, bool explain) {
    std::error_code ec;
    if (isEmbedded() && std::filesystem::equivalent(path, path_, ec))
        return reportError(presenter_, icErrFile, kCaption, "Error in writing a new profile.");
    const icDigest hashed = profile_->header().profileID;
    errno = 0;
    if (icStatus s = saveProfileToFile(*profile_, path); s != icOk) {
        const int reason = errno;
        std::string text = errorReportText(s, "Error in writing a new profile.");
        if (explain)
            text += path + (reason ? ": " + std::generic_category().message(reason) : "");
        presenter_.messageBox(icBoxKind::stop, kCaption, text);
        return s;
    }
    if (!open(path))
        return icErrFile;
    savedOverId_ = hashed;
    return icOk;
}

icStatus iccDocument::refreshHeader() {
    return fillHeaderPanel(profile_->header(), presenter_, fields_);
}
