#pragma once
// Window placement is kept in twips, 1440 to the inch of the screen's logical resolution.

namespace kw {

constexpr int kTwipsPerInch = 1440;

// Conversions at a given resolution in dots per inch, rounded to the nearest whole number.
int twipsToPixels(int twips, double dpi);
int pixelsToTwips(int pixels, double dpi);

// The same at the logical resolution of the primary screen (96 without a screen).
int twipsToPixelsX(int twips);
int twipsToPixelsY(int twips);
int pixelsToTwipsX(int pixels);
int pixelsToTwipsY(int pixels);

}  // namespace kw
