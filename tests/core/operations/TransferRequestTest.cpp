#include "core/operations/TransferRequest.h"

#include <gtest/gtest.h>

namespace fennik::test {

TEST(TransferRequestTest, isNamedByWhatItMovesWhere) {
    const TransferPair pair{FileUrl("/from/č"), FileUrl("/to/x")};
    EXPECT_EQ(TransferRequest{.pairs = {pair}}.jobTitle(), "Kopírování „č“");
    EXPECT_EQ((TransferRequest{TransferKind::move, {pair, pair}}.jobTitle()), "Přesun 2 položek");
    EXPECT_EQ((TransferRequest{TransferKind::copy, {pair}, "Vložení"}.jobTitle()), "Vložení");
    EXPECT_EQ(TransferRequest{.pairs = {pair}}.destinationFolder(), "/to");
    EXPECT_EQ(TransferRequest{}.destinationFolder(), "");
}

} // namespace fennik::test
