#include "cli/cli_presenter.h"

namespace {

std::string_view kindName(icBoxKind kind) {
    switch (kind) {
    case icBoxKind::info:
        return "info";
    case icBoxKind::warning:
        return "warning";
    case icBoxKind::stop:
        return "stop";
    }
    return "info";
}

void write(std::FILE* out, std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), out);
}

} // namespace

void CliPresenter::messageBox(icBoxKind kind, std::string_view caption, std::string_view text) {
    block(kindName(kind), caption, text);
}

void CliPresenter::block(std::string_view kind, std::string_view caption, std::string_view text) {
    while (!text.empty() && text.back() == '\n')
        text.remove_suffix(1);
    write(out_, "--- ");
    write(out_, kind);
    write(out_, " | ");
    write(out_, caption);
    write(out_, "\n");
    write(out_, text);
    write(out_, "\n");
}
