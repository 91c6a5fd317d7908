// SPDX-License-Identifier: MIT
#include "support/sample_pictures.h"

#include <png.h>
#include <tiffio.h>
#include <turbojpeg.h>
#include <webp/encode.h>
#include <zlib.h>

#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STB_IMAGE_WRITE_STATIC
#include <stb/stb_image_write.h>

#include "support/temp_folder.h"

namespace support {
namespace {

using Bytes = std::string;
constexpr int kSide = kPictureSide;

Bytes Little(std::initializer_list<uint32_t> words) {
  Bytes bytes;
  for (const uint32_t word : words) {
    for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(word >> shift);
  }
  return bytes;
}

Bytes Png() {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = image.height = kSide;
  image.format = PNG_FORMAT_RGBA;
  Bytes file(4096, '\0');
  png_alloc_size_t size = file.size();
  if (!png_image_write_to_memory(&image, file.data(), &size, 0, SamplePixels().data(), 0, nullptr)) return {};
  return file.substr(0, size);
}

Bytes Jpeg() {
  const tjhandle encoder = tjInitCompress();
  unsigned char* out = nullptr;
  unsigned long size = 0;
  const Bytes pixels = SamplePixels();
  tjCompress2(encoder, reinterpret_cast<const unsigned char*>(pixels.data()), kSide, 0, kSide, TJPF_RGBA,
              &out, &size, TJSAMP_444, 100, 0);
  Bytes file(reinterpret_cast<char*>(out), size);
  tjFree(out);
  tjDestroy(encoder);
  return file;
}

Bytes Webp() {
  uint8_t* out = nullptr;
  const Bytes pixels = SamplePixels();
  const size_t size =
      WebPEncodeLosslessRGBA(reinterpret_cast<const uint8_t*>(pixels.data()), kSide, kSide, kSide * 4, &out);
  Bytes file(reinterpret_cast<char*>(out), size);
  WebPFree(out);
  return file;
}

TIFF* StartTiff(const Bytes& path, int side, int bits, int layout) {
  TIFF* tiff = TIFFOpen(path.c_str(), "w");
  for (const auto& [tag, value] : {std::pair(TIFFTAG_IMAGEWIDTH, side),
                                   {TIFFTAG_IMAGELENGTH, side},
                                   {TIFFTAG_ROWSPERSTRIP, side},
                                   {TIFFTAG_SAMPLESPERPIXEL, 4},
                                   {TIFFTAG_BITSPERSAMPLE, bits},
                                   {TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB},
                                   {TIFFTAG_COMPRESSION, COMPRESSION_LZW},
                                   {TIFFTAG_PLANARCONFIG, layout}}) {
    TIFFSetField(tiff, static_cast<uint32_t>(tag), value);
  }
  return tiff;
}

Bytes DeepTiff() {
  const TempFolder folder;
  TIFF* tiff = StartTiff(folder.Path("t.tif"), kSide, 16, PLANARCONFIG_CONTIG);
  const uint16_t alphaKind = EXTRASAMPLE_UNASSALPHA;
  TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &alphaKind);
  Bytes pixels;
  for (const char byte : SamplePixels()) pixels += {byte, byte};
  for (uint32_t y = 0; y < kSide; ++y) TIFFWriteScanline(tiff, &pixels[y * kSide * 8], y);
  TIFFClose(tiff);
  return ReadWholeFile(folder.Path("t.tif"));
}

/// @param isOverfull  each plane is one deflated strip that holds a byte more than the plane
Bytes TiffOfPlanes(bool isOverfull) {
  const TempFolder folder;
  TIFF* tiff = StartTiff(folder.Path("t.tif"), kSide, 8, PLANARCONFIG_SEPARATE);
  const uint16_t alphaKind = EXTRASAMPLE_UNASSALPHA;
  TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &alphaKind);
  if (isOverfull) TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_ADOBE_DEFLATE);
  const Bytes pixels = SamplePixels();
  for (uint16_t plane = 0; plane < 4; ++plane) {
    Bytes samples;
    for (size_t i = plane; i < pixels.size(); i += 4) samples += pixels[i];
    for (uint32_t y = 0; y < kSide && !isOverfull; ++y)
      TIFFWriteScanline(tiff, &samples[y * kSide], y, plane);
    if (!isOverfull) continue;
    samples += 'x';
    uLongf size = compressBound(static_cast<uLong>(samples.size()));
    Bytes strip(size, '\0');
    compress2(reinterpret_cast<Bytef*>(strip.data()), &size, reinterpret_cast<const Bytef*>(samples.data()),
              static_cast<uLong>(samples.size()), Z_NO_COMPRESSION);
    TIFFWriteRawStrip(tiff, plane, strip.data(), static_cast<tmsize_t>(size));
  }
  TIFFClose(tiff);
  return ReadWholeFile(folder.Path("t.tif"));
}

Bytes Tiff(uint16_t alphaKind) {
  const TempFolder folder;
  TIFF* tiff = StartTiff(folder.Path("t.tif"), kSide, 8, PLANARCONFIG_CONTIG);
  TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &alphaKind);
  Bytes pixels = SamplePixels();
  if (alphaKind == EXTRASAMPLE_ASSOCALPHA) {
    for (size_t i = pixels.size() / 2; i < pixels.size(); ++i) {
      if (i % 4 != 3) pixels[i] = static_cast<char>(static_cast<uint8_t>(pixels[i]) * 128 / 255);
    }
  }
  for (uint32_t y = 0; y < kSide; ++y) TIFFWriteScanline(tiff, &pixels[y * kSide * 4], y);
  TIFFClose(tiff);
  return ReadWholeFile(folder.Path("t.tif"));
}

void Append(void* file, void* data, int size) {
  static_cast<Bytes*>(file)->append(static_cast<char*>(data), static_cast<size_t>(size));
}

Bytes Bmp() {
  Bytes file;
  stbi_write_bmp_to_func(Append, &file, kSide, kSide, 4, SamplePixels().data());
  return file;
}

Bytes RunLengthTga() {
  Bytes file;
  stbi_write_tga_to_func(Append, &file, kSide, kSide, 4, SamplePixels().data());
  return file;
}

/// Two colours; codes of three bits, with a clear code (4) before each pixel, so that codes never grow.
Bytes Gif() {
  Bytes codes;
  uint32_t bits = 0, count = 0;
  const auto put = [&](uint32_t code) {
    bits |= code << count;
    for (count += 3; count >= 8; count -= 8, bits >>= 8) codes += static_cast<char>(bits);
  };
  for (uint32_t i = 0; i < kSide * kSide; ++i) {
    put(4);
    put(i / (kSide * kSide / 2));
  }
  put(5);
  codes += static_cast<char>(bits);
  return Bytes("GIF89a\x08\0\x08\0\x80\0\0\xc8\x28\x50\x10\xa0\xf0,\0\0\0\0\x08\0\x08\0\0\x02", 30) +
         static_cast<char>(codes.size()) + codes + Bytes("\0;", 2);
}

Bytes Psd() {
  Bytes file("8BPS\0\1\0\0\0\0\0\0\0\4\0\0\0\x08\0\0\0\x08\0\x08\0\3\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 40);
  for (size_t channel = 0; channel < 4; ++channel) {
    for (size_t i = channel; i < kSide * kSide * 4; i += 4) file += SamplePixels()[i];
  }
  return file;
}

/// Packed rows, and colours that are mixed with white where layers are transparent.
Bytes LayeredPsd() {
  Bytes file =
      Psd().substr(0, 34) + Bytes("\0\0\0\x08\0\0\0\4\xff\xff\0\0\0\1", 14) + Bytes(2 * 4 * kSide, '\0');
  for (size_t channel = 0; channel < 4; ++channel) {
    for (size_t y = 0; y < kSide; ++y) {
      const auto value = static_cast<uint8_t>(SamplePixels()[y * kSide * 4 + channel]);
      const int mixed = y < kSide / 2 || channel == 3 ? value : (value * 128 + 255 * 127) / 255;
      file += Bytes{static_cast<char>(1 - kSide), static_cast<char>(mixed)};
    }
  }
  return file;
}

Bytes DdsHeader(uint32_t flags, const char* name, uint32_t bits) {
  Bytes header = "DDS " + Little({124, 0x1007, kSide, kSide, 0, 0, 0}) + Bytes(44, '\0') +
                 Little({32, flags}) + Bytes(name, 4) + Little({bits, 0xff, 0xff00, 0xff0000, 0xff000000});
  return header + Bytes(128 - header.size(), '\0');
}

/// Blocks of 4 x 4 pixels that are all of their first colour.
Bytes DxtBlocks(const char* name, const Bytes& upperAlpha, const Bytes& lowerAlpha) {
  const Bytes upper = upperAlpha + Little({0xc94a, 0}), lower = lowerAlpha + Little({0x151e, 0});
  return DdsHeader(4, name, 0) + upper + upper + lower + lower;
}

}  // namespace

std::string SamplePixels() {
  Bytes pixels;
  for (int i = 0; i < kSide * kSide; ++i) {
    pixels.append(i < kSide * kSide / 2 ? "\xc8\x28\x50\xff" : "\x10\xa0\xf0\x80", 4);
  }
  return pixels;
}

std::string DeepTiffOfOneStrip(int side) {
  const TempFolder folder;
  TIFF* tiff = StartTiff(folder.Path("t.tif"), side, 16, PLANARCONFIG_CONTIG);
  Bytes row(static_cast<size_t>(side) * 8, '\0');
  for (int y = 0; y < side; ++y) TIFFWriteScanline(tiff, row.data(), static_cast<uint32_t>(y));
  TIFFClose(tiff);
  return ReadWholeFile(folder.Path("t.tif"));
}

std::vector<SamplePicture> SamplePictures() {
  return {{"PNG", Png(), 0, true},
          {"JPEG", Jpeg(), 12, false},
          {"WebP", Webp(), 0, true},
          {"TIFF", Tiff(EXTRASAMPLE_UNASSALPHA), 0, true},
          {"TIFF of 16 bits", DeepTiff(), 0, true},
          {"TIFF of planes", TiffOfPlanes(false), 0, true},
          {"TIFF, overfull", TiffOfPlanes(true), 0, true},
          {"TIFF, multiplied", Tiff(EXTRASAMPLE_ASSOCALPHA), 2, true},
          {"BMP", Bmp(), 0, true},
          {"TGA", RunLengthTga(), 0, true},
          {"GIF", Gif(), 0, false},
          {"PSD", Psd(), 0, true},
          {"PSD, layers", LayeredPsd(), 2, true},
          {"DDS", DdsHeader(0x41, "\0\0\0\0", 32) + SamplePixels(), 0, true},
          {"DXT1", DxtBlocks("DXT1", "", ""), 8, false},
          {"DXT3", DxtBlocks("DXT3", Bytes(8, '\xff'), Bytes(8, '\x88')), 8, true},
          {"DXT5", DxtBlocks("DXT5", Bytes("\xff\xff\0\0\0\0\0\0", 8), Bytes("\x80\x80\0\0\0\0\0\0", 8)), 8,
           true}};
}

}  // namespace support
