#include "dice.h"

#include <cstdlib>

namespace Dice {

void seed(unsigned int value)
{
    std::srand(value);
}

int random()
{
    return std::rand();
}

int roll(int sides)
{
    return random() % sides + 1;
}

} // namespace Dice
