#pragma once

#include "app/commands/catalogue/KAction.h"
#include "core/listing/FolderOpener.h"

#include <QString>

/// The few sentences that name parts of a Mac, as they are said at hand.
namespace fennik::ui::PlatformWords {

QString failureMessage(const FolderOpener::Failure& failure);
QString title(app::KAction action);

} // namespace fennik::ui::PlatformWords
