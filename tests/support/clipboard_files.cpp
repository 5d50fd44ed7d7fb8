// The clipboard as the program uses it. With "files" it prints the files that are there, one a
// line, under a word for what is to become of them; with "put" it offers the paths given until it
// is ended.
#include "app/system/DesktopClipboard.h"

#include <QApplication>
#include <QTimer>

#include <iostream>
#include <string_view>
#include <vector>

namespace {

void print(const fennik::app::Clipboard::Files& files) {
    std::cout << (files.isCut ? "cut" : "copy") << '\n';
    for (const auto& path : files.paths)
        std::cout << path << '\n';
}

} // namespace

int main(int argumentCount, char** arguments) {
    using fennik::FileUrl;
    const QApplication application(argumentCount, arguments);
    fennik::system::DesktopClipboard clipboard;
    if (argumentCount < 2 || arguments[1] == std::string_view("files")) {
        print(clipboard.files());
        return 0;
    }
    std::vector<FileUrl> files;
    for (int i = 2; i < argumentCount; ++i)
        files.emplace_back(arguments[i]);
    clipboard.setFiles(files);
    QTimer::singleShot(0, [] { std::cout << "ready" << '\n' << std::flush; });
    return QApplication::exec();
}
