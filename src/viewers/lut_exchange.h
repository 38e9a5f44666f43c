// How the lookup-table viewers run an export or import: the folder from the CLUT folder dialog,
// then the exchange procedure on a worker thread behind a busy indicator, so that the window
// keeps painting while a table of millions of values is written or parsed.
#pragma once

#include "document/presenter.h"
#include "profile/status.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

class PromptService;
class QWidget;

// The object name of the busy indicator, for tests.
inline constexpr char kExchangeProgressName[] = "exchangeProgress";

// Runs `work` on a worker thread and returns when it is done. Meanwhile an application-modal
// busy indicator with `label` appears (after `showAfterMs`, so that quick jobs do not flash
// one), windows repaint and timers run; user input waits until the work is done. `work` must
// not touch widgets.
void runWithBusyIndicator(QWidget* parent, const QString& label, const std::function<void()>& work,
                          int showAfterMs = 300);

// An exchange procedure: the boxes it shows go to the presenter it is given.
using icExchangeProcedure = std::function<icStatus(Presenter&, const std::string& folder)>;

// Asks for the folder (CLUT folder dialog in `mode`) and runs the procedure with the busy
// indicator. The procedure's boxes are kept while it runs on the worker thread; once it is done,
// `finish` runs on the window's thread with its status (to take an imported table and show it),
// and then the boxes are shown to `prompts` in order. Nothing when the dialog was cancelled,
// else the procedure's status.
std::optional<icStatus> runExchange(QWidget* parent, PromptService& prompts, std::uint32_t mode,
                                    const QString& label, const icExchangeProcedure& procedure,
                                    const std::function<void(icStatus)>& finish = {});
