// The window's speed as a user feels it, offscreen: opening the 22 MB CMYK profile until the main
// window has painted, and one step of a CLUT page's node bar until the page has painted again,
// on a 4-input table of 33 grid points (the profile's lut16 A2B0, and a lutAToB table that Little
// CMS encoded). Each is reported with the median of its single runs, wall clock and CPU time of
// this thread, as absolute times: there is no baseline for a window to set them against.
#include "app/veltrino_dialog.h"
#include "bench_cmyk_profile.h"
#include "bench_support.h"
#include "document/memory_policy.h"
#include "tagtypes/lut16_type.h"
#include "tagtypes/lut_atob_type.h"
#include "tagtypes/tag_factory.h"
#include "viewers/lut_property_sheet.h"
#include "viewers/mlut_property_sheet.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QScrollBar>
#include <QSettings>
#include <QTabWidget>

#include <benchmark/benchmark.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

// Answers every question with Cancel and keeps no box.
class SilentPrompts : public PromptService {
public:
    void messageBox(icBoxKind, std::string_view, std::string_view) override { ++boxes; }
    void about(std::string_view, std::string_view) override {}
    std::optional<std::string> askOpenPath(const FileDialogRequest&) override { return {}; }
    std::optional<std::string> askSavePath(const FileDialogRequest&) override { return {}; }
    int boxes = 0;
};

// Notes every paint event of the application.
class PaintWatch : public QObject {
public:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            painted = true;
        return false;
    }
    // Runs the event loop until something painted and then until two more passes paint nothing:
    // a step that changes the layout paints once for the boxes and again once laid out. False
    // after two seconds without a paint.
    bool wait() {
        QElapsedTimer timer;
        timer.start();
        while (!painted && timer.elapsed() < 2000)
            QCoreApplication::processEvents();
        if (!painted)
            return false;
        for (int quiet = 0; quiet < 2 && timer.elapsed() < 2000;) {
            painted = false;
            QCoreApplication::processEvents();
            quiet = painted ? 0 : quiet + 1;
        }
        painted = false;
        return true;
    }
    bool painted = false;
};

struct Sample {
    double wall = 0, cpu = 0; // seconds
};

double threadCpuSeconds() {
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return double(t.tv_sec) + double(t.tv_nsec) * 1e-9;
}

// Times `run` once, wall clock and CPU time of this thread.
template <class Run> Sample timeOnce(Run run) {
    const auto wall = std::chrono::steady_clock::now();
    const double cpu = threadCpuSeconds();
    run();
    return {std::chrono::duration<double>(std::chrono::steady_clock::now() - wall).count(),
            threadCpuSeconds() - cpu};
}

// Every single run of each benchmark, for the medians printed at the end.
std::map<std::string, std::vector<Sample>> samples;

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t n = values.size();
    return n % 2 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2;
}

struct Context {
    std::string profile;
    std::unique_ptr<QSettings> settings;
    PaintWatch* watch = nullptr;
};

// The profile given on the command line, the window shown, until its first paint.
void openWindow(benchmark::State& state, Context& context) {
    SilentPrompts prompts;
    auto& runs = samples["open/window"];
    for (auto _ : state) {
        std::unique_ptr<CVeltrinoDlg> window;
        bool painted = false;
        const Sample s = timeOnce([&] {
            window = std::make_unique<CVeltrinoDlg>(prompts, *context.settings, context.profile);
            window->show();
            painted = context.watch->wait();
        });
        state.PauseTiming();
        if (!painted || !window->document().isOpen() || prompts.boxes != 0) {
            state.SkipWithError("the window did not open the profile and paint");
            break;
        }
        runs.push_back(s);
        window.reset();
        QCoreApplication::processEvents();
        state.ResumeTiming();
    }
}

// Steps node bar 0 of the shown CLUT page one node up and back down, alternately, each step until
// the page has painted again.
void stepNodes(benchmark::State& state, QDialog& sheet, PaintWatch& watch, const char* name) {
    QScrollBar* bar = sheet.findChild<QScrollBar*>(QStringLiteral("nodeBar0"));
    if (!bar || bar->maximum() < 1) {
        state.SkipWithError("no node bar");
        return;
    }
    auto& runs = samples[name];
    bool up = true;
    for (auto _ : state) {
        bool painted = false;
        const Sample s = timeOnce([&] {
            bar->triggerAction(up ? QAbstractSlider::SliderSingleStepAdd
                                  : QAbstractSlider::SliderSingleStepSub);
            painted = watch.wait();
        });
        if (!painted) {
            state.SkipWithError("the page did not paint after a step");
            break;
        }
        up = !up;
        runs.push_back(s);
    }
}

// Shows the sheet on its CLUT page and waits for it to paint.
bool showOnPage(QDialog& sheet, QTabWidget* pages, const char* page, PaintWatch& watch) {
    sheet.show();
    QWidget* clut = sheet.findChild<QWidget*>(QLatin1String(page));
    if (!pages || !clut)
        return false;
    pages->setCurrentWidget(clut);
    return watch.wait();
}

void stepLut16(benchmark::State& state, Context& context) {
    iccProfileRW profile;
    std::unique_ptr<iccTagType> tag;
    const int index =
        profile.loadFromFile(context.profile) == icOk ? profile.findTag(icSig("A2B0")) : -1;
    auto* lut = index >= 0 && loadTagType(profile, index, tag) == icOk
                    ? dynamic_cast<iccMftLut*>(tag.get())
                    : nullptr;
    if (!lut || lut->inputChannels() != 4 || lut->gridPoints() != 33) {
        state.SkipWithError("no 4-input 33-point A2B0");
        return;
    }
    SilentPrompts prompts;
    CiccLutPropertySheet sheet(*lut, profile.header().pcs, "A2B0", prompts);
    if (!showOnPage(sheet, sheet.pages(), "clutPage", *context.watch)) {
        state.SkipWithError("the sheet did not paint");
        return;
    }
    stepNodes(state, sheet, *context.watch, "step/lut16");
}

void stepMlut(benchmark::State& state, Context& context) {
    std::unique_ptr<iccTagType> tag;
    const auto bytes = bench::lcmsTable(cmsSigAToB0Tag, 4, 3, 0.1, 7, 4.3);
    auto* lut = bytes.size() >= 4 && makeTagType(loadBE32(bytes.data()), tag) == icOk &&
                        tag->setData(bytes) == icOk
                    ? dynamic_cast<iccMlutType*>(tag.get())
                    : nullptr;
    if (!lut) {
        state.SkipWithError("Little CMS's lutAToB table did not decode");
        return;
    }
    SilentPrompts prompts;
    CLutB2APropertySheet sheet(*lut, "A2B0", prompts);
    if (!showOnPage(sheet, sheet.pages(), "clutPage", *context.watch)) {
        state.SkipWithError("the sheet did not paint");
        return;
    }
    stepNodes(state, sheet, *context.watch, "step/mlut");
}

} // namespace

int main(int argc, char** argv) {
    const auto started = startBenchmarks(argc, argv, "gui");
    if (!started)
        return 2;
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const fs::path dir = *started;
    Context context;
    context.profile = (dir / "cmyk.icc").string();
    if (!bench::writeCmykProfile(context.profile)) {
        std::fprintf(stderr, "could not write the CMYK profile in %s\n", dir.c_str());
        fs::remove_all(dir);
        return 1;
    }
    context.settings = std::make_unique<QSettings>(
        QString::fromStdString((dir / "settings.ini").string()), QSettings::IniFormat);
    PaintWatch watch;
    context.watch = &watch;
    app.installEventFilter(&watch);

    // The first window pays for fonts and styles once; a user opens profiles after that.
    {
        SilentPrompts prompts;
        CVeltrinoDlg warm(prompts, *context.settings);
        warm.show();
        watch.wait();
    }
    benchmark::RegisterBenchmark("open/window", openWindow, std::ref(context))
        ->Unit(benchmark::kMillisecond)
        ->Iterations(25);
    benchmark::RegisterBenchmark("step/lut16", stepLut16, std::ref(context))
        ->Unit(benchmark::kMillisecond)
        ->MinTime(1.0);
    benchmark::RegisterBenchmark("step/mlut", stepMlut, std::ref(context))
        ->Unit(benchmark::kMillisecond)
        ->MinTime(1.0);
    BestTimes reporter(BestTimes::terminalOptions());
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();

    std::printf("\nprofile: %.1f MB CMYK; medians of single runs, wall clock (CPU time)\n",
                fs::file_size(context.profile) / 1048576.0);
    const auto medianOf = [](const char* name, double Sample::*field) {
        std::vector<double> values;
        for (const Sample& s : samples[name])
            values.push_back(s.*field * 1e3);
        return values.empty() ? -1.0 : median(values);
    };
    const struct {
        const char* name;
        const char* text;
        double target;
    } figures[] = {
        {"open/window", "open of the 22 MB profile to the painted window", 150},
        {"step/lut16", "CLUT node step, lut16 4-input 33-point table", 5},
        {"step/mlut", "CLUT node step, lutAToB 4-input 33-point table", 5},
    };
    for (const auto& f : figures) {
        const std::size_t runs = samples[f.name].size();
        if (runs == 0) {
            printSummary("%s: n/a", f.text);
            continue;
        }
        printSummary("%s: median %.2f ms (CPU %.2f ms) over %zu runs (target < %.0f ms)", f.text,
                     medianOf(f.name, &Sample::wall), medianOf(f.name, &Sample::cpu), runs,
                     f.target);
    }
    fs::remove_all(dir);
    return 0;
}
