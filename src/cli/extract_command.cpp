#include "cli/extract_command.h"

#include "cli/cli_session.h"
#include "profile/file_io.h"

#include <cstdio>

int runExtractCommand(const std::string& imagePath, const std::string& outputPath) {
    CliSession session;
    if (!session.open(imagePath))
        return kExitFailed;
    const iccDocument& document = session.document();
    if (!document.isEmbedded()) {
        std::fprintf(stderr, "veltrino-cli: %s is no JPEG, PNG, TIFF or WebP image\n",
                     imagePath.c_str());
        return kExitFailed;
    }
    if (const icStatus s = writeFileReplacing(outputPath, document.embeddedBytes()); s != icOk) {
        reportError(session.presenter(), s, kCaption, "Error in writing a new profile.");
        return kExitFailed;
    }
    return kExitOk;
}
