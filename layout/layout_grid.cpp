#include "layout/layout_grid.h"

#include "log/event_log.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QTableWidget>
#include <algorithm>
#include <exception>
#include <memory>
#include <set>
#include <utility>

namespace {
constexpr int labelLength = 9; // "Channel 1"; what follows is the mark of an inactive channel
constexpr unsigned changesOfAMove = 2;
constexpr unsigned mostChanges = 16;
constexpr int pressedAlpha = 128; // half transparent

QString inactiveMark()
{
    return QStringLiteral("\nINACTIVE");
}

QString shownText(const DisplayCell &cell)
{
    return cell.brush == inactiveBrush() ? cell.label + inactiveMark() : cell.label;
}

/// "Channel 3, row 1, column 2, inactive"; rows and columns count from 1 for people.
QString accessibleText(const DisplayCell &cell)
{
    const QString text = QStringLiteral("%1, row %2, column %3")
                             .arg(cell.label)
                             .arg(cell.row + 1)
                             .arg(cell.column + 1);
    return cell.brush == inactiveBrush() ? text + QStringLiteral(", inactive") : text;
}

bool areAllFourChannels(const std::vector<DisplayCell> &cells)
{
    std::set<QString> labels;
    for (const DisplayCell &cell : cells)
        labels.insert(cell.label);
    return cells.size() == channelCount && labels.size() == channelCount;
}

/// Where Ctrl and this key move a display; no step for other keys.
GridPosition stepOf(const QKeyEvent &event)
{
    if ((event.modifiers() & ~Qt::KeypadModifier) != Qt::ControlModifier)
        return {};
    switch (event.key()) {
    case Qt::Key_Up:
        return {-1, 0};
    case Qt::Key_Down:
        return {1, 0};
    case Qt::Key_Left:
        return {0, -1};
    case Qt::Key_Right:
        return {0, 1};
    default:
        return {};
    }
}
} // namespace

/// Sets the redrawing flag while it lives and puts back what stood before.
class LayoutGrid::Redrawing
{
public:
    explicit Redrawing(LayoutGrid &grid) : grid_(grid), before_(grid.redrawing)
    {
        grid_.redrawing = true;
    }
    ~Redrawing() { grid_.redrawing = before_; }
    Redrawing(const Redrawing &) = delete;
    Redrawing &operator=(const Redrawing &) = delete;

private:
    LayoutGrid &grid_;
    bool before_;
};

LayoutGrid::LayoutGrid(QTableWidget &table) : table_(table)
{
    table_.setItemDelegate(&delegate_);
    table_.setTabKeyNavigation(false); // Tab reaches the grid and leaves it; arrows walk its cells
    table_.setToolTip(QStringLiteral(
        "Drag a display with the mouse, or move the one in focus with Ctrl and an arrow key.\n"
        "One that is dropped on another goes back"));
    table_.installEventFilter(this);
}

void LayoutGrid::showInitialLayout()
{
    const Redrawing guard(*this);
    for (int channel = 1; channel <= channelCount; ++channel)
        addDisplay({0, channel - 1, channelLabel(channel), channelBrush(channel)});
}

void LayoutGrid::place(const DisplayLayout &channels, int mode)
{
    std::vector<DisplayCell> displays;
    for (int channel = 1; channel <= channelCount; ++channel) {
        const GridPosition cell = channels.at(static_cast<std::size_t>(channel - 1));
        displays.push_back({cell.row, cell.column, channelLabel(channel), channelBrush(channel)});
    }
    show(std::move(displays), mode);
}

void LayoutGrid::show(std::vector<DisplayCell> displays, int mode)
{
    const Redrawing guard(*this);
    table_.clearContents();
    layout_ = std::move(displays);
    for (const DisplayCell &cell : layout_)
        fillCell(cell);
    repaintActivePorts(mode);
}

void LayoutGrid::fillCell(const DisplayCell &cell)
{
    if (!isInside({cell.row, cell.column}))
        return;
    auto item = std::make_unique<QTableWidgetItem>();
    item->setBackground(cell.brush);
    item->setText(shownText(cell));
    item->setTextAlignment(Qt::AlignCenter);
    item->setFont(QFont(QStringLiteral("Arial"), 18, QFont::Bold));
    item->setData(Qt::AccessibleTextRole, accessibleText(cell));
    table_.setItem(cell.row, cell.column, item.release());
}

void LayoutGrid::addDisplay(const DisplayCell &cell)
{
    layout_.push_back(cell);
    fillCell(cell);
}

void LayoutGrid::describeCell(const DisplayCell &cell)
{
    if (QTableWidgetItem *item = itemAt({cell.row, cell.column}))
        item->setData(Qt::AccessibleTextRole, accessibleText(cell));
}

void LayoutGrid::repaintActivePorts(int mode)
{
    const Redrawing guard(*this);
    std::sort(
        layout_.begin(), layout_.end(),
        [](const DisplayCell &left, const DisplayCell &right) { return left.label < right.label; });
    int index = 0;
    for (DisplayCell &cell : layout_) {
        const int shown = placedDisplay(cell).channel;
        const bool active = index++ < mode + fewestActivePorts;
        if (active && cell.label == channelLabel(3))
            setChannelBrush(cell, channelBrush(3));
        else if (active && cell.label == channelLabel(4))
            setChannelBrush(cell, channelBrush(4));
        else if (!active && shown > fewestActivePorts)
            deactivate(cell);
    }
}

void LayoutGrid::setChannelBrush(DisplayCell &cell, const QBrush &brush)
{
    cell.brush = brush;
    if (QTableWidgetItem *item = itemAt({cell.row, cell.column})) {
        item->setBackground(brush);
        item->setText(item->text().remove(inactiveMark()));
        describeCell(cell);
    }
}

void LayoutGrid::deactivate(DisplayCell &cell)
{
    cell.brush = inactiveBrush();
    if (QTableWidgetItem *item = itemAt({cell.row, cell.column})) {
        item->setBackground(cell.brush);
        item->setText(item->text() + inactiveMark());
        describeCell(cell);
    }
}

void LayoutGrid::redraw()
{
    if (redrawing)
        return;
    const Redrawing guard(*this);
    const int row = table_.currentRow();
    const int column = table_.currentColumn();
    table_.clearContents();
    for (const DisplayCell &cell : layout_)
        fillCell(cell);
    table_.setCurrentCell(row, column, QItemSelectionModel::NoUpdate);
}

void LayoutGrid::cellPressed(int row, int column)
{
    cellChanges_ = 0; // a press begins a new move, whatever became of the last one
    stylePressedCell(row, column);
    if (!holdsDisplay({row, column})) {
        table_.setSelectionMode(QAbstractItemView::NoSelection);
        table_.setDragEnabled(false);
        table_.setDragDropMode(QAbstractItemView::NoDragDrop);
        table_.verticalHeader()->setSectionsMovable(false);
        return;
    }
    // Only the pressed display is selected, so that one display at a time is dragged.
    table_.selectionModel()->select(table_.model()->index(row, column),
                                    QItemSelectionModel::ClearAndSelect);
    table_.setDragEnabled(true);
    table_.setDragDropMode(QAbstractItemView::InternalMove);
    table_.verticalHeader()->setSectionsMovable(true);
    table_.setSelectionMode(QAbstractItemView::ExtendedSelection);
}

void LayoutGrid::stylePressedCell(int row, int column)
{
    const QTableWidgetItem *item = table_.item(row, column);
    if (item == nullptr) {
        table_.selectionModel()->select(table_.model()->index(row, column),
                                        QItemSelectionModel::Deselect);
        return;
    }
    const QColor colour = item->background().color();
    table_.setStyleSheet(
        QStringLiteral("QTableWidget::item:selected { background-color: rgba(%1, %2, %3, %4); "
                       "border: 5px solid black;} QTableWidget {background-color: "
                       "rgb(109, 109, 105); gridline-color: rgb(159, 159, 159);}")
            .arg(colour.red())
            .arg(colour.green())
            .arg(colour.blue())
            .arg(pressedAlpha));
}

void LayoutGrid::cellChanged(int row, int column)
{
    if (redrawing)
        return;
    ++cellChanges_;
    if (cellChanges_ == changesOfAMove) {
        cellChanges_ = 0;
        table_.selectionModel()->select(table_.model()->index(row, column),
                                        QItemSelectionModel::Deselect);
        takeDrop();
    } else if (cellChanges_ == mostChanges) {
        // Deliberate: a move never counts this far; the reset stays as a way back if one ever did.
        cellChanges_ = 0;
    }
}

void LayoutGrid::takeDrop()
{
    std::vector<DisplayCell> dropped;
    try {
        dropped = readCells();
    } catch (const std::exception &error) {
        writeLog(error.what());
        writeLog("Topology setting error");
    }
    const bool accepted = areAllFourChannels(dropped);
    if (accepted)
        layout_.swap(dropped);
    else if (dropped.size() < layout_.size())
        writeLog("A display was dropped on another one and goes back");
    redraw();
    if (accepted)
        focusMovedDisplay(dropped);
}

std::vector<DisplayCell> LayoutGrid::readCells() const
{
    std::vector<DisplayCell> cells;
    for (int row = 0; row < table_.rowCount(); ++row) {
        for (int column = 0; column < table_.columnCount(); ++column) {
            if (const QTableWidgetItem *item = table_.item(row, column))
                cells.push_back({row, column, item->text().left(labelLength), item->background()});
        }
    }
    return cells;
}

void LayoutGrid::focusMovedDisplay(const std::vector<DisplayCell> &before)
{
    for (const DisplayCell &cell : layout_) {
        const bool stoodThere =
            std::any_of(before.begin(), before.end(), [&](const DisplayCell &other) {
                return other.row == cell.row && other.column == cell.column;
            });
        if (!stoodThere)
            table_.setCurrentCell(cell.row, cell.column, QItemSelectionModel::NoUpdate);
    }
}

bool LayoutGrid::holdsDisplay(GridPosition cell) const
{
    return itemAt(cell) != nullptr;
}

QTableWidgetItem *LayoutGrid::itemAt(GridPosition cell) const
{
    return isInside(cell) ? table_.item(cell.row, cell.column) : nullptr;
}

bool LayoutGrid::isInside(GridPosition cell) const
{
    return cell.row >= 0 && cell.row < table_.rowCount() && cell.column >= 0 &&
           cell.column < table_.columnCount();
}

bool LayoutGrid::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == &table_ && event->type() == QEvent::KeyPress) {
        const GridPosition step = stepOf(*static_cast<QKeyEvent *>(event));
        if (step != GridPosition{} && moveFocusedDisplay(step))
            return true;
    }
    return QObject::eventFilter(watched, event);
}

/// Moves the display in focus to the next free cell in the direction of `step`. True when the key
/// is used up: a display has the focus, whether or not there is a free cell.
bool LayoutGrid::moveFocusedDisplay(GridPosition step)
{
    const GridPosition from{table_.currentRow(), table_.currentColumn()};
    if (!holdsDisplay(from))
        return false;
    GridPosition to{from.row + step.row, from.column + step.column};
    while (holdsDisplay(to))
        to = {to.row + step.row, to.column + step.column};
    if (isInside(to)) {
        cellChanges_ = 0;
        table_.setItem(to.row, to.column, table_.takeItem(from.row, from.column));
    }
    return true;
}
