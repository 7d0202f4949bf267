#include "platform/layout/ProjectTables.h"

ProjectTables ProjectTables::forLinux(const Places&) {
    ProjectTables t;
    t.editors = {
        // VS Code and its relatives: packages, tarballs, Snap and Flatpak.
        {"/code-insiders/", "VS Code Insiders"},
        {"/vscode-insiders/", "VS Code Insiders"},
        {"/usr/share/code/", "VS Code"},
        {"/visual-studio-code/", "VS Code"},
        {"/vscode-linux-", "VS Code"},
        {"/snap/code/", "VS Code"},
        {"/extra/vscode/", "VS Code"},
        {"/cursor/", "Cursor"},
        {"/.mount_cursor", "Cursor"},
        {"/zed.app/", "Zed"},
        {"/zed-editor", "Zed"},
        {"/zed-preview.app/", "Zed"},
        {"/windsurf/", "Windsurf"},
        // JetBrains IDEs: Toolbox installs, tarballs ("idea-IU-241..."), Snaps.
        {"/intellij-idea", "IntelliJ IDEA"},
        {"/idea-iu-", "IntelliJ IDEA"},
        {"/idea-ic-", "IntelliJ IDEA"},
        {"/pycharm", "PyCharm"},
        {"/webstorm", "WebStorm"},
        {"/goland", "GoLand"},
        {"/clion", "CLion"},
        {"/rustrover", "RustRover"},
        {"/phpstorm", "PhpStorm"},
        {"/rider", "Rider"},
        {"/datagrip", "DataGrip"},
        {"/rubymine", "RubyMine"},
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
