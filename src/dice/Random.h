// The random source of the dice.
//
// One generator (xoshiro256**) of high statistical quality for the whole
// program. Rnd() gives doubles uniform in [0, 1) with 53 random bits, never
// equal to 1, so that a die of any size reaches every face and never more.
// It is inline: a roll of 10^8 dice calls it 10^8 times.
//
// Randomize() is what "reseed from the clock" means here: it mixes the time
// into the state and never restarts the sequence, so two reseeds in the same
// clock tick still give independent rolls. After SeedRandom() the clock is no
// longer mixed in and every roll is reproducible.
#pragma once

#include <cstdint>
#include <vector>

namespace gandrel {

namespace random_detail {

extern uint64_t state[4];
// True while values given to ScriptRandom() wait to be returned.
extern bool scriptedPending;
double NextScripted();

inline uint64_t Rotl(uint64_t x, int k) {
  return (x << k) | (x >> (64 - k));
}

inline uint64_t Next() {
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

}  // namespace random_detail

inline double Rnd() {
  if (random_detail::scriptedPending) [[unlikely]]
    return random_detail::NextScripted();
  return static_cast<double>(random_detail::Next() >> 11) * 0x1.0p-53;
}

// Mixes the clock into the generator's state (does nothing after SeedRandom).
void Randomize();

// Restarts the generator from seed and stops Randomize() from mixing the clock.
void SeedRandom(uint64_t seed);

// Goes back to clock reseeding (the state is kept).
void UnseedRandom();

// Tests: the next Rnd() calls return these values in order, then the
// generator resumes.
void ScriptRandom(const std::vector<double>& values);

// Tests: no scripted values, clock reseeding back on (the state is kept).
void ResetRandom();

// Tests: the r that makes a die of the given number of faces show face
// (1-based): the middle of that face's interval.
inline double FaceToRnd(double face, double faces) {
  return (face - 0.5) / faces;
}

}  // namespace gandrel
