// Prints every box the window would open as a "--- KIND | CAPTION" block.
#pragma once

#include "profile/presenter.h"

#include <cstdio>

class CliPresenter : public Presenter {
public:
    explicit CliPresenter(std::FILE* out) : out_(out) {}
    void setOutput(std::FILE* out) { out_ = out; }

    void messageBox(icBoxKind kind, std::string_view caption, std::string_view text) override;

    // One block: the header line, then the text without its trailing line feeds.
    void block(std::string_view kind, std::string_view caption, std::string_view text);

private:
    std::FILE* out_;
};
