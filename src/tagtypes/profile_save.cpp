#include "tagtypes/profile_save.h"

#include "tagtypes/multi_localized_unicode_type.h"
#include "tagtypes/s15fixed16_array_type.h"
#include "tagtypes/text_description_type.h"
#include "tagtypes/text_type.h"
#include "tagtypes/xyz_type.h"

namespace {

constexpr icSignature kCopyright = icSig("cprt");
constexpr icSignature kDescription = icSig("desc");

// A text as 'mluc' for version 4, else as the older type `Older` built by its setter.
template <class Older, class SetOlder>
icStatus setTextTag(iccProfileRW& profile, icSignature sig, const std::string& text,
                    SetOlder setOlder) {
    if (isVersion4(profile.header())) {
        iccMultiLocalizedUnicodeType mluc;
        if (icStatus s = mluc.setFromAscii(text); s != icOk)
            return s;
        return profile.setTagData(sig, mluc.raw());
    }
    Older older;
    if (icStatus s = setOlder(older, text); s != icOk)
        return s;
    return profile.setTagData(sig, older.raw());
}

icStatus addMissingCopyright(iccProfileRW& profile) {
    if (profile.tagCount() < 1 || profile.findTag(kCopyright) >= 0)
        return icOk;
    return setCopyright(profile, std::nullopt);
}

} // namespace

icStatus setCopyright(iccProfileRW& profile, const std::optional<std::string>& text) {
    const std::string notice =
        text ? *text : "Copyright (c) " + std::to_string(profile.header().date.year) + " Tintwerk.";
    return setTextTag<iccTextType>(
        profile, kCopyright, notice,
        [](iccTextType& t, const std::string& s) { return t.setText(s); });
}

icStatus setDescription(iccProfileRW& profile, const std::string& text) {
    return setTextTag<iccTextDescriptionType>(
        profile, kDescription, text,
        [](iccTextDescriptionType& t, const std::string& s) { return t.setFromAscii(s); });
}

icStatus setMediaWhitePoint(iccProfileRW& profile, double x, double y, double z) {
    iccXYZType xyz;
    if (icStatus s = xyz.setXYZ(x, y, z); s != icOk)
        return s;
    return profile.setTagData(icSig("wtpt"), xyz.raw());
}

icStatus setChromaticAdaptation(iccProfileRW& profile, const std::array<double, 9>& matrix) {
    iccChromaticAdaptationType chad;
    chad.matrix = matrix;
    if (icStatus s = chad.rebuild(); s != icOk)
        return s;
    return profile.setTagData(icSig("chad"), chad.raw());
}

icStatus saveProfileToMemory(iccProfileRW& profile, std::vector<std::uint8_t>& out) {
    if (icStatus s = addMissingCopyright(profile); s != icOk)
        return s;
    return profile.saveToMemory(out);
}

icStatus saveProfileToFile(iccProfileRW& profile, const std::string& path) {
    if (profile.findTag(kDescription) < 0) {
        const std::size_t slash = path.find_last_of("\\/");
        const std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
        if (icStatus s = setDescription(profile, name); s != icOk)
            return s;
    }
    if (icStatus s = addMissingCopyright(profile); s != icOk)
        return s;
    return profile.saveToFile(path);
}
