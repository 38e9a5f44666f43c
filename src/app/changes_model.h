// Unsaved changes, free of any toolkit: whether an edit changed the profile in memory, and the
// questions asked before changes would be lost.
#pragma once

#include "profile/profile.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

// The profile as it stood before an edit: its header and every entry with its bytes. The old
// buffers are kept alive rather than copied, since an edit replaces a tag's buffer instead of
// writing into it.
class ProfileSnapshot {
public:
    explicit ProfileSnapshot(iccProfileRW& profile);
    // Whether the header, the directory or the bytes of any tag differ now. A tag stored again
    // with the same bytes (a viewer closed with OK and nothing changed) is no change.
    bool differsFrom(iccProfileRW& profile) const;

private:
    struct Tag {
        icTag entry;
        std::shared_ptr<const std::uint8_t[]> buffer;
        // A copy, for bytes the profile could not share.
        std::vector<std::uint8_t> copy;
        std::span<const std::uint8_t> bytes;
    };
    icHeader header_;
    std::vector<Tag> tags_;
};

// Asked when the main window would drop the open profile with changes.
std::string saveChangesQuestion(std::string_view fileName);