#pragma once

#include "app/model/PreviewReading.h"

#include <QString>

#include <cstddef>
#include <span>
#include <utility>
#include <vector>

/// What a preview says in words and figures.
namespace fennik::ui::PreviewTexts {

/// Title and value, both for the eye.
using Fact = std::pair<QString, QString>;

/// The bytes in lines of so many, each with its place before and its characters behind.
QString hex(std::span<const std::byte> bytes, std::size_t bytesPerLine);

/// What stands below the content: first what the item is, then what is known of its content.
std::vector<Fact> facts(const app::PreviewSubject& subject, const app::PreviewContent& content);

/// "3 složky, 20 souborů · 5,1 MB"
QString countsOf(const app::PreviewList& list);

} // namespace fennik::ui::PreviewTexts
