#include "core/base/FileUrl.h"

#include <utility>

namespace fennik {

FileUrl::FileUrl() : path_("/"), form_(Form::directory) {}

FileUrl::FileUrl(std::string path, Form form) : path_(std::move(path)), form_(form) {
    while (path_.size() > 1 && path_.back() == '/') {
        path_.pop_back();
        form_ = Form::directory;
    }
    if (path_ == "/")
        form_ = Form::directory;
}

std::string_view FileUrl::lastComponent() const {
    if (isRoot())
        return path_;
    return std::string_view(path_).substr(path_.rfind('/') + 1);
}

FileUrl FileUrl::parent() const {
    const auto slash = path_.rfind('/');
    if (slash == std::string::npos || slash == 0)
        return {};
    return FileUrl(path_.substr(0, slash), Form::directory);
}

FileUrl FileUrl::appending(std::string_view name, Form form) const {
    std::string path;
    path.reserve(path_.size() + 1 + name.size());
    path = path_;
    if (!isRoot())
        path += '/';
    path += name;
    return FileUrl(std::move(path), form);
}

FileUrl FileUrl::standardized() const {
    std::string result;
    std::string_view rest = path_;
    while (!rest.empty()) {
        const auto slash = rest.find('/');
        const auto component = rest.substr(0, slash);
        rest = slash == std::string_view::npos ? std::string_view() : rest.substr(slash + 1);
        if (component.empty() || component == ".")
            continue;
        if (component == "..") {
            result.resize(result.empty() ? 0 : result.rfind('/'));
            continue;
        }
        result += '/';
        result += component;
    }
    if (result.empty())
        return {};
    return FileUrl(std::move(result), form_);
}

} // namespace fennik

std::size_t std::hash<fennik::FileUrl>::operator()(const fennik::FileUrl& url) const noexcept {
    return std::hash<std::string>()(url.path()) * 2 + (url.hasDirectoryForm() ? 1 : 0);
}
