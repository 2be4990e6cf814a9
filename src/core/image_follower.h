#pragma once

namespace tessa {

/// Somebody who has to act when another image takes the place of the open one, and lies above the
/// loading in the layers: the player of sound notes.
class ImageFollower {
 public:
  ImageFollower() = default;
  ImageFollower(const ImageFollower&) = delete;
  ImageFollower& operator=(const ImageFollower&) = delete;
  virtual ~ImageFollower() = default;

  /// The open image is about to be replaced or closed; its record still stands.
  virtual void ImageLeaves() = 0;
  /// An image was opened, however well; its record is complete.
  virtual void ImageArrived() = 0;
};

}  // namespace tessa
