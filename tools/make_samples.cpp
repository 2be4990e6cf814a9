// Makes sample images: the scenes in samples/ in every kind that the program reads, or one image
// from measured temperatures.

#include <QFileInfo>
#include <QString>
#include <bit>
#include <cmath>
#include <iostream>
#include <map>
#include <stdexcept>

#include "formats/ansi_text.h"
#include "formats/byte_reader.h"
#include "sample_encoders.h"
#include "sample_set.h"

namespace tessa::tools {
namespace {

/// A raster of little-endian 32-bit floats, degrees Celsius, row by row. `size`: WIDTHxHEIGHT.
Scene ReadFloats(const std::string& path, const std::string& size) {
  constexpr int kLongestSide = 20000;
  const QStringList sides = QString::fromStdString(size).split(QLatin1Char('x'));
  const int width = sides.value(0).toInt();
  const int height = sides.value(1).toInt();
  if (sides.size() != 2 || width < 1 || height < 1 || width > kLongestSide ||
      height > kLongestSide) {
    throw std::runtime_error("--size takes WIDTHxHEIGHT");
  }
  const Bytes bytes = ReadBytes(path);
  const auto pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  if (bytes.size() != pixels * sizeof(float)) {
    throw std::runtime_error(path + " does not hold " + size + " 32-bit floats");
  }
  ByteReader reader(bytes);
  Scene scene{width, height, {}};
  scene.Celsius.reserve(pixels);
  for (std::size_t i = 0; i < pixels; ++i) {
    scene.Celsius.push_back(std::bit_cast<float>(reader.U32Le()));
    if (!std::isfinite(scene.Celsius.back())) {
      throw std::runtime_error(path + " holds a value that is no temperature");
    }
  }
  return scene;
}

constexpr const char* kUsage =
    "usage: make_samples [--scenes FOLDER] --all FOLDER\n"
    "       make_samples --from RASTER --size WIDTHxHEIGHT -o IMAGE.sit [--comment TEXT]\n"
    "                    [--photo JPEG]\n"
    "RASTER holds little-endian 32-bit floats, degrees Celsius, row by row.\n";

int Run(int argc, char** argv) {
  std::map<std::string, std::string> given = {{"--all", ""},  {"--scenes", TESSA_SCENE_FOLDER},
                                              {"--from", ""}, {"--size", ""},
                                              {"-o", ""},     {"--comment", ""},
                                              {"--photo", ""}};
  for (int i = 1; i < argc; i += 2) {
    const auto option = given.find(argv[i]);
    if (option == given.end() || i + 1 == argc) {
      std::cerr << kUsage;
      return 2;
    }
    option->second = argv[i + 1];
  }
  const std::string& folder = given["--all"];
  const std::string& raster = given["--from"];
  const std::string& target = given["-o"];
  const std::string& photo = given["--photo"];
  if (folder.empty() && raster.empty()) {
    std::cerr << kUsage;
    return 2;
  }
  if (!folder.empty()) {
    WriteSampleSet(given["--scenes"], folder);
  }
  if (!raster.empty()) {
    if (QFileInfo(QString::fromStdString(target)).suffix().toLower() != QLatin1String("sit")) {
      throw std::runtime_error("-o takes the name of a SIT image");
    }
    SampleFacts facts;
    facts.Comment = Utf8ToAnsi(given["--comment"]);
    WriteSample(target, SceneAsSit(ReadFloats(raster, given["--size"]), facts,
                                   {photo.empty() ? Bytes() : ReadBytes(photo), {}}));
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
