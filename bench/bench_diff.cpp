// Comparing two large CMYK profiles that differ in one CLUT node, beside the baseline measured
// in the same run: loading both profiles and decoding every tag of each with the class its
// type names. The comparison decodes only the tags whose bytes differ, so it should stay near
// the baseline; the ratio printed at the end is what to watch (the aim is at most 3).
//
// Each profile (over 20 MB) holds three CMYK-to-Lab lut16 tables over a 33-point grid, three
// Lab-to-CMYK tables, a description and a white point, written with our own writer.
#include "bench_support.h"
#include "diff/profile_diff.h"
#include "profile/profile.h"
#include "tagtypes/lut16_type.h"
#include "tagtypes/profile_save.h"
#include "tagtypes/tag_factory.h"

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>

namespace fs = std::filesystem;

namespace {

constexpr std::uint64_t kMinProfileSize = 20u << 20;

// A lut16 table with `grid` points per input, 256-entry ramps and a CLUT of scrambled values
// that differ per variant; node `changed` of the CLUT gets one more in its first output.
bool addTable(iccProfileRW& profile, const char* sig, std::uint32_t inputs, std::uint32_t outputs,
              int variant, std::int64_t changed) {
    iccLut16Type lut;
    if (lut.initialize(inputs, 256, outputs, 256, 33) != icOk)
        return false;
    std::vector<std::uint16_t> clut(lut.clutValueCount());
    for (std::size_t i = 0; i < clut.size(); ++i)
        clut[i] = static_cast<std::uint16_t>((i * 2654435761u + variant * 40503u) >> 16);
    if (changed >= 0)
        ++clut[static_cast<std::size_t>(changed) * outputs];
    if (lut.setClut(clut) != icOk || lut.rebuild() != icOk)
        return false;
    return profile.setTagData(textToSig(sig), lut.raw()) == icOk;
}

bool writeCmykProfile(const std::string& path, std::int64_t changedNode) {
    iccProfileRW profile;
    icHeader& header = profile.header();
    header.deviceClass = icSig("prtr");
    header.colorSpace = icSig("CMYK");
    header.pcs = icSig("Lab ");
    if (setDescription(profile, "Veltrino comparison benchmark") != icOk ||
        setMediaWhitePoint(profile, 0.9642, 1.0, 0.8249) != icOk)
        return false;
    const char* aToB[] = {"A2B0", "A2B1", "A2B2"};
    const char* bToA[] = {"B2A0", "B2A1", "B2A2"};
    for (int i = 0; i < 3; ++i)
        if (!addTable(profile, aToB[i], 4, 3, i, i == 1 ? changedNode : -1) ||
            !addTable(profile, bToA[i], 3, 4, i, -1))
            return false;
    return saveProfileToFile(profile, path) == icOk;
}

bool loadAndDecodeEveryTag(const std::string& path) {
    iccProfileRW profile;
    if (profile.loadFromFile(path) != icOk)
        return false;
    return decodeEveryTag(profile);
}

void loadBothDecoded(benchmark::State& state, const std::string& a, const std::string& b) {
    for (auto _ : state)
        if (!loadAndDecodeEveryTag(a) || !loadAndDecodeEveryTag(b)) {
            state.SkipWithError("load or decode failed");
            break;
        }
}

// What `veltrino-cli diff` does: load both, compare, format the report.
void diffBoth(benchmark::State& state, const std::string& a, const std::string& b) {
    for (auto _ : state) {
        iccProfileRW pa, pb;
        icProfileDiff diff;
        if (pa.loadFromFile(a) != icOk || pb.loadFromFile(b) != icOk ||
            diffProfiles(pa, pb, {}, diff) != icOk || diff.tags != 1) {
            state.SkipWithError("load or comparison failed");
            break;
        }
        benchmark::DoNotOptimize(diffReportText(diff).data());
    }
}

} // namespace

int main(int argc, char** argv) {
    const auto started = startBenchmarks(argc, argv, "diff");
    if (!started)
        return 2;
    const fs::path dir = *started;
    const std::string a = (dir / "a.icc").string(), b = (dir / "b.icc").string();
    if (!writeCmykProfile(a, -1) || !writeCmykProfile(b, 500000) ||
        fs::file_size(a) < kMinProfileSize) {
        std::fprintf(stderr, "could not write two CMYK profiles of 20 MB in %s\n", dir.c_str());
        fs::remove_all(dir);
        return 1;
    }
    benchmark::RegisterBenchmark("diff/veltrino", diffBoth, a, b)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("diff/load-decode-both", loadBothDecoded, a, b)
        ->Unit(benchmark::kMillisecond);
    BestTimes reporter(BestTimes::terminalOptions());
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();

    std::printf("\nprofiles: 2 x %.1f MB, differing in one CLUT node of A2B1\n",
                fs::file_size(a) / 1048576.0);
    reporter.printRatio("diff/veltrino / diff/load-decode-both", "diff/veltrino",
                        "diff/load-decode-both");
    fs::remove_all(dir);
    return 0;
}
