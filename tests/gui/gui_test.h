// A prompt service for the offscreen window tests: file dialogs answer from a script, and every
// box, hex dump and about box is recorded.
#pragma once

#include "app/prompt_service.h"

#include <QStringList>

#include <deque>
#include <string>
#include <utility>
#include <vector>

class ScriptedPrompts : public PromptService {
public:
    void messageBox(icBoxKind kind, std::string_view caption, std::string_view text) override {
        static const char* kinds[] = {"info", "warning", "stop"};
        boxes << QString::fromStdString(std::string(kinds[int(kind)]) + " | " +
                                        std::string(caption) + " | " + std::string(text));
    }
    void showHexDump(std::string_view caption, const std::vector<std::string>& lines) override {
        dumps.push_back({std::string(caption), lines});
    }
    void about(std::string_view caption, std::string_view) override {
        abouts.emplace_back(caption);
    }
    std::optional<std::string> askOpenPath(const FileDialogRequest& request) override {
        return answer(request);
    }
    std::optional<std::string> askSavePath(const FileDialogRequest& request) override {
        return answer(request);
    }

    // The boxes seen so far, as "KIND | CAPTION | TEXT", forgotten once taken.
    QStringList take() { return std::exchange(boxes, {}); }

    std::deque<std::optional<std::string>> answers; // nullopt: the user cancels
    std::vector<FileDialogRequest> requests;
    QStringList boxes;
    std::vector<std::pair<std::string, std::vector<std::string>>> dumps;
    std::vector<std::string> abouts;

private:
    std::optional<std::string> answer(const FileDialogRequest& request) {
        requests.push_back(request);
        if (answers.empty())
            return std::nullopt;
        auto next = answers.front();
        answers.pop_front();
        return next;
    }
};
