#pragma once
// Collects every warning Qt prints while it lives: a screen that builds with a QML warning is
// a screen with something missing.
#include <QStringList>
#include <QtGlobal>

#include <mutex>

class QmlWarnings {
public:
    QmlWarnings() {
        std::lock_guard lock(mutex());
        list().clear();
        previous = qInstallMessageHandler(collect);
    }
    ~QmlWarnings() { qInstallMessageHandler(previous); }
    QmlWarnings(const QmlWarnings&) = delete;
    QmlWarnings& operator=(const QmlWarnings&) = delete;

    [[nodiscard]] QStringList taken() const {
        std::lock_guard lock(mutex());
        return list();
    }

private:
    static std::mutex& mutex() {
        static std::mutex m;
        return m;
    }
    static QStringList& list() {
        static QStringList l;
        return l;
    }
    static void collect(QtMsgType type, const QMessageLogContext&, const QString& text) {
        if (type == QtDebugMsg || type == QtInfoMsg) return;
        std::lock_guard lock(mutex());
        list() << text;
    }
    QtMessageHandler previous = nullptr;
};
