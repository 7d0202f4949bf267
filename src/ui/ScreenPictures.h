#pragma once
// `--render DIR`: pictures of the screens on this machine's data, drawn offscreen.
#include <QSize>
#include <QString>
#include <QStringList>

#include <functional>
#include <string>
#include <vector>

#include "ui/Pictures.h"

class AppModel;

namespace ScreenPictures {

// The default size of the main window, in points.
inline constexpr QSize windowSize{1060, 760};
// The tray panel: its width, and as tall as the sections it holds.
inline constexpr QSize panelSize{340, 0};

// A picture to write: its file name in the folder, the scene that draws it and what puts the
// model in the state it shows (each picture sets every state it depends on, so the order of the
// list does not matter).
struct Picture {
    QString file;
    Pictures::Scene scene;
    std::function<void(AppModel&)> state;
};

// The pictures of the screens, in the order they are written: one per tab named by its title,
// then the further states.
[[nodiscard]] std::vector<Picture> pictures();
// The pictures of the time before the first scan, written before the model is filled.
[[nodiscard]] std::vector<Picture> firstPictures();

// Fills the model as the pictures show it: a whole scan with its defaults ticked, the scan
// dated now, two samples of the processes, the project cards with the shared-package check,
// the storage map (walked now when none is stored) and the growth of the last days when
// `growth` is set. Blocks until every job has landed.
void prepare(AppModel& model, bool growth);

// Draws each picture of `list` of `model` into `folder`; "{file}: {why}" for each not written.
[[nodiscard]] QStringList write(AppModel& model, const std::vector<Picture>& list, const QString& folder);

// Runs the option: sets the rendering switch (no settings or data files are written), makes an
// offscreen application and the program's model and writes every picture into `folder`. The
// exit status of the process.
[[nodiscard]] int run(int argc, char** argv, const std::string& folder, bool growth);

} // namespace ScreenPictures
