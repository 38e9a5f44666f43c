// Where the exchange readers find their files: a folder on disk, or named texts in memory (for
// the fuzzer and the tests). Files are always read whole and written in one go.
#pragma once

#include "profile/status.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
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

// Takes one piece of a file and whether it is the last; false when it wants no more.
using icPieceConsumer = std::function<bool(std::string_view piece, bool last)>;

class icExchangeSource {
public:
    virtual ~icExchangeSource() = default;
    // The whole file `name`; -100 when there is none or it cannot be read, -10 without memory.
    [[nodiscard]] virtual icStatus read(std::string_view name, std::string& text) = 0;
    // Its length in bytes without reading it; none when there is no such file.
    virtual std::optional<std::uint64_t> size(std::string_view name) = 0;
    // The file `name` handed to `consume` in order, in pieces that end at white space or at the
    // end of the file, so that no number is cut in two. The file is read to its end even after
    // `consume` wanted no more. Statuses as for read(). Here the whole file is one piece.
    [[nodiscard]] virtual icStatus readPieces(std::string_view name,
                                              const icPieceConsumer& consume);
};

class icFolderSource : public icExchangeSource {
public:
    explicit icFolderSource(std::filesystem::path folder) : folder_(std::move(folder)) {}
    [[nodiscard]] icStatus read(std::string_view name, std::string& text) override;
    std::optional<std::uint64_t> size(std::string_view name) override;
    // A table file of tens of megabytes is parsed as it is read, a few hundred kilobytes at a
    // time, instead of being held whole.
    [[nodiscard]] icStatus readPieces(std::string_view name,
                                      const icPieceConsumer& consume) override;

private:
    std::filesystem::path folder_;
};

class icMemorySource : public icExchangeSource {
public:
    std::map<std::string, std::string, std::less<>> files;
    [[nodiscard]] icStatus read(std::string_view name, std::string& text) override;
    std::optional<std::uint64_t> size(std::string_view name) override;
};

// Runs `import` over the files of a folder; -10 when the folder's path cannot be held.
template <class Import> icStatus withFolder(const std::filesystem::path& folder, Import import) {
    try {
        icFolderSource files(folder);
        return import(files);
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
}
