#include "app/changes_model.h"

#include <algorithm>

ProfileSnapshot::ProfileSnapshot(iccProfileRW& profile) : header_(profile.header()) {
    for (int i = 0; i < profile.tagCount(); ++i) {
        Tag tag{*profile.getEntry(i), nullptr, {}, profile.getTagData(i)};
        tag.buffer = profile.shareTagBuffer(tag.bytes);
        if (!tag.buffer && tag.bytes.data() != nullptr) {
            tag.copy.assign(tag.bytes.begin(), tag.bytes.end());
            tag.bytes = tag.copy;
        }
        tags_.push_back(std::move(tag));
    }
}

bool ProfileSnapshot::differsFrom(iccProfileRW& profile) const {
    if (!(profile.header() == header_) || profile.tagCount() != static_cast<int>(tags_.size()))
        return true;
    for (int i = 0; i < profile.tagCount(); ++i) {
        const Tag& before = tags_[static_cast<std::size_t>(i)];
        const auto now = profile.getTagData(i);
        if (!(*profile.getEntry(i) == before.entry) ||
            (now.data() != before.bytes.data() && !std::ranges::equal(now, before.bytes)))
            return true;
    }
    return false;
}

std::string saveChangesQuestion(std::string_view fileName) {
    return "Save changes to " + std::string(fileName) + " before closing?";
}
