#include "support/SimDisk.h"

namespace quillon::sim {
namespace {

constexpr Fate kFates[] = {Fate::kept, Fate::lost, Fate::head, Fate::tail};

std::size_t fatesOf(std::size_t sectors) { return sectors > 1 ? 4 : 2; }

}  // namespace

CutChooser::CutChooser(const SimDisk& disk, std::size_t limit, std::uint64_t seed)
    : sectors_(disk.pendingSectors()), seed_(seed) {
  std::size_t all = 1;
  subsets_ = 1;
  for (const std::size_t sectors : sectors_) {
    if (all <= limit) all *= fatesOf(sectors);
    if (subsets_ <= limit) subsets_ *= 2;
  }
  exhaustive_ = all <= limit;
  count_ = exhaustive_ ? all : limit;
  if (subsets_ > limit) subsets_ = 0;
}

CutChoice CutChooser::choice(std::size_t index) const {
  if (!exhaustive_ && index >= subsets_) return byChance(index);
  CutChoice choice;
  for (const std::size_t sectors : sectors_) {
    const std::size_t ways = exhaustive_ ? fatesOf(sectors) : 2;
    choice.fates.push_back(kFates[index % ways]);
    index /= ways;
  }
  return choice;
}

// Each choice has its own leaning between "nearly all arrived" and "nearly nothing", since a fault often needs one
// operation missing among many, or one there among none.
CutChoice CutChooser::byChance(std::size_t index) const {
  SeededRandom random(seed_ * 1'000'003 + index);
  CutChoice choice;
  choice.seed = random.next();
  if (subsets_ == 0 && index < 2) {
    choice.fates.assign(sectors_.size(), kFates[index]);
    return choice;
  }
  constexpr std::size_t kLeanings[] = {3, 20, 50, 80, 97};
  const std::size_t lostChance = kLeanings[random.below(std::size(kLeanings))];
  for (const std::size_t sectors : sectors_) {
    if (sectors > 1 && random.oneIn(6)) {
      constexpr Fate kTorn[] = {Fate::head, Fate::tail, Fate::scattered};
      choice.fates.push_back(kTorn[random.below(std::size(kTorn))]);
    } else {
      choice.fates.push_back(random.percent(lostChance) ? Fate::lost : Fate::kept);
    }
  }
  return choice;
}

}  // namespace quillon::sim
