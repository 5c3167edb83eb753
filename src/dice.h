// The program's one source of chance: the C library's generator, seeded once in main().
#pragma once

namespace Dice {

void seed(unsigned int value);
// A value of the generator, 0 to RAND_MAX.
int random();
// 1 to `sides`.
int roll(int sides);

} // namespace Dice
