#pragma once

#include <QString>

#include <string>
#include <string_view>

/// Names of files as texts that can be edited. Bytes that are not UTF-8 stand in them as surrogates
/// without a partner, one each, which no other text contains: so what is left alone comes back to
/// the byte.
namespace fennik::ui::NameText {

QString fromBytes(std::string_view name);
std::string toBytes(const QString& text);

} // namespace fennik::ui::NameText
