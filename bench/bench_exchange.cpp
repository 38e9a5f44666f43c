// Exporting and importing a large lut16 folder, each beside a baseline measured in the same run:
// writing (fwrite) and reading (fread) the same number of bytes as plain files. The ratios and
// the MB/s printed at the end are what to watch; the absolute times depend on the machine.
//
// The table has 4 inputs, 3 outputs and 33 grid points: 33^4 = 1,185,921 CLUT lines, a folder of
// about 30 MB of text. The peak memory of an import is measured in a child process that does
// nothing else, and set against the folder's size.
#include "bench_support.h"
#include "lutio/lut_folder.h"

#include <benchmark/benchmark.h>
#include <malloc.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr const char* kFiles[] = {"header.txt", "matrix.txt", "InputCurves.txt", "OutputCurves.txt",
                                  "clut.txt"};

bool makeTable(iccLut16Type& lut) {
    if (lut.initialize(4, 4096, 3, 4096, 33) != icOk)
        return false;
    // Values of every width, as a real table has them.
    std::vector<std::uint16_t> clut(lut.clutValueCount());
    for (std::size_t i = 0; i < clut.size(); ++i)
        clut[i] = static_cast<std::uint16_t>((i * 2654435761u) >> 13);
    lut.setMatrix(std::array<double, 9>{1.25, -0.5, 0.25, 0, 1, 0, 0.125, 0, 0.875});
    return lut.setClut(clut) == icOk;
}

std::uintmax_t folderBytes(const fs::path& folder) {
    std::uintmax_t total = 0;
    for (const char* name : kFiles)
        total += fs::file_size(folder / name);
    return total;
}

void exportVeltrino(benchmark::State& state, const iccLut16Type& lut, const fs::path& folder) {
    for (auto _ : state)
        if (ExportLut16Folder(lut, folder) != icOk) {
            state.SkipWithError("ExportLut16Folder failed");
            break;
        }
    state.SetBytesProcessed(state.iterations() * std::int64_t(folderBytes(folder)));
}

void importVeltrino(benchmark::State& state, const iccLut16Type&, const fs::path& folder) {
    for (auto _ : state) {
        iccLut16Type lut;
        if (ImportLut16Folder(lut, folder) != icOk) {
            state.SkipWithError("ImportLut16Folder failed");
            break;
        }
        benchmark::DoNotOptimize(lut.clut.data());
    }
    state.SetBytesProcessed(state.iterations() * std::int64_t(folderBytes(folder)));
}

// The floor for any exporter: the folder's bytes written as they are, one fwrite per file.
void exportFwrite(benchmark::State& state, const iccLut16Type&, const fs::path& folder) {
    const fs::path target = folder.parent_path() / "fwrite";
    fs::create_directories(target);
    std::vector<std::vector<char>> contents;
    for (const char* name : kFiles)
        contents.emplace_back(fs::file_size(folder / name), 'x');
    for (auto _ : state) {
        for (std::size_t i = 0; i < contents.size(); ++i) {
            std::FILE* file = std::fopen((target / kFiles[i]).c_str(), "wb");
            const bool ok = file && std::fwrite(contents[i].data(), 1, contents[i].size(), file) ==
                                        contents[i].size();
            if (!file || std::fclose(file) != 0 || !ok)
                state.SkipWithError("fwrite failed");
        }
    }
    state.SetBytesProcessed(state.iterations() * std::int64_t(folderBytes(folder)));
}

// The floor for any importer: every file of the folder read whole into a fresh buffer.
void importFread(benchmark::State& state, const iccLut16Type&, const fs::path& folder) {
    for (auto _ : state) {
        for (const char* name : kFiles) {
            const std::size_t size = fs::file_size(folder / name);
            auto buffer = std::make_unique_for_overwrite<char[]>(size);
            std::FILE* file = std::fopen((folder / name).c_str(), "rb");
            const std::size_t read = file ? std::fread(buffer.get(), 1, size, file) : 0;
            if (file)
                std::fclose(file);
            if (read != size)
                state.SkipWithError("fread failed");
            benchmark::DoNotOptimize(buffer.get());
        }
    }
    state.SetBytesProcessed(state.iterations() * std::int64_t(folderBytes(folder)));
}

void printPair(const BestTimes& times, const char* ours, const char* baseline, double bytes) {
    const auto a = times.best.find(ours), b = times.best.find(baseline);
    if (a == times.best.end() || b == times.best.end() || a->second <= 0 || b->second <= 0) {
        std::printf("%s vs %s: n/a\n", ours, baseline);
        return;
    }
    std::printf("%-16s %8.1f MB/s   %-14s %8.1f MB/s   ratio %.2f\n", ours, bytes / a->second / 1e6,
                baseline, bytes / b->second / 1e6, a->second / b->second);
}

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;

    const fs::path dir =
        fs::temp_directory_path() / ("veltrino-bench-exchange-" + std::to_string(getpid()));
    const fs::path folder = dir / "lut16";
    fs::create_directories(dir);
    auto lut = std::make_unique<iccLut16Type>();
    if (!makeTable(*lut) || ExportLut16Folder(*lut, folder) != icOk) {
        std::fprintf(stderr, "could not build and export the table in %s\n", dir.c_str());
        fs::remove_all(dir);
        return 1;
    }
    const double bytes = double(folderBytes(folder));
    // The child of the memory measurement should start from a small process.
    const iccLut16Type& table = *lut;
    malloc_trim(0);
    const auto [baselineKb, peakKb, imported] = measureChildPeak([&folder] {
        iccLut16Type fresh;
        return ImportLut16Folder(fresh, folder) == icOk;
    });

    const auto add = [&](const char* name,
                         void (*fn)(benchmark::State&, const iccLut16Type&, const fs::path&)) {
        benchmark::RegisterBenchmark(name, fn, std::cref(table), folder)
            ->Unit(benchmark::kMillisecond);
    };
    add("export/veltrino", exportVeltrino);
    add("export/fwrite", exportFwrite);
    add("import/veltrino", importVeltrino);
    add("import/fread", importFread);

    BestTimes times(BestTimes::terminalOptions());
    benchmark::RunSpecifiedBenchmarks(&times);
    benchmark::Shutdown();

    std::printf("\nfolder: %.1f MB of text, %u CLUT lines (lut16, 4 inputs, 3 outputs, 33 grid "
                "points, %u-byte tag)\n",
                bytes / 1048576.0, table.clutValueCount() / table.outputChannels(),
                table.rawSize());
    printPair(times, "export/veltrino", "export/fwrite", bytes);
    printPair(times, "import/veltrino", "import/fread", bytes);
    if (imported)
        std::printf("import peak memory: +%.1f MB over the child's %.1f MB start, %.2f x the "
                    "folder's text\n",
                    (peakKb - baselineKb) / 1024.0, baselineKb / 1024.0,
                    (peakKb - baselineKb) * 1024.0 / bytes);
    else
        std::printf("import peak memory: the child could not import the folder\n");

    fs::remove_all(dir);
    return 0;
}
