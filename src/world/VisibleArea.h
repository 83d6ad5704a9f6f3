#pragma once
// The cells around the view position that the world draws.

#include <cstdint>

struct ViewCell {
    int gx = 0;
    int gy = 0;
    bool operator==(const ViewCell&) const = default;
};

// minGx <= gx < maxGx, minGy <= gy < maxGy.
struct CellRange {
    int minGx;
    int maxGx;
    int minGy;
    int maxGy;
};

constexpr int visibleReach = 15;
constexpr int visibleSide = 2 * visibleReach;

// 30 x 30 cells. A view that a server put at the end of the number range sees the last whole area before it.
inline CellRange VisibleCells(const ViewCell& view) {
    const auto low = [](int centre) {
        const std::int64_t wanted = std::int64_t{centre} - visibleReach;
        if (wanted < INT32_MIN) return INT32_MIN;
        return static_cast<int>(wanted > INT32_MAX - visibleSide ? INT32_MAX - visibleSide : wanted);
    };
    const int gx = low(view.gx);
    const int gy = low(view.gy);
    return {gx, gx + visibleSide, gy, gy + visibleSide};
}

// Within 15 cells in both directions: for what stands on a cell.
inline bool IsNearView(const ViewCell& view, int gx, int gy) {
    const auto within = [](int a, int b) {
        const std::int64_t apart = std::int64_t{a} - b;
        return -visibleReach <= apart && apart <= visibleReach;
    };
    return within(gx, view.gx) && within(gy, view.gy);
}
