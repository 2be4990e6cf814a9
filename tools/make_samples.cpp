// Makes sample images: the scenes in samples/ in every kind that the program reads, or one image
// from measured temperatures.

#include <CLI/CLI.hpp>
#include <QFileInfo>
#include <QString>
#include <bit>
#include <cmath>
#include <iostream>
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

int Run(int argc, char** argv) {
  CLI::App app("Makes sample images for TessaView.", "make_samples");
  std::string folder;
  std::string scenes = TESSA_SCENE_FOLDER;
  std::string raster;
  std::string size;
  std::string target;
  std::string photo;
  SampleFacts facts;
  app.add_option("--all", folder, "Write every sample into this folder");
  app.add_option("--scenes", scenes, "Where the scenes of the samples stand")
      ->capture_default_str();
  auto* const from =
      app.add_option("--from", raster, "Raster of little-endian 32-bit floats, degrees Celsius");
  auto* const sized = app.add_option("--size", size, "Its size, WIDTHxHEIGHT")->needs(from);
  auto* const out = app.add_option("-o,--output", target, "SIT image to write")->needs(from);
  from->needs(sized)->needs(out);
  app.add_option("--comment", facts.Comment, "Comment to store")->needs(from);
  app.add_option("--photo", photo, "JPEG of the same scene to put into the image")->needs(from);
  CLI11_PARSE(app, argc, argv);
  if (folder.empty() && raster.empty()) {
    throw std::runtime_error("give --all or --from; --help tells more");
  }
  if (!folder.empty()) {
    WriteSampleSet(scenes, folder);
  }
  if (!raster.empty()) {
    if (QFileInfo(QString::fromStdString(target)).suffix().toLower() != QLatin1String("sit")) {
      throw std::runtime_error("-o takes the name of a SIT image");
    }
    facts.Comment = Utf8ToAnsi(facts.Comment);
    WriteSample(target, SceneAsSit(ReadFloats(raster, size), facts,
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
