#include <gmock/gmock.h>

#include <utility>
#include <vector>

#include "NuvImgSDK2014DLL.h"
#include "lines/chain_cutter.h"

namespace {

using testing::ElementsAre;

std::vector<std::pair<int32_t, int32_t>> pieces_of_row(std::size_t n, int32_t min_length) {
  std::vector<uint8_t> codes(n, 0);
  std::vector<int32_t> x(n), y(n);
  NuvChain2Points(50, 50, codes.data(), static_cast<int32_t>(n), x.data(), y.data());
  nuv::Piece pieces[50];
  const int32_t count = nuv::cut_chain({codes.data(), x.data(), y.data(), static_cast<int32_t>(n)},
                                       {0.9, 1.0, min_length}, pieces, 50);
  std::vector<std::pair<int32_t, int32_t>> result;
  for (int32_t i = 0; i < count; ++i) result.emplace_back(pieces[i].start, pieces[i].codes);
  return result;
}

TEST(ChainCutter, ReturnsAStraightChainUpToItsLastCode) {
  EXPECT_THAT(pieces_of_row(20, 6), ElementsAre(std::pair(0, 19)));
  EXPECT_THAT(pieces_of_row(5, 6), ElementsAre());
  EXPECT_THAT(pieces_of_row(20, 21), ElementsAre());
}

}  // namespace
