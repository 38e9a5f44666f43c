#include "lutio/exchange_files.h"

#include "lutio/exchange_text.h"

#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <system_error>

namespace {

struct FileCloser {
    void operator()(std::FILE* f) const { std::fclose(f); }
};
using FilePtr = std::unique_ptr<std::FILE, FileCloser>;

} // namespace

icStatus readTextFile(const std::filesystem::path& path, std::string& text) {
    text.clear();
    FilePtr file(std::fopen(path.c_str(), "rb"));
    if (!file)
        return icErrFile;
    std::error_code ec;
    const std::uintmax_t expected = std::filesystem::file_size(path, ec);
    try {
        if (!ec)
            text.reserve(static_cast<std::size_t>(expected));
        // Read to the end rather than trusting the size: the file may change while it is read.
        char chunk[1 << 16];
        for (;;) {
            const std::size_t n = std::fread(chunk, 1, sizeof chunk, file.get());
            text.append(chunk, n);
            if (n < sizeof chunk)
                break;
        }
    } catch (const std::bad_alloc&) {
        text.clear();
        text.shrink_to_fit();
        return icErrNoMemory;
    } catch (const std::length_error&) {
        text.clear();
        text.shrink_to_fit();
        return icErrNoMemory;
    }
    return std::ferror(file.get()) ? icErrFile : icOk;
}

icStatus writeTextFile(const std::filesystem::path& path, std::string_view text) {
    FilePtr file(std::fopen(path.c_str(), "wb"));
    if (!file)
        return icErrFile;
    const bool written = std::fwrite(text.data(), 1, text.size(), file.get()) == text.size();
    return written && std::fclose(file.release()) == 0 ? icOk : icErrFile;
}

icStatus icFolderSource::read(std::string_view name, std::string& text) {
    try {
        return readTextFile(folder_ / name, text);
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
}

icStatus icExchangeSource::readPieces(std::string_view name, const icPieceConsumer& consume) {
    std::string text;
    if (icStatus s = read(name, text); s != icOk)
        return s;
    consume(text, true);
    return icOk;
}

icStatus icFolderSource::readPieces(std::string_view name, const icPieceConsumer& consume) {
    // Large enough that reading costs little per byte, small enough to stay in the cache while
    // it is parsed. It grows only for a run without white space that does not fit.
    constexpr std::size_t kPieceBytes = 256u << 10;
    try {
        FilePtr file(std::fopen((folder_ / name).c_str(), "rb"));
        if (!file)
            return icErrFile;
        std::size_t capacity = kPieceBytes, held = 0;
        auto buffer = std::make_unique_for_overwrite<char[]>(capacity);
        bool wanted = true;
        for (;;) {
            if (held == capacity) {
                auto larger = std::make_unique_for_overwrite<char[]>(2 * capacity);
                std::memcpy(larger.get(), buffer.get(), held);
                buffer = std::move(larger);
                capacity *= 2;
            }
            held += std::fread(buffer.get() + held, 1, capacity - held, file.get());
            if (held < capacity) {
                // The end of the file (or a read error).
                if (std::ferror(file.get()))
                    return icErrFile;
                if (wanted)
                    consume({buffer.get(), held}, true);
                return icOk;
            }
            // Up to and including the last white space; the rest starts the next piece.
            std::size_t cut = held;
            while (cut > 0 && !isScanSpace(buffer[cut - 1]))
                --cut;
            if (cut == 0)
                continue;
            if (wanted)
                wanted = consume({buffer.get(), cut}, false);
            std::memmove(buffer.get(), buffer.get() + cut, held - cut);
            held -= cut;
        }
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
}

std::optional<std::uint64_t> icFolderSource::size(std::string_view name) {
    try {
        std::error_code ec;
        const std::uintmax_t n = std::filesystem::file_size(folder_ / name, ec);
        if (ec)
            return std::nullopt;
        return n;
    } catch (const std::bad_alloc&) {
        return std::nullopt;
    }
}

icStatus icMemorySource::read(std::string_view name, std::string& text) {
    const auto it = files.find(name);
    if (it == files.end())
        return icErrFile;
    try {
        text = it->second;
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    return icOk;
}

std::optional<std::uint64_t> icMemorySource::size(std::string_view name) {
    const auto it = files.find(name);
    if (it == files.end())
        return std::nullopt;
    return it->second.size();
}
