#pragma once

// The host's screen adaptation: every fixed pixel size of a dialog is
// multiplied by getResolutionRatioH() before use.
class InterfaceAdaptation
{
public:
    // Logical DPI of the primary screen over 96 (1.0 at 96 dpi, without a
    // screen and on the offscreen platform, so renders stay comparable).
    static double getResolutionRatioH();
    // `pixels` scaled by the ratio, rounded to whole pixels.
    static int scaled(int pixels);
};
