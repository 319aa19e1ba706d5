#include <KorvidAppKit/ZRBoxBlur.h>

#include <cstdlib>

void _ZRReleaseBMData(void*, void* data)
{
    std::free(data);
}
