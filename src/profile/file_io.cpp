#include "profile/file_io.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <new>
#include <system_error>

namespace {

struct FileCloser {
    void operator()(std::FILE* f) const { std::fclose(f); }
};
using FilePtr = std::unique_ptr<std::FILE, FileCloser>;

} // namespace

icStatus readWholeFile(const std::string& path, std::vector<std::uint8_t>& out) {
    FilePtr file(std::fopen(path.c_str(), "rb"));
    if (!file || std::fseek(file.get(), 0, SEEK_END) != 0)
        return icErrFile;
    const long length = std::ftell(file.get());
    if (length < 0 || std::fseek(file.get(), 0, SEEK_SET) != 0)
        return icErrFile;
    try {
        out.resize(static_cast<std::size_t>(length));
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    if (std::fread(out.data(), 1, out.size(), file.get()) != out.size())
        return icErrFile;
    return icOk;
}

icStatus writeFileReplacing(const std::string& path, std::span<const std::uint8_t> bytes) {
    namespace fs = std::filesystem;
    std::error_code ec;
    const fs::path target(path);
    if (fs::exists(target, ec)) {
        // Respect a write-protected target: it is not ours to replace.
        if (fs::is_directory(target, ec)) {
            errno = EISDIR;
            return icErrFile;
        }
        if (!FilePtr(std::fopen(path.c_str(), "rb+")))
            return icErrFile;
    }
    // A fresh name beside the target, created exclusively so that nothing else is clobbered.
    fs::path temporary;
    FilePtr file;
    for (int attempt = 0; attempt < 100 && !file; ++attempt) {
        temporary = target;
        temporary += ".saving" + std::to_string(attempt);
        file.reset(std::fopen(temporary.string().c_str(), "wbx"));
    }
    if (!file)
        return icErrFile;
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size();
    const bool closed = std::fclose(file.release()) == 0;
    if (!written || !closed) {
        const int reason = errno;
        fs::remove(temporary, ec);
        errno = reason;
        return icErrFile;
    }
    const bool existed = fs::exists(target, ec);
    if (existed)
        fs::permissions(temporary, fs::status(target, ec).permissions(), ec);
    fs::rename(temporary, target, ec);
    if (ec) {
        const int reason = ec.value();
        fs::remove(temporary, ec);
        errno = reason;
        return icErrFile;
    }
    return icOk;
}
