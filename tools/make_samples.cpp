// Makes sample images: believable scenes in every kind that the program reads, or one image from
// measured temperatures.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <bit>
#include <cctype>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>

#include "formats/ansi_text.h"
#include "formats/byte_reader.h"
#include "sample_encoders.h"
#include "sample_set.h"

namespace tessa::tools {
namespace {

/// What one call is to make of measured temperatures.
struct Order {
  std::string Source;
  std::string Size;
  int FrameCount = 1;
  std::string Out;
  std::string Kind;
  std::string Photo;
  bool Tone = false;
  bool FrameFiles = false;
  SampleFacts Facts;
};

struct Material {
  std::vector<Scene> Frames;
  SampleFacts Facts;
  SampleAttachments Attachments;
};

struct Kind {
  const char* Name;
  const char* Ending;
  bool TakesFrames;
  Bytes (*Encode)(const Material& material);
};

// The first kind of an ending is what the ending alone stands for.
constexpr std::array<Kind, 14> kKinds = {{
    {"sit", "sit", false,
     [](const Material& m) { return SceneAsSit(m.Frames[0], m.Facts, m.Attachments); }},
    {"tmp", "tmp", false, [](const Material& m) { return SceneAsTmp(m.Frames[0], m.Facts); }},
    {"tmp8", "tmp", false,
     [](const Material& m) { return SceneAsLegacyTmp(m.Frames[0], m.Facts); }},
    {"bin", "bin", false, [](const Material& m) { return SceneAsBin(m.Frames[0]); }},
    {"txi", "txi", false, [](const Material& m) { return SceneAsTxi(m.Frames[0]); }},
    {"bmp", "bmp", false, [](const Material& m) { return SceneAsPicture(m.Frames[0], "bmp"); }},
    {"radiometric-bmp", "bmp", false,
     [](const Material& m) { return SceneAsRadiometricBmp(m.Frames[0]); }},
    {"tif", "tif", false, [](const Material& m) { return SceneAsPicture(m.Frames[0], "tif"); }},
    {"jpg", "jpg", false, [](const Material& m) { return SceneAsPicture(m.Frames[0], "jpg"); }},
    {"snapshot", "rti", true,
     [](const Material& m) { return FramesAsSnapshot(m.Frames, m.Facts, Stamps::kEachFrame); }},
    {"unstamped-snapshot", "rti", true,
     [](const Material& m) { return FramesAsSnapshot(m.Frames, m.Facts, Stamps::kNone); }},
    {"sequence", "rti", true,
     [](const Material& m) { return FramesAsContainer(m.Frames, m.Facts, 16); }},
    {"sequence8", "rti", true,
     [](const Material& m) { return FramesAsContainer(m.Frames, m.Facts, 8); }},
    {"apd", "apd", false, [](const Material& m) { return SceneAsFrameFile(m.Frames[0]); }},
}};

std::string KindNames() {
  std::string names;
  for (const Kind& kind : kKinds) {
    names += (names.empty() ? "" : ", ") + std::string(kind.Name);
  }
  return names;
}

/// The kind that is asked for, or the one that the name of the file stands for.
const Kind& ChooseKind(const Order& order) {
  std::string name = std::filesystem::path(order.Out).filename().string();
  std::transform(name.begin(), name.end(), name.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
  const std::string wanted = order.Kind.empty() && name.ends_with("radiometric.bmp")
                                 ? std::string("radiometric-bmp")
                                 : order.Kind;
  const std::size_t point = name.rfind('.');
  if (point == std::string::npos || point + 1 == name.size()) {
    throw std::runtime_error("-o needs a file with an ending");
  }
  const std::string ending = name.substr(point + 1);
  const auto* const kind = std::find_if(kKinds.begin(), kKinds.end(), [&](const Kind& known) {
    return wanted.empty() ? ending == known.Ending : wanted == known.Name;
  });
  if (kind == kKinds.end()) {
    throw std::runtime_error(wanted.empty() ? "no kind of image ends in ." + ending
                                            : "--kind takes " + KindNames());
  }
  if (ending != kind->Ending) {
    throw std::runtime_error("a file of the kind " + wanted + " ends in ." + kind->Ending);
  }
  return *kind;
}

Bytes ReadBytes(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    throw std::runtime_error(path + " cannot be read");
  }
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// Rasters of little-endian 32-bit floats, degrees Celsius, row by row, one after another.
std::vector<Scene> ReadFloats(const Order& order) {
  int width = 0;
  int height = 0;
  char cross = 0;
  std::istringstream parser(order.Size);
  constexpr int kLongestSide = 20000;
  if (!(parser >> width >> cross >> height) || cross != 'x' || !(parser >> std::ws).eof() ||
      width < 1 || height < 1 || width > kLongestSide || height > kLongestSide) {
    throw std::runtime_error("--size takes WIDTHxHEIGHT");
  }
  const Bytes bytes = ReadBytes(order.Source);
  const auto pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  if (bytes.size() != pixels * 4 * static_cast<std::size_t>(order.FrameCount)) {
    throw std::runtime_error(order.Source + " does not hold " + std::to_string(order.FrameCount) +
                             " x " + order.Size + " 32-bit floats");
  }
  ByteReader reader(bytes);
  std::vector<Scene> frames;
  for (int frame = 0; frame < order.FrameCount; ++frame) {
    Scene scene{width, height, {}};
    scene.Celsius.reserve(pixels);
    for (std::size_t i = 0; i < pixels; ++i) {
      const auto celsius = std::bit_cast<float>(reader.U32Le());
      if (!std::isfinite(celsius)) {
        throw std::runtime_error(order.Source + " holds a value that is no temperature");
      }
      scene.Celsius.push_back(celsius);
    }
    frames.push_back(std::move(scene));
  }
  return frames;
}

void Fill(const Order& order) {
  const Kind& kind = ChooseKind(order);
  const std::string name = kind.Name;
  if (order.FrameCount > 1 && !kind.TakesFrames) {
    throw std::runtime_error("a file of the kind " + name + " holds one frame only");
  }
  if (name != "sit" && (order.Tone || !order.Photo.empty())) {
    throw std::runtime_error("only a SIT image can carry a photo or a tone");
  }
  if (order.FrameFiles && !kind.TakesFrames) {
    throw std::runtime_error("frame files lie beside sequences only");
  }
  Material material{ReadFloats(order), order.Facts, {{}, order.Tone}};
  material.Facts.Comment = Utf8ToAnsi(order.Facts.Comment);
  if (!order.Photo.empty()) {
    material.Attachments.Photo = ReadBytes(order.Photo);
  }
  WriteSample(order.Out, kind.Encode(material));
  if (order.FrameFiles) {
    WriteFrameFiles(order.Out, material.Frames);
  }
}

int Run(int argc, char** argv) {
  CLI::App app("Makes sample images for TessaView.", "make_samples");
  std::string folder;
  Order order;
  app.add_option("--all", folder, "Write every sample into this folder");
  auto* const from = app.add_option("--from", order.Source,
                                    "Raster of little-endian 32-bit floats, degrees Celsius");
  app.add_option("--size", order.Size, "Its size, WIDTHxHEIGHT")->needs(from);
  app.add_option("--frames", order.FrameCount, "How many rasters follow one another in it")
      ->needs(from)
      ->check(CLI::Range(1, 32767));
  app.add_option("-o,--output", order.Out, "Image to write; its ending decides about its kind")
      ->needs(from);
  app.add_option("--kind", order.Kind, "Where the ending leaves a choice: " + KindNames())
      ->needs(from);
  app.add_option("--comment", order.Facts.Comment, "Comment to store")->needs(from);
  app.add_option("--photo", order.Photo, "JPEG of the same scene to put into a SIT image")
      ->needs(from);
  app.add_flag("--tone", order.Tone, "Put a short tone into a SIT image")->needs(from);
  app.add_flag("--frame-files", order.FrameFiles, "Also write each frame beside a sequence")
      ->needs(from);
  CLI11_PARSE(app, argc, argv);
  if (folder.empty() && order.Source.empty()) {
    throw std::runtime_error("give --all or --from; --help tells more");
  }
  if (!folder.empty()) {
    WriteSampleSet(folder);
  }
  if (!order.Source.empty()) {
    Fill(order);
  }
  return 0;
}

}  // namespace
}  // namespace tessa::tools

int main(int argc, char** argv) {
  try {
    return tessa::tools::Run(argc, argv);
  } catch (const std::exception& failure) {
    std::cerr << "make_samples: " << failure.what() << '\n';
    return 1;
  }
}
