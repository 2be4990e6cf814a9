#include "sample_set.h"

#include <QFile>
#include <QString>
#include <string>
#include <vector>

#include "core/file_access.h"
#include "photos.h"
#include "sample_encoders.h"
#include "sample_sounds.h"
#include "sequence/show_frame.h"

namespace tessa::tools {
namespace {

constexpr int kWidth = 320;
constexpr int kHeight = 240;
constexpr int kPhotoWidth = 640;
constexpr int kPhotoHeight = 480;

QString DecodedPath(const std::filesystem::path& path) {
  return QFile::decodeName(QByteArray::fromStdString(path.string()));
}

void WriteHouse(const std::filesystem::path& folder) {
  Scene house = HouseInWinter(kWidth, kHeight);
  AddSensorNoise(house, {});
  SampleFacts facts;
  facts.Comment =
      "House front before insulation, -8 \xB0"
      "C outside, heating on for six hours";
  facts.Memo = "NORTH SIDE";
  WriteSample(folder / "house.sit", SceneAsSit(house, facts));
  WriteSample(folder / "house-with-photo.sit",
              SceneAsSit(house, facts, {PhotoOfHouse(kPhotoWidth, kPhotoHeight), false}));
  WriteSample(folder / "house.tmp", SceneAsTmp(house, facts));
  WriteSample(folder / "house.bin", SceneAsBin(house));
  WriteSample(folder / "house-radiometric.bmp", SceneAsRadiometricBmp(house));

  SampleFacts oldFacts = facts;
  oldFacts.DateText = "960208";
  oldFacts.TimeText = "172240";
  oldFacts.Memo = "DISK 4";
  WriteSample(folder / "old-house.tmp", SceneAsLegacyTmp(house, oldFacts));
}

void WriteBoard(const std::filesystem::path& folder) {
  Scene board = CircuitBoard(kWidth, kHeight);
  AddSensorNoise(board, {});
  SampleFacts facts;
  facts.Comment = "Controller board under full load, regulator runs hot";
  facts.Memo = "BOARD 7";
  facts.TimeText = "091245";
  WriteSample(folder / "board.sit", SceneAsSit(board, facts));
  WriteSample(folder / "board-with-photo-and-sound.sit",
              SceneAsSit(board, facts, {PhotoOfBoard(kPhotoWidth, kPhotoHeight), true}));
  WriteSample(folder / "board.txi", SceneAsTxi(board));

  Scene large = CircuitBoard(kPhotoWidth, kPhotoHeight);
  AddSensorNoise(large, {});
  for (const char* ending : {"bmp", "tif", "jpg"}) {
    WriteSample(folder / (std::string("board-picture.") + ending), SceneAsPicture(large, ending));
  }
}

void WriteCup(const std::filesystem::path& folder) {
  constexpr int kFrames = 6;
  SampleFacts facts;
  facts.Comment = "Tea is poured into a mug";
  facts.TimeText = "101510";
  std::vector<Scene> frames;
  for (int frame = 0; frame < kFrames; ++frame) {
    frames.push_back(WarmingCup(kWidth, kHeight, frame, kFrames));
    SampleFacts frameFacts = facts;
    frameFacts.Memo = "FRAME " + std::to_string(frame + 1) + " OF " + std::to_string(kFrames);
    frameFacts.TimeText = "10151" + std::to_string(frame);
    WriteSample(folder / ("cup-" + std::to_string(frame + 1) + ".sit"),
                SceneAsSit(frames.back(), frameFacts));
  }
  facts.SecondsBetweenFrames = 1;
  WriteSample(folder / "cup-snapshots.rti", FramesAsSnapshot(frames, facts, Stamps::kEachFrame));
  WriteSample(folder / "cup-snapshots-unstamped.rti",
              FramesAsSnapshot(frames, facts, Stamps::kNone));
  WriteSample(folder / "cup-sequence.rti", FramesAsContainer(frames, facts, 16));
  WriteSample(folder / "cup-sequence-8bit.rti", FramesAsContainer(frames, facts, 8));
  const std::filesystem::path withFiles = folder / "cup-files.rti";
  WriteSample(withFiles, FramesAsContainer(frames, facts, 16));
  WriteFrameFiles(withFiles, frames);
}

}  // namespace

void WriteSampleSet(const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder);
  WriteHouse(folder);
  WriteBoard(folder);
  WriteCup(folder);
  WriteSoundSamples(folder);
}

void WriteFrameFiles(const std::filesystem::path& path, std::span<const Scene> frames) {
  for (std::size_t i = 0; i < frames.size(); ++i) {
    const QString name = FrameFilePath(DecodedPath(path), static_cast<int>(i) + 1);
    WriteWholeFile(name, SceneAsFrameFile(frames[i]), Overwrite::kReplace);
  }
}

void WriteSample(const std::filesystem::path& path, const Bytes& content) {
  WriteWholeFile(DecodedPath(path), content, Overwrite::kReplace);
}

}  // namespace tessa::tools
