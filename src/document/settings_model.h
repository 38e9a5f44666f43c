// The LUT data folder shared by the window and the import and export dialogs, and the
// file-based folder record, free of any toolkit.
#pragma once

#include "document/presenter.h"
#include "profile/status.h"

#include <cstddef>
#include <string>
#include <string_view>

// The longest data folder kept, in characters.
inline constexpr std::size_t kMaxDataDirLength = 260;

// The first `maxChars` characters of a UTF-8 text, never splitting a character.
std::string cutToCharacters(std::string_view text, std::size_t maxChars);

// The one current data folder of the program: set at start-up from the settings, changed by
// the curve and LUT import and export commands, written back when the main window closes.
class DataFolder {
public:
    static const std::string& get() { return value(); }
    static void set(std::string_view folder) {
        value() = cutToCharacters(folder, kMaxDataDirLength);
    }

private:
    static std::string& value() {
        static std::string folder;
        return folder;
    }
};

// The folder record: exactly 260 bytes holding one NUL-terminated folder path.
inline constexpr std::size_t kFolderRecordSize = 260;

// Reads the record; `fallback` when the file is missing or shorter than the record. Never fails.
std::string readFolderRecord(const std::string& path, const std::string& fallback);

// Writes the record (the folder cut to fit with its NUL). A file that cannot be opened shows
// the stop box "Fail to open PATH. This file should not be write protected." and gives -1.
[[nodiscard]] icStatus writeFolderRecord(const std::string& path, std::string_view folder,
                                         Presenter& presenter);
