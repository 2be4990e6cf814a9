#include "palettes.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <stdexcept>

namespace tessa::tools {
namespace {

using ColourTable = std::array<std::uint32_t, kPaletteColours>;

// Points at which a curve is evaluated before 256 of them are chosen: sixteen for every entry, so
// that the choice errs by far less than one 8-bit step.
constexpr std::size_t kCurvePoints = 4096;

struct Linear {  // linear light, 0..1 for displayable colours
  double R = 0, G = 0, B = 0;
};

struct Ok {  // OKLab: L 0..1, a and b about -0.4..0.4
  double L = 0, A = 0, B = 0;
};

// A colour the curve passes through; Rgb is written 0xRRGGBB, At runs 0 (coldest) to 1 (hottest).
struct Stop {
  double At;
  std::uint32_t Rgb;
};

double FromSrgb(double v) {
  return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
}

double ToSrgb(double v) {
  return v <= 0.0031308 ? v * 12.92 : 1.055 * std::pow(v, 1.0 / 2.4) - 0.055;
}

// OKLab and its matrices are Björn Ottosson's (2020). Curves are drawn in it because straight lines
// keep their hue there; in CIELAB the way from blue to white turns purple.
Ok ToOk(const Linear& c) {
  const double l = std::cbrt(0.4122214708 * c.R + 0.5363325363 * c.G + 0.0514459929 * c.B);
  const double m = std::cbrt(0.2119034982 * c.R + 0.6806995451 * c.G + 0.1073969566 * c.B);
  const double s = std::cbrt(0.0883024619 * c.R + 0.2817188376 * c.G + 0.6299787005 * c.B);
  return {.L = 0.2104542553 * l + 0.7936177850 * m - 0.0040720468 * s,
          .A = 1.9779984951 * l - 2.4285922050 * m + 0.4505937099 * s,
          .B = 0.0259040371 * l + 0.7827717662 * m - 0.8086757660 * s};
}

Linear FromOk(const Ok& c) {
  const double lRoot = c.L + 0.3963377774 * c.A + 0.2158037573 * c.B;
  const double mRoot = c.L - 0.1055613458 * c.A - 0.0638541728 * c.B;
  const double sRoot = c.L - 0.0894841775 * c.A - 1.2914855480 * c.B;
  const double l = lRoot * lRoot * lRoot;
  const double m = mRoot * mRoot * mRoot;
  const double s = sRoot * sRoot * sRoot;
  return {.R = 4.0767416621 * l - 3.3077115913 * m + 0.2309699292 * s,
          .G = -1.2684380046 * l + 2.6097574011 * m - 0.3413193965 * s,
          .B = -0.0041960863 * l - 0.7034186147 * m + 1.7076147010 * s};
}

// CIE 1976 lightness, 0..100, from the luminance of linear sRGB. Evenness of lightness is measured
// in this one.
double Lightness(const Linear& c) {
  const double y = 0.2126 * c.R + 0.7152 * c.G + 0.0722 * c.B;
  return y > 216.0 / 24389.0 ? 116.0 * std::cbrt(y) - 16.0 : y * 24389.0 / 27.0;
}

Linear Unpack(std::uint32_t rgb) {
  const auto channel = [rgb](unsigned shift) { return FromSrgb(((rgb >> shift) & 0xFFU) / 255.0); };
  return {.R = channel(16), .G = channel(8), .B = channel(0)};
}

std::uint32_t Pack(int r, int g, int b) {
  return static_cast<std::uint32_t>(b) << 16U | static_cast<std::uint32_t>(g) << 8U |
         static_cast<std::uint32_t>(r);
}

bool IsNearlyDisplayable(const Linear& c) {
  const auto inside = [](double v) { return v >= -0.05 && v <= 1.2; };
  return inside(c.R) && inside(c.G) && inside(c.B);
}

// The nearest colour the display can show. A little excess is cut off: taking chroma away instead
// would leave a pale stripe between two glowing colours, as from yellow to orange. A large excess
// loses chroma first, or cutting would change the hue.
Linear Displayable(const Ok& c) {
  Linear out = FromOk(c);
  if (!IsNearlyDisplayable(out)) {
    double low = 0.0;
    double high = 1.0;
    for (int i = 0; i < 24; ++i) {
      const double mid = (low + high) / 2.0;
      (IsNearlyDisplayable(FromOk({.L = c.L, .A = c.A * mid, .B = c.B * mid})) ? low : high) = mid;
    }
    out = FromOk({.L = c.L, .A = c.A * low, .B = c.B * low});
  }
  return {.R = std::clamp(out.R, 0.0, 1.0),
          .G = std::clamp(out.G, 0.0, 1.0),
          .B = std::clamp(out.B, 0.0, 1.0)};
}

int Code(double linear) {
  return static_cast<int>(std::lround(ToSrgb(linear) * 255.0));
}

std::uint32_t Round(const Linear& c) {
  return Pack(Code(c.R), Code(c.G), Code(c.B));
}

// Rounds to 8 bits without disturbing the lightness. Rounding each channel for itself errs by up to
// 0.3 in lightness, nearly a whole entry's rise, and would leave small steps back; among the
// neighbouring codes there is nearly always one with the right lightness and a hue nobody can tell
// apart.
std::uint32_t RoundKeepingLightness(const Linear& c) {
  constexpr double kLightnessWeight = 30.0;
  constexpr double kPerLightness = 100.0;  // OKLab distances in units of lightness
  const double wanted = Lightness(c);
  const Ok target = ToOk(c);
  const int r = Code(c.R);
  const int g = Code(c.G);
  const int b = Code(c.B);
  double best = std::numeric_limits<double>::max();
  std::uint32_t chosen = 0;
  for (int dr = -1; dr <= 1; ++dr) {
    for (int dg = -1; dg <= 1; ++dg) {
      for (int db = -2; db <= 2; ++db) {  // blue hardly weighs in lightness, so it may move further
        const int rr = std::clamp(r + dr, 0, 255);
        const int gg = std::clamp(g + dg, 0, 255);
        const int bb = std::clamp(b + db, 0, 255);
        const Linear candidate = {
            .R = FromSrgb(rr / 255.0), .G = FromSrgb(gg / 255.0), .B = FromSrgb(bb / 255.0)};
        const Ok ok = ToOk(candidate);
        const double light = Lightness(candidate) - wanted;
        const double da = (ok.A - target.A) * kPerLightness;
        const double dbb = (ok.B - target.B) * kPerLightness;
        const double error = kLightnessWeight * light * light + da * da + dbb * dbb;
        if (error < best) {
          best = error;
          chosen = Pack(rr, gg, bb);
        }
      }
    }
  }
  return chosen;
}

// A smooth curve through the stops, each OKLab component a cubic Hermite spline with the slopes
// limited as by Fritsch and Carlson (1980): it never overshoots a stop, so no stray hues appear
// between two of them and lightness rises wherever the stops' lightness does.
class Curve {
 public:
  explicit Curve(std::span<const Stop> stops) {
    for (const Stop& stop : stops) {
      at_.push_back(stop.At);
      points_.push_back(ToOk(Unpack(stop.Rgb)));
    }
    SetSlopes(&Ok::L);
    SetSlopes(&Ok::A);
    SetSlopes(&Ok::B);
  }

  Ok At(double t) const {
    const auto above = std::upper_bound(at_.begin() + 1, at_.end() - 1, t);
    const auto i = static_cast<std::size_t>(above - at_.begin()) - 1;
    const double width = at_[i + 1] - at_[i];
    const double u = (t - at_[i]) / width;
    const auto component = [&](double Ok::*part) {
      const double u2 = u * u;
      const double u3 = u2 * u;
      return (2 * u3 - 3 * u2 + 1) * points_[i].*part + (3 * u2 - 2 * u3) * points_[i + 1].*part +
             width * ((u3 - 2 * u2 + u) * slopes_[i].*part + (u3 - u2) * slopes_[i + 1].*part);
    };
    return {.L = component(&Ok::L), .A = component(&Ok::A), .B = component(&Ok::B)};
  }

 private:
  void SetSlopes(double Ok::*part) {
    const std::size_t n = points_.size();
    slopes_.resize(n);
    const auto secant = [&](std::size_t i) {
      return (points_[i + 1].*part - points_[i].*part) / (at_[i + 1] - at_[i]);
    };
    slopes_.front().*part = secant(0);
    slopes_.back().*part = secant(n - 2);
    for (std::size_t i = 1; i + 1 < n; ++i) {
      const double before = secant(i - 1);
      const double after = secant(i);
      const double product = before * after;
      // The harmonic mean is never more than twice the smaller slope, inside the safe limit of
      // three; a turning point is flat.
      slopes_[i].*part = product > 0.0 ? 2.0 * product / (before + after) : 0.0;
    }
  }

  std::vector<double> at_;
  std::vector<Ok> points_;
  std::vector<Ok> slopes_;
};

double Fraction(std::size_t i, std::size_t count) {
  return static_cast<double>(i) / static_cast<double>(count - 1);
}

// Stops stand where they are placed.
ColourTable Placed(std::span<const Stop> stops) {
  const Curve curve(stops);
  ColourTable table{};
  for (std::size_t i = 0; i < table.size(); ++i) {
    table[i] = Round(Displayable(curve.At(Fraction(i, table.size()))));
  }
  return table;
}

// Only the order of the colours counts; entries are spread so that lightness rises by the same
// amount from each to the next. Equal differences of temperature are then equally visible
// everywhere, and a printout without colour reads the same way.
ColourTable EvenlyLit(std::span<const std::uint32_t> colours) {
  std::vector<Stop> stops;
  for (const std::uint32_t colour : colours) {
    stops.push_back({.At = Lightness(Unpack(colour)), .Rgb = colour});
  }
  const double first = stops.front().At;
  const double last = stops.back().At;

  std::vector<Linear> path;
  std::vector<double> light;
  const Curve curve(stops);
  for (std::size_t i = 0; i < kCurvePoints; ++i) {
    path.push_back(Displayable(curve.At(first + (last - first) * Fraction(i, kCurvePoints))));
    light.push_back(Lightness(path.back()));
    if (i > 0 && light[i] < light[i - 1]) {
      throw std::logic_error("an evenly lit palette must grow lighter from stop to stop");
    }
  }

  ColourTable table{};
  for (std::size_t i = 0; i < table.size(); ++i) {
    const double wanted =
        light.front() + (light.back() - light.front()) * Fraction(i, table.size());
    const auto found = std::lower_bound(light.begin(), light.end(), wanted);
    const auto index = std::min(static_cast<std::size_t>(found - light.begin()), kCurvePoints - 1);
    table[i] = RoundKeepingLightness(path[index]);
  }
  return table;
}

ColourTable GrayScale() {
  ColourTable table{};
  for (std::size_t i = 0; i < table.size(); ++i) {
    const int level = static_cast<int>(i);
    table[i] = Pack(level, level, level);
  }
  return table;
}

// Midnight, blue, sea green, gold, ivory: cold colours for cold, warm for warm, lightness even.
ColourTable TessaScan() {
  constexpr std::uint32_t kColours[] = {0x0A0426, 0x2A1A78, 0x1D4BB0, 0x1A7DB2, 0x2CA394,
                                        0x6CBB68, 0xC0C74C, 0xF8D060, 0xFFE3B0, 0xFFFBF2};
  return EvenlyLit(kColours);
}

// Polished metal: steel-blue shadow, silver, a golden highlight. Evenly lit.
ColourTable Shine() {
  constexpr std::uint32_t kColours[] = {0x02040A, 0x13274A, 0x38608F, 0x8598A6,
                                        0xC4B794, 0xEFD27E, 0xFFEFB8, 0xFFFFFF};
  return EvenlyLit(kColours);
}

// Phosphor green, where the eye tells the most shades apart. Evenly lit.
ColourTable Brightness() {
  constexpr std::uint32_t kColours[] = {0x000300, 0x00331E, 0x006B38, 0x1FA045,
                                        0x7CCB50, 0xCBEF8A, 0xFBFFF0};
  return EvenlyLit(kColours);
}

// Incandescent steel: black, red heat, orange, yellow, white heat. Evenly lit.
ColourTable HotMetal() {
  constexpr std::uint32_t kColours[] = {0x000000, 0x550000, 0xA80400, 0xF02410,
                                        0xFF7420, 0xFFBC3A, 0xFFEE96, 0xFFFFFF};
  return EvenlyLit(kColours);
}

// Black, deep blue, violet, magenta, red, orange, yellow, white. Evenly lit.
ColourTable HotIron() {
  constexpr std::uint32_t kColours[] = {0x000000, 0x0A0A4C, 0x3A0C8C, 0x7C0A99, 0xB8157F,
                                        0xE23848, 0xF4691C, 0xFDA50A, 0xFFDC32, 0xFFFFF4};
  return EvenlyLit(kColours);
}

// Iron without its black and white ends: the cold background keeps its detail, and black or white
// marks stand out anywhere on the picture. Evenly lit from blue to pale yellow.
ColourTable HotIron2() {
  constexpr std::uint32_t kColours[] = {0x101478, 0x5320B4, 0x9C30BC, 0xDD539E,
                                        0xF98A78, 0xFDBD6C, 0xFBF3AC};
  return EvenlyLit(kColours);
}

// Smoke, embers, flame and the yellow heart of it. Evenly lit, ending below white.
ColourTable Fire() {
  constexpr std::uint32_t kColours[] = {0x000000, 0x1B1828, 0x4C1C42, 0x902032, 0xC43E0A,
                                        0xEA7D00, 0xF9B400, 0xFFE400, 0xFFFF78};
  return EvenlyLit(kColours);
}

// The spectrum spread evenly over the whole range.
ColourTable Rainbow() {
  constexpr Stop kStops[] = {{0.00, 0x12003C}, {0.12, 0x1A18A4}, {0.26, 0x0A70F4},
                             {0.39, 0x10C4E0}, {0.52, 0x18B444}, {0.65, 0xEEE210},
                             {0.77, 0xFF9A00}, {0.89, 0xEA1E14}, {1.00, 0xFFE4E4}};
  return Placed(kStops);
}

// A spectrum that gives the cold half most of its hues, from black through violet to plain red.
ColourTable Rain() {
  constexpr Stop kStops[] = {{0.00, 0x000000}, {0.10, 0x3A0066}, {0.21, 0x5A20CC}, {0.35, 0x1E64FF},
                             {0.51, 0x10BCF0}, {0.64, 0x18C478}, {0.75, 0x96D820}, {0.84, 0xFFE010},
                             {0.92, 0xFF8A00}, {1.00, 0xD2000C}};
  return Placed(kStops);
}

// The counterpart for the hot half: through the cold colours quickly, then yellow, red, magenta and
// a pale rose top.
ColourTable Rain4402() {
  constexpr Stop kStops[] = {{0.00, 0x06104A}, {0.09, 0x1048C8}, {0.18, 0x10B0E8}, {0.28, 0x18BC70},
                             {0.39, 0xB8DC20}, {0.48, 0xFFE000}, {0.60, 0xFF9800}, {0.72, 0xEE3418},
                             {0.83, 0xC80E80}, {0.92, 0xE66EDA}, {1.00, 0xFFF0FF}};
  return Placed(kStops);
}

// The spectrum twice, first in deep colours and then in light ones, so that a hue still tells which
// half of the range it belongs to.
ColourTable Prism2() {
  constexpr std::uint32_t kColours[] = {0x22084E, 0x1430A8, 0x00708A, 0x0C7A2C, 0xA49A00,
                                        0xC85C00, 0xA80C1C, 0xA838C0, 0x7C8CFF, 0x50CCFF,
                                        0x60E49C, 0xF2EE60, 0xFFB060, 0xFF6C78, 0xFFF4FA};
  std::vector<Stop> stops;
  for (std::size_t i = 0; i < std::size(kColours); ++i) {
    stops.push_back({.At = Fraction(i, std::size(kColours)), .Rgb = kColours[i]});
  }
  return Placed(stops);
}

// The ringed planet: from night blue to sunlit cream, crossed by soft belts that follow the
// isotherms without hiding the picture.
ColourTable Saturn() {
  constexpr Stop kStops[] = {{0.00, 0x0E1434}, {0.18, 0x343E74}, {0.38, 0x7C5058},
                             {0.58, 0xC07E3C}, {0.80, 0xEBC06E}, {1.00, 0xFFF6DE}};
  constexpr double kBelts = 9.0;
  constexpr double kDepth = 0.055;  // of OKLab lightness, either way
  const Curve curve(kStops);
  ColourTable table{};
  for (std::size_t i = 0; i < table.size(); ++i) {
    const double t = Fraction(i, table.size());
    const double wave = std::sin(2.0 * std::numbers::pi * kBelts * t);
    const double fade = std::min({1.0, 12.0 * t, 12.0 * (1.0 - t)});
    Ok colour = curve.At(t);
    colour.L += kDepth * wave * fade;
    colour.A -= 0.02 * wave * fade;  // the darker belts are also the redder ones
    table[i] = Round(Displayable(colour));
  }
  return table;
}

// Eight teeth, each rising from dark to light in a hue of its own: one part in 256 of the range
// already shows as a clear difference of lightness.
ColourTable Fine() {
  constexpr Stop kHues[] = {{0.00, 0x5A4CC8}, {0.14, 0x2878E0}, {0.28, 0x10A0B8}, {0.42, 0x28A860},
                            {0.56, 0x90A820}, {0.70, 0xD89A10}, {0.85, 0xE86A30}, {1.00, 0xE04878}};
  constexpr std::size_t kTeeth = 8;
  constexpr std::size_t kWidth = kPaletteColours / kTeeth;
  constexpr std::size_t kRise = 27;  // the rest of a tooth falls: a sheer drop would turn a single
                                     // noisy pixel from white to black
  constexpr double kDark = 0.30;
  constexpr double kLight = 0.92;
  const Curve hues(kHues);
  ColourTable table{};
  for (std::size_t i = 0; i < table.size(); ++i) {
    const std::size_t tooth = i / kWidth;
    const std::size_t within = i % kWidth;
    const double height = within < kRise ? Fraction(within, kRise)
                                         : 1.0 - static_cast<double>(within - kRise + 1) /
                                                     static_cast<double>(kWidth - kRise + 1);
    Ok colour = hues.At(Fraction(tooth, kTeeth));
    colour.L = kDark + (kLight - kDark) * height;
    table[i] = Round(Displayable(colour));
  }
  // The last tooth stops at its tip: the hottest entry must not look colder than its neighbours.
  for (std::size_t i = table.size() - (kWidth - kRise); i < table.size(); ++i) {
    table[i] = table[table.size() - (kWidth - kRise) - 1];
  }
  return table;
}

// Grey below, the spectrum in the hottest part. The edge between light grey and blue is meant to be
// seen: it is the threshold that picks out the hot areas.
ColourTable GreyRainbow(std::size_t parts) {
  constexpr Stop kStops[] = {{0.00, 0x2452DC}, {0.17, 0x1090F4}, {0.32, 0x10C4D8},
                             {0.47, 0x20B848}, {0.63, 0xF0E410}, {0.78, 0xFF9600},
                             {0.92, 0xE81818}, {1.00, 0xFF90A0}};
  constexpr std::size_t kLightestGrey = 196;  // of 255, so that even the finest grey part has no
                                              // two entries alike
  const std::size_t coloured = kPaletteColours / parts;
  const std::size_t grey = kPaletteColours - coloured;
  const Curve curve(kStops);
  ColourTable table{};
  for (std::size_t i = 0; i < grey; ++i) {
    const int level = static_cast<int>((i * kLightestGrey + (grey - 1) / 2) / (grey - 1));
    table[i] = Pack(level, level, level);
  }
  for (std::size_t i = 0; i < coloured; ++i) {
    table[grey + i] = Round(Displayable(curve.At(Fraction(i, coloured))));
  }
  return table;
}

// Zones of clearly different colours, each with a little shading of its own: the zone can be named
// at a glance when left and right are compared, and its shading still shows the shape.
ColourTable Medical1() {
  struct Zone {
    std::uint32_t Cold, Hot;
  };
  constexpr Zone kZones[] = {{0x000000, 0x2C2C34}, {0x2A0A5A, 0x5A28A0}, {0x08187C, 0x1C48D0},
                             {0x1C78E0, 0x48B0FA}, {0x008C96, 0x30CCC8}, {0x045A24, 0x109438},
                             {0x3CB428, 0xA0E040}, {0xD8D000, 0xFFF050}, {0xE86C00, 0xFFA038},
                             {0xA00010, 0xEE2020}, {0xC01878, 0xF060B8}, {0xF4A0D8, 0xFFFFFF}};
  constexpr std::size_t kCount = std::size(kZones);
  ColourTable table{};
  for (std::size_t z = 0; z < kCount; ++z) {
    const std::size_t begin = z * kPaletteColours / kCount;
    const std::size_t end = (z + 1) * kPaletteColours / kCount;
    const Stop stops[] = {{0.0, kZones[z].Cold}, {1.0, kZones[z].Hot}};
    const Curve shade(stops);
    for (std::size_t i = begin; i < end; ++i) {
      table[i] = Round(Displayable(shade.At(Fraction(i - begin, end - begin))));
    }
  }
  return table;
}

}  // namespace

std::vector<NamedPalette> MakePalettes() {
  return {
      {"GRAY SCALE", GrayScale()},
      {"TESSASCAN", TessaScan()},
      {"SHINE", Shine()},
      {"RAIN4402", Rain4402()},
      {"RAIN", Rain()},
      {"PRISM2", Prism2()},
      {"SATURN", Saturn()},
      {"BRIGHTNESS", Brightness()},
      {"FINE", Fine()},
      {"HOT METAL", HotMetal()},
      {"HOT IRON", HotIron()},
      {"HOT IRON 2", HotIron2()},
      {"FIRE", Fire()},
      {"RAINBOW", Rainbow()},
      {"GREYRAI2", GreyRainbow(2)},
      {"GREYRAI3", GreyRainbow(3)},
      {"GREYRAI4", GreyRainbow(4)},
      {"MEDICAL1", Medical1()},
  };
}

std::vector<std::uint8_t> EncodePaletteFile(std::span<const NamedPalette> palettes) {
  std::vector<std::uint8_t> bytes;
  bytes.reserve(palettes.size() * kPaletteColours * 4);
  for (const NamedPalette& palette : palettes) {
    for (const std::uint32_t colour : palette.Colours) {
      for (unsigned shift = 0; shift < 32; shift += 8) {
        bytes.push_back(static_cast<std::uint8_t>(colour >> shift & 0xFFU));
      }
    }
  }
  return bytes;
}

}  // namespace tessa::tools
