#pragma once
// The start of the program on the desktop, from the moment no command-line job claimed the
// arguments until the event loop ends.
namespace DesktopApp {

// True when a window can be shown: an X11 or Wayland display, or a Qt platform chosen by hand.
[[nodiscard]] bool hasDisplay();

// Runs the application: one copy per session, the tray, notifications, the login item and the
// model's start. `--background` in the arguments is a start at login; `--action NAME` asks
// for one of the bus actions (scan, clean-safe, quit, show-storage...) of whichever copy runs.
// The process's exit status.
[[nodiscard]] int run(int argc, char** argv);

} // namespace DesktopApp
