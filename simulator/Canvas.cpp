#include "simulator/Canvas.h"

#include <algorithm>
#include <cstdlib>

#include "simulator/Font.h"

namespace sim {

Canvas::Canvas(int width, int height)
    : width_(width), height_(height), pixels_(static_cast<size_t>(width * height), kBlack) {}

void Canvas::Dot(int x, int y, Colour colour) {
    if (x >= 0 && x < width_ && y >= 0 && y < height_) pixels_[Index(x, y)] = colour;
}

void Canvas::Line(int x1, int y1, int x2, int y2, Colour colour) {
    const int steps = std::max({std::abs(x2 - x1), std::abs(y2 - y1), 1});
    for (int i = 0; i <= steps; ++i) Dot(x1 + (x2 - x1) * i / steps, y1 + (y2 - y1) * i / steps, colour);
}

void Canvas::Frame(int x, int y, int width, int height, Colour colour) {
    Line(x, y, x + width - 1, y, colour);
    Line(x, y + height - 1, x + width - 1, y + height - 1, colour);
    Line(x, y, x, y + height - 1, colour);
    Line(x + width - 1, y, x + width - 1, y + height - 1, colour);
}

void Canvas::Fill(int x, int y, int width, int height, Colour colour) {
    for (int row = y; row < y + height; ++row) Line(x, row, x + width - 1, row, colour);
}

void Canvas::Write(int x, int y, std::string_view text, Colour colour) {
    for (const char c : text) {
        const auto columns = Glyph(c);
        for (int column = 0; column < 5; ++column) {
            for (int row = 0; row < 7; ++row) {
                if ((columns[static_cast<size_t>(column)] >> row & 1) != 0) Dot(x + column, y + row, colour);
            }
        }
        x += 6;
    }
}

}  // namespace sim
