#include "app/document.h"

#include <cerrno>
#include <system_error>

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
    fields_ = std::move(fields);
    return true;
}

icStatus iccDocument::saveAs(const std::string& path, bool explain) {
    errno = 0;
    if (icStatus s = profile_->saveToFile(path); s != icOk) {
        const int reason = errno;
        std::string text = errorReportText(s, "Error in writing a new profile.");
        if (explain)
            text += path + (reason ? ": " + std::generic_category().message(reason) : "");
        presenter_.messageBox(icBoxKind::stop, kCaption, text);
        return s;
    }
    return open(path) ? icOk : icErrFile;
}

icStatus iccDocument::refreshHeader() {
    return fillHeaderPanel(profile_->header(), presenter_, fields_);
}
