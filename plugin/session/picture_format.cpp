#include "plugin/session/picture_format.h"

bool PictureFormatOf(int32_t format, PictureFormat* picture) {
  if ((format & ~0x30) == 0 && format != 0x30) return false;
  switch (format) {
    case 1: case 2: case 8: *picture = {1, 1, 1}; break;
    case 3: case 9: *picture = {1, 2, 1}; break;
    case 4: case 6: *picture = {1, 3, 3}; break;
    case 5: case 7: *picture = {1, 4, 3}; break;
    case 18: case 24: *picture = {2, 1, 1}; break;
    case 19: *picture = {2, 2, 1}; break;
    case 20: *picture = {2, 3, 3}; break;
    case 21: *picture = {2, 4, 3}; break;
    case 34: case 40: *picture = {4, 1, 1}; break;
    case 35: *picture = {4, 2, 1}; break;
    case 36: *picture = {4, 3, 3}; break;
    case 37: *picture = {4, 4, 3}; break;
    default: *picture = {1, 3, 3}; break;
  }
  return true;
}
