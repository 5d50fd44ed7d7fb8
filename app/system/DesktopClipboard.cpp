#include "app/system/DesktopClipboard.h"

#include <QClipboard>
#include <QGuiApplication>

namespace fennik::system {

std::string DesktopClipboard::text() const {
    return QGuiApplication::clipboard()->text().toStdString();
}

} // namespace fennik::system
