// A 5 by 7 pixel font for the pictures' legends: capitals, digits and a few signs.
#pragma once

// Rows of the glyph of c, top first, bit 4 the leftmost column; lower case letters take the
// capitals' glyphs, and a character without a glyph is blank.
const unsigned char* PixelGlyph(char c);
