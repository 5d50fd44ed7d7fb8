// Lists one folder and prints how many items it has: what the system-call count is taken of.
#include "core/listing/FolderOpener.h"

#include <iostream>

int main(int argumentCount, char** arguments) {
    using namespace fennik;
    if (argumentCount != 2)
        return 2;
    const auto listing = FolderOpener::open(systemFileSystem(), FileUrl(arguments[1]),
                                            FolderOpener::ShowHidden::yes);
    if (!listing)
        return 1;
    std::cout << listing->items.size() << '\n';
    return 0;
}
