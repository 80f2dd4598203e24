#include <cstdio>

int main(int, char**)
{
    std::puts("Orbel Player is built. Its window is not part of this build yet, so there is nothing to show.");
    return 0;
}
