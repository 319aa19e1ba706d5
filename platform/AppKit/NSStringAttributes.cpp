#include <AppKit/NSStringAttributes.h>

const NSAttributedStringKey NSFontAttributeName = "NSFont";
const NSAttributedStringKey NSForegroundColorAttributeName = "NSColor";
const NSAttributedStringKey NSKernAttributeName = "NSKern";
const NSAttributedStringKey NSParagraphStyleAttributeName = "NSParagraphStyle";
