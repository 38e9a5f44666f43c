// Loading and saving a large profile, each beside a baseline measured in the same run: loading
// against one fread of the file and against Little CMS reading every tag raw, saving against
// the MD5 that saving has to compute anyway. The ratios printed at the end are what to watch;
// the absolute times depend on the machine.
//
// The profile is the 22 MB CMYK profile of bench_cmyk_profile.h, version 4 so that saving
// computes its MD5 Profile ID. Saving is measured as the window saves (to a file, through a
// temporary beside it) and into memory. The peak memory of a load is measured in a child process
// that does nothing else.
#include "bench_cmyk_profile.h"
#include "bench_support.h"
#include "document/memory_policy.h"
#include "profile/profile.h"
#include "tagtypes/profile_save.h"

#include <benchmark/benchmark.h>
#include <lcms2.h>
#include <malloc.h>
#include <openssl/evp.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

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

// "Save As...": laid out, hashed and written through a temporary file beside the target.
void saveVeltrino(benchmark::State& state, const std::string& path) {
    iccProfileRW profile;
    if (profile.loadFromFile(path) != icOk) {
        state.SkipWithError("loadFromFile failed");
        return;
    }
    const std::string target = path + ".saved.icc";
    for (auto _ : state) {
        if (saveProfileToFile(profile, target) != icOk) {
            state.SkipWithError("saveProfileToFile failed");
            break;
        }
    }
    state.SetBytesProcessed(state.iterations() * std::int64_t(fs::file_size(path)));
    fs::remove(target);
}

void saveMemory(benchmark::State& state, const std::string& path) {
    iccProfileRW profile;
    if (profile.loadFromFile(path) != icOk) {
        state.SkipWithError("loadFromFile failed");
        return;
    }
    std::vector<std::uint8_t> out;
    for (auto _ : state) {
        if (saveProfileToMemory(profile, out) != icOk) {
            state.SkipWithError("saveProfileToMemory failed");
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
    const auto started = startBenchmarks(argc, argv, "profile");
    if (!started)
        return 2;
    const fs::path dir = *started;
    const std::string path = (dir / "cmyk.icc").string();
    if (!bench::writeCmykProfile(path)) {
        std::fprintf(stderr, "could not write the CMYK profile at %s\n", path.c_str());
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
        return benchmark::RegisterBenchmark(name, fn, path)->Unit(benchmark::kMillisecond);
    };
    add("load/veltrino", loadVeltrino);
    add("load/fread", loadFread);
    add("load/lcms", loadLcms);
    // A save hashes on a second thread: it and its baseline are timed on the wall.
    timedOnTheWall(add("save/veltrino", saveVeltrino));
    timedOnTheWall(add("save/memory", saveMemory));
    timedOnTheWall(add("save/md5", saveMd5));

    // The file comes from the page cache, so CPU time is what loading costs.
    BestTimes reporter(BestTimes::terminalOptions());
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();

    std::printf("\nprofile: %ju bytes (%.1f MB), CMYK, version 4, lut16 tables\n", fileSize,
                fileSize / 1048576.0);
    reporter.printRatio("load/fread", "load/veltrino", "load/fread");
    reporter.printRatio("load/lcms", "load/veltrino", "load/lcms");
    reporter.printRatio("save/md5", "save/veltrino", "save/md5");
    reporter.printRatio("save (memory)/md5", "save/memory", "save/md5");
    if (const auto r = reporter.ratio("save/veltrino", "save/md5"))
        printSummary("save with Profile ID / MD5 of the same bytes: %.2f (target <= 1.30)", *r);
    if (memory.ok) {
        const double extraMb = (memory.peakKb - memory.baselineKb) / 1024.0;
        std::printf("load peak memory: child maxrss %ld KB before loading, %ld KB after "
                    "(+%.1f MB for a %.1f MB file, %.2f x file size)\n",
                    memory.baselineKb, memory.peakKb, extraMb, fileSize / 1048576.0,
                    extraMb * 1048576.0 / double(fileSize));
        printSummary("load peak memory: file + %.1f MiB (target <= file + 32 MiB)",
                     extraMb - fileSize / 1048576.0);
    } else {
        std::printf("load peak memory: the child could not load the profile\n");
    }

    fs::remove_all(dir);
    return 0;
}
