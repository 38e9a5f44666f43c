#include "cli/diff_command.h"

#include "cli/cli_session.h"
#include "diff/profile_diff.h"

#include <nlohmann/json.hpp>

#include <cstdio>
#include <exception>

namespace {

using Json = nlohmann::ordered_json;

Json entryJson(const icDiffEntry& e) {
    Json j{{"what", e.what}};
    if (!e.tag.empty())
        j["tag"] = e.tag;
    if (!e.a.empty())
        j["a"] = e.a;
    if (!e.b.empty())
        j["b"] = e.b;
    if (!e.detail.empty())
        j["detail"] = e.detail;
    if (e.delta)
        j["delta"] = *e.delta;
    if (!e.node.empty())
        j["node"] = e.node;
    return j;
}

Json entriesJson(const std::vector<icDiffEntry>& entries) {
    Json list = Json::array();
    for (const icDiffEntry& e : entries)
        list.push_back(entryJson(e));
    return list;
}

// The report as one document: both paths, the verdict, the header and directory entries, one
// object per tag and the summary line.
std::string reportJson(const std::string& pathA, const std::string& pathB, double tolerance,
                       const icProfileDiff& diff) {
    Json header = Json::array(), directory = Json::array(), tags = Json::array();
    for (const icDiffSection& s : diff.sections) {
        if (s.kind == icDiffSectionKind::header)
            header = entriesJson(s.entries);
        else if (s.kind == icDiffSectionKind::directory)
            directory = entriesJson(s.entries);
        else {
            Json shared = Json::array();
            for (icSignature sig : s.sharedWith)
                shared.push_back(sigToText(sig));
            tags.push_back({{"tag", sigToText(s.signature)},
                            {"label", s.label},
                            {"typeA", sigToText(s.typeA)},
                            {"typeB", sigToText(s.typeB)},
                            {"sharedWith", shared},
                            {"entries", entriesJson(s.entries)}});
        }
    }
    const Json document{{"a", pathA},
                        {"b", pathB},
                        {"tolerance", tolerance},
                        {"equivalent", diff.equivalent()},
                        {"header", header},
                        {"directory", directory},
                        {"tags", tags},
                        {"tagsWithinTolerance", diff.tagsWithinTolerance},
                        {"summary", diffSummaryText(diff)}};
    // Signatures and texts are bytes; whatever is not UTF-8 becomes U+FFFD.
    return document.dump(2, ' ', false, Json::error_handler_t::replace);
}

} // namespace

int runDiffCommand(const std::string& pathA, const std::string& pathB, bool json,
                   double tolerance) {
    CliSession a, b;
    const bool openedA = a.open(pathA);
    const bool openedB = b.open(pathB);
    if (!openedA || !openedB)
        return kExitCannotOpen;
    icProfileDiff diff;
    if (icStatus s = diffProfiles(a.profile(), b.profile(), {tolerance}, diff); s != icOk) {
        a.presenter().setOutput(stderr);
        a.presenter().outOfMemory();
        return kExitFailed;
    }
    try {
        const std::string text =
            json ? reportJson(pathA, pathB, tolerance, diff) + '\n' : diffReportText(diff);
        std::fwrite(text.data(), 1, text.size(), stdout);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "veltrino-cli: %s\n", e.what());
        return kExitFailed;
    }
    return diff.equivalent() ? kExitOk : kExitDiffers;
}
