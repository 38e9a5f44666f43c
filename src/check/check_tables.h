// The ICC's registers the check compares a profile with: device classes, colour spaces with their
// channel counts, and the tag types each registered tag signature may hold. Internal to
// src/check.
#pragma once

#include "profile/byte_io.h"

#include <array>
#include <cstdint>
#include <initializer_list>
#include <string_view>

inline constexpr std::array kDeviceClasses = {icSig("scnr"), icSig("mntr"), icSig("prtr"),
                                              icSig("link"), icSig("spac"), icSig("abst"),
                                              icSig("nmcl")};

constexpr bool isDeviceClass(icSignature sig) {
    for (icSignature c : kDeviceClasses)
        if (c == sig)
            return true;
    return false;
}

// Channels of a colour space signature; 0 for a signature the ICC does not register.
constexpr std::uint32_t colorSpaceChannels(icSignature sig) {
    constexpr std::array<std::pair<icSignature, std::uint32_t>, 11> kSpaces{{
        {icSig("XYZ "), 3},
        {icSig("Lab "), 3},
        {icSig("Luv "), 3},
        {icSig("YCbr"), 3},
        {icSig("Yxy "), 3},
        {icSig("RGB "), 3},
        {icSig("GRAY"), 1},
        {icSig("HSV "), 3},
        {icSig("HLS "), 3},
        {icSig("CMYK"), 4},
        {icSig("CMY "), 3},
    }};
    for (const auto& [space, channels] : kSpaces)
        if (space == sig)
            return channels;
    // '2CLR' to '9CLR' and 'ACLR' to 'FCLR': 2 to 15 colours.
    if ((sig & 0x00FFFFFF) == (icSig("2CLR") & 0x00FFFFFF)) {
        const char c = static_cast<char>(sig >> 24);
        if (c >= '2' && c <= '9')
            return static_cast<std::uint32_t>(c - '0');
        if (c >= 'A' && c <= 'F')
            return static_cast<std::uint32_t>(c - 'A' + 10);
    }
    return 0;
}

constexpr bool isPcs(icSignature sig) {
    return sig == icSig("XYZ ") || sig == icSig("Lab ");
}

// The tag types a registered tag may hold. Text tags hold 'desc' or 'text' before version 4
// and 'mluc' from version 4 on; the type of the other version is tolerated with a warning.
struct icTagTypeRule {
    icSignature tag;
    std::array<icSignature, 4> types; // unused slots 0
    bool text = false;                // types[0] before version 4, 'mluc' from version 4
};

namespace check_detail {

constexpr icTagTypeRule rule(const char (&tag)[5], std::initializer_list<icSignature> types,
                             bool text = false) {
    icTagTypeRule r{icSig(tag), {}, text};
    std::size_t i = 0;
    for (icSignature t : types)
        r.types[i++] = t;
    return r;
}

} // namespace check_detail

inline constexpr auto kTagTypeRules = [] {
    using check_detail::rule;
    const icSignature mft1 = icSig("mft1"), mft2 = icSig("mft2"), mAB = icSig("mAB "),
                      mBA = icSig("mBA "), xyz = icSig("XYZ "), curv = icSig("curv"),
                      para = icSig("para"), sig = icSig("sig "), data = icSig("data"),
                      mpet = icSig("mpet"), desc = icSig("desc"), text = icSig("text");
    return std::array{
        rule("A2B0", {mft1, mft2, mAB}),
        rule("A2B1", {mft1, mft2, mAB}),
        rule("A2B2", {mft1, mft2, mAB}),
        rule("B2A0", {mft1, mft2, mBA}),
        rule("B2A1", {mft1, mft2, mBA}),
        rule("B2A2", {mft1, mft2, mBA}),
        rule("gamt", {mft1, mft2, mBA}),
        rule("pre0", {mft1, mft2, mAB, mBA}),
        rule("pre1", {mft1, mft2, mAB, mBA}),
        rule("pre2", {mft1, mft2, mAB, mBA}),
        rule("rXYZ", {xyz}),
        rule("gXYZ", {xyz}),
        rule("bXYZ", {xyz}),
        rule("wtpt", {xyz}),
        rule("bkpt", {xyz}),
        rule("lumi", {xyz}),
        rule("rTRC", {curv, para}),
        rule("gTRC", {curv, para}),
        rule("bTRC", {curv, para}),
        rule("kTRC", {curv, para}),
        rule("chad", {icSig("sf32")}),
        rule("calt", {icSig("dtim")}),
        rule("targ", {text}),
        rule("tech", {sig}),
        rule("ciis", {sig}),
        rule("rig0", {sig}),
        rule("rig2", {sig}),
        rule("meas", {icSig("meas")}),
        rule("view", {icSig("view")}),
        rule("scrn", {icSig("scrn")}),
        rule("devs", {icSig("devs")}),
        rule("crdi", {icSig("crdi")}),
        rule("bfd ", {icSig("ucrb")}),
        rule("pseq", {icSig("pseq")}),
        rule("psid", {icSig("psid")}),
        rule("resp", {icSig("rcs2")}),
        rule("ncl2", {icSig("ncl2")}),
        rule("ncol", {icSig("ncol")}),
        rule("chrm", {icSig("chrm")}),
        rule("clro", {icSig("clro")}),
        rule("clrt", {icSig("clrt")}),
        rule("clot", {icSig("clrt")}),
        rule("meta", {icSig("dict")}),
        rule("cicp", {icSig("cicp")}),
        rule("ps2s", {data}),
        rule("ps2i", {data}),
        rule("psd0", {data}),
        rule("psd1", {data}),
        rule("psd2", {data}),
        rule("psd3", {data}),
        rule("D2B0", {mpet}),
        rule("D2B1", {mpet}),
        rule("D2B2", {mpet}),
        rule("D2B3", {mpet}),
        rule("B2D0", {mpet}),
        rule("B2D1", {mpet}),
        rule("B2D2", {mpet}),
        rule("B2D3", {mpet}),
        rule("cprt", {text}, true),
        rule("desc", {desc}, true),
        rule("dmnd", {desc}, true),
        rule("dmdd", {desc}, true),
        rule("vued", {desc}, true),
        rule("scrd", {desc}, true),
    };
}();

constexpr const icTagTypeRule* findTagTypeRule(icSignature tag) {
    for (const icTagTypeRule& r : kTagTypeRules)
        if (r.tag == tag)
            return &r;
    return nullptr;
}
