/* Takes the place of rand and srand in METIS (Rand.c). */
#pragma once

#include <stdlib.h>

int MetisRand(void);
void MetisSeedRand(unsigned seed);

#define rand MetisRand
#define srand MetisSeedRand
