#include "ui/Pictures.h"

#include "foundation/AtomicFile.h"
#include "foundation/Rendering.h"
#include "ui/UiEngine.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QImageWriter>
#include <QQmlComponent>
#include <QQuickItem>
#include <QQuickWindow>

#include <algorithm>
#include <cmath>

namespace Pictures {

Renderer::Renderer() : qml(std::make_unique<QQmlEngine>()), wasRendering(Tools::rendering.exchange(true)) {
    // The Motion singleton reads the switch when the engine first needs it.
    UiEngine::prepare(*qml);
}

// The switch is the process's: a renderer that goes leaves it as it found it, so that what
// runs after the pictures (a test, the live window) moves and writes again.
Renderer::~Renderer() {
    qml.reset();
    Tools::rendering = wasRendering;
}

QImage Renderer::draw(const Scene& scene) {
    lastError.clear();
    QQmlComponent component(qml.get(), scene.source, QQmlComponent::PreferSynchronous);
    if (!component.isReady()) {
        // Creating from a component in error crashes Qt 6.4: say why instead.
        lastError = component.isError() ? component.errorString() : QStringLiteral("the scene is still loading");
        return {};
    }
    QQuickWindow window;
    window.setColor(Qt::transparent);
    std::unique_ptr<QObject> root(component.createWithInitialProperties(scene.properties, qml->rootContext()));
    auto* item = qobject_cast<QQuickItem*>(root.get());
    if (!item) {
        lastError = component.isError() ? component.errorString() : QStringLiteral("the scene's root is not an Item");
        return {};
    }
    item->setParentItem(window.contentItem());
    const bool fits = scene.size.height() <= 0;
    auto place = [&] {
        QSize size = scene.size;
        if (fits) size.setHeight(std::max(1, int(std::ceil(item->implicitHeight()))));
        window.resize(size);
        item->setSize(size);
    };
    place();

    // Images, text layout and bindings may take a few frames to settle; take the first frame
    // that equals the one before it, and the last one after a bounded number of tries.
    QImage previous;
    for (int attempt = 0; attempt < 20; ++attempt) {
        QCoreApplication::processEvents();
        if (fits) place(); // the root's height settles with its layout
        QImage frame = window.grabWindow();
        if (frame.isNull()) {
            lastError = QStringLiteral("the window could not be grabbed");
            return {};
        }
        frame.setDevicePixelRatio(window.effectiveDevicePixelRatio());
        if (frame == previous) return frame;
        previous = std::move(frame);
    }
    return previous;
}

bool writePng(const QImage& image, const QString& path) {
    if (image.isNull()) return false;
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "png");
    if (!writer.write(image)) return false;
    return AtomicFile::write(path.toStdString(), std::string_view(bytes.constData(), std::size_t(bytes.size())));
}

} // namespace Pictures
