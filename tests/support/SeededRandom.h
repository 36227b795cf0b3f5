#pragma once

#include <cstddef>
#include <cstdint>

namespace quillon::sim {

// A small generator whose whole run follows from its seed, the same on every machine.
class SeededRandom {
 public:
  explicit SeededRandom(std::uint64_t seed) : state_(seed) {}
  std::uint64_t next() {
    std::uint64_t z = (state_ += 0x9E3779B97F4A7C15u);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
    return z ^ (z >> 31);
  }
  std::size_t below(std::size_t limit) { return static_cast<std::size_t>(next() % limit); }  // limit > 0
  bool oneIn(std::size_t n) { return below(n) == 0; }
  bool percent(std::size_t chance) { return below(100) < chance; }

 private:
  std::uint64_t state_;
};

}  // namespace quillon::sim
