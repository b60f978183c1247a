// SPDX-License-Identifier: MIT
#include "imaging/PngReader.h"

namespace
{

void fail(png_structp png, png_const_charp)
{
    png_longjmp(png, 1);
}

void ignore(png_structp, png_const_charp) {}

} // namespace

PngReader::PngReader() : png(png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, fail, ignore))
{
    info = png ? png_create_info_struct(png) : nullptr;
}

PngReader::~PngReader()
{
    png_destroy_read_struct(&png, &info, nullptr);
}
