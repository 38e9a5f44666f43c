// Where the exchange readers find their files: a folder on disk, or named texts in memory (for
// the fuzzer and the tests). Files are always read whole and written in one go.
#pragma once

#include "profile/status.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>

// Tables whose encoding would exceed this many bytes are allocated only when the folder's
// table files are long enough to fill them: a header of a few bytes must not be able to make an
// import reserve gigabytes. Real tables stay far below it.
inline constexpr std::uint64_t kUnbackedTableBytes = 16u << 20;
// How far the size stored for an 'mAB '/'mBA ' tag may exceed the bytes its elements take: room
// for gaps and trailing padding, but not a hostile size.
inline constexpr std::uint64_t kMaxLayoutSlack = 64u << 10;

// Reads the whole file into `text`; -100 when it cannot be opened or read, -10 without memory.
[[nodiscard]] icStatus readTextFile(const std::filesystem::path& path, std::string& text);
// Creates or truncates the file and writes the text; -100 when it cannot be created or written.
[[nodiscard]] icStatus writeTextFile(const std::filesystem::path& path, std::string_view text);

class icExchangeSource {
public:
    virtual ~icExchangeSource() = default;
    // The whole file `name`, held by the source for as long as it lives; -100 when there is none
    // or it cannot be read, -10 without memory. A file read twice gives the same text.
    [[nodiscard]] virtual icStatus read(std::string_view name, std::string_view& text) = 0;
    // Its length in bytes without reading it; none when there is no such file.
    virtual std::optional<std::uint64_t> size(std::string_view name) = 0;
};

// A folder on disk. It keeps every answer it gave, so that unchanged() can tell whether reading
// the folder again would give a reader the same answers.
class icFolderSource : public icExchangeSource {
public:
    explicit icFolderSource(std::filesystem::path folder) : folder_(std::move(folder)) {}
    [[nodiscard]] icStatus read(std::string_view name, std::string_view& text) override;
    std::optional<std::uint64_t> size(std::string_view name) override;
    // Whether every file read still holds the same bytes and every size asked for is still the
    // same: false as well when a read had failed or the files cannot be read again.
    bool unchanged();

private:
    struct HeldText {
        std::unique_ptr<char[]> data;
        std::size_t size = 0;
    };
    std::filesystem::path folder_;
    std::map<std::string, HeldText, std::less<>> texts_;
    std::map<std::string, std::optional<std::uint64_t>, std::less<>> sizes_;
    bool failed_ = false;
};

class icMemorySource : public icExchangeSource {
public:
    std::map<std::string, std::string, std::less<>> files;
    [[nodiscard]] icStatus read(std::string_view name, std::string_view& text) override;
    std::optional<std::uint64_t> size(std::string_view name) override;
};

// Runs `import` over the files of a folder; -10 when the folder's path cannot be held.
template <class Import> icStatus withFolder(const std::filesystem::path& folder, Import&& import) {
    try {
        icFolderSource files(folder);
        return import(files);
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
}
