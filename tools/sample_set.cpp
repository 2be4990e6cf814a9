#include "sample_set.h"

#include <QFile>
#include <QString>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

#include "core/file_access.h"
#include "formats/if_sound.h"
#include "open/show_frame.h"
#include "sample_encoders.h"
#include "sample_sounds.h"

namespace tessa::tools {
namespace {

namespace fs = std::filesystem;

QString DecodedPath(const fs::path& path) {
  return QFile::decodeName(QByteArray::fromStdString(path.string()));
}

Scene Pictured(const fs::path& raster, std::uint32_t detector = 1, std::uint32_t frame = 0) {
  Scene scene = ReadScene(DecodedPath(raster));
  AddSensorNoise(scene, detector, frame);
  return scene;
}

void WriteHouse(const fs::path& source, const fs::path& folder) {
  const Scene house = Pictured(source / "house.png");
  SampleFacts facts;
  facts.Comment =
      "House front before insulation, -8 \xB0"
      "C outside, heating on for six hours";
  facts.Memo = "NORTH SIDE";
  WriteSample(folder / "house.sit", SceneAsSit(house, facts));
  WriteSample(folder / "house-with-photo.sit",
              SceneAsSit(house, facts, {ReadBytes(source / "house-photo.jpg"), {}}));
  WriteSample(folder / "house.tmp", SceneAsTmp(house, facts));
  WriteSample(folder / "house.bin", SceneAsBin(house));
  WriteSample(folder / "house-radiometric.bmp", SceneAsRadiometricBmp(house));
  facts.DateText = "960208";
  facts.TimeText = "172240";
  facts.Memo = "DISK 4";
  WriteSample(folder / "old-house.tmp", SceneAsLegacyTmp(house, facts));
}

SampleFacts BoardFacts() {
  SampleFacts facts;
  facts.Comment = "Controller board under full load, regulator runs hot";
  facts.Memo = "BOARD 7";
  facts.TimeText = "091245";
  return facts;
}

void WriteBoard(const fs::path& source, const fs::path& folder) {
  const Scene board = Pictured(source / "board.png");
  WriteSample(folder / "board.sit", SceneAsSit(board, BoardFacts()));
  WriteSample(folder / "board.txi", SceneAsTxi(board));
  const Scene large = Pictured(source / "board-large.png");
  for (const char* ending : {"bmp", "tif", "jpg"}) {
    WriteSample(folder / (std::string("board-picture.") + ending), SceneAsPicture(large, ending));
  }
}

void WriteSoundNotes(const fs::path& source, const fs::path& folder) {
  const Scene board = Pictured(source / "board.png");
  constexpr std::uint32_t kRate = 8000;
  WriteSample(
      folder / "board-with-photo-and-sound.sit",
      SceneAsSit(board, BoardFacts(),
                 {ReadBytes(source / "board-photo.jpg"), EncodeIfSound(kRate, ChimeNote(kRate))}));
  WriteSoundSamples(Pictured(source / "cup-3.png"), folder);
}

void WriteCup(const fs::path& source, const fs::path& folder) {
  constexpr int kFrames = 6;
  constexpr std::uint32_t kDetector = 20;
  SampleFacts facts;
  facts.Comment = "Tea is poured into a mug";
  facts.SecondsBetweenFrames = 1;
  std::vector<Scene> frames;
  for (int frame = 0; frame < kFrames; ++frame) {
    const std::string name = "cup-" + std::to_string(frame + 1);
    frames.push_back(
        Pictured(source / (name + ".png"), kDetector, static_cast<std::uint32_t>(frame)));
    facts.Memo = "FRAME " + std::to_string(frame + 1) + " OF " + std::to_string(kFrames);
    facts.TimeText = "10151" + std::to_string(frame);
    WriteSample(folder / (name + ".sit"), SceneAsSit(frames.back(), facts));
  }
  facts.TimeText = "101510";
  WriteSample(folder / "cup-snapshots.rti", FramesAsSnapshot(frames, facts, Stamps::kEachFrame));
  WriteSample(folder / "cup-snapshots-unstamped.rti",
              FramesAsSnapshot(frames, facts, Stamps::kNone));
  WriteSample(folder / "cup-sequence.rti", FramesAsContainer(frames, facts, 16));
  WriteSample(folder / "cup-sequence-8bit.rti", FramesAsContainer(frames, facts, 8));
  const fs::path withFiles = folder / "cup-files.rti";
  WriteSample(withFiles, FramesAsContainer(frames, facts, 16));
  for (int frame = 1; frame <= kFrames; ++frame) {
    WriteWholeFile(FrameFilePath(DecodedPath(withFiles), frame),
                   SceneAsFrameFile(frames[static_cast<std::size_t>(frame - 1)]),
                   Overwrite::kReplace);
  }
}

}  // namespace

void WriteSampleSet(const fs::path& source, const fs::path& folder) {
  fs::create_directories(folder);
  WriteHouse(source, folder);
  WriteBoard(source, folder);
  WriteSoundNotes(source, folder);
  WriteCup(source, folder);
}

void WriteSample(const fs::path& path, const Bytes& content) {
  WriteWholeFile(DecodedPath(path), content, Overwrite::kReplace);
}

Bytes ReadBytes(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    throw std::runtime_error(path.string() + " cannot be read");
  }
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace tessa::tools
