#pragma once

// The tables of docs/performance.md, in their order. Each function adds one or more.

void addFlatteningBenchmarks();
void addDistanceBenchmarks();
void addSimplificationBenchmarks();
void addHexBenchmarks();
void addQRBenchmarks();
void addNoiseBenchmarks();
void addBlurBenchmarks();
void addAngleBenchmarks();
void addGradientBenchmarks();
void addShapeBenchmarks();
void addPathBenchmarks();
void addStrokeBenchmarks();
void addClipBenchmarks();
void addBlendBenchmarks();
void addImageBenchmarks();
void addSmallShapeBenchmarks();
void addTextBenchmarks();
void addTruncationBenchmarks();
void addPDFBenchmarks();
void addCapsuleBenchmarks();
void addBadgeBenchmarks();
void addSwitchBenchmarks();
void addScaleBenchmarks();
void addColorPickerBenchmarks();
