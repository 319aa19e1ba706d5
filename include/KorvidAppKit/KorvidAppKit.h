#pragma once

/// @file
/// All of the library.

#include <KorvidAppKit/ZR2DColorPicker.h>
#include <KorvidAppKit/ZRAlert.h>
#include <KorvidAppKit/ZRAngularGradient.h>
#include <KorvidAppKit/ZRAppKitAdditions.h>
#include <KorvidAppKit/ZRBezierSeries.h>
#include <KorvidAppKit/ZRBoxBlur.h>
#include <KorvidAppKit/ZRCapsuleView.h>
#include <KorvidAppKit/ZRErrors.h>
#include <KorvidAppKit/ZRFlippedClipView.h>
#include <KorvidAppKit/ZRGradientView.h>
#include <KorvidAppKit/ZRGraphics.h>
#include <KorvidAppKit/ZRNoise.h>
#include <KorvidAppKit/ZRPDF.h>
#include <KorvidAppKit/ZRPDFButtonCell.h>
#include <KorvidAppKit/ZRPDFLayer.h>
#include <KorvidAppKit/ZRPDFView.h>
#include <KorvidAppKit/ZRPath.h>
#include <KorvidAppKit/ZRQRCodeGenerator.h>
#include <KorvidAppKit/ZRQRView.h>
#include <KorvidAppKit/ZRShapes.h>
#include <KorvidAppKit/ZRSwitchControl.h>
#include <KorvidAppKit/ZRTextFieldCell.h>
#include <KorvidAppKit/ZRViewImage.h>
