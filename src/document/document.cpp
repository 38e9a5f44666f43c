#include "document/document.h"
#include "tagtypes/profile_save.h"

iccDocument::iccDocument(Presenter& presenter)
    : presenter_(presenter), profile_(std::make_unique<iccProfileRW>()) {}

bool iccDocument::open(const std::string& path) {
    // Load into a fresh object so that a failure cannot damage the profile being shown.
    auto loaded = std::make_unique<iccProfileRW>();
    HeaderFields fields{};
    if (loaded->loadFromFile(path) != icOk ||
        fillHeaderPanel(loaded->header(), presenter_, fields) != icOk) {
        presenter_.messageBox(icBoxKind::info, kCaption,
                              "Error in reading ICC profile: " + path + ".\n");
        return false;
    }
    warnAboutTagOffsets(*loaded, presenter_);
    profile_ = std::move(loaded);
    path_ = path;
    savedOverId_.reset();
    fields_ = std::move(fields);
    return true;
}

icStatus iccDocument::saveAs(const std::string& path) {
    const icDigest hashed = profile_->header().profileID;
    if (icStatus s = saveProfileToFile(*profile_, path); s != icOk)
        return reportError(presenter_, s, kCaption, "Error in writing a new profile.");
    if (!open(path))
        return icErrFile;
    savedOverId_ = hashed;
    return icOk;
}

icStatus iccDocument::refreshHeader() {
    return fillHeaderPanel(profile_->header(), presenter_, fields_);
}
