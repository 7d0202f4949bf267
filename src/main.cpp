#include "tools/Tools.h"
#include "ui/ScreenPictures.h"
#include "ui/art/AppIcon.h"
#include "ui/shell/DesktopApp.h"

#include <QtQml/qqmlextensionplugin.h>

#include <string>
#include <vector>

Q_IMPORT_QML_PLUGIN(SorrelinPlugin)

int main(int argc, char** argv) {
    std::vector<std::string> arguments(argv, argv + argc);
    // Pictures need the window's code, which the reports do not link against.
    const Tools::Job job = Tools::choose(arguments);
    if (job.kind == Tools::Job::Kind::render) return ScreenPictures::run(argc, argv, job.value, job.growth);
    if (job.kind == Tools::Job::Kind::makeIcon) return AppIcon::run(argc, argv, job.value);
    if (Tools::handle(arguments)) return 0;
    return DesktopApp::run(argc, argv);
}
