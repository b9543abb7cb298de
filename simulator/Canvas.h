#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace sim {

enum Colour : uint8_t { kBlack, kWhite, kGrey, kGreen, kYellow, kRed, kBlue, kColours };

/// An 8-bit picture to draw on. What lies outside is not drawn.
class Canvas {
  public:
    Canvas(int width, int height);

    int Width() const { return width_; }
    int Height() const { return height_; }
    Colour At(int x, int y) const { return pixels_[Index(x, y)]; }

    void Dot(int x, int y, Colour colour);
    void Line(int x1, int y1, int x2, int y2, Colour colour);
    void Frame(int x, int y, int width, int height, Colour colour);
    void Fill(int x, int y, int width, int height, Colour colour);
    /// Writes with characters of 5 by 7 dots, 6 apart; (x, y) is the upper left corner.
    void Write(int x, int y, std::string_view text, Colour colour);

  private:
    size_t Index(int x, int y) const {
        return static_cast<size_t>(y) * static_cast<size_t>(width_) + static_cast<size_t>(x);
    }

    int width_, height_;
    std::vector<Colour> pixels_;
};

}  // namespace sim
