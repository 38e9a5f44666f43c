#include "profile/file_io.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <limits>
#include <memory>
#include <new>
#include <system_error>

#ifdef __linux__
#include <fcntl.h>
#endif

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
    return writeFileReplacing(path, bytes.size(), [bytes](std::FILE* file) {
        return std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    });
}

icStatus writeFileReplacing(const std::string& path, std::uint64_t size,
                            const std::function<bool(std::FILE*)>& write) {
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
#ifdef __linux__
    // Only a hint: where it fails the writes allocate as they go.
    if (size > 0 && size <= std::uint64_t(std::numeric_limits<off_t>::max()))
        (void)fallocate(fileno(file.get()), 0, 0, static_cast<off_t>(size));
#endif
    const bool written = write(file.get());
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
