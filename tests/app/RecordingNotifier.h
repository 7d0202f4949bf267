#pragma once
// A notifier that writes down what it is asked to post: the desktop's notification service is
// not part of these tests.
#include "app/Notifier.h"

#include <vector>

class RecordingNotifier final : public Notifier {
public:
    std::vector<Notification> posted;
    void post(const Notification& n) override { posted.push_back(n); }
    [[nodiscard]] int count(const QString& id) const {
        int n = 0;
        for (const auto& p : posted) n += p.id == id;
        return n;
    }
};
