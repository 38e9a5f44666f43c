#include "lutio/exchange_files.h"

#include <cstdint>
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

// The whole file in a buffer of its own, read to its end rather than trusting its size: the file
// may change while it is read. Throws std::bad_alloc.
icStatus readWhole(const std::filesystem::path& path, std::unique_ptr<char[]>& data,
                   std::size_t& size) {
    FilePtr file(std::fopen(path.c_str(), "rb"));
    if (!file)
        return icErrFile;
    std::error_code ec;
    const std::uintmax_t expected = std::filesystem::file_size(path, ec);
    // One byte more than expected, so that reaching the end needs no second buffer.
    std::size_t capacity = ec || expected >= SIZE_MAX / 2 ? 1u << 16 : std::size_t(expected) + 1;
    data = std::make_unique_for_overwrite<char[]>(capacity);
    size = 0;
    for (;;) {
        size += std::fread(data.get() + size, 1, capacity - size, file.get());
        if (size < capacity)
            return std::ferror(file.get()) ? icErrFile : icOk;
        auto larger = std::make_unique_for_overwrite<char[]>(2 * capacity);
        std::memcpy(larger.get(), data.get(), size);
        data = std::move(larger);
        capacity *= 2;
    }
}

// Whether the file holds exactly `text`, compared a block at a time.
bool holdsText(const std::filesystem::path& path, std::string_view text) {
    FilePtr file(std::fopen(path.c_str(), "rb"));
    if (!file)
        return false;
    constexpr std::size_t kBlock = 1u << 20;
    const auto block = std::make_unique_for_overwrite<char[]>(kBlock);
    for (;;) {
        const std::size_t n = std::fread(block.get(), 1, kBlock, file.get());
        if (n > text.size() || std::memcmp(block.get(), text.data(), n) != 0)
            return false;
        text.remove_prefix(n);
        if (n < kBlock)
            return text.empty() && !std::ferror(file.get());
    }
}

} // namespace

icStatus readTextFile(const std::filesystem::path& path, std::string& text) {
    text.clear();
    try {
        std::unique_ptr<char[]> data;
        std::size_t size = 0;
        if (icStatus s = readWhole(path, data, size); s != icOk)
            return s;
        text.assign(data.get(), size);
    } catch (const std::bad_alloc&) {
        text.clear();
        text.shrink_to_fit();
        return icErrNoMemory;
    }
    return icOk;
}

icStatus writeTextFile(const std::filesystem::path& path, std::string_view text) {
    FilePtr file(std::fopen(path.c_str(), "wb"));
    if (!file)
        return icErrFile;
    const bool written = std::fwrite(text.data(), 1, text.size(), file.get()) == text.size();
    return written && std::fclose(file.release()) == 0 ? icOk : icErrFile;
}

icStatus icFolderSource::read(std::string_view name, std::string_view& text) {
    try {
        auto held = texts_.find(name);
        if (held == texts_.end()) {
            HeldText file;
            if (icStatus s = readWhole(folder_ / name, file.data, file.size); s != icOk) {
                failed_ = true;
                return s;
            }
            held = texts_.emplace(std::string(name), std::move(file)).first;
        }
        text = {held->second.data.get(), held->second.size};
        return icOk;
    } catch (const std::bad_alloc&) {
        failed_ = true;
        return icErrNoMemory;
    }
}

std::optional<std::uint64_t> icFolderSource::size(std::string_view name) {
    try {
        std::error_code ec;
        const std::uintmax_t n = std::filesystem::file_size(folder_ / name, ec);
        const std::optional<std::uint64_t> answer =
            ec ? std::nullopt : std::optional<std::uint64_t>(n);
        sizes_.insert_or_assign(std::string(name), answer);
        return answer;
    } catch (const std::bad_alloc&) {
        failed_ = true;
        return std::nullopt;
    }
}

bool icFolderSource::unchanged() {
    if (failed_)
        return false;
    try {
        for (const auto& [name, text] : texts_)
            if (!holdsText(folder_ / name, {text.data.get(), text.size}))
                return false;
        for (const auto& [name, size] : sizes_) {
            std::error_code ec;
            const std::uintmax_t n = std::filesystem::file_size(folder_ / name, ec);
            if (ec ? size.has_value() : size != n)
                return false;
        }
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

icStatus icMemorySource::read(std::string_view name, std::string_view& text) {
    const auto it = files.find(name);
    if (it == files.end())
        return icErrFile;
    text = it->second;
    return icOk;
}

std::optional<std::uint64_t> icMemorySource::size(std::string_view name) {
    const auto it = files.find(name);
    if (it == files.end())
        return std::nullopt;
    return it->second.size();
}
