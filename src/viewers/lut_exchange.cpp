#include "viewers/lut_exchange.h"

#include "document/prompt_service.h"

#include <QEventLoop>
#include <QProgressDialog>
#include <QThread>
#include <QTimer>

#include <memory>
#include <new>
#include <vector>

namespace {

// Boxes raised on the worker thread, to be shown on the window's thread afterwards.
class DeferredBoxes : public Presenter {
public:
    void messageBox(icBoxKind kind, std::string_view caption, std::string_view text) override {
        boxes_.push_back({kind, std::string(caption), std::string(text)});
    }
    void replay(Presenter& to) const {
        for (const Box& box : boxes_)
            to.messageBox(box.kind, box.caption, box.text);
    }

private:
    struct Box {
        icBoxKind kind;
        std::string caption;
        std::string text;
    };
    std::vector<Box> boxes_;
};

} // namespace

void runWithBusyIndicator(QWidget* parent, const QString& label, const std::function<void()>& work,
                          int showAfterMs) {
    QEventLoop loop;
    std::unique_ptr<QThread> worker(QThread::create(work));
    QObject::connect(worker.get(), &QThread::finished, &loop, &QEventLoop::quit,
                     Qt::QueuedConnection);

    // No cancel button: the procedures cannot stop half way without leaving a partial folder
    // or table behind.
    QProgressDialog busy(label, QString(), 0, 0, parent);
    busy.setObjectName(QLatin1String(kExchangeProgressName));
    busy.setWindowModality(Qt::ApplicationModal);
    busy.setAutoReset(false);
    busy.setAutoClose(false);
    busy.setMinimumDuration(showAfterMs);
    busy.setValue(0);

    worker->start();
    // Windows repaint meanwhile, but input waits until the work is done: the indicator only
    // blocks the viewer once it shows, and a second Import or an OK before then would run on a
    // table that is still being read.
    loop.exec(QEventLoop::ExcludeUserInputEvents);
    worker->wait();
    busy.close();
}

std::optional<icStatus> runExchange(QWidget* parent, PromptService& prompts, std::uint32_t mode,
                                    const QString& label, const icExchangeProcedure& procedure,
                                    const std::function<void(icStatus)>& finish) {
    const std::optional<std::string> folder = prompts.askClutFolder(mode);
    if (!folder)
        return std::nullopt;
    DeferredBoxes boxes;
    icStatus status = icOk;
    runWithBusyIndicator(parent, label, [&] {
        // Nothing may escape the worker thread: running out of memory there is a status too.
        try {
            status = procedure(boxes, *folder);
        } catch (const std::bad_alloc&) {
            status = icErrNoMemory;
        }
    });
    if (finish)
        finish(status);
    boxes.replay(prompts);
    return status;
}
