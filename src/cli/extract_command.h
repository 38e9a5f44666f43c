// veltrino-cli extract: the ICC profile embedded in a JPEG, PNG, TIFF or WebP image, written out
// byte for byte.
#pragma once

#include <string>

// Opens the image's profile as every command does (so a damaged one gets the loader's messages)
// and writes its bytes, exactly as embedded, to OUTPUT. Returns the exit status: 0, or 1 when
// the image holds no sound profile, is no image, or OUTPUT cannot be written; nothing is
// written then.
int runExtractCommand(const std::string& imagePath, const std::string& outputPath);
