// Veltrino: inspects and edits ICC colour profiles.
#include "app/veltrino_app.h"
#include "document/memory_policy.h"

int main(int argc, char** argv) {
    keepLargeBlocksForReuse();
    // A screenshot needs no display: render offscreen unless a platform was chosen.
    if (wantsScreenshot(argc, argv) && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    CVeltrinoApp app(argc, argv);
    return app.InitInstance();
}
