#include "demo/server/Scene.h"

#include <algorithm>
#include <cstdlib>

#include "demo/server/Wire.h"
#include "demo/world/Catalogue.h"

namespace demo {

Figure* Scene::FigureAt(Cell cell) const {
    const auto found =
        std::find_if(figures.begin(), figures.end(), [&](const Figure* figure) { return figure->cell == cell; });
    return found == figures.end() ? nullptr : *found;
}

bool Scene::IsFree(Cell cell) const {
    const CellContent* content = now.At(cell);
    return content && IsWalkable(content->floor) && !IsSolid(content->object) && !FigureAt(cell);
}

bool Scene::CanStep(Cell cell, int direction) const {
    return IsPassable(now.WallToward(cell, direction)) && IsFree(Neighbour(cell, direction));
}

Cell Scene::FreeCellNear(Cell wanted) const {
    constexpr int farthest = 40;
    for (int distance = 0; distance <= farthest; ++distance)
        for (int dy = -distance; dy <= distance; ++dy)
            for (int dx = -distance; dx <= distance; ++dx) {
                const Cell cell{wanted.gx + dx, wanted.gy + dy};
                if (std::max(std::abs(dx), std::abs(dy)) == distance && IsFree(cell)) return cell;
            }
    return wanted;
}

const Door* Scene::DoorAt(Cell cell) const {
    for (const Door& door : place.doors)
        if (door.cell == cell) return &door;
    return nullptr;
}

const Label* Scene::LabelAt(Cell cell) const {
    for (const Label& label : place.labels)
        if (label.cell == cell) return &label;
    return nullptr;
}

std::string Scene::AppearLine(const Figure& figure) const {
    return "<" + figure.colours + wire::Position(now, figure.cell) + wire::Frame(figure.facing, figure.stride);
}

std::string Scene::MoveLine(const Figure& figure, Cell from) const {
    return "/" + figure.colours + wire::Position(now, figure.cell) + wire::Frame(figure.facing, figure.stride) +
           wire::Position(now, from);
}

std::string Scene::LeaveLine(Cell cell) const {
    return ")" + wire::Position(now, cell);
}

std::string Scene::ViewLine(Cell cell) const {
    return "@" + wire::Position(now, cell);
}

std::string Scene::FloorLine(Cell cell) const {
    const CellContent* content = now.At(cell);
    return "1" + wire::Position(now, cell) + wire::Number(content ? content->floor : 0);
}

std::string Scene::ObjectLine(Cell cell) const {
    const CellContent* content = now.At(cell);
    return ">" + wire::Position(now, cell) + wire::Number(content ? content->object : 0);
}

std::string Scene::LabelLine(const Label& label) const {
    return "]s" + wire::Position(now, label.cell) + "  " + wire::BarsForSpaces(label.label) + " " +
           wire::BarsForSpaces(label.subLabel);
}

std::vector<std::string> Scene::ChangeLines() const {
    std::vector<std::string> lines;
    for (int fx = 0; fx < now.FileWidth(); ++fx)
        for (int fy = 0; fy < now.FileHeight(); ++fy) {
            const Cell cell = now.ToGrid({fx, fy});
            const CellContent* before = place.map.At(cell);
            const CellContent* after = now.At(cell);
            if (before->floor != after->floor) lines.push_back(FloorLine(cell));
            if (before->object != after->object) lines.push_back(ObjectLine(cell));
        }
    return lines;
}

}  // namespace demo
