#include "dice/Random.h"

#include <chrono>
#include <deque>

namespace gandrel {

namespace {

uint64_t state[4];
bool fixedSeed = false;
std::deque<double> scripted;

uint64_t Rotl(uint64_t x, int k) { return (x << k) | (x >> (64 - k)); }

uint64_t SplitMix(uint64_t& x) {
  uint64_t z = (x += 0x9E3779B97F4A7C15ull);
  z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
  z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
  return z ^ (z >> 31);
}

uint64_t Next() {
  const uint64_t result = Rotl(state[1] * 5, 7) * 9;
  const uint64_t t = state[1] << 17;
  state[2] ^= state[0];
  state[3] ^= state[1];
  state[1] ^= state[2];
  state[0] ^= state[3];
  state[2] ^= t;
  state[3] = Rotl(state[3], 45);
  return result;
}

void SeedState(uint64_t seed) {
  for (uint64_t& word : state) word = SplitMix(seed);
}

struct Initial {
  Initial() {
    SeedState(static_cast<uint64_t>(
        std::chrono::high_resolution_clock::now().time_since_epoch().count()));
  }
} initial;

}  // namespace

double Rnd() {
  if (!scripted.empty()) [[unlikely]] {
    double r = scripted.front();
    scripted.pop_front();
    return r;
  }
  return static_cast<double>(Next() >> 11) * 0x1.0p-53;
}

void Randomize() {
  if (fixedSeed) return;
  uint64_t t = static_cast<uint64_t>(
      std::chrono::high_resolution_clock::now().time_since_epoch().count());
  // Mixing, not reseeding: the state keeps everything it had.
  state[0] ^= SplitMix(t);
  if ((state[0] | state[1] | state[2] | state[3]) == 0) state[0] = 1;
  Next();
}

void SeedRandom(uint64_t seed) {
  fixedSeed = true;
  scripted.clear();
  SeedState(seed);
}

void UnseedRandom() { fixedSeed = false; }

void ScriptRandom(const std::vector<double>& values) {
  scripted.assign(values.begin(), values.end());
}

}  // namespace gandrel
