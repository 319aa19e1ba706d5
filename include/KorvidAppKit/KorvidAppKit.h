#pragma once

#include <KorvidAppKit/ZRAppKitAdditions.h>
#include <KorvidAppKit/ZRGraphics.h>
#include <KorvidAppKit/ZRQRCodeGenerator.h>
#include <KorvidAppKit/ZRQRView.h>
