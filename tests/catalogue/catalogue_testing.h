// Catalogue and viewer test helpers: a presenter recording boxes and viewers as veltrino-cli does.
#pragma once

#include "catalogue/catalogue.h"
#include "catalogue/named_color2.h"
#include "support/test_support.h"
#include "tagtypes/curve_type.h"
#include "tagtypes/lut16_type.h"
#include "tagtypes/lut_atob_type.h"
#include "tagtypes/multi_localized_unicode_type.h"
#include "tagtypes/text_description_type.h"
#include "tagtypes/xyz_type.h"
#include "viewers/curve_model.h"
#include "viewers/lut_model.h"
#include "viewers/mluc_model.h"
#include "viewers/mlut_model.h"
#include "viewers/named_color_model.h"
#include "viewers/xyz_model.h"

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

struct Shown {
    std::string kind; // "info", "warning", "stop", "text" or "viewer NAME"
    std::string caption;
    std::string text; // viewer lines joined with line feeds
    friend bool operator==(const Shown&, const Shown&) = default;
};

inline std::ostream& operator<<(std::ostream& os, const Shown& s) {
    return os << "{" << s.kind << " | " << s.caption << " | " << s.text << "}";
}

inline std::string joinLines(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines)
        text += (text.empty() ? "" : "\n") + line;
    return text;
}

class RecordingPresenter : public Presenter {
public:
    std::vector<Shown> shown;
    // How every viewer closes; an edit hook runs on the object before it closes.
    icViewerResult answer{true, false, icOk};
    std::function<void(iccCurveElement&)> editCurve;
    std::function<void(iccXYZType&)> editXYZ;
    std::function<void(LutModel&)> editLut;
    std::function<void(iccMlutType&)> editMlut;
    icSignature lutOutputSpace = 0;

    void messageBox(icBoxKind kind, std::string_view caption, std::string_view text) override {
        static const char* kinds[] = {"info", "warning", "stop"};
        record(kinds[static_cast<int>(kind)], caption, text);
    }
    void showLargeText(std::string_view caption, std::string_view text) override {
        record("text", caption, text);
    }
    void showHexDump(std::string_view caption, const std::vector<std::string>& lines) override {
        record("viewer hexdump", caption, joinLines(lines));
    }
    icViewerResult curveViewer(std::string_view caption, iccCurveElement& curve) override {
        return view("curve", caption, CurveModel(curve, caption).lines(), editCurve, curve);
    }
    icViewerResult xyzViewer(std::string_view caption, iccXYZType& xyz) override {
        return view("xyz", caption, XyzModel(xyz, caption).lines(), editXYZ, xyz);
    }
    icViewerResult lutViewer(std::string_view caption, iccMftLut& lut,
                             icSignature outputSpace) override {
        LutModel model(lut, outputSpace);
        lutOutputSpace = outputSpace;
        return view("lut", caption, model.lines(), editLut, model);
    }
    icViewerResult mlutViewer(std::string_view caption, iccMlutType& lut) override {
        return view("mlut", caption, MlutModel(lut).lines(), editMlut, lut);
    }
    icViewerResult namedColorViewer(std::string_view caption, const icNamedColor2& colors,
                                    icSignature pcs) override {
        return view<const icNamedColor2>("namedcolor", caption,
                                         NamedColorModel(colors, pcs).lines(), {}, colors);
    }
    icViewerResult mlucViewer(std::string_view caption,
                              const iccMultiLocalizedUnicodeType& strings) override {
        return view<const iccMultiLocalizedUnicodeType>("mluc", caption, MlucModel(strings).lines(),
                                                        {}, strings);
    }

private:
    void record(std::string kind, std::string_view caption, std::string_view text) {
        shown.push_back({std::move(kind), std::string(caption), std::string(text)});
    }
    template <class T>
    icViewerResult view(const char* name, std::string_view caption,
                        const std::vector<std::string>& lines, const std::function<void(T&)>& edit,
                        T& object) {
        record(std::string("viewer ") + name, caption, joinLines(lines));
        if (edit)
            edit(object);
        return answer;
    }
};

// ---- tag bytes ------------------------------------------------------------------------------

inline std::uint32_t fixed(double v) {
    return static_cast<std::uint32_t>(doubleToS15Fixed16(v));
}

inline Bytes curvTag(std::initializer_list<std::uint16_t> entries) {
    Bytes bytes = wordTag(icSig("curv"), {static_cast<std::uint32_t>(entries.size())});
    iccWriter w(bytes);
    for (std::uint16_t e : entries)
        w.u16(e);
    return bytes;
}

inline Bytes xyzTag(double x, double y, double z) {
    return wordTag(icSig("XYZ "), {fixed(x), fixed(y), fixed(z)});
}

template <class Tag> Bytes rawOf(Tag& tag) {
    const auto data = tag.getData();
    return Bytes(data.begin(), data.end());
}

template <class Text> Bytes asciiTag(const std::string& text) {
    Text tag;
    EXPECT_EQ(tag.setFromAscii(text), icOk);
    return rawOf(tag);
}
inline Bytes mlucTag(const std::string& text) {
    return asciiTag<iccMultiLocalizedUnicodeType>(text);
}
inline Bytes descTag(const std::string& text) {
    return asciiTag<iccTextDescriptionType>(text);
}

// 'ncl2' announcing `count` colours and holding `colors` (PCS then device values), named 'a', 'b',
// ...: flags 0x10, prefix "P" and a suffix of 32 'S' without a NUL.
inline Bytes ncl2Tag(std::uint32_t count, std::uint32_t planes,
                     const std::vector<std::vector<std::uint16_t>>& colors) {
    Bytes bytes = wordTag(icSig("ncl2"), {0x10, count, planes});
    Bytes prefix(32, 0), suffix(32, 'S'); // the suffix fills its field without a NUL
    prefix[0] = 'P';
    bytes.insert(bytes.end(), prefix.begin(), prefix.end());
    bytes.insert(bytes.end(), suffix.begin(), suffix.end());
    iccWriter w(bytes);
    for (std::size_t i = 0; i < colors.size(); ++i) {
        Bytes name(32, 0);
        name[0] = static_cast<std::uint8_t>('a' + i);
        w.bytes(name);
        for (std::uint16_t v : colors[i])
            w.u16(v);
    }
    return bytes;
}

// 'mAB ' with one input and one output: B curve, a 2-point 16-bit CLUT (32768, 65535), 12 bytes
// of gap and an A curve.
inline Bytes mabTag() {
    const std::uint32_t curv = icSig("curv"), clut = 0x02000000;
    return wordTag(icSig("mAB "), {0x01010000, 32, 0,    0,          44, 80, curv, 0,    0, clut, 0,
                                   0,          0,  clut, 0x8000FFFF, 0,  0,  0,    curv, 0, 0});
}

// Shows tag `index` of a one-tag (or more) profile and returns what was shown.
struct ShowResult {
    icStatus status;
    std::vector<Shown> shown;
};

inline ShowResult showOne(icSignature sig, const Bytes& bytes, bool v4 = false) {
    ProfileBuilder builder;
    builder.header.version = v4 ? 0x04300000 : 0x02100000;
    auto profile = loaded(builder.tag(sig, bytes).build());
    RecordingPresenter presenter;
    const icStatus s = showTag(presenter, *profile, 0);
    return {s, presenter.shown};
}
