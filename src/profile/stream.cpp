#include "profile/stream.h"

#include <cstring>
#include <new>

iccMemoryStream iccMemoryStream::forReading(std::span<const std::uint8_t> block) {
    iccMemoryStream s;
    try {
        s.owned_.assign(block.begin(), block.end());
    } catch (const std::bad_alloc&) {
        return s;
    }
    s.data_ = s.owned_.data();
    s.size_ = static_cast<std::int64_t>(block.size());
    return s;
}

iccMemoryStream iccMemoryStream::forWriting(std::span<std::uint8_t> buffer) {
    iccMemoryStream s;
    s.data_ = buffer.data();
    s.size_ = static_cast<std::int64_t>(buffer.size());
    return s;
}

bool iccMemoryStream::read(void* dst, std::size_t n) {
    if (n > static_cast<std::uint64_t>(size_ - pos_))
        return false;
    if (n)
        std::memcpy(dst, data_ + pos_, n);
    pos_ += static_cast<std::int64_t>(n);
    return true;
}

bool iccMemoryStream::write(const void* src, std::size_t n) {
    if (n > static_cast<std::uint64_t>(size_ - pos_))
        return false;
    if (n)
        std::memcpy(data_ + pos_, src, n);
    pos_ += static_cast<std::int64_t>(n);
    return true;
}

bool iccMemoryStream::seek(std::int64_t offset, int origin) {
    if (offset > size_)
        return false;
    switch (origin) {
    case 0:
        if (offset < 0)
            return false;
        pos_ = offset;
        return true;
    case 1:
    case 2: {
        const std::int64_t next = pos_ + offset;
        if (next > size_ || next < 0)
            return false;
        pos_ = next;
        return true;
    }
    default:
        return false;
    }
}

bool iccStream::openFile(const std::string& path) {
    close();
    file_.reset(std::fopen(path.c_str(), "rb"));
    if (!file_)
        return false;
    std::FILE* f = file_.get();
    if (std::fseek(f, 0, SEEK_END) == 0) {
        length_ = std::ftell(f);
        if (std::fseek(f, 0, SEEK_SET) != 0)
            length_ = -1;
    }
    return true;
}

void iccStream::openMemory(iccMemoryStream memory) {
    close();
    memory_ = std::move(memory);
    memoryOpen_ = true;
    length_ = memory_.length();
}

void iccStream::close() {
    file_.reset();
    memory_ = iccMemoryStream();
    memoryOpen_ = false;
    length_ = -1;
}

bool iccStream::read(void* dst, std::size_t n) {
    if (file_)
        return std::fread(dst, 1, n, file_.get()) == n;
    return memoryOpen_ && memory_.read(dst, n);
}

bool iccStream::seek(std::int64_t offset) {
    if (file_)
        return offset >= 0 && std::fseek(file_.get(), static_cast<long>(offset), SEEK_SET) == 0;
    return memoryOpen_ && memory_.seek(offset, 0);
}
