// Exporting and importing the A2B0 table of the 22 MB CMYK profile as a text folder, each beside
// a baseline measured in the same run: writing (fwrite) and reading (fread) the same number of
// bytes as plain files. The MB/s of text and the ratios printed at the end are what to watch; the
// absolute times depend on the machine.
//
// export and import are whole commands, as veltrino-cli runs them: export opens the profile,
// decodes the table and writes the folder; import opens the profile, decodes the table, reads the
// folder into a scratch table, reads it again to find it unchanged and so takes the scratch's
// tables into the shown one, stores the table and saves the profile through "Save As...", which
// opens the result again. The profile is version 4, so the save computes its MD5 Profile ID;
// import-v2 does the same on the version 2 twin, saved without one. The export/text and
// import/text lines time the exchange files alone.
//
// The table has 4 inputs, 3 outputs and 33 grid points: 33^4 = 1,185,921 CLUT lines, a folder of
// about 30 MB of text. The peak memory of an import is measured in a child process that does
// nothing else, and set against the folder's size.
#include "bench_cmyk_profile.h"
#include "bench_support.h"
#include "catalogue/catalogue.h"
#include "document/document.h"
#include "document/memory_policy.h"
#include "lutio/exchange_procedures.h"
#include "lutio/lut_folder.h"
#include "tagtypes/tag_factory.h"

#include <benchmark/benchmark.h>
#include <malloc.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr const char* kFiles[] = {"header.txt", "matrix.txt", "InputCurves.txt", "OutputCurves.txt",
                                  "clut.txt"};

// Counts the boxes; a command that shows none but its success box went as planned.
class CountingPresenter : public Presenter {
public:
    void messageBox(icBoxKind, std::string_view, std::string_view) override { ++boxes; }
    int boxes = 0;
};

struct Paths {
    std::string profile;   // the CMYK profile, version 4
    std::string profileV2; // the same as version 2: saved without a Profile ID
    fs::path folder;       // its A2B0 table exported once
    std::string saved;     // where import saves
};

std::uintmax_t folderBytes(const fs::path& folder) {
    std::uintmax_t total = 0;
    for (const char* name : kFiles)
        total += fs::file_size(folder / name);
    return total;
}

// The document open on the profile and its A2B0 table decoded, as the exchange commands start.
struct OpenTable {
    explicit OpenTable(const std::string& path) : document(presenter) {
        if (!document.open(path))
            return;
        index = document.profile().findTag(icSig("A2B0"));
        if (index >= 0 && loadTagType(document.profile(), index, tag) == icOk)
            lut = dynamic_cast<iccMftLut*>(tag.get());
    }
    CountingPresenter presenter;
    iccDocument document;
    int index = -1;
    std::unique_ptr<iccTagType> tag;
    iccMftLut* lut = nullptr;
};

bool exportCommand(const Paths& paths, const fs::path& folder) {
    OpenTable open(paths.profile);
    return open.lut && runLutExport(open.presenter, *open.lut, folder.string()) == icOk;
}

bool importCommand(const Paths& paths, const std::string& profile) {
    OpenTable open(profile);
    return open.lut && runLutImport(open.presenter, *open.lut, paths.folder.string()) == icOk &&
           writeBackTag(open.presenter, open.document.profile(), open.index, open.lut->getData(),
                        kLutWriteFailed) &&
           open.document.saveAs(paths.saved) == icOk;
}

void exportVeltrino(benchmark::State& state, const Paths& paths) {
    const fs::path target = paths.folder.parent_path() / "exported";
    for (auto _ : state)
        if (!exportCommand(paths, target)) {
            state.SkipWithError("export failed");
            break;
        }
    state.SetBytesProcessed(state.iterations() * std::int64_t(folderBytes(paths.folder)));
}

void importVeltrino(benchmark::State& state, const Paths& paths, const std::string& profile) {
    for (auto _ : state)
        if (!importCommand(paths, profile)) {
            state.SkipWithError("import failed");
            break;
        }
    state.SetBytesProcessed(state.iterations() * std::int64_t(folderBytes(paths.folder)));
}

// The exchange files alone, on a table decoded once.
void exportText(benchmark::State& state, const Paths& paths) {
    OpenTable open(paths.profile);
    const auto* lut = dynamic_cast<const iccLut16Type*>(open.lut);
    const fs::path target = paths.folder.parent_path() / "exported";
    for (auto _ : state)
        if (!lut || ExportLut16Folder(*lut, target) != icOk) {
            state.SkipWithError("ExportLut16Folder failed");
            break;
        }
    state.SetBytesProcessed(state.iterations() * std::int64_t(folderBytes(paths.folder)));
}

void importText(benchmark::State& state, const Paths& paths) {
    for (auto _ : state) {
        iccLut16Type lut;
        if (ImportLut16Folder(lut, paths.folder) != icOk) {
            state.SkipWithError("ImportLut16Folder failed");
            break;
        }
        benchmark::DoNotOptimize(lut.clut.data());
    }
    state.SetBytesProcessed(state.iterations() * std::int64_t(folderBytes(paths.folder)));
}

// The floor for any exporter: the folder's bytes written as they are, one fwrite per file.
void exportFwrite(benchmark::State& state, const Paths& paths) {
    const fs::path target = paths.folder.parent_path() / "fwrite";
    fs::create_directories(target);
    std::vector<std::vector<char>> contents;
    for (const char* name : kFiles)
        contents.emplace_back(fs::file_size(paths.folder / name), 'x');
    for (auto _ : state) {
        for (std::size_t i = 0; i < contents.size(); ++i) {
            std::FILE* file = std::fopen((target / kFiles[i]).c_str(), "wb");
            const bool ok = file && std::fwrite(contents[i].data(), 1, contents[i].size(), file) ==
                                        contents[i].size();
            if (!file || std::fclose(file) != 0 || !ok)
                state.SkipWithError("fwrite failed");
        }
    }
    state.SetBytesProcessed(state.iterations() * std::int64_t(folderBytes(paths.folder)));
}

// The floor for any importer: every file of the folder read whole into a fresh buffer.
void importFread(benchmark::State& state, const Paths& paths) {
    for (auto _ : state) {
        for (const char* name : kFiles) {
            const fs::path file = paths.folder / name;
            const std::size_t size = fs::file_size(file);
            auto buffer = std::make_unique_for_overwrite<char[]>(size);
            std::FILE* stream = std::fopen(file.c_str(), "rb");
            const std::size_t read = stream ? std::fread(buffer.get(), 1, size, stream) : 0;
            if (stream)
                std::fclose(stream);
            if (read != size)
                state.SkipWithError("fread failed");
            benchmark::DoNotOptimize(buffer.get());
        }
    }
    state.SetBytesProcessed(state.iterations() * std::int64_t(folderBytes(paths.folder)));
}

// MB/s of text for ours and the baseline, and their ratio; the MB/s of ours, or none.
std::optional<double> printPair(const BestTimes& times, const char* ours, const char* baseline,
                                double bytes) {
    const auto a = times.best.find(ours), b = times.best.find(baseline);
    if (a == times.best.end() || b == times.best.end() || a->second <= 0 || b->second <= 0) {
        std::printf("%s vs %s: n/a\n", ours, baseline);
        return std::nullopt;
    }
    std::printf("%-16s %8.1f MB/s   %-14s %8.1f MB/s   ratio %.2f\n", ours, bytes / a->second / 1e6,
                baseline, bytes / b->second / 1e6, a->second / b->second);
    return bytes / a->second / 1e6;
}

} // namespace

int main(int argc, char** argv) {
    const auto started = startBenchmarks(argc, argv, "exchange");
    if (!started)
        return 2;
    const fs::path dir = *started;
    const Paths paths{(dir / "cmyk.icc").string(), (dir / "cmyk-v2.icc").string(), dir / "A2B0",
                      (dir / "imported.icc").string()};
    if (!bench::writeCmykProfile(paths.profile) ||
        !bench::writeCmykProfile(paths.profileV2, 0x02100000) ||
        !exportCommand(paths, paths.folder)) {
        std::fprintf(stderr, "could not write the profile and export its A2B0 in %s\n",
                     dir.c_str());
        fs::remove_all(dir);
        return 1;
    }
    const double bytes = double(folderBytes(paths.folder));
    // The child of the memory measurement should start from a small process.
    malloc_trim(0);
    const auto [baselineKb, peakKb, imported] = measureChildPeak([&paths] {
        iccLut16Type fresh;
        return ImportLut16Folder(fresh, paths.folder) == icOk;
    });

    using Benchmark = void (*)(benchmark::State&, const Paths&);
    const std::pair<const char*, Benchmark> exports[] = {{"export/veltrino", exportVeltrino},
                                                         {"export/text", exportText},
                                                         {"export/fwrite", exportFwrite}};
    for (const auto& [name, fn] : exports)
        benchmark::RegisterBenchmark(name, fn, std::cref(paths))->Unit(benchmark::kMillisecond);
    // An import parses a large table on several threads and a save hashes on a second one: the
    // imports and their baseline are timed on the wall.
    const std::pair<const char*, Benchmark> imports[] = {{"import/text", importText},
                                                         {"import/fread", importFread}};
    for (const auto& [name, fn] : imports)
        timedOnTheWall(benchmark::RegisterBenchmark(name, fn, std::cref(paths))
                           ->Unit(benchmark::kMillisecond));
    for (const auto& [name, profile] : {std::pair{"import/veltrino", paths.profile},
                                        std::pair{"import-v2/veltrino", paths.profileV2}})
        timedOnTheWall(benchmark::RegisterBenchmark(name, importVeltrino, std::cref(paths), profile)
                           ->Unit(benchmark::kMillisecond));

    BestTimes times(BestTimes::terminalOptions());
    benchmark::RunSpecifiedBenchmarks(&times);
    benchmark::Shutdown();

    std::printf("\nfolder: %.1f MB of text, the A2B0 of a %.1f MB CMYK profile (lut16, 4 inputs, "
                "3 outputs, 33 grid points)\n",
                bytes / 1048576.0, fs::file_size(paths.profile) / 1048576.0);
    const auto exportRate = printPair(times, "export/veltrino", "export/fwrite", bytes);
    printPair(times, "export/text", "export/fwrite", bytes);
    const auto importRate = printPair(times, "import/veltrino", "import/fread", bytes);
    const auto importRateV2 = printPair(times, "import-v2/veltrino", "import/fread", bytes);
    printPair(times, "import/text", "import/fread", bytes);
    if (exportRate)
        printSummary("export (open, decode, write the folder): %.0f MB/s of text (target >= 600)",
                     *exportRate);
    if (importRate)
        printSummary(
            "import (open, read, read again, store, save with Profile ID): %.0f MB/s of text "
            "(target >= 400)",
            *importRate);
    if (importRateV2)
        printSummary("import into the version 2 profile (saved without Profile ID): %.0f MB/s of "
                     "text (target >= 400)",
                     *importRateV2);
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
