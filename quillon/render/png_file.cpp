// libpng's classic interface for writing, since the simplified one takes
// 16-bit data as linear light and changes the values; its simplified one for
// reading, which turns any PNG into 8-bit RGBA.
#include "quillon/render/png_file.h"

#include <png.h>

#include <cmath>
#include <csetjmp>
#include <cstdio>
#include <memory>
#include <new>
#include <vector>

namespace quillon::render {
namespace {

struct WriteTarget {
  std::string* bytes;
  std::string message;
};

void AppendBytes(png_structp png, png_bytep data, png_size_t length) {
  auto* target = static_cast<WriteTarget*>(png_get_io_ptr(png));
  try {
    target->bytes->append(reinterpret_cast<const char*>(data), length);
  } catch (const std::bad_alloc&) {
    png_error(png, "out of memory");
  }
}

void NoFlush(png_structp) {}

void KeepError(png_structp png, png_const_charp message) {
  auto* target = static_cast<WriteTarget*>(png_get_error_ptr(png));
  target->message = message;
  png_longjmp(png, 1);
}

void IgnoreWarning(png_structp, png_const_charp) {}

// One row of big-endian samples: the colour channels, then alpha.
void PackRow(const Bitmap& colour, const Bitmap* alpha, int32_t y, int32_t bitsPerChannel, png_byte* row) {
  const int32_t scale = bitsPerChannel == 16 ? 65535 : 255;
  size_t at = 0;
  auto put = [&](float value) {
    const auto whole = static_cast<uint32_t>(std::lround(std::fmin(std::fmax(value, 0.0f), 1.0f) * scale));
    if (bitsPerChannel == 16) row[at++] = static_cast<png_byte>(whole >> 8);
    row[at++] = static_cast<png_byte>(whole & 0xFF);
  };
  for (int32_t x = 0; x < colour.width; ++x) {
    const float* pixel = PixelAt(colour, x, y);
    for (int32_t c = 0; c < colour.channels; ++c) put(pixel[c]);
    if (alpha) put(PixelAt(*alpha, x, y)[0]);
  }
}

// Only plain data lives in this frame, since libpng leaves it by longjmp.
bool WritePng(png_structp png, png_infop info, const Bitmap& colour, const Bitmap* alpha, int32_t bitsPerChannel,
              png_byte* row) {
  if (setjmp(png_jmpbuf(png))) return false;
  const int colourType = colour.channels == 1 ? (alpha ? PNG_COLOR_TYPE_GRAY_ALPHA : PNG_COLOR_TYPE_GRAY)
                                              : (alpha ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB);
  png_set_IHDR(png, info, static_cast<png_uint_32>(colour.width), static_cast<png_uint_32>(colour.height),
               bitsPerChannel, colourType, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_write_info(png, info);
  for (int32_t y = 0; y < colour.height; ++y) {
    PackRow(colour, alpha, y, bitsPerChannel, row);
    png_write_row(png, row);
  }
  png_write_end(png, info);
  return true;
}

}  // namespace

bool EncodePng(const Bitmap& colour, const Bitmap* alpha, int32_t bitsPerChannel, std::string* bytes,
               std::string* error) {
  if (colour.width < 1 || colour.height < 1 || (alpha && (alpha->width != colour.width ||
                                                          alpha->height != colour.height))) {
    if (error) *error = "the picture has no pixels, or its alpha another size";
    return false;
  }
  const int32_t bits = bitsPerChannel == 16 ? 16 : 8;
  WriteTarget target{bytes, {}};
  bytes->clear();
  std::vector<png_byte> row;
  try {
    row.resize(static_cast<size_t>(colour.width) * static_cast<size_t>(colour.channels + (alpha ? 1 : 0)) *
               static_cast<size_t>(bits / 8));
  } catch (const std::bad_alloc&) {
    if (error) *error = "out of memory";
    return false;
  }
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &target, KeepError, IgnoreWarning);
  png_infop info = png ? png_create_info_struct(png) : nullptr;
  bool written = false;
  if (info) {
    png_set_write_fn(png, &target, AppendBytes, NoFlush);
    written = WritePng(png, info, colour, alpha, bits, row.data());
  } else {
    target.message = "out of memory";
  }
  png_destroy_write_struct(&png, &info);
  if (!written && error) *error = "cannot encode the picture: " + target.message;
  return written;
}

namespace {

// Reads the picture that began to be read into image (begun false when that
// failed) as 8-bit RGBA into picture and its alpha bitmap.
bool FinishDecode(png_image& image, bool begun, const std::string& name, Bitmap* picture, std::string* error) {
  std::vector<png_byte> pixels;
  bool read = begun;
  if (read) {
    image.format = PNG_FORMAT_RGBA;
    picture->alpha = std::make_unique<Bitmap>();
    read = ResizeBitmap(*picture, static_cast<int32_t>(image.width), static_cast<int32_t>(image.height), 3, 1) &&
           ResizeBitmap(*picture->alpha, picture->width, picture->height, 1, 1);
    if (!read) std::snprintf(image.message, sizeof(image.message), "too large a picture");
  }
  if (read) {
    try {
      pixels.resize(PNG_IMAGE_SIZE(image));
      read = png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr) != 0;
    } catch (const std::bad_alloc&) {
      std::snprintf(image.message, sizeof(image.message), "out of memory");
      read = false;
    }
  }
  if (!read) {
    if (error) *error = name + ": " + image.message;
    png_image_free(&image);
    return false;
  }
  for (int32_t y = 0; y < picture->height; ++y) {
    for (int32_t x = 0; x < picture->width; ++x) {
      const png_byte* in = pixels.data() + (static_cast<size_t>(y) * picture->width + x) * 4;
      float* colour = PixelAt(*picture, x, y);
      for (int32_t c = 0; c < 3; ++c) colour[c] = static_cast<float>(in[c]) / 255.0f;
      PixelAt(*picture->alpha, x, y)[0] = static_cast<float>(in[3]) / 255.0f;
    }
  }
  return true;
}

png_image NewImage() {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  return image;
}

}  // namespace

bool DecodePngFile(const std::string& path, Bitmap* picture, std::string* error) {
  png_image image = NewImage();
  const bool begun = png_image_begin_read_from_file(&image, path.c_str()) != 0;
  return FinishDecode(image, begun, path, picture, error);
}

bool DecodePngBytes(const std::vector<uint8_t>& bytes, const std::string& name, Bitmap* picture, std::string* error) {
  png_image image = NewImage();
  const bool begun = png_image_begin_read_from_memory(&image, bytes.data(), bytes.size()) != 0;
  return FinishDecode(image, begun, name, picture, error);
}

}  // namespace quillon::render
