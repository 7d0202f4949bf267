#pragma once
// `--render DIR`: pictures of the screens on this machine's data, drawn offscreen.
#include <string>
#include <vector>

#include "ui/Pictures.h"

namespace ScreenPictures {

// A picture to write: its file name in the folder and the scene that draws it.
struct Picture {
    QString file;
    Pictures::Scene scene;
};

// The pictures of the screens, in the order they are written. The screens read the
// application model; until the main window exists there is no screen to draw, so the list is
// empty and the option writes nothing.
[[nodiscard]] std::vector<Picture> pictures();

// Runs the option: sets the rendering switch (no settings or data files are written), makes an
// offscreen application and writes each picture into `folder`. The exit status of the process.
[[nodiscard]] int run(int argc, char** argv, const std::string& folder, bool growth);

} // namespace ScreenPictures
