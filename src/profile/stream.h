// The source a profile reads from: an open file or a block of memory.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <span>
#include <string>
#include <vector>

// A block of memory read or written with a position. A stream made for reading owns a copy of
// the caller's block; one made for writing works directly on the caller's buffer.
class iccMemoryStream {
public:
    iccMemoryStream() = default;
    // Copies the block; throws nothing, reports allocation failure through ok().
    static iccMemoryStream forReading(std::span<const std::uint8_t> block);
    static iccMemoryStream forWriting(std::span<std::uint8_t> buffer);

    bool ok() const { return data_ != nullptr || size_ == 0; }
    bool read(void* dst, std::size_t n);
    bool write(const void* src, std::size_t n);
    // Origin 0 sets the position; 1 and 2 both add to it (the end origin behaves like the
    // current one). An offset beyond the size fails whatever the origin.
    bool seek(std::int64_t offset, int origin);
    std::int64_t length() const { return size_; }

private:
    std::vector<std::uint8_t> owned_;
    std::uint8_t* data_ = nullptr;
    std::int64_t size_ = 0;
    std::int64_t pos_ = 0;
};

// Either a file opened for binary reading or a memory stream; empty when nothing is open.
class iccStream {
public:
    bool openFile(const std::string& path);
    void openMemory(iccMemoryStream memory);
    void close();
    bool isOpen() const { return file_ != nullptr || memoryOpen_; }

    bool read(void* dst, std::size_t n);
    bool seek(std::int64_t offset);
    // Length of the file or of the memory block; -1 when it cannot be had. A file's length is
    // taken once when it is opened: the profile asks for it before every tag it reads.
    std::int64_t length() const { return length_; }

private:
    struct FileCloser {
        void operator()(std::FILE* f) const { std::fclose(f); }
    };
    std::unique_ptr<std::FILE, FileCloser> file_;
    iccMemoryStream memory_;
    bool memoryOpen_ = false;
    std::int64_t length_ = -1;
};
