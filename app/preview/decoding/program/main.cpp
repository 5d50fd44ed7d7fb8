#include "app/preview/HelperDecoder.h"
#include "app/preview/decoding/DecodingHelper.h"
#include "core/helper/HelperSide.h"

#include <cstddef>
#include <span>
#include <string_view>

int main(int argumentCount, char** arguments) {
    const auto texts = std::span<const char* const>(arguments, std::size_t(argumentCount));
    if (texts.size() == 2 && std::string_view(texts.back()) == fennik::app::decodingHelperOption)
        return fennik::app::runDecodingHelper();
    return fennik::HelperExit::noHelper;
}
