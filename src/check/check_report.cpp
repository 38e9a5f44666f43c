#include "check/check_report.h"

#include <nlohmann/json.hpp>

#include <cstdio>
#include <exception>

std::string findingTag(const icFinding& finding) {
    if (!finding.tag)
        return "-";
    int length = 4;
    while (length > 0 && static_cast<std::uint8_t>(*finding.tag >> (32 - 8 * length)) == ' ')
        --length;
    if (length == 0)
        length = 4; // a signature of blanks keeps them, escaped
    std::string text;
    for (int k = 0; k < length; ++k) {
        const auto c = static_cast<std::uint8_t>(*finding.tag >> (24 - 8 * k));
        if (c > 0x20 && c < 0x7F) {
            text += static_cast<char>(c);
        } else {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\x%02X", c);
            text += escaped;
        }
    }
    return text;
}

std::string findingOffset(const icFinding& finding) {
    return finding.offset ? std::to_string(*finding.offset) : "-";
}

std::string findingLine(const icFinding& finding) {
    return std::string(severityName(finding.severity)) + " " + findingOffset(finding) + " " +
           findingTag(finding) + " " + finding.code + ": " + finding.message;
}

std::string_view verdictName(icVerdict verdict) {
    constexpr std::string_view kNames[] = {"valid", "warnings", "errors"};
    return kNames[static_cast<int>(verdict)];
}

namespace {

std::string counted(std::size_t n, std::string_view one, std::string_view many) {
    return std::to_string(n) + " " + std::string(n == 1 ? one : many);
}

} // namespace

std::string verdictLine(const icCheckReport& report) {
    return "verdict: " + std::string(verdictName(report.verdict())) + " (" +
           counted(report.count(icSeverity::error), "error", "errors") + ", " +
           counted(report.count(icSeverity::warning), "warning", "warnings") + ", " +
           counted(report.count(icSeverity::info), "info", "info") + ")";
}

std::string reportText(std::string_view path, const icCheckReport& report) {
    std::string text = "=== " + std::string(path) + "\n";
    for (const icFinding& finding : report.findings)
        text += findingLine(finding) + "\n";
    return text + verdictLine(report) + "\n";
}

std::string reportsJson(std::span<const icCheckedFile> files) {
    // Ordered: the keys keep the order in which they are documented.
    using json = nlohmann::ordered_json;
    try {
        json document = json::array();
        for (const auto& [path, report] : files) {
            json findings = json::array();
            for (const icFinding& f : report.findings)
                findings.push_back({
                    {"severity", severityName(f.severity)},
                    {"code", f.code},
                    {"offset", f.offset ? json(*f.offset) : json(nullptr)},
                    {"tag", f.tag ? json(findingTag(f)) : json(nullptr)},
                    {"index", f.tagIndex >= 0 ? json(f.tagIndex) : json(nullptr)},
                    {"message", f.message},
                });
            document.push_back({{"file", path},
                                {"verdict", verdictName(report.verdict())},
                                {"findings", std::move(findings)}});
        }
        return document.dump(2, ' ', false, json::error_handler_t::replace) + "\n";
    } catch (const std::exception&) {
        // Only memory can run out here: invalid UTF-8 is replaced, not thrown.
        return {};
    }
}
