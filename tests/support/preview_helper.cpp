// A helper that decodes nothing, but does to others what the beginning of its file says.
#include "app/preview/HelperDecoder.h"
#include "app/preview/decoding/DecodingHelper.h"
#include "core/helper/HelperSide.h"
#include "core/helper/Outbox.h"
#include "tests/support/UsedUpMemory.h"

#include <array>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using namespace fennik;
using namespace fennik::app;

void say(PreviewMessage kind, const DecodedPicture& picture) {
    Outbox outbox;
    outbox.messages().begin(kind);
    PreviewMessages::put(outbox.messages(), picture);
    outbox.messages().finish();
    outbox.send();
}

void sayPixels(std::size_t count) {
    Outbox outbox;
    outbox.messages().begin(PreviewMessage::pixels);
    outbox.messages().rest(std::vector<std::byte>(count));
    outbox.messages().finish();
    outbox.send();
}

std::size_t openFiles() {
    std::size_t count = 0;
    for (int number = 0; number < 100; ++number)
        count += static_cast<std::size_t>(fcntl(number, F_GETFD) >= 0);
    return count;
}

Decoding misbehave(DecodedKind, int descriptor) {
    std::array<char, 100> bytes{};
    const auto length = pread(descriptor, bytes.data(), bytes.size(), 0);
    const std::string_view wish(bytes.data(), static_cast<std::size_t>(length));
    if (wish == "sleep") {
        std::this_thread::sleep_for(std::chrono::minutes(5));
    } else if (wish == "spin") {
        for (volatile unsigned round = 0;;)
            round = round + 1;
    } else if (wish == "crash") {
        std::raise(SIGSEGV);
    } else if (wish == "leave") {
        std::_Exit(HelperExit::done);
    } else if (wish == "eat") {
        test::useUpMemory();
    } else if (wish == "huge picture") {
        say(PreviewMessage::picture, {.width = 100'000, .height = 100'000});
    } else if (wish == "no picture") {
        say(PreviewMessage::picture, {.width = 0, .height = 7});
    } else if (wish == "negative") {
        say(PreviewMessage::picture, {.width = 1, .height = 1, .fullWidth = -5, .fullHeight = -5});
    } else if (wish == "too many pixels") {
        say(PreviewMessage::picture, {.width = 2, .height = 2});
        sayPixels(17);
    } else if (wish == "only pixels") {
        sayPixels(16);
    } else if (wish == "open files") {
        return DecodedMedia{.seconds = double(openFiles())};
    } else if (wish == "ugly words") {
        return DecodedMedia{.facts = {{"Ná\nzev", "\xFF\x1B[31m"}}};
    }
    return std::unexpected(DecodingFailure::unsupported);
}

} // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount == 2 && arguments[1] == decodingHelperOption)
        return runDecodingHelper({.decode = misbehave,
                                  .memory = std::int64_t{64} << 20,
                                  .processorTime = std::chrono::seconds(1)});
    return HelperExit::noHelper;
}
