#pragma once
// The format word of a picture that a caller sends: bit 0 says that each pixel begins with
// an alpha channel, bits 0x30 give the channel size (0x10: 16 bits, 0x20: 32 bits), the low
// bits how many channels the source pixels have.
#include <cstdint>

struct PictureFormat {
  int32_t bytes;           // of a channel: 1, 2 or 4
  int32_t sourceChannels;  // in each pixel of the caller's picture, alpha included
  int32_t bitmapChannels;  // of the colour bitmap made from it: 1 (grey) or 3
};

// False for a word that says nothing but a channel size (0, 0x10 and 0x20; 0x30 is taken).
// Words the table does not name read as 8-bit RGB.
bool PictureFormatOf(int32_t format, PictureFormat* picture);
