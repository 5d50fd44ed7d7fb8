#include "core/operations/UrlList.h"

#include <algorithm>
#include <string_view>

namespace fennik {

std::size_t UrlList::nameBegin(std::size_t index) const {
    return index == 0 ? 0 : items_[index - 1].nameEnd;
}

std::uint32_t UrlList::indexOfFolder(std::string_view path) {
    auto* found = std::ranges::find_if(recent_, [&](std::uint32_t index) {
        return index < folders_.size() && folders_[index] == path;
    });
    if (found == recent_.end()) {
        *--found = static_cast<std::uint32_t>(folders_.size());
        folders_.emplace_back(path);
    }
    std::rotate(recent_.begin(), found, found + 1);
    return recent_.front();
}

void UrlList::push_back(const FileUrl& url) {
    const std::string_view path = url.path();
    const auto slash = path.rfind('/');
    names_.append(path.substr(slash + 1));
    items_.push_back(
        {.nameEnd = names_.size(),
         .folder = indexOfFolder(path.substr(0, slash)),
         .form = url.hasDirectoryForm() ? FileUrl::Form::directory : FileUrl::Form::file});
}

void UrlList::pop_back() {
    items_.pop_back();
    names_.resize(nameBegin(items_.size()));
}

FileUrl UrlList::operator[](std::size_t index) const {
    const auto& item = items_[index];
    const auto begin = nameBegin(index);
    const auto name = std::string_view(names_).substr(begin, item.nameEnd - begin);
    const auto& folder = folders_[item.folder];
    std::string path;
    path.reserve(folder.size() + 1 + name.size());
    path.append(folder).append("/").append(name);
    return FileUrl(std::move(path), item.form);
}

void UrlList::shrink_to_fit() {
    folders_.shrink_to_fit();
    names_.shrink_to_fit();
    items_.shrink_to_fit();
}

} // namespace fennik
