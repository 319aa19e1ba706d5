#include <KorvidAppKit/KorvidAppKit.h>

#include <cstdio>
#include <cstdlib>

int main()
{
    NSInteger dim = 0;
    std::free(ZRQRCodeGenerator::sharedQRCodeGenerator()->copyQRBitsFromText("hello", &dim));
    std::printf("%d modules\n", static_cast<int>(dim));
    return 0;
}
