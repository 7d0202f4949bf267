#include "ui/ScreenPictures.h"

#include "foundation/Log.h"
#include "foundation/Rendering.h"
#include "ui/UiEngine.h"

#include <QDir>
#include <QGuiApplication>

namespace ScreenPictures {

std::vector<Picture> pictures() { return {}; }

int run(int argc, char** argv, const std::string& folder, bool /*growth: read by the model's preparation*/) {
    Tools::rendering = true;
    const std::vector<Picture> list = pictures();
    if (list.empty()) return 0;
    UiEngine::configureProcess(true);
    QGuiApplication app(argc, argv);
    Pictures::Renderer renderer;
    const QDir dir(QString::fromStdString(folder));
    for (const Picture& p : list) {
        // Pictures are written or not, without a message; the log says which and why.
        QImage image = renderer.draw(p.scene);
        if (image.isNull() || !Pictures::writePng(image, dir.filePath(p.file)))
            Log::note("picture " + p.file.toStdString() + " not written: " + renderer.error().toStdString());
    }
    return 0;
}

} // namespace ScreenPictures
