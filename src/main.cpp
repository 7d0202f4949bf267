#include "tools/Tools.h"
#include "ui/ScreenPictures.h"

#include <QtQml/qqmlextensionplugin.h>

#include <cstdio>
#include <string>
#include <vector>

Q_IMPORT_QML_PLUGIN(SorrelinPlugin)

int main(int argc, char** argv) {
    std::vector<std::string> arguments(argv, argv + argc);
    // Pictures of the screens need the window's code, which the reports do not link against.
    if (Tools::Job job = Tools::choose(arguments); job.kind == Tools::Job::Kind::render)
        return ScreenPictures::run(argc, argv, job.value, job.growth);
    if (Tools::handle(arguments)) return 0;
    std::fprintf(stderr, "Sorrelin's window is not part of this build yet. Run it with --scan for the cleaning report.\n");
    return 0;
}
