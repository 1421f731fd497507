#include "dice/Random.h"

#include <chrono>
#include <deque>

namespace gandrel {

namespace random_detail {

uint64_t state[4];
bool scriptedPending = false;

}  // namespace random_detail

namespace {

using random_detail::Next;
using random_detail::state;

bool fixedSeed = false;
std::deque<double> scripted;

uint64_t SplitMix(uint64_t& x) {
  uint64_t z = (x += 0x9E3779B97F4A7C15ull);
  z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
  z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
  return z ^ (z >> 31);
}

void SeedState(uint64_t seed) {
  for (uint64_t& word : state)
    word = SplitMix(seed);
}

uint64_t ClockTicks() {
  return static_cast<uint64_t>(
      std::chrono::high_resolution_clock::now().time_since_epoch().count());
}

struct Initial {
  Initial() { SeedState(ClockTicks()); }
} initial;

}  // namespace

double random_detail::NextScripted() {
  double r = scripted.front();
  scripted.pop_front();
  scriptedPending = !scripted.empty();
  return r;
}

void Randomize() {
  if (fixedSeed) return;
  uint64_t t = ClockTicks();
  // Mixing, not reseeding: the state keeps everything it had.
  state[0] ^= SplitMix(t);
  if ((state[0] | state[1] | state[2] | state[3]) == 0) state[0] = 1;
  Next();
}

void SeedRandom(uint64_t seed) {
  fixedSeed = true;
  scripted.clear();
  random_detail::scriptedPending = false;
  SeedState(seed);
}

void UnseedRandom() {
  fixedSeed = false;
}

void ResetRandom() {
  scripted.clear();
  random_detail::scriptedPending = false;
  fixedSeed = false;
}

void ScriptRandom(const std::vector<double>& values) {
  scripted.assign(values.begin(), values.end());
  random_detail::scriptedPending = !scripted.empty();
}

}  // namespace gandrel
