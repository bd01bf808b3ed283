#include "cli/ContourProgram.h"

int main(int argumentCount, char* arguments[])
{
    return tarnvexo::RunContourProgram(argumentCount, arguments);
}
