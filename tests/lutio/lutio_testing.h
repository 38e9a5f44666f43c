// Helpers of the exchange tests: a presenter that records the boxes, and folders of text files.
#pragma once

#include "document/presenter.h"
#include "support/test_support.h"
#include "tagtypes/curve_type.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

class BoxRecorder : public Presenter {
public:
    std::vector<std::string> texts;
    void messageBox(icBoxKind kind, std::string_view caption, std::string_view text) override {
        EXPECT_EQ(kind, icBoxKind::info);
        EXPECT_EQ(caption, "Veltrino");
        texts.emplace_back(text);
    }
};

using Files = std::map<std::string, std::string>;

// A curve's bytes as held. Not data(): that rebuilds a 'para' from its doubles, which moves a
// negative parameter one unit toward zero each time.
inline Bytes bytesOf(const iccCurveElement& curve) {
    const iccTagType* held = curve.curve();
    if (held == nullptr)
        held = curve.parametric();
    return held ? Bytes(held->raw().begin(), held->raw().end()) : Bytes();
}

// A fresh folder under the test run's scratch folder holding exactly these files.
inline std::filesystem::path makeFolder(const std::string& name, const Files& files = {}) {
    const auto folder = scratchDir() / name;
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    for (const auto& [file, text] : files)
        writeText(folder / file, text);
    return folder;
}

inline Files readFolder(const std::filesystem::path& folder) {
    Files files;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        files[entry.path().filename().string()] = readText(entry.path());
    return files;
}

// Replaces the first occurrence of `from` in the text (which must hold it).
inline std::string edited(std::string text, const std::string& from, const std::string& to) {
    const auto at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    if (at != std::string::npos)
        text.replace(at, from.size(), to);
    return text;
}
