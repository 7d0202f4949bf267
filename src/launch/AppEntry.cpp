// The window library's entry: what main hands over once no report claimed the arguments, or
// when pictures are asked for.
#include "launch/AppLibrary.h"
#include "tools/Tools.h"
#include "ui/ScreenPictures.h"
#include "ui/art/AppIcon.h"
#include "ui/shell/DesktopApp.h"

#include <QtQml/qqmlextensionplugin.h>

#include <string>
#include <type_traits>
#include <vector>

Q_IMPORT_QML_PLUGIN(SorrelinPlugin)

extern "C" __attribute__((visibility("default"))) int sorrelin_app_run_1(int argc, char** argv) {
    const Tools::Job job = Tools::choose(std::vector<std::string>(argv, argv + argc));
    if (job.kind == Tools::Job::Kind::render) return ScreenPictures::run(argc, argv, job.value, job.growth);
    if (job.kind == Tools::Job::Kind::makeIcon) return AppIcon::run(argc, argv, job.value);
    return DesktopApp::run(argc, argv);
}

static_assert(std::is_same_v<decltype(sorrelin_app_run_1), AppLibrary::Entry>);
