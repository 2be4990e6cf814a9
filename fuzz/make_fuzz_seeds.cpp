// Writes small valid inputs for every fuzz entry into FOLDER/NAME, for the fuzzer to start from.

#include <QImage>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <string>
#include <string_view>

#include "../tests/builders.h"
#include "formats/bmp_trailer.h"
#include "view/jpeg_picture.h"

namespace {

using tessa::Bytes;
using namespace tessa::testing;

class SeedFolder {
 public:
  explicit SeedFolder(std::filesystem::path path) : path_(std::move(path)) {
    std::filesystem::create_directories(path_);
  }
  void Write(std::string_view name, const Bytes& bytes) const {
    std::ofstream file(path_ / name, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    if (!file) {
      throw std::filesystem::filesystem_error("cannot write a seed", path_ / name, {});
    }
  }

 private:
  std::filesystem::path path_;
};

Bytes Start(const Bytes& bytes, std::size_t size) {
  return First(bytes, std::min(size, bytes.size()));
}

QImage SmallPicture() {
  QImage picture(16, 12, QImage::Format_RGB888);
  picture.fill(QColor(200, 120, 40));
  picture.setPixelColor(3, 5, Qt::blue);
  return picture;
}

/// `attachment` and the code that says what is in it: 1 sound, 2 photograph, 3 both; 0: an image of
/// version 3 without.
Bytes SmallSit(const Bytes& attachment, char code) {
  tessa::SitFields fields = SoundSit(code == 0 ? "SIT 3.5J  " : "SIT 4.00  ", "", "", attachment);
  fields.SoundExt = code == 0 ? std::string("WA\x03") : std::string{'\0', '\0', code};
  fields.Comment = "a comment";
  return tessa::EncodeSit(fields);
}

/// A 16 x 4 bitmap of the given depth and compression, its rows filled with `pixels`.
Bytes SmallBmp(std::uint16_t bits, std::uint32_t compression, std::int32_t height,
               const Bytes& pixels) {
  const std::size_t tableSize = compression == 3 ? 12 : bits <= 8 ? std::size_t{4} << bits : 0;
  tessa::ByteWriter writer;
  writer.U16Le(tessa::kBmpType);
  writer.PadTo(10);
  writer.U32Le(static_cast<std::uint32_t>(54 + tableSize));
  writer.U32Le(40);
  writer.I32Le(16);
  writer.I32Le(height);
  writer.U16Le(1);
  writer.U16Le(bits);
  writer.U32Le(compression);
  writer.PadTo(54);
  if (compression == 3) {
    writer.U32Le(0xF800);
    writer.U32Le(0x07E0);
    writer.U32Le(0x001F);
  }
  writer.PadTo(54 + tableSize, 0x60);
  writer.Append(pixels);
  return writer.Take();
}

/// Two frames of 3 x 2 pixels: a snapshot of the given version, or a container.
Bytes SmallSequence(float version) {
  const std::int16_t pixels[] = {2932, 2933, 2900, 3000, 2999, 2910};
  const Bytes frame = tessa::EncodeFrameArray(3, 2, pixels);
  const std::string stamp = "11/12/2013 01:02:03 PM";
  if (version == tessa::kContainerVersion) {
    const Bytes both = tessa::EncodeContainerFrame({stamp, 253.2F, 393.2F, 283.2F, 308.7F}, frame);
    return Joined(tessa::EncodeContainerHeader({version, 2, 16, 3, 2, 0.5F}), Joined(both, both));
  }
  const std::vector<std::int16_t> tenths(std::begin(pixels), std::end(pixels));
  tessa::SnapshotFields fields = SnapshotOf(3, 2, {tenths, tenths}, version);
  fields.Header.ScaleMax = 35.5F;
  fields.Header.Comment = "a comment";
  fields.Stamps = {stamp, stamp};
  return tessa::EncodeSnapshot(fields);
}

void WriteSequenceSeeds(const std::filesystem::path& folder) {
  const std::int16_t pixels[] = {1, 2, 3, 4, 5, 6};
  const SeedFolder sequences(folder / "sequence");
  sequences.Write("plain", SmallSequence(1.0F));
  sequences.Write("stamped", SmallSequence(tessa::kStampedVersion));
  sequences.Write("container", SmallSequence(tessa::kContainerVersion));
  const SeedFolder frames(folder / "frames");
  const Bytes frameFile = tessa::EncodeFrameArray(3, 2, pixels);
  const Bytes head = Joined({0, static_cast<std::uint8_t>(frameFile.size())}, frameFile);
  frames.Write("plain", Joined(head, SmallSequence(1.0F)));
  frames.Write("stamped", Joined(head, SmallSequence(tessa::kStampedVersion)));
  frames.Write("container", Joined(head, SmallSequence(tessa::kContainerVersion)));
}

/// The picture files and a SIT image with a photograph, each for an entry that takes a file through
/// the program: `head` stands before the file, its first byte is the number of the ending.
void WritePictureSeeds(const SeedFolder& folder, Bytes head) {
  const Bytes jpeg = tessa::EncodeJpeg(SmallPicture().convertToFormat(QImage::Format_RGB888), 80);
  const auto write = [&](const char* name, std::uint8_t ending, const Bytes& file) {
    head[0] = ending;
    folder.Write(name, Joined(head, file));
  };
  tessa::ByteWriter photograph;
  photograph.U32Be(static_cast<std::uint32_t>(tessa::kSitAttachmentOffset));
  photograph.U32Be(0);
  photograph.Append(jpeg);
  write("photograph", 4, SmallSit(photograph.Take(), 2));
  write("tiff", 6, Tiff(TiffTags(8, 4, 8, 3, 2), {Bytes(96, 90)}));
  write("grey_tiff", 6, Tiff(TiffTags(8, 4, 8, 1, 1), {Bytes(32, 90)}));
  write("bilevel_tiff", 6, Tiff(TiffTags(8, 4, 1, 1, 0), {Bytes(4, 90)}));
  write("jpeg", 7, jpeg);
  write("grey_jpeg", 7,
        tessa::EncodeJpeg(SmallPicture().convertToFormat(QImage::Format_Indexed8), 80));
}

/// The texts that a user or a file brings in.
void WriteTextSeeds(const std::filesystem::path& folder) {
  const auto write = [&](const char* entry, std::initializer_list<std::string_view> texts) {
    const SeedFolder seeds(folder / entry);
    int number = 0;
    for (const std::string_view text : texts) {
      seeds.Write(std::to_string(number++), Bytes(text.begin(), text.end()));
    }
  };
  write("text", {"36.65 \xB0\x43", "-0.049999", "+1e15x", "999999999999999.95"});
  write("arguments", {"1-10,15\nimage\n-40:120\nHOT IRON\n7", "1-1,32767\n20:10\nprefix-\n../up"});
}

/// The first byte of an input for the whole load, and for a tile, is the number of the ending.
void WriteLoadSeeds(const std::filesystem::path& folder, const Bytes& sit) {
  const Bytes tmp = tessa::EncodeTmp({});
  const Bytes legacy = tessa::EncodeLegacyTmp({});
  const Bytes trailer = tessa::EncodeBmpTrailer({230, 30, 3132, 2932});
  const Bytes indices(16, 100);
  const Bytes bitmap = tessa::EncodeBmp8(4, 4, indices, 4, {}, 28013, 18);
  for (const char* entry : {"load", "tile"}) {
    const SeedFolder loads(folder / entry);
    loads.Write("snapshot", Joined({0}, SmallSequence(tessa::kStampedVersion)));
    loads.Write("container", Joined({0}, SmallSequence(tessa::kContainerVersion)));
    loads.Write("trailer", Joined({1}, Joined(bitmap, trailer)));
    loads.Write("limits", Joined({2}, tessa::EncodeBmp8(4, 4, indices, 4, {}, -200, 1000)));
    loads.Write("words", Joined({3}, tmp));
    loads.Write("bytes", Joined({3}, legacy));
    loads.Write("sit", Joined({4}, sit));
    loads.Write("raster", Joined({5}, Bytes(2000, 11)));
    WritePictureSeeds(loads, {0});
  }

  const SeedFolder exports(folder / "export");
  exports.Write("container", Joined({0, 0x11}, SmallSequence(tessa::kContainerVersion)));
  exports.Write("with_bar", Joined({1, 1}, Joined(bitmap, trailer)));
  exports.Write("txi", Joined({2, 8}, tessa::EncodeBmp8(4, 4, indices, 4, {}, -200, 1000)));
  WritePictureSeeds(exports, {0, 2});

  const SeedFolder cards(folder / "card_picture");
  const Bytes photograph = Joined(Bytes(8), tessa::EncodeJpeg(SmallPicture(), 90));
  cards.Write("plain", Joined({0, 0}, sit));
  cards.Write("photograph", Joined({0x02, 0x3F}, SmallSit(photograph, 2)));
  cards.Write("limits", Joined({0x0B, 0x1F}, Start(sit, 3000)));
}

void WriteAll(const std::filesystem::path& folder) {
  const Bytes sit = SmallSit({0, 0, 0, 8, 1, 2, 3, 4, 5, 6, 7, 8}, 0);
  const SeedFolder sits(folder / "sit");
  const SeedFolder bmps(folder / "bmp");
  sits.Write("whole", sit);
  sits.Write("header", Start(sit, 1024));
  sits.Write("text", Bytes(600, '\n'));

  for (const int bits : {1, 2, 4, 8, 16, 24, 32}) {
    const Bytes rows(static_cast<std::size_t>(16 * 4 * bits / 8 + 16), 0x1B);
    bmps.Write("plain_" + std::to_string(bits),
               SmallBmp(static_cast<std::uint16_t>(bits), 0, bits == 8 ? -4 : 4, rows));
  }
  bmps.Write("fields", SmallBmp(16, 3, 4, Bytes(128, 0x5A)));
  const Bytes codes = {16, 3, 0, 0, 0, 5, 1, 2, 3, 4, 5, 0, 0, 2, 1, 1, 3, 9, 0, 1};
  bmps.Write("runs_8", SmallBmp(8, 1, 4, codes));
  bmps.Write("runs_4", SmallBmp(4, 2, -4, codes));
  Bytes core = {'B', 'M', 0, 0, 0, 0, 0, 0, 0, 0, 32, 0, 0,  0, 12, 0, 0,   0, 2, 0,
                2,   0,   1, 0, 1, 0, 1, 2, 3, 4, 5,  6, 64, 0, 0,  0, 128, 0, 0, 0};
  bmps.Write("core", core);

  WriteTextSeeds(folder);
  WriteSequenceSeeds(folder);
  WriteLoadSeeds(folder, sit);
  const SeedFolder texts(folder / "text");
  texts.Write("degrees", ToBytes("36.65 \xB0\x43"));
  texts.Write("digits", ToBytes("999999999999999.95"));
  texts.Write("characters", ToBytes("\xE2\x82\xAC\xC3\xA4"));
  const std::uint16_t note[] = {512, 1023, 0, 400};
  SeedFolder(folder / "if_sound").Write("whole", tessa::EncodeIfSound(2850, note));
  SeedFolder(folder / "wave").Write("whole", tessa::EncodeWave(2850, tessa::ToWaveSamples(note)));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: make_fuzz_seeds FOLDER\n");
    return 2;
  }
  try {
    WriteAll(argv[1]);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
  }
  return 0;
}
