#include "platform/layout/ProjectTables.h"

ProjectTables ProjectTables::forLinux(const Places&) {
    ProjectTables t;
    // Pieces name an install's own folders, so that a user or a project called "cursor" or
    // "rider" is not taken for the editor.
    t.editors = {
        // VS Code and its relatives: packages, tarballs, Snap and Flatpak.
        {"/usr/share/code-insiders/", "VS Code Insiders"},
        {"/snap/code-insiders/", "VS Code Insiders"},
        {"/vscode-insiders/", "VS Code Insiders"},
        {"/vscode-linux-", "VS Code"},
        {"/usr/share/code/", "VS Code"},
        {"/opt/visual-studio-code/", "VS Code"},
        {"/snap/code/", "VS Code"},
        {"/extra/vscode/", "VS Code"},
        {"/usr/share/cursor/", "Cursor"},
        {"/opt/cursor/", "Cursor"},
        {"/.mount_cursor", "Cursor"},
        {"/zed.app/", "Zed"},
        {"/zed-preview.app/", "Zed"},
        {"/libexec/zed-editor", "Zed"},
        {"/usr/share/windsurf/", "Windsurf"},
        {"/opt/windsurf/", "Windsurf"},
        // JetBrains IDEs: Toolbox installs, tarballs ("idea-IU-241..."), Snaps.
        {"/toolbox/apps/intellij-idea", "IntelliJ IDEA"},
        {"/toolbox/apps/idea-", "IntelliJ IDEA"},
        {"/idea-iu-", "IntelliJ IDEA"},
        {"/idea-ic-", "IntelliJ IDEA"},
        {"/snap/intellij-idea", "IntelliJ IDEA"},
        {"/toolbox/apps/pycharm", "PyCharm"},
        {"/pycharm-", "PyCharm"},
        {"/snap/pycharm", "PyCharm"},
        {"/toolbox/apps/webstorm", "WebStorm"},
        {"/webstorm-", "WebStorm"},
        {"/snap/webstorm/", "WebStorm"},
        {"/toolbox/apps/goland", "GoLand"},
        {"/goland-", "GoLand"},
        {"/snap/goland/", "GoLand"},
        {"/toolbox/apps/clion", "CLion"},
        {"/clion-", "CLion"},
        {"/snap/clion/", "CLion"},
        {"/toolbox/apps/rustrover", "RustRover"},
        {"/rustrover-", "RustRover"},
        {"/snap/rustrover/", "RustRover"},
        {"/toolbox/apps/phpstorm", "PhpStorm"},
        {"/phpstorm-", "PhpStorm"},
        {"/snap/phpstorm/", "PhpStorm"},
        {"/toolbox/apps/rider", "Rider"},
        {"/jetbrains rider-", "Rider"},
        {"/snap/rider/", "Rider"},
        {"/toolbox/apps/datagrip", "DataGrip"},
        {"/datagrip-", "DataGrip"},
        {"/snap/datagrip/", "DataGrip"},
        {"/toolbox/apps/rubymine", "RubyMine"},
        {"/rubymine-", "RubyMine"},
        {"/snap/rubymine/", "RubyMine"},
        {"/android-studio/", "Android Studio"},
    };
    t.hiddenBelowHome = {"snap/"};
    // Flatpak apps see their own files at /app.
    t.appProgramPrefixes = {"/app/"};
    return t;
}

ProjectTables ProjectTables::forMacos(const Places&) {
    ProjectTables t;
    t.editors = {{"/visual studio code - insiders.app/", "VS Code Insiders"},
                 {"/visual studio code.app/", "VS Code"},
                 {"/cursor.app/", "Cursor"},
                 {"/zed.app/", "Zed"},
                 {"/windsurf.app/", "Windsurf"},
                 {"/xcode.app/", "Xcode"}};
    t.hiddenBelowHome = {"Library/"};
    return t;
}
