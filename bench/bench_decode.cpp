// Loading a large profile and decoding every lookup table in it, beside two baselines measured
// in the same run: one fread of the file, and Little CMS opening it and decoding every tag with
// cmsReadTag. Then checking the same profile (veltrino-cli check) against that decoded load, once
// with its Profile ID (whose MD5 the check must compute) and once with the ID cleared. The ratios
// printed at the end are what to watch.
//
// Two profiles, both with tables written by Little CMS so that both readers work on tables that
// another CMM encoded, laid out by our own writer: lut16, lutAToB and lutBToA encodings of
// pipelines with curves and an 81-point CLUT, about 30 MB in all; and the 22 MB CMYK profile of
// bench_cmyk_profile.h.
#include "bench_cmyk_profile.h"
#include "bench_support.h"
#include "check/check_report.h"
#include "document/memory_policy.h"
#include "profile/file_io.h"
#include "profile/profile.h"
#include "tagtypes/profile_save.h"
#include "tagtypes/tag_factory.h"

#include <benchmark/benchmark.h>
#include <lcms2.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <tuple>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr cmsUInt32Number kGrid = 81;

// A 3-in pipeline of gamma curves, a CLUT that bends each node a little, and curves again.
cmsPipeline* makePipeline(cmsUInt32Number outputs, double bend) {
    cmsPipeline* lut = cmsPipelineAlloc(nullptr, 3, outputs);
    cmsToneCurve* in = cmsBuildGamma(nullptr, 1.0 + bend);
    cmsToneCurve* out = cmsBuildGamma(nullptr, 1.0 / (1.0 + bend));
    cmsToneCurve* inCurves[3] = {in, in, in};
    cmsToneCurve* outCurves[3] = {out, out, out};
    std::vector<cmsUInt16Number> table(kGrid * kGrid * kGrid * outputs);
    for (std::size_t i = 0; i < table.size(); ++i)
        table[i] = static_cast<cmsUInt16Number>((i * 2654435761u) >> 16);
    cmsPipelineInsertStage(lut, cmsAT_END, cmsStageAllocToneCurves(nullptr, 3, inCurves));
    cmsPipelineInsertStage(lut, cmsAT_END,
                           cmsStageAllocCLut16bit(nullptr, kGrid, 3, outputs, table.data()));
    cmsPipelineInsertStage(lut, cmsAT_END, cmsStageAllocToneCurves(nullptr, outputs, outCurves));
    cmsFreeToneCurve(in);
    cmsFreeToneCurve(out);
    return lut;
}

struct RawTag {
    icSignature sig;
    std::vector<std::uint8_t> bytes;
};

// Little CMS picks the encoding from the profile version: lut16 for version 2, lutAToB/lutBToA
// for version 4.
RawTag encodeWithLcms(cmsTagSignature sig, double version, cmsUInt32Number outputs, double bend) {
    return {static_cast<icSignature>(sig),
            bench::lcmsEncode(sig, makePipeline(outputs, bend), version, cmsSigAbstractClass,
                              cmsSigLabData)};
}

bool writeLargeProfile(const std::string& path) {
    std::vector<RawTag> tags;
    const cmsTagSignature aToB[] = {cmsSigAToB0Tag, cmsSigAToB1Tag, cmsSigAToB2Tag};
    const cmsTagSignature bToA[] = {cmsSigBToA0Tag, cmsSigBToA1Tag, cmsSigBToA2Tag};
    const cmsTagSignature preview[] = {cmsSigPreview0Tag, cmsSigPreview1Tag, cmsSigPreview2Tag};
    for (int i = 0; i < 3; ++i) {
        tags.push_back(encodeWithLcms(aToB[i], 4.3, 3, 0.1 * i));    // lutAToB
        tags.push_back(encodeWithLcms(bToA[i], 2.1, 3, 0.1 * i));    // lut16
        tags.push_back(encodeWithLcms(preview[i], 4.3, 3, 0.1 * i)); // lutBToA
    }
    tags.push_back(encodeWithLcms(cmsSigGamutTag, 2.1, 1, 0.3)); // lut16, one output

    iccProfileRW profile;
    icHeader& header = profile.header();
    header.version = 0x04300000;
    header.deviceClass = icSig("abst");
    header.colorSpace = icSig("Lab ");
    if (setDescription(profile, "Veltrino decoding benchmark") != icOk)
        return false;
    for (const RawTag& tag : tags)
        if (tag.bytes.empty() || profile.setTagData(tag.sig, tag.bytes) != icOk)
            return false;
    return saveProfileToFile(profile, path) == icOk;
}

void decodeVeltrino(benchmark::State& state, const std::string& path) {
    for (auto _ : state) {
        iccProfileRW profile;
        if (profile.loadFromFile(path) != icOk || !decodeEveryTag(profile)) {
            state.SkipWithError("load or decode failed");
            break;
        }
    }
    state.SetBytesProcessed(state.iterations() * std::int64_t(fs::file_size(path)));
}

void decodeFread(benchmark::State& state, const std::string& path) {
    const std::size_t size = fs::file_size(path);
    for (auto _ : state) {
        std::vector<std::uint8_t> bytes(size);
        std::FILE* file = std::fopen(path.c_str(), "rb");
        const bool read = file && std::fread(bytes.data(), 1, size, file) == size;
        if (file)
            std::fclose(file);
        if (!read) {
            state.SkipWithError("fread failed");
            break;
        }
        benchmark::DoNotOptimize(bytes.data());
    }
    state.SetBytesProcessed(state.iterations() * std::int64_t(size));
}

void decodeLcms(benchmark::State& state, const std::string& path) {
    for (auto _ : state) {
        cmsHPROFILE profile = cmsOpenProfileFromFile(path.c_str(), "r");
        bool ok = profile != nullptr;
        for (cmsInt32Number i = 0; ok && i < cmsGetTagCount(profile); ++i) {
            const cmsTagSignature sig =
                cmsGetTagSignature(profile, static_cast<cmsUInt32Number>(i));
            ok = cmsReadTag(profile, sig) != nullptr;
        }
        if (profile)
            cmsCloseProfile(profile);
        if (!ok) {
            state.SkipWithError("Little CMS could not read a tag");
            break;
        }
    }
    state.SetBytesProcessed(state.iterations() * std::int64_t(fs::file_size(path)));
}

// The whole check, as veltrino-cli check runs it on one file.
void checkVeltrino(benchmark::State& state, const std::string& path) {
    for (auto _ : state) {
        const icCheckReport report = checkProfileFile(path);
        if (report.verdict() == icVerdict::errors) {
            std::fputs(reportText(path, report).c_str(), stderr);
            state.SkipWithError("the check found an error in the benchmark profile");
            break;
        }
        benchmark::DoNotOptimize(report.findings.data());
    }
    state.SetBytesProcessed(state.iterations() * std::int64_t(fs::file_size(path)));
}

// The same profile with its Profile ID cleared: a check with no MD5 to compute.
bool writeWithoutId(const std::string& path, const std::string& copy) {
    std::vector<std::uint8_t> bytes;
    if (readWholeFile(path, bytes) != icOk || bytes.size() < kHeaderSize)
        return false;
    std::fill_n(bytes.begin() + kProfileIdOffset, 16, 0);
    return writeFileReplacing(copy, bytes) == icOk;
}

} // namespace

int main(int argc, char** argv) {
    const auto started = startBenchmarks(argc, argv, "decode");
    if (!started)
        return 2;
    const fs::path dir = *started;
    const std::string path = (dir / "tables.icc").string();
    const std::string cmyk = (dir / "cmyk.icc").string();
    if (!writeLargeProfile(path) || !bench::writeCmykProfile(cmyk)) {
        std::fprintf(stderr, "could not write the table profiles in %s\n", dir.c_str());
        fs::remove_all(dir);
        return 1;
    }
    const std::string withoutId = (dir / "tables-without-id.icc").string();
    if (!writeWithoutId(path, withoutId)) {
        std::fprintf(stderr, "could not write %s\n", withoutId.c_str());
        fs::remove_all(dir);
        return 1;
    }
    using Benchmark = void (*)(benchmark::State&, const std::string&);
    const std::tuple<const char*, Benchmark, const std::string&> benchmarks[] = {
        {"decode/veltrino", decodeVeltrino, path},
        {"decode/fread", decodeFread, path},
        {"decode/lcms", decodeLcms, path},
        {"check/veltrino", checkVeltrino, path},
        {"check/without-id", checkVeltrino, withoutId},
        {"decode-cmyk/veltrino", decodeVeltrino, cmyk},
        {"decode-cmyk/fread", decodeFread, cmyk},
    };
    for (const auto& [name, fn, file] : benchmarks)
        benchmark::RegisterBenchmark(name, fn, file)->Unit(benchmark::kMillisecond);
    BestTimes reporter(BestTimes::terminalOptions());
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();

    std::printf("\nprofile: %.1f MB of lut16, lutAToB and lutBToA tables\n",
                fs::file_size(path) / 1048576.0);
    reporter.printRatio("decode/veltrino / decode/fread", "decode/veltrino", "decode/fread");
    reporter.printRatio("decode/veltrino / decode/lcms", "decode/veltrino", "decode/lcms");
    reporter.printRatio("check/veltrino / decode/veltrino", "check/veltrino", "decode/veltrino");
    reporter.printRatio("check/without-id / decode/veltrino", "check/without-id",
                        "decode/veltrino");
    // What the MD5 of the Profile ID adds to the check.
    reporter.printRatio("check/veltrino / check/without-id", "check/veltrino", "check/without-id");
    std::printf("CMYK profile: %.1f MB of lut16 tables\n", fs::file_size(cmyk) / 1048576.0);
    reporter.printRatio("decode-cmyk/veltrino / decode-cmyk/fread", "decode-cmyk/veltrino",
                        "decode-cmyk/fread");
    if (const auto r = reporter.ratio("decode-cmyk/veltrino", "decode-cmyk/fread"))
        printSummary("load and decode every tag / fread (22 MB CMYK profile): %.2f", *r);
    fs::remove_all(dir);
    return 0;
}
