// Pictures of the screens and the package artwork; they come with the window.
#include "tools/Tools.h"

void Tools::render(const std::string&, bool) {}
void Tools::makeIcon(const std::string&) {}
void Tools::drawDiskImageBackground(const std::string&) {}
