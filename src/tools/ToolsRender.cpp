// Pictures of the screens and the package artwork are drawn by the window's code: main.cpp sends
// --render and --make-icon there before the arguments reach Tools::handle.
#include "tools/Tools.h"

void Tools::render(const std::string&, bool) {}
void Tools::makeIcon(const std::string&) {}
void Tools::drawDiskImageBackground(const std::string&) {}
