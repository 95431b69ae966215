#include "tools/devserver/content/page_image.h"

#include <sys/mman.h>
#include <sys/stat.h>
#include <tiffio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <string>

#include "tools/devserver/protocol/errors.h"

namespace oxaqrycln::devserver {
namespace {

// An A4 page at 50 dots per inch.
constexpr std::uint32_t kWidth = 416;
constexpr std::uint32_t kHeight = 588;
constexpr float kDotsAnInch = 50;
constexpr std::uint32_t kMostPixels = 40'000'000;

class Canvas {
 public:
  Canvas() : page_{kWidth, kHeight, false, std::vector<std::uint8_t>(std::size_t{kWidth} / 8 * kHeight)} {}

  void Fill(std::uint32_t left, std::uint32_t top, std::uint32_t width, std::uint32_t height) {
    for (std::uint32_t y = top; y < std::min(top + height, kHeight); ++y) {
      for (std::uint32_t x = left; x < std::min(left + width, kWidth); ++x) {
        auto& byte = page_.bytes[std::size_t{y} * (kWidth / 8) + x / 8];
        byte = static_cast<std::uint8_t>(byte | (0x80U >> (x % 8)));
      }
    }
  }

  // A digit of five rows of three dots, which are the bits of a number from the top left to the bottom right.
  void Digit(std::uint32_t left, std::uint32_t top, std::size_t digit) {
    static constexpr std::array<unsigned, 10> kDots = {075557, 026227, 071747, 071717, 055711,
                                                       074717, 074757, 071111, 075757, 075717};
    constexpr std::uint32_t kSize = 5;
    for (std::uint32_t dot = 0; dot < 15; ++dot) {
      if ((kDots[digit] >> (14 - dot) & 1U) != 0) Fill(left + dot % 3 * kSize, top + dot / 3 * kSize, kSize, kSize);
    }
  }

  void Number(std::uint32_t left, std::uint32_t top, std::int64_t number) {
    for (const char digit : std::to_string(number)) {
      Digit(left, top, static_cast<std::size_t>(digit - '0'));
      left += 20;
    }
  }

  PageImage Take() { return std::move(page_); }

 private:
  PageImage page_;
};

// A file in memory that contains the bytes.
Descriptor OpenMemoryFile(std::string_view bytes = {}) {
  Descriptor file(memfd_create("devserver", MFD_CLOEXEC));
  while (!bytes.empty()) {
    const ssize_t count = write(file.get(), bytes.data(), bytes.size());
    if (count <= 0) throw ServerError("No memory for a TIFF file");
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return file;
}

std::unique_ptr<tiff, void (*)(tiff*)> OpenTiff(int descriptor, const char* mode) {
  // Errors are reported to the client, not on standard error.
  TIFFSetErrorHandler(nullptr);
  TIFFSetWarningHandler(nullptr);
  const int own = dup(descriptor);  // libtiff closes it
  tiff* handle = own < 0 || lseek(own, 0, SEEK_SET) != 0 ? nullptr : TIFFFdOpen(own, "page image", mode);
  if (handle == nullptr && own >= 0) close(own);
  return {handle, TIFFClose};
}

bool IsBlackAndWhite(const std::vector<std::uint32_t>& raster) {
  return std::all_of(raster.begin(), raster.end(), [](std::uint32_t pixel) {
    const std::uint32_t colour = pixel & 0xFFFFFFU;
    return colour == 0 || colour == 0xFFFFFFU;
  });
}

PageImage FromRaster(const std::vector<std::uint32_t>& raster, std::uint32_t width, std::uint32_t height) {
  PageImage page{width, height, !IsBlackAndWhite(raster), {}};
  page.bytes.resize(page.RowByteCount() * height);
  for (std::uint32_t y = 0; y < height; ++y) {
    std::uint8_t* row = page.bytes.data() + page.RowByteCount() * y;
    for (std::uint32_t x = 0; x < width; ++x) {
      const std::uint32_t pixel = raster[std::size_t{y} * width + x];
      if (page.inColour) {
        std::uint8_t* const place = row + std::size_t{x} * 3;
        place[0] = static_cast<std::uint8_t>(TIFFGetR(pixel));
        place[1] = static_cast<std::uint8_t>(TIFFGetG(pixel));
        place[2] = static_cast<std::uint8_t>(TIFFGetB(pixel));
      } else if (TIFFGetR(pixel) == 0) {
        row[x / 8] = static_cast<std::uint8_t>(row[x / 8] | (0x80U >> (x % 8)));
      }
    }
  }
  return page;
}

}  // namespace

PageImage DrawSamplePage(std::int64_t documentId, std::int64_t page) {
  Canvas canvas;
  canvas.Fill(16, 16, 384, 2);
  canvas.Fill(16, 570, 384, 2);
  canvas.Fill(16, 16, 2, 556);
  canvas.Fill(398, 16, 2, 556);
  canvas.Number(40, 36, documentId);
  canvas.Number(330, 36, page);
  for (std::uint32_t line = 0; line < 24; ++line) {
    const auto seed = static_cast<std::uint32_t>(documentId * 31 + page * 17) + line * line * 7;
    canvas.Fill(40, 100 + line * 18, 120 + seed % 216, 5);
  }
  return canvas.Take();
}

std::string SamplePageTiff(std::int64_t documentId, std::int64_t page) {
  TiffWriter writer;
  writer.Add(DrawSamplePage(documentId, page));
  return writer.Finish();
}

TiffWriter::TiffWriter() : file_(OpenMemoryFile()), handle_(OpenTiff(file_.get(), "w")) {
  if (handle_ == nullptr) throw ServerError("The TIFF file could not be created");
}

void TiffWriter::Add(const PageImage& page) {
  if (++pageCount_ > kMostPages) throw ServerError("More than " + std::to_string(kMostPages) + " pages");
  tiff* file = handle_.get();
  TIFFSetField(file, TIFFTAG_SUBFILETYPE, FILETYPE_PAGE);
  TIFFSetField(file, TIFFTAG_IMAGEWIDTH, page.width);
  TIFFSetField(file, TIFFTAG_IMAGELENGTH, page.height);
  TIFFSetField(file, TIFFTAG_BITSPERSAMPLE, page.inColour ? 8 : 1);
  TIFFSetField(file, TIFFTAG_SAMPLESPERPIXEL, page.inColour ? 3 : 1);
  TIFFSetField(file, TIFFTAG_PHOTOMETRIC, page.inColour ? PHOTOMETRIC_RGB : PHOTOMETRIC_MINISWHITE);
  TIFFSetField(file, TIFFTAG_COMPRESSION, page.inColour ? COMPRESSION_LZW : COMPRESSION_CCITTFAX4);
  TIFFSetField(file, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  TIFFSetField(file, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
  TIFFSetField(file, TIFFTAG_ROWSPERSTRIP, page.height);
  TIFFSetField(file, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
  TIFFSetField(file, TIFFTAG_XRESOLUTION, kDotsAnInch);
  TIFFSetField(file, TIFFTAG_YRESOLUTION, kDotsAnInch);
  std::vector<std::uint8_t> row(page.RowByteCount());  // libtiff may modify its input
  for (std::uint32_t y = 0; y < page.height; ++y) {
    std::copy_n(page.bytes.begin() + static_cast<std::ptrdiff_t>(row.size() * y), row.size(), row.begin());
    if (TIFFWriteScanline(file, row.data(), y, 0) != 1) throw ServerError("The TIFF file could not be written");
  }
  if (TIFFWriteDirectory(file) != 1) throw ServerError("The TIFF file could not be written");
}

std::string TiffWriter::Finish() {
  bool whole = TIFFFlush(handle_.get()) == 1;
  handle_.reset();
  std::string bytes(static_cast<std::size_t>(lseek(file_.get(), 0, SEEK_END)), '\0');
  for (std::size_t end = 0; whole && end < bytes.size();) {
    const ssize_t count = pread(file_.get(), bytes.data() + end, bytes.size() - end, static_cast<off_t>(end));
    whole = count > 0;
    end += static_cast<std::size_t>(count);
  }
  if (!whole) throw ServerError("The TIFF file could not be written");
  return bytes;
}

TiffReader::TiffReader(std::string_view bytes) : handle_(OpenTiff(OpenMemoryFile(bytes).get(), "r")) {
  if (handle_ == nullptr) throw ServerError("Not a TIFF file");
  do {
    if (++pageCount_ > kMostPages) throw ServerError("More than " + std::to_string(kMostPages) + " pages");
  } while (TIFFReadDirectory(handle_.get()) == 1);
}

PageImage TiffReader::Read(std::int64_t page) {
  tiff* file = handle_.get();
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  if (page < 0 || page >= pageCount_ || TIFFSetDirectory(file, static_cast<tdir_t>(page)) != 1 ||
      TIFFGetField(file, TIFFTAG_IMAGEWIDTH, &width) != 1 || TIFFGetField(file, TIFFTAG_IMAGELENGTH, &height) != 1 ||
      width == 0 || height == 0) {
    throw ServerError("No page " + std::to_string(page + 1));
  }
  if (std::uint64_t{width} * height > kMostPixels) {
    throw ServerError("Page " + std::to_string(page + 1) + " has more than " + std::to_string(kMostPixels) + " pixels");
  }
  std::vector<std::uint32_t> raster(std::size_t{width} * height);
  if (TIFFReadRGBAImageOriented(file, width, height, raster.data(), ORIENTATION_TOPLEFT, 1) != 1) {
    throw ServerError("Page " + std::to_string(page + 1) + " cannot be read");
  }
  return FromRaster(raster, width, height);
}

}  // namespace oxaqrycln::devserver
