#include "cli/cli_session.h"

#include <charconv>
#include <cstdint>
#include <cstdio>

namespace {

struct TagArgument {
    std::optional<std::uint64_t> index;
    icSignature signature = 0;
};

std::optional<TagArgument> parseTagArgument(const std::string& text) {
    if (text.empty())
        return std::nullopt;
    if (text.find_first_not_of("0123456789") == std::string::npos) {
        std::uint64_t index = 0;
        // An index too long for 64 bits is out of range like any beyond the directory.
        if (std::from_chars(text.data(), text.data() + text.size(), index).ec != std::errc())
            index = UINT64_MAX;
        return TagArgument{index, 0};
    }
    if (text.size() > 4)
        return std::nullopt;
    std::string padded = text;
    padded.resize(4, ' ');
    return TagArgument{std::nullopt, textToSig(padded)};
}

} // namespace

bool CliSession::open(const std::string& path) {
    presenter_.setOutput(stderr);
    const bool opened = document_.open(path);
    presenter_.setOutput(stdout);
    return opened;
}

std::optional<int> CliSession::openAt(const std::string& path, const std::string& tagText,
                                      int& index) {
    const auto tag = parseTagArgument(tagText);
    if (!tag) {
        std::fprintf(stderr,
                     "veltrino-cli: TAG must be an index or a signature of up to four "
                     "characters: %s\n",
                     tagText.c_str());
        return kExitUsage;
    }
    if (!open(path))
        return kExitFailed;
    const iccProfileRW& loaded = profile();
    index = -1;
    if (tag->index)
        index = *tag->index < static_cast<std::uint64_t>(loaded.tagCount())
                    ? static_cast<int>(*tag->index)
                    : -1;
    else
        index = loaded.findTag(tag->signature);
    if (index < 0) {
        std::fprintf(stderr, "veltrino-cli: no tag %s in %s\n", tagText.c_str(), path.c_str());
        return kExitFailed;
    }
    return std::nullopt;
}

void printLine(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fputc('\n', stdout);
}
