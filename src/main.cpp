#include "launch/AppLibrary.h"
#include "tools/Tools.h"

#include <string>
#include <vector>

int main(int argc, char** argv) {
    std::vector<std::string> arguments(argv, argv + argc);
    // Pictures and the application need the window's code, which only its library links.
    const Tools::Job job = Tools::choose(arguments);
    if (job.kind == Tools::Job::Kind::render || job.kind == Tools::Job::Kind::makeIcon) return AppLibrary::run(argc, argv);
    if (Tools::handle(arguments)) return 0;
    return AppLibrary::run(argc, argv);
}
