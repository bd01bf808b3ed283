/* METIS's random numbers on Windows: those of the GNU C library, so that a model's nodes are ordered as on Linux and its
   results are rounded alike. The additive feedback generator r(i) = r(i-3) + r(i-31) of D. E. Knuth, The Art of Computer
   Programming 2, 3.2.2, with the start values of random(3). One per thread, like METIS's other state. */
#include "Rand.h"

#include <stdint.h>

enum { Degree = 31, Separation = 3, Discarded = 10 * Degree };

static __thread uint32_t state[Degree];
static __thread int front, rear;

int MetisRand(void)
{
    const uint32_t sum = state[front] += state[rear];
    front = (front + 1) % Degree;
    rear = (rear + 1) % Degree;
    return (int)(sum >> 1);
}

void MetisSeedRand(unsigned seed)
{
    /* r(i) = 16807·r(i-1) mod 2³¹ - 1 by Schrage's method, which needs no wider numbers */
    int32_t word = seed == 0 ? 1 : (int32_t)seed;
    int i;
    for (i = 0; i < Degree; ++i) {
        state[i] = (uint32_t)word;
        word = 16807 * (word % 127773) - 2836 * (word / 127773);
        if (word < 0) {
            word += 2147483647;
        }
    }
    front = Separation;
    rear = 0;
    for (i = 0; i < Discarded; ++i) { MetisRand(); }
}
