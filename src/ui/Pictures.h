#pragma once
// Draws QML scenes into pictures without a display: each scene is built in a hidden window of
// the software renderer, left to settle until two frames agree, grabbed and written as a PNG
// that a reader sees whole or not at all. Animations stand still while pictures are made.
#include <QImage>
#include <QQmlEngine>
#include <QSize>
#include <QString>
#include <QUrl>
#include <QVariantMap>

#include <memory>

namespace Pictures {

struct Scene {
    QUrl source;            // a QML file whose root is an Item
    QSize size;             // in points; the picture has size × device pixel ratio pixels. A height
                            // of 0 takes the root's own height (a panel as tall as its sections).
    QVariantMap properties; // set on the root as it is created
};

// Needs a GUI application made after UiEngine::configureProcess(true).
class Renderer {
public:
    Renderer();
    ~Renderer();
    Renderer(const Renderer&) = delete;
    Renderer& operator=(const Renderer&) = delete;

    [[nodiscard]] QQmlEngine& engine() { return *qml; }
    // The scene drawn, or a null image with `error()` saying why.
    [[nodiscard]] QImage draw(const Scene& scene);
    [[nodiscard]] const QString& error() const { return lastError; }

private:
    std::unique_ptr<QQmlEngine> qml;
    bool wasRendering = false;
    QString lastError;
};

// Writes a PNG atomically; false (and the old file untouched) on any failure.
[[nodiscard]] bool writePng(const QImage& image, const QString& path);

} // namespace Pictures
