#pragma once

// Checks Quit, Relaunch, Stop and Restart on this machine, one line each.
namespace ActionTests {
[[nodiscard]] bool run();
}
