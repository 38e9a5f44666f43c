// The one place where a type signature names the class that decodes it. Everything that turns a
// tag's bytes into an object (the catalogue, the exchange commands, checks, comparisons, the
// fuzzer and the benchmarks) asks here.
#pragma once

#include "tagtypes/tag_type.h"

#include <memory>

class iccProfile;

// An empty object of the class for `typeSignature`. 'sf32' data of a 'chad' tag (the tag
// signature) is the chromatic adaptation matrix. -1 for a type without a class, -10 when memory
// runs out; `out` is then null.
[[nodiscard]] icStatus makeTagType(icSignature typeSignature, std::unique_ptr<iccTagType>& out,
                                   icSignature tagSignature = 0);

// Whether makeTagType has a class for the type.
bool isDecodedTagType(icSignature typeSignature);

// The tag at a directory index decoded by the class of its data's type signature: the status of
// makeTagType, or of the load and decode. `out` holds the object whenever one was made, so a
// caller can still look at the raw bytes of a tag that failed to decode.
[[nodiscard]] icStatus loadTagType(iccProfile& profile, int index,
                                   std::unique_ptr<iccTagType>& out);
