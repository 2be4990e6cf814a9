#include <algorithm>
#include <vector>

#include "session_input.h"

/// The input is a text in UTF-8. It is drawn into part of a picture as the texts of a saved picture
/// are and stays in that part, whatever it says.
FUZZ_ENTRY {
  constexpr int kWidth = 160;
  constexpr int kHeight = 40;
  constexpr std::size_t kLongest = 4096;
  MakeApplication();
  Picbuf picture;
  picture.CreateBuffer(0xFFFFFF, kHeight, kWidth, size % 2 == 0 ? 8 : 24);
  picture.SelTop = kHeight / 2;
  picture.SelWidth = kWidth;
  picture.SelHeight = kHeight / 2;
  picture.TextAlign = 1 + static_cast<int>(size / 2 % 2);
  picture.Text = QString::fromUtf8(reinterpret_cast<const char*>(data),
                                   static_cast<qsizetype>(std::min(size, kLongest)));
  const auto pixels = picture.Pixels().first(picture.Stride() * kHeight / 2);
  const std::vector<std::uint8_t> above(pixels.begin(), pixels.end());
  picture.DrawSelText();
  Require(std::equal(above.begin(), above.end(), picture.Pixels().begin()),
          "nothing is drawn outside the selection");
}
