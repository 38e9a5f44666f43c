// Loading and saving a large profile, each beside a baseline measured in the same run: loading
// against one fread of the file and against Little CMS reading every tag raw, saving against
// the MD5 that saving has to compute anyway. The ratios printed at the end are what to watch;
// the absolute times depend on the machine.
//
// The profile (over 20 MB: a description and twenty lut16 tags of about 1 MB) is written once
// into a temporary folder with our own writer. The peak memory of a load is measured in a child
// process that does nothing else.
#include "bench_support.h"
#include "profile/byte_io.h"
#include "profile/profile.h"
#include "tagtypes/profile_save.h"

#include <benchmark/benchmark.h>
#include <lcms2.h>
#include <malloc.h>
#include <openssl/evp.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr int kLutTags = 20;
constexpr std::uint64_t kMinProfileSize = 20u << 20;

// A plausible 'mft2' tag: 3 inputs, 3 outputs, identity matrix, ramps for the input and output
// tables and a CLUT that maps each node to its own coordinates, slightly bent per tag so that no
// two tags are equal. 56 grid points and 4096-entry tables make it about 1 MB.
std::vector<std::uint8_t> lut16Tag(int variant) {
    constexpr int kChannels = 3, kGrid = 56, kEntries = 4096;
    std::vector<std::uint8_t> bytes;
    iccWriter w(bytes);
    w.sig(icSig("mft2"));
    w.u32(0);
    w.u8(kChannels);
    w.u8(kChannels);
    w.u8(kGrid);
    w.u8(0);
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            w.s15f16(row == column ? 1.0 : 0.0);
    w.u16(kEntries);
    w.u16(kEntries);
    const auto ramp = [&] {
        for (int channel = 0; channel < kChannels; ++channel)
            for (int i = 0; i < kEntries; ++i)
                w.u16(static_cast<std::uint16_t>(i * 65535 / (kEntries - 1)));
    };
    ramp();
    const double bend = 1.0 + variant / 100.0;
    for (int r = 0; r < kGrid; ++r)
        for (int g = 0; g < kGrid; ++g)
            for (int b = 0; b < kGrid; ++b)
                for (int node : {r, g, b})
                    w.u16(static_cast<std::uint16_t>(
                        65535.0 * std::pow(node / double(kGrid - 1), bend) + 0.5));
    ramp();
    return bytes;
}

bool writeLargeProfile(const std::string& path) {
    iccProfileRW profile;
    icHeader& header = profile.header();
    // Version 4.2, so that saving computes the MD5 Profile ID.
    header.version = 0x04200000;
    header.deviceClass = icSig("mntr");
    header.colorSpace = icSig("RGB ");
    header.pcs = icSig("Lab ");
    if (setDescription(profile, "Veltrino benchmark profile") != icOk)
        return false;
    for (int i = 0; i < kLutTags; ++i) {
        char name[5];
        std::snprintf(name, sizeof name, "lt%02d", i);
        if (profile.setTagData(textToSig(name), lut16Tag(i)) != icOk)
            return false;
    }
    return saveProfileToFile(profile, path) == icOk;
}

std::vector<std::uint8_t> readFile(const std::string& path) {
    std::vector<std::uint8_t> bytes(fs::file_size(path));
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (!file || std::fread(bytes.data(), 1, bytes.size(), file) != bytes.size())
        bytes.clear();
    if (file)
        std::fclose(file);
    return bytes;
}

void loadVeltrino(benchmark::State& state, const std::string& path) {
    for (auto _ : state) {
        iccProfileRW profile;
        if (profile.loadFromFile(path) != icOk) {
            state.SkipWithError("loadFromFile failed");
            break;
        }
        benchmark::DoNotOptimize(profile.getTagData(0).data());
    }
    state.SetBytesProcessed(state.iterations() * std::int64_t(fs::file_size(path)));
}

// The floor for any loader: one read of the whole file into a fresh buffer.
void loadFread(benchmark::State& state, const std::string& path) {
    const std::size_t size = fs::file_size(path);
    for (auto _ : state) {
        auto buffer = std::make_unique_for_overwrite<std::uint8_t[]>(size);
        std::FILE* file = std::fopen(path.c_str(), "rb");
        const std::size_t read = file ? std::fread(buffer.get(), 1, size, file) : 0;
        if (file)
            std::fclose(file);
        if (read != size) {
            state.SkipWithError("fread failed");
            break;
        }
        benchmark::DoNotOptimize(buffer.get());
    }
    state.SetBytesProcessed(state.iterations() * std::int64_t(size));
}

// The most used CMM doing what our load does: every tag's raw bytes into memory.
void loadLcms(benchmark::State& state, const std::string& path) {
    for (auto _ : state) {
        cmsHPROFILE profile = cmsOpenProfileFromFile(path.c_str(), "r");
        if (!profile) {
            state.SkipWithError("cmsOpenProfileFromFile failed");
            break;
        }
        const cmsInt32Number count = cmsGetTagCount(profile);
        std::vector<std::vector<std::uint8_t>> tags(std::max(count, 0));
        for (cmsInt32Number i = 0; i < count; ++i) {
            const cmsTagSignature sig =
                cmsGetTagSignature(profile, static_cast<cmsUInt32Number>(i));
            const cmsUInt32Number size = cmsReadRawTag(profile, sig, nullptr, 0);
            tags[i].resize(size);
            if (cmsReadRawTag(profile, sig, tags[i].data(), size) != size)
                state.SkipWithError("cmsReadRawTag failed");
        }
        benchmark::DoNotOptimize(tags.data());
        cmsCloseProfile(profile);
    }
    state.SetBytesProcessed(state.iterations() * std::int64_t(fs::file_size(path)));
}

void saveVeltrino(benchmark::State& state, const std::string& path) {
    iccProfileRW profile;
    if (profile.loadFromFile(path) != icOk) {
        state.SkipWithError("loadFromFile failed");
        return;
    }
    std::vector<std::uint8_t> out;
    for (auto _ : state) {
        if (saveProfileToMemory(profile, out) != icOk) {
            state.SkipWithError("saveToMemory failed");
            break;
        }
        benchmark::DoNotOptimize(out.data());
    }
    state.SetBytesProcessed(state.iterations() * std::int64_t(out.size()));
}

// What a version 4 save cannot avoid: the MD5 of the whole profile.
void saveMd5(benchmark::State& state, const std::string& path) {
    const std::vector<std::uint8_t> bytes = readFile(path);
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    for (auto _ : state) {
        if (!EVP_Digest(bytes.data(), bytes.size(), digest, &length, EVP_md5(), nullptr)) {
            state.SkipWithError("EVP_Digest failed");
            break;
        }
        benchmark::DoNotOptimize(digest);
    }
    state.SetBytesProcessed(state.iterations() * std::int64_t(bytes.size()));
}

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;

    const fs::path dir = fs::temp_directory_path() / ("veltrino-bench-" + std::to_string(getpid()));
    fs::create_directories(dir);
    const std::string path = (dir / "large.icc").string();
    if (!writeLargeProfile(path) || fs::file_size(path) < kMinProfileSize) {
        std::fprintf(stderr, "could not write a profile of at least 20 MB at %s\n", path.c_str());
        fs::remove_all(dir);
        return 1;
    }
    // Hand the writer's freed memory back, so the child of the memory measurement starts small.
    malloc_trim(0);
    const std::uintmax_t fileSize = fs::file_size(path);
    // The child only loads the profile.
    const ChildPeak memory = measureChildPeak([&path] {
        iccProfileRW profile;
        return profile.loadFromFile(path) == icOk;
    });

    const auto add = [&](const char* name, void (*fn)(benchmark::State&, const std::string&)) {
        benchmark::RegisterBenchmark(name, fn, path)->Unit(benchmark::kMillisecond);
    };
    add("load/veltrino", loadVeltrino);
    add("load/fread", loadFread);
    add("load/lcms", loadLcms);
    add("save/veltrino", saveVeltrino);
    add("save/md5", saveMd5);

    // The file comes from the page cache, so CPU time is what loading costs.
    BestTimes reporter(BestTimes::terminalOptions());
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();

    std::printf("\nprofile: %ju bytes (%.1f MB), %d lut16 tags\n", fileSize, fileSize / 1048576.0,
                kLutTags);
    reporter.printRatio("load/fread", "load/veltrino", "load/fread");
    reporter.printRatio("load/lcms", "load/veltrino", "load/lcms");
    reporter.printRatio("save/md5", "save/veltrino", "save/md5");
    if (memory.ok)
        std::printf("load peak memory: child maxrss %ld KB before loading, %ld KB after "
                    "(+%.1f MB for a %.1f MB file, %.2f x file size)\n",
                    memory.baselineKb, memory.peakKb, (memory.peakKb - memory.baselineKb) / 1024.0,
                    fileSize / 1048576.0,
                    (memory.peakKb - memory.baselineKb) * 1024.0 / double(fileSize));
    else
        std::printf("load peak memory: the child could not load the profile\n");

    fs::remove_all(dir);
    return 0;
}
