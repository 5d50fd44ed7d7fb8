#include "app/system/DesktopClipboard.h"

#include "core/base/FileLists.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include <memory>
#include <utility>

namespace fennik::system {

namespace {

QString nameOf(std::string_view type) {
    return QString::fromLatin1(type.data(), qsizetype(type.size()));
}

} // namespace

std::string DesktopClipboard::text() const {
    return QGuiApplication::clipboard()->text().toStdString();
}

void DesktopClipboard::setText(const std::string& text) {
    QGuiApplication::clipboard()->setText(QString::fromStdString(text));
}

app::Clipboard::Files DesktopClipboard::files() const {
    const auto* data = QGuiApplication::clipboard()->mimeData();
    if (data == nullptr)
        return {};
    auto files = FileLists::read([data](std::string_view type) {
        const auto name = nameOf(type);
        return data->hasFormat(name) ? data->data(name).toStdString() : std::string();
    });
    return {std::move(files.paths), files.intent == FileLists::Intent::move};
}

void DesktopClipboard::setFiles(const std::vector<FileUrl>& files) {
    FileLists::Files list;
    for (const auto& file : files)
        list.paths.push_back(file.path());
    auto data = std::make_unique<QMimeData>();
    for (const auto& [type, content] : FileLists::write(list))
        data->setData(nameOf(type), QByteArray::fromStdString(content));
    QGuiApplication::clipboard()->setMimeData(data.release());
}

} // namespace fennik::system
