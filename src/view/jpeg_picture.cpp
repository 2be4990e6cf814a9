#include "view/jpeg_picture.h"

#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

// The library's headers need <cstdio> before them.
#include <jerror.h>
#include <jpeglib.h>

#include "core/steps.h"

namespace tessa {
namespace {

/// Scans of one picture; cameras and programs write about ten.
constexpr int kMostScans = 100;
/// Blocks of 8 x 8 samples that all scans together may go over, at up to 80 ns each: a base that is
/// ten scans of a 30 megapixel photograph, and some for each byte of a file beyond a small one.
constexpr std::uint64_t kVisitBase = 8'000'000;
constexpr std::uint64_t kVisitsPerByte = 2;
/// Memory for the coefficients of a picture in several scans, beside one byte a pixel: a base, and
/// what is plausible for each byte of a file beyond the size of a small one.
constexpr std::uint64_t kCoefficientBase = 56ULL << 20;
constexpr std::uint64_t kSmallFile = 5'000'000;
constexpr std::uint64_t kCoefficientsPerByte = 32;
/// Bytes that a decoder is given: far more than any photograph of that many pixels has.
constexpr std::uint64_t kByteBase = 64ULL << 20;
constexpr std::uint64_t kBytesPerPixel = 3;
/// Once the file or its picture has ended, so many more rows come from what was read before.
constexpr int kRowsAfterEnd = 64;

struct ErrorManager : jpeg_error_mgr {
  std::jmp_buf Jump;
  std::array<char, JMSG_LENGTH_MAX> Text{};    // Of the error.
  std::array<char, JMSG_LENGTH_MAX> Damage{};  // The first sign of damaged data.
  bool RanDry = false;                         // A scan ended before its last block.
};

[[noreturn]] void JumpOut(j_common_ptr codec) {
  auto* const errors = static_cast<ErrorManager*>(codec->err);
  errors->format_message(codec, errors->Text.data());
  std::longjmp(errors->Jump, 1);
}

/// Level -1 is a warning. Only those that mean lost picture data count.
void NoteWarning(j_common_ptr codec, int level) {
  auto* const errors = static_cast<ErrorManager*>(codec->err);
  const int code = errors->msg_code;
  errors->RanDry = errors->RanDry || (level == -1 && code == JWRN_HIT_MARKER);
  if (level == -1 && errors->Damage[0] == '\0' &&
      (code == JWRN_HIT_MARKER || code == JWRN_HUFF_BAD_CODE || code == JWRN_MUST_RESYNC)) {
    errors->format_message(codec, errors->Damage.data());
  }
}

void SaySilently(j_common_ptr) {}

void SetUpErrors(ErrorManager& errors) {
  jpeg_std_error(&errors);
  errors.error_exit = JumpOut;
  errors.emit_message = NoteWarning;
  errors.output_message = SaySilently;
}

struct SourceManager : jpeg_source_mgr {
  const ByteSource* File = nullptr;
  std::uint64_t Next = 0;  // Position of the next piece.
  std::uint64_t Limit = kByteBase;
  bool Ended = false;
  std::array<JOCTET, 1 << 16> Piece{};
};

void Nothing(j_decompress_ptr) {}

boolean FillPiece(j_decompress_ptr codec) {
  auto* const source = static_cast<SourceManager*>(codec->src);
  std::size_t count = 0;
  if (source->Next < source->Limit) {
    count = source->File->ReadAt(source->Next, source->Piece);
    source->Next += count;
  }
  if (count == 0) {
    source->Ended = true;
    source->Piece[0] = 0xFF;
    source->Piece[1] = JPEG_EOI;
    count = 2;
  }
  source->next_input_byte = source->Piece.data();
  source->bytes_in_buffer = count;
  return TRUE;
}

void SkipBytes(j_decompress_ptr codec, long count) {
  auto* const source = static_cast<SourceManager*>(codec->src);
  if (count <= 0) {
    return;
  }
  const auto wanted = static_cast<std::size_t>(count);
  const std::size_t here = std::min(wanted, source->bytes_in_buffer);
  source->next_input_byte += here;
  source->bytes_in_buffer -= here;
  source->Next += wanted - here;
}

/// Counts scans and the blocks that they go over while a picture in several scans is read.
struct ScanCounter : jpeg_progress_mgr {
  int LastScan = 0;
  std::uint64_t BlockVisits = 0;
  std::uint64_t MostVisits = kVisitBase;
};

void CountScans(j_common_ptr common) {
  auto* const codec = reinterpret_cast<j_decompress_ptr>(common);
  auto* const counter = static_cast<ScanCounter*>(codec->progress);
  if (codec->input_scan_number == counter->LastScan) {
    return;
  }
  counter->LastScan = codec->input_scan_number;
  for (int i = 0; i < codec->comps_in_scan; ++i) {
    const jpeg_component_info* const part = codec->cur_comp_info[i];
    counter->BlockVisits += std::uint64_t{part->width_in_blocks} * part->height_in_blocks;
  }
  if (counter->LastScan > kMostScans || counter->BlockVisits > counter->MostVisits) {
    auto* const errors = static_cast<ErrorManager*>(common->err);
    std::snprintf(errors->Text.data(), errors->Text.size(), "%s",
                  counter->LastScan > kMostScans ? "it has more than 100 scans"
                                                 : "its scans are more work than a photograph is");
    std::longjmp(errors->Jump, 1);
  }
}

/// The library's decoder. Its errors jump over the frames between, so each method that calls it
/// holds nothing that would have to be destroyed; false means that Reason() says why.
class Decoder {
 public:
  explicit Decoder(const ByteSource& file) {
    SetUpErrors(errors_);
    codec_.err = &errors_;
    source_.File = &file;
    source_.next_input_byte = nullptr;
    source_.bytes_in_buffer = 0;
    source_.init_source = Nothing;
    source_.fill_input_buffer = FillPiece;
    source_.skip_input_data = SkipBytes;
    source_.resync_to_restart = jpeg_resync_to_restart;
    source_.term_source = Nothing;
    counter_.progress_monitor = CountScans;
  }
  Decoder(const Decoder&) = delete;
  Decoder& operator=(const Decoder&) = delete;
  ~Decoder() { jpeg_destroy_decompress(&codec_); }

  bool ReadHeader() {
    if (setjmp(errors_.Jump) != 0) {
      return false;
    }
    jpeg_create_decompress(&codec_);
    codec_.src = &source_;
    codec_.progress = &counter_;
    return jpeg_read_header(&codec_, TRUE) == JPEG_HEADER_OK;
  }
  bool Start() {
    if (setjmp(errors_.Jump) != 0) {
      return false;
    }
    codec_.out_color_space = codec_.num_components == 1   ? JCS_GRAYSCALE
                             : codec_.num_components == 3 ? JCS_RGB
                                                          : JCS_CMYK;
    return jpeg_start_decompress(&codec_) == TRUE;
  }
  bool ReadRow(JSAMPLE* row) {
    if (setjmp(errors_.Jump) != 0) {
      return false;
    }
    return jpeg_read_scanlines(&codec_, &row, 1) == 1;
  }

  jpeg_decompress_struct& Codec() { return codec_; }
  SourceManager& Source() { return source_; }
  ScanCounter& Counter() { return counter_; }
  /// Nothing more comes from the file, so that all further rows are made up.
  bool IsOver() const {
    return source_.Ended || (errors_.RanDry && codec_.unread_marker == JPEG_EOI);
  }
  bool HasSeveralScans() { return jpeg_has_multiple_scans(&codec_) == TRUE; }
  std::string Reason() const { return errors_.Text.data(); }
  std::string Damage() const { return errors_.Damage.data(); }

  /// Memory that the coefficients of all components take, bytes.
  std::uint64_t CoefficientBytes() const {
    std::uint64_t blocks = 0;
    for (int i = 0; i < codec_.num_components; ++i) {
      const jpeg_component_info& part = codec_.comp_info[i];
      blocks += std::uint64_t{part.width_in_blocks} * part.height_in_blocks;
    }
    return blocks * DCTSIZE2 * sizeof(JCOEF);
  }

 private:
  jpeg_decompress_struct codec_{};
  ErrorManager errors_;
  SourceManager source_;
  ScanCounter counter_{};
};

Problem NoPicture(ProblemKind kind, std::string field, std::string text) {
  return {kind, 0, std::move(field), std::move(text), true};
}

/// The checks between header and decoding.
bool CheckHeader(Decoder& decoder, std::uint64_t fileSize, Problems& faults) {
  jpeg_decompress_struct& codec = decoder.Codec();
  if (!CheckPictureSize(codec.image_width, codec.image_height, faults)) {
    return false;
  }
  if (codec.arith_code == TRUE) {
    faults.push_back(NoPicture(ProblemKind::kUnsupported, "Coding",
                               "JPEG pictures in arithmetic coding are not read here"));
    return false;
  }
  if (codec.num_components != 1 && codec.num_components != 3 && codec.num_components != 4) {
    faults.push_back(NoPicture(ProblemKind::kUnsupported, "Components",
                               "JPEG pictures of " + std::to_string(codec.num_components) +
                                   " colour components are not read here"));
    return false;
  }
  const std::uint64_t pixels = std::uint64_t{codec.image_width} * codec.image_height;
  decoder.Source().Limit = kByteBase + kBytesPerPixel * pixels;
  if (decoder.HasSeveralScans()) {
    const std::uint64_t beyondSmall = fileSize > kSmallFile ? fileSize - kSmallFile : 0;
    decoder.Counter().MostVisits = kVisitBase + kVisitsPerByte * beyondSmall;
    const std::uint64_t allowed = kCoefficientBase + pixels + kCoefficientsPerByte * beyondSmall;
    if (decoder.CoefficientBytes() > allowed) {
      faults.push_back(NoPicture(
          ProblemKind::kTooLarge, "Size",
          "the progressive JPEG needs more memory than a file of its length can justify"));
      return false;
    }
  }
  return true;
}

/// Inks of one row as red, green, blue. Files with the Adobe marker store them inverted.
void InksToColours(const JSAMPLE* inks, int width, bool inverted, std::uint8_t* to) {
  const auto paper = [&](JSAMPLE ink) { return inverted ? ink : 255 - ink; };
  for (int column = 0; column < width; ++column, inks += 4, to += 3) {
    const int white = paper(inks[3]);
    for (int i = 0; i < 3; ++i) {
      to[i] = static_cast<std::uint8_t>((paper(inks[i]) * white + 127) / 255);
    }
  }
}

void ReadRows(Decoder& decoder, PictureUse use, LoadedPicture& picture, Problems& faults) {
  jpeg_decompress_struct& codec = decoder.Codec();
  const int components = codec.num_components;
  const auto width = static_cast<std::size_t>(codec.image_width);
  const bool reduces = components != 1 && use != PictureUse::kColours;
  const bool severalScans = decoder.HasSeveralScans();
  picture.Allocate(static_cast<int>(codec.image_width), static_cast<int>(codec.image_height),
                   components == 1 || reduces ? 8 : 24);
  std::vector<std::uint8_t> samples(width * 4);
  std::vector<std::uint8_t> colours(components == 4 ? width * 3 : 0);
  int afterEnd = 0;
  for (int row = 0; row < picture.Height; ++row) {
    std::uint8_t* const to = picture.Row(row);
    const bool direct = components == 1 || (components == 3 && !reduces);
    afterEnd += decoder.IsOver() && !severalScans ? 1 : 0;
    if (afterEnd > kRowsAfterEnd || !decoder.ReadRow(direct ? to : samples.data())) {
      constexpr std::uint8_t kMissing = 128;
      std::fill(picture.Row(row), picture.Pixels.data() + picture.Pixels.size(), kMissing);
      break;
    }
    const std::uint8_t* from = samples.data();
    if (components == 4) {
      InksToColours(samples.data(), picture.Width, codec.saw_Adobe_marker == TRUE, colours.data());
      from = colours.data();
    }
    if (reduces) {
      ReduceRow(from, width, to);
    } else if (!direct) {
      std::copy_n(from, width * 3, to);
    }
  }
  if (decoder.Source().Ended) {
    faults.push_back({ProblemKind::kTruncated, decoder.Source().Next, "Pixels",
                      "the JPEG data ends early: part of the picture is missing", false});
  } else if (!decoder.Reason().empty() || !decoder.Damage().empty()) {
    faults.push_back({ProblemKind::kBadValue, 0, "Pixels",
                      "the JPEG data is damaged: " +
                          (decoder.Reason().empty() ? decoder.Damage() : decoder.Reason()),
                      false});
  }
}

bool HasSignature(const ByteSource& file) {
  std::array<std::uint8_t, 3> mark{};
  return file.ReadAt(0, mark) == mark.size() && mark[0] == 0xFF && mark[1] == 0xD8 &&
         mark[2] == 0xFF;
}

/// The library's encoder, into memory that it takes with malloc.
class Encoder {
 public:
  Encoder() {
    SetUpErrors(errors_);
    codec_.err = &errors_;
  }
  Encoder(const Encoder&) = delete;
  Encoder& operator=(const Encoder&) = delete;
  ~Encoder() {
    jpeg_destroy_compress(&codec_);
    std::free(bytes_);
  }

  bool Start(int width, int height, int quality) {
    if (setjmp(errors_.Jump) != 0) {
      return false;
    }
    jpeg_create_compress(&codec_);
    jpeg_mem_dest(&codec_, &bytes_, &size_);
    codec_.image_width = static_cast<JDIMENSION>(width);
    codec_.image_height = static_cast<JDIMENSION>(height);
    codec_.input_components = 3;
    codec_.in_color_space = JCS_RGB;
    jpeg_set_defaults(&codec_);
    jpeg_set_quality(&codec_, quality, TRUE);
    jpeg_start_compress(&codec_, TRUE);
    return true;
  }
  bool WriteRow(JSAMPLE* row) {
    if (setjmp(errors_.Jump) != 0) {
      return false;
    }
    return jpeg_write_scanlines(&codec_, &row, 1) == 1;
  }
  bool Finish() {
    if (setjmp(errors_.Jump) != 0) {
      return false;
    }
    jpeg_finish_compress(&codec_);
    return true;
  }
  Bytes Take() const { return {bytes_, bytes_ + size_}; }
  std::string Reason() const { return errors_.Text.data(); }

 private:
  jpeg_compress_struct codec_{};
  ErrorManager errors_;
  unsigned char* bytes_ = nullptr;
  unsigned long size_ = 0;
};

}  // namespace

LoadedPicture LoadJpegPicture(const ByteSource& file, PictureUse use, Problems& faults) {
  LoadedPicture picture;
  if (!HasSignature(file)) {
    faults.push_back(NoPicture(ProblemKind::kWrongKind, "Signature",
                               "the file is no JPEG picture that can be read"));
    return picture;
  }
  // Its source holds 64 KiB.
  const auto decoder = std::make_unique<Decoder>(file);
  if (!decoder->ReadHeader()) {
    const bool ended = decoder->Source().Ended;
    faults.push_back(NoPicture(ended ? ProblemKind::kTruncated : ProblemKind::kUnsupported,
                               "Header",
                               ended ? "the file ends before its JPEG picture begins"
                                     : "the JPEG data cannot be decoded: " + decoder->Reason()));
    return picture;
  }
  if (!CheckHeader(*decoder, file.Size(), faults)) {
    return picture;
  }
  if (!decoder->Start()) {
    faults.push_back(NoPicture(ProblemKind::kTooLarge, "Pixels",
                               "the JPEG data cannot be decoded: " + decoder->Reason()));
    return picture;
  }
  ReadRows(*decoder, use, picture, faults);
  return picture;
}

Bytes EncodeJpeg(const QImage& picture, int quality) {
  const bool indexed = picture.format() == QImage::Format_Indexed8;
  if (picture.isNull() || (!indexed && picture.format() != QImage::Format_RGB888)) {
    throw StepFailure("the picture cannot be encoded: it has neither palette nor colours");
  }
  Encoder encoder;
  const auto require = [&](bool done) {
    if (!done) {
      throw StepFailure("the picture cannot be encoded: " + encoder.Reason());
    }
  };
  require(encoder.Start(picture.width(), picture.height(), quality));
  const QList<QRgb> palette = picture.colorTable();
  std::vector<std::uint8_t> colours(static_cast<std::size_t>(picture.width()) * 3);
  for (int row = 0; row < picture.height(); ++row) {
    const uchar* const from = picture.constScanLine(row);
    if (!indexed) {
      std::copy_n(from, colours.size(), colours.data());
    } else {
      std::uint8_t* to = colours.data();
      for (int column = 0; column < picture.width(); ++column, to += 3) {
        const QRgb colour = palette.value(from[column]);
        to[0] = static_cast<std::uint8_t>(qRed(colour));
        to[1] = static_cast<std::uint8_t>(qGreen(colour));
        to[2] = static_cast<std::uint8_t>(qBlue(colour));
      }
    }
    require(encoder.WriteRow(colours.data()));
  }
  require(encoder.Finish());
  return encoder.Take();
}

}  // namespace tessa
