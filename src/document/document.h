// The open profile of the main window and its open and save procedures, free of any toolkit.
#pragma once

#include "document/header_model.h"
#include "document/presenter.h"
#include "image/embedded_profile.h"
#include "profile/profile.h"
#include "profile/profile_id.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

// Follows the name of an image whose profile is open, in the window's title and path field.
inline constexpr std::string_view kEmbeddedMark = " (embedded profile)";

class iccDocument {
public:
    // With `images`, open() also takes a JPEG, PNG, TIFF or WebP image and opens its profile.
    explicit iccDocument(Presenter& presenter, EmbeddedProfileReader images = nullptr);

    // Reads the whole profile, fills the header panel and the tag table. On failure the message
    // "Error in reading ICC profile: PATH.\n" follows whatever the failing step reported, and
    // the document keeps what it held before. An image without a profile says only
    // "PATH holds no ICC profile.".
    bool open(const std::string& path);
    // Lays the profile out, writes it and opens the written file again. On failure "Error in
    // writing a new profile." is reported with its code and the profile in memory is kept; a
    // profile from an image is never written over that image. `explain` adds a line with the
    // path and the system's reason.
    [[nodiscard]] icStatus saveAs(const std::string& path, bool explain = false);

    bool isOpen() const { return !path_.empty(); }
    // After "Save As...", the Profile ID the profile held when it was saved: a version 4 save
    // hashes it along with the profile, so it is what confirms the written ID. None after
    // "&Browse...".
    const std::optional<icDigest>& savedOverId() const { return savedOverId_; }
    const std::string& path() const { return path_; }
    // The profile's bytes as the image at path() carries them; empty for a profile file.
    const std::vector<std::uint8_t>& embeddedBytes() const { return embedded_; }
    bool isEmbedded() const { return !embedded_.empty(); }
    iccProfileRW& profile() { return *profile_; }
    const iccProfileRW& profile() const { return *profile_; }
    const HeaderFields& headerFields() const { return fields_; }
    // Fills the header fields again after an edit of the in-memory header.
    [[nodiscard]] icStatus refreshHeader();
    std::vector<TagRow> tagRows(bool hexadecimal) const {
        return tagTableRows(*profile_, hexadecimal);
    }

private:
    Presenter& presenter_;
    EmbeddedProfileReader images_;
    std::unique_ptr<iccProfileRW> profile_;
    std::string path_;
    std::vector<std::uint8_t> embedded_;
    HeaderFields fields_{};
    std::optional<icDigest> savedOverId_;
};
