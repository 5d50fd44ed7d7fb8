#include "app/system/DesktopClipboard.h"

#include "core/base/PathText.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include <memory>

namespace fennik::system {

std::string DesktopClipboard::text() const {
    return QGuiApplication::clipboard()->text().toStdString();
}

void DesktopClipboard::setText(const std::string& text) {
    QGuiApplication::clipboard()->setText(QString::fromStdString(text));
}

app::Clipboard::Files DesktopClipboard::files() const {
    Files files;
    const auto* data = QGuiApplication::clipboard()->mimeData();
    if (data == nullptr)
        return files;
    for (const auto& line : data->data(QStringLiteral("text/uri-list")).split('\n')) {
        if (auto path = pathOfFileUrl(line.trimmed().toStdString()))
            files.paths.push_back(std::move(*path));
    }
    return files;
}

void DesktopClipboard::setFiles(const std::vector<FileUrl>& files) {
    QByteArray list;
    QByteArray plain;
    for (const auto& file : files) {
        const auto path = QByteArray::fromStdString(file.path());
        list += "file://" + path.toPercentEncoding("/") + "\r\n";
        plain += (plain.isEmpty() ? "" : "\n") + path;
    }
    auto data = std::make_unique<QMimeData>();
    data->setData(QStringLiteral("text/uri-list"), list);
    data->setText(QString::fromUtf8(plain));
    QGuiApplication::clipboard()->setMimeData(data.release());
}

} // namespace fennik::system
