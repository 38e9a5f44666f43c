// Writes hostile profiles for the fuzz replay test: real profiles cut short at the places where
// the loader changes what it reads, directory counts and entries that point outside the file,
// text tags whose own counts lie, and a directory too full to take the copyright a save adds.
//
//     veltrino_make_hostile_inputs OUTPUT_DIR PROFILE...
#include "support/test_support.h"
#include "tagtypes/text_description_type.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <set>
#include <string>

namespace fs = std::filesystem;

namespace {

constexpr std::uint32_t kDirectoryStart = kHeaderSize + 4;

class Output {
public:
    // Starts from an empty folder, so inputs of an earlier run under other names do not linger.
    explicit Output(fs::path dir) : dir_(std::move(dir)) {
        fs::remove_all(dir_);
        fs::create_directories(dir_);
    }
    void write(const std::string& name, const Bytes& bytes) {
        writeBytes(dir_ / (name + ".icc"), bytes);
        ++count_;
    }
    int count() const { return count_; }

private:
    fs::path dir_;
    int count_ = 0;
};

Bytes patched32(Bytes bytes, std::size_t at, std::uint32_t value) {
    if (at + 4 <= bytes.size())
        storeBE32(bytes.data() + at, value);
    return bytes;
}

std::uint32_t entryField(const Bytes& bytes, std::uint32_t index, std::uint32_t field) {
    return loadBE32(bytes.data() + kDirectoryStart + 12 * index + 4 * field);
}

bool isTextType(icSignature type) {
    return type == icSig("text") || type == icSig("desc") || type == icSig("mluc");
}

void realProfileVariants(Output& out, const fs::path& path) {
    const Bytes real = readBytes(path);
    if (real.size() < kDirectoryStart) {
        std::fprintf(stderr, "%s is too short to be a profile\n", path.c_str());
        std::exit(1);
    }
    const std::string stem = path.parent_path().filename().string() + "-" + path.stem().string();
    const std::uint32_t count = std::min<std::uint32_t>(loadBE32(real.data() + kHeaderSize), 50);
    const std::size_t directoryEnd =
        std::min<std::size_t>(kDirectoryStart + 12 * count, real.size());

    // Cut inside the header, the count, the directory and the tag data.
    std::set<std::size_t> cuts = {0, 1, kHeaderSize - 1, kHeaderSize, kDirectoryStart - 1};
    cuts.insert(
        {kDirectoryStart, directoryEnd - 1, directoryEnd, real.size() / 2, real.size() - 1});
    for (std::size_t cut : cuts)
        if (cut < real.size())
            out.write(stem + "-cut-" + std::to_string(cut),
                      Bytes(real.begin(), real.begin() + static_cast<std::ptrdiff_t>(cut)));

    // Counts past the 50 entries the directory holds; 0x15555556 entries of 12 bytes wrap a
    // 32-bit product to 8.
    for (std::uint32_t badCount : {0xFFFFFFFFu, 51u, 0x15555556u, 0x80000000u})
        out.write(stem + "-count-" + std::to_string(badCount),
                  patched32(real, kHeaderSize, badCount));
    out.write(stem + "-header-size-max", patched32(real, 0, 0xFFFFFFFF));
    out.write(stem + "-header-size-0", patched32(real, 0, 0));
    if (count == 0 || directoryEnd < kDirectoryStart + 12 * count)
        return;

    const std::size_t firstOffset = kDirectoryStart + 4;
    out.write(stem + "-offset-wraps",
              patched32(patched32(real, firstOffset, 0xFFFFFFF0), firstOffset + 4, 0x20));
    out.write(stem + "-size-max", patched32(real, firstOffset + 4, 0xFFFFFFFF));

    // Every entry at the first entry's offset: all share its block whatever size they claim.
    Bytes shared = real;
    for (std::uint32_t i = 1; i < count; ++i)
        shared = patched32(shared, kDirectoryStart + 12 * i + 4, entryField(real, 0, 1));
    out.write(stem + "-all-share-first", shared);

    // Text tags whose directory entry cuts them short: the decoder sees fewer bytes than the
    // tag's own counts claim.
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint32_t offset = entryField(real, i, 1);
        const std::uint32_t size = entryField(real, i, 2);
        if (std::uint64_t(offset) + 4 > real.size() || !isTextType(loadBE32(&real[offset])))
            continue;
        for (std::uint32_t cut : {0u, 4u, 8u, 9u, 12u, 16u, size / 2, size - 1}) {
            if (cut >= size)
                continue;
            out.write(stem + "-tag" + std::to_string(i) + "-size-" + std::to_string(cut),
                      patched32(real, kDirectoryStart + 12 * i + 8, cut));
        }
    }
}

Bytes validDescription() {
    iccTextDescriptionType desc;
    if (desc.setFromAscii("hostile") != icOk)
        std::exit(1);
    return Bytes(desc.raw().begin(), desc.raw().end());
}

Bytes payload(std::initializer_list<std::uint32_t> words, const Bytes& tail = {}) {
    Bytes bytes;
    iccWriter w(bytes);
    for (std::uint32_t word : words)
        w.u32(word);
    w.bytes(tail);
    return bytes;
}

// A profile with a valid description, so that its save gets as far as writing, and one hostile
// tag under `sig`.
Bytes withTag(icSignature sig, const Bytes& tag, std::uint32_t version = 0x02400000) {
    ProfileBuilder builder;
    builder.header.version = version;
    builder.tag(icSig("desc"), validDescription()).tag(sig, tag);
    return builder.build();
}

void syntheticVariants(Output& out) {
    const Bytes text = {'a', 'b', 'c'};
    out.write("text-without-nul", withTag(icSig("cprt"), tagBytes(icSig("text"), text)));
    out.write("text-header-only", withTag(icSig("cprt"), tagBytes(icSig("text"))));

    // desc: ASCII count, Unicode count, ScriptCode count each larger than the tag.
    out.write("desc-ascii-count-max",
              withTag(icSig("dmnd"), tagBytes(icSig("desc"), payload({0xFFFFFFFF}, text))));
    const auto description = [](std::uint32_t unicodeCount, std::uint8_t scriptCount) {
        Bytes bytes;
        iccWriter w(bytes);
        w.u32(1); // the ASCII part: one NUL
        w.u8(0);
        w.u32(0); // Unicode language
        w.u32(unicodeCount);
        w.u16(0); // ScriptCode code and count, then one byte of its text
        w.u8(scriptCount);
        w.u8('x');
        return tagBytes(icSig("desc"), bytes);
    };
    out.write("desc-unicode-count-huge", withTag(icSig("dmnd"), description(0x80000000, 0)));
    // 200 passes a signed comparison with 67; its text is cut short all the same.
    out.write("desc-script-count-200", withTag(icSig("dmnd"), description(0, 200)));

    // mluc in a version 4 profile: record count, record size, record offset and length.
    const std::uint32_t v4 = 0x04200000;
    out.write("mluc-count-max",
              withTag(icSig("dmdd"), tagBytes(icSig("mluc"), payload({0xFFFFFFFF, 12})), v4));
    out.write("mluc-record-size-0",
              withTag(icSig("dmdd"), tagBytes(icSig("mluc"), payload({1, 0})), v4));
    out.write("mluc-offset-wraps",
              withTag(icSig("dmdd"),
                      tagBytes(icSig("mluc"), payload({1, 12, 0x656E5553, 0x20, 0xFFFFFFF0})), v4));
    out.write("mluc-length-max",
              withTag(icSig("dmdd"),
                      tagBytes(icSig("mluc"), payload({1, 12, 0x656E5553, 0xFFFFFFFF, 16})), v4));

    // An entry sharing the description's block while claiming far more bytes than the file has.
    ProfileBuilder linked;
    linked.tag(icSig("desc"), validDescription())
        .entry(icSig("dmnd"), kDirectoryStart + 2 * 12, 0x00FFFFFF);
    out.write("shared-block-claims-more", linked.build());

    // Fifty tags and no copyright: the save must add one and has no room left.
    ProfileBuilder full;
    full.tag(icSig("desc"), validDescription());
    for (int i = 1; i < 50; ++i) {
        char name[5];
        std::snprintf(name, sizeof name, "t%03d", i);
        full.tag(textToSig(name), textTag(name));
    }
    out.write("directory-full-without-copyright", full.build());
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: %s OUTPUT_DIR PROFILE...\n", argv[0]);
        return 2;
    }
    Output out(argv[1]);
    for (int i = 2; i < argc; ++i)
        realProfileVariants(out, argv[i]);
    syntheticVariants(out);
    std::printf("%d hostile inputs in %s\n", out.count(), argv[1]);
    return 0;
}
