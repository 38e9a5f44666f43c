#include "lutio/exchange_files.h"

#include <cstdio>
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
