#include "document/settings_model.h"

#include <array>
#include <cstdio>
#include <memory>

namespace {

struct FileCloser {
    void operator()(std::FILE* f) const { std::fclose(f); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

} // namespace

std::string cutToCharacters(std::string_view text, std::size_t maxChars) {
    std::size_t chars = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        // A character starts at every byte that is not a UTF-8 continuation byte.
        if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80 && chars++ == maxChars)
            return std::string(text.substr(0, i));
    }
    return std::string(text);
}

std::string readFolderRecord(const std::string& path, const std::string& fallback) {
    std::array<char, kFolderRecordSize> record{};
    File file(std::fopen(path.c_str(), "rb"));
    if (!file || std::fread(record.data(), 1, record.size(), file.get()) != record.size())
        return fallback;
    const std::string_view text(record.data(), record.size());
    return std::string(text.substr(0, text.find('\0')));
}

icStatus writeFolderRecord(const std::string& path, std::string_view folder, Presenter& presenter) {
    std::array<char, kFolderRecordSize> record{};
    folder = folder.substr(0, record.size() - 1);
    folder.copy(record.data(), folder.size());
    File file(std::fopen(path.c_str(), "wb"));
    if (!file) {
        presenter.messageBox(icBoxKind::stop, kCaption,
                             "Fail to open " + path + ". This file should not be write protected.");
        return icErrGeneral;
    }
    if (std::fwrite(record.data(), 1, record.size(), file.get()) != record.size())
        return icErrGeneral;
    return icOk;
}
