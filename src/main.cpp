#include "tools/Tools.h"

#include <cstdio>
#include <string>
#include <vector>

int main(int argc, char** argv) {
    std::vector<std::string> arguments(argv, argv + argc);
    if (Tools::handle(arguments)) return 0;
    std::fprintf(stderr, "Sorrelin's window is not part of this build yet. Run it with --scan for the cleaning report.\n");
    return 0;
}
