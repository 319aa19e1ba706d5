#include "vector/VectorUnits.h"

hwy::ChosenTarget& vectorUnits()
{
    static constinit hwy::ChosenTarget units;
    return units;
}
