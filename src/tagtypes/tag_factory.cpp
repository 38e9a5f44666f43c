#include "tagtypes/tag_factory.h"

#include "profile/profile.h"
#include "tagtypes/curve_type.h"
#include "tagtypes/lut16_type.h"
#include "tagtypes/lut_atob_type.h"
#include "tagtypes/multi_localized_unicode_type.h"
#include "tagtypes/profile_sequence_desc_type.h"
#include "tagtypes/s15fixed16_array_type.h"
#include "tagtypes/text_description_type.h"
#include "tagtypes/text_type.h"
#include "tagtypes/xyz_type.h"

#include <array>
#include <new>

namespace {

struct TagClass {
    icSignature type;
    std::unique_ptr<iccTagType> (*make)();
};

template <class Tag> std::unique_ptr<iccTagType> make() {
    return std::make_unique<Tag>();
}

// Every type signature Veltrino decodes, with its class. A new tag type joins with one row.
constexpr std::array kTagClasses{
    TagClass{iccTextType::kSignature, make<iccTextType>},
    TagClass{iccTextDescriptionType::kSignature, make<iccTextDescriptionType>},
    TagClass{iccMultiLocalizedUnicodeType::kSignature, make<iccMultiLocalizedUnicodeType>},
    TagClass{iccCurveType::kSignature, make<iccCurveType>},
    TagClass{iccParametricCurveType::kSignature, make<iccParametricCurveType>},
    TagClass{iccXYZType::kSignature, make<iccXYZType>},
    TagClass{iccS15Fixed16ArrayType::kSignature, make<iccS15Fixed16ArrayType>},
    TagClass{iccProfileSequenceDescType::kSignature, make<iccProfileSequenceDescType>},
    TagClass{iccLut8Type::kSignature, make<iccLut8Type>},
    TagClass{iccLut16Type::kSignature, make<iccLut16Type>},
    TagClass{iccMlutType::kAToB, make<iccLutAToBType>},
    TagClass{iccMlutType::kBToA, make<iccLutBToAType>},
};

} // namespace

icStatus makeTagType(icSignature typeSignature, std::unique_ptr<iccTagType>& out,
                     icSignature tagSignature) {
    out.reset();
    try {
        if (typeSignature == iccChromaticAdaptationType::kSignature &&
            tagSignature == icSig("chad")) {
            out = make<iccChromaticAdaptationType>();
            return icOk;
        }
        for (const TagClass& c : kTagClasses)
            if (c.type == typeSignature) {
                out = c.make();
                return icOk;
            }
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    return icErrGeneral;
}

bool isDecodedTagType(icSignature typeSignature) {
    for (const TagClass& c : kTagClasses)
        if (c.type == typeSignature)
            return true;
    return false;
}

icStatus loadTagType(iccProfile& profile, int index, std::unique_ptr<iccTagType>& out) {
    const icTag* entry = profile.getEntry(index);
    if (entry == nullptr || index >= profile.tagCount()) {
        out.reset();
        return icErrInvalidArg;
    }
    if (icStatus s = makeTagType(profile.getTagTypeSignature(index), out, entry->sig); s != icOk)
        return s;
    return out->loadByIndex(index, profile);
}
