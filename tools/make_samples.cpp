// Makes sample images: believable scenes in every kind that the program reads, or one image from
// measured temperatures.

#include <CLI/CLI.hpp>
#include <QFile>
#include <QString>
#include <bit>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>

#include "core/file_access.h"
#include "sample_encoders.h"

namespace tessa::tools {
namespace {

void Write(const std::filesystem::path& path, const Bytes& content) {
  WriteWholeFile(QFile::decodeName(QByteArray::fromStdString(path.string())), content,
                 Overwrite::kReplace);
}

Bytes Encode(const Scene& scene, const std::string& ending, const SampleFacts& facts) {
  return ending == "sit" ? SceneAsSit(scene, facts) : SceneAsPicture(scene, ending);
}

void WriteAll(const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder);
  constexpr int kWidth = 320;
  constexpr int kHeight = 240;

  Scene house = HouseInWinter(kWidth, kHeight);
  AddSensorNoise(house, {});
  SampleFacts houseFacts;
  houseFacts.Comment =
      "House front before insulation, -8 \xB0"
      "C outside, heating on for six hours";
  houseFacts.Memo = "NORTH SIDE";
  Write(folder / "house.sit", SceneAsSit(house, houseFacts));

  Scene board = CircuitBoard(kWidth, kHeight);
  AddSensorNoise(board, {});
  SampleFacts boardFacts;
  boardFacts.Comment = "Controller board under full load, regulator runs hot";
  boardFacts.Memo = "BOARD 7";
  boardFacts.TimeText = "091245";
  Write(folder / "board.sit", SceneAsSit(board, boardFacts));

  constexpr int kFrames = 6;
  for (int frame = 0; frame < kFrames; ++frame) {
    SampleFacts cupFacts;
    cupFacts.Comment = "Tea is poured into a mug";
    cupFacts.Memo = "FRAME " + std::to_string(frame + 1) + " OF " + std::to_string(kFrames);
    cupFacts.TimeText = "10151" + std::to_string(frame);
    Write(folder / ("cup-" + std::to_string(frame + 1) + ".sit"),
          SceneAsSit(WarmingCup(kWidth, kHeight, frame, kFrames), cupFacts));
  }

  Scene largeBoard = CircuitBoard(640, 480);
  AddSensorNoise(largeBoard, {});
  for (const char* ending : {"bmp", "tif", "jpg"}) {
    Write(folder / (std::string("board-picture.") + ending), SceneAsPicture(largeBoard, ending));
  }
}

/// A raster of little-endian 32-bit floats, degrees Celsius, row by row.
Scene ReadFloats(const std::string& path, const std::string& size) {
  Scene scene;
  char cross = 0;
  std::istringstream parser(size);
  if (!(parser >> scene.Width >> cross >> scene.Height) || cross != 'x' || scene.Width < 1 ||
      scene.Height < 1 || scene.Width > 20000 || scene.Height > 20000) {
    throw std::runtime_error("--size takes WIDTHxHEIGHT");
  }
  std::ifstream file(path, std::ios::binary);
  const auto count = static_cast<std::size_t>(scene.Width) * static_cast<std::size_t>(scene.Height);
  Bytes bytes(count * 4);
  if (!file.read(reinterpret_cast<char*>(bytes.data()),
                 static_cast<std::streamsize>(bytes.size())) ||
      file.peek() != std::ifstream::traits_type::eof()) {
    throw std::runtime_error(path + " does not hold " + size + " 32-bit floats");
  }
  ByteReader reader(bytes);
  scene.Celsius.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    const auto celsius = std::bit_cast<float>(reader.U32Le());
    if (!std::isfinite(celsius)) {
      throw std::runtime_error(path + " holds a value that is no temperature");
    }
    scene.Celsius.push_back(celsius);
  }
  return scene;
}

int Run(int argc, char** argv) {
  CLI::App app("Makes sample images for TessaView.", "make_samples");
  std::string folder;
  std::string source;
  std::string size;
  std::string out;
  SampleFacts facts;
  app.add_option("--all", folder, "Write every sample into this folder");
  auto* const from =
      app.add_option("--from", source, "Raster of little-endian 32-bit floats, degrees Celsius");
  app.add_option("--size", size, "Its size, WIDTHxHEIGHT")->needs(from);
  app.add_option("-o,--output", out, "Image to write; its ending (sit, bmp, tif, jpg) decides")
      ->needs(from);
  app.add_option("--comment", facts.Comment, "Comment to store")->needs(from);
  CLI11_PARSE(app, argc, argv);
  if (!folder.empty()) {
    WriteAll(folder);
  }
  if (!source.empty()) {
    std::string ending = std::filesystem::path(out).extension().string();
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    if (ending.size() < 2) {
      throw std::runtime_error("-o needs a file with an ending");
    }
    Write(out, Encode(ReadFloats(source, size), ending.substr(1), facts));
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
