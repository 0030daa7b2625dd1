#pragma once

#include "layout/display_cell.h"
#include "layout/display_delegate.h"

#include <QObject>
#include <array>
#include <vector>

class QTableWidget;
class QTableWidgetItem;

/// The layout grid: where the displays of the four channels stand, and their dragging.
///
/// The current layout is the model; the table shows it. A drop is read back from the table and
/// becomes the current layout when all four displays are still there, otherwise the table is drawn
/// anew. The window's cellPressed and cellChanged slots hand over here.
class LayoutGrid : public QObject
{
    Q_OBJECT

public:
    /// Works on `table` (4 rows, 4 columns), which stays the form's and must outlive this object or
    /// die with the window.
    explicit LayoutGrid(QTableWidget &table);

    /// All four channels side by side in the top row.
    void showInitialLayout();
    /// Channels 1 to 4 at the given cells; those outside the grid are kept but not shown. `mode` is
    /// the item of Active Ports: 0, 1 and 2 leave two, three and four channels active.
    void place(const DisplayLayout &channels, int mode);
    /// Makes `displays` the current layout and shows it; `mode` as above.
    void show(std::vector<DisplayCell> displays, int mode);
    /// Greys channels 3 and 4 beyond the first `mode` + 2 and gives the others their colour back.
    /// Leaves the current layout in the order of its channels.
    void repaintActivePorts(int mode);

    /// A press on a cell: a display can be dragged after it, an empty cell disarms dragging.
    void cellPressed(int row, int column);
    /// A cell has changed. Ignored while the grid is drawn by the program; the second change of a
    /// move reads the drop back.
    void cellChanged(int row, int column);

    const std::vector<DisplayCell> &layout() const { return layout_; }
    bool holdsDisplay(GridPosition cell) const;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    class Redrawing;

    void fillCell(const DisplayCell &cell);
    void addDisplay(const DisplayCell &cell);
    void setChannelBrush(DisplayCell &cell, const QBrush &brush);
    void deactivate(DisplayCell &cell);
    void redraw();
    void stylePressedCell(int row, int column);
    std::vector<DisplayCell> readCells() const;
    void takeDrop();
    void focusMovedDisplay(const std::vector<DisplayCell> &before);
    bool moveFocusedDisplay(GridPosition step);
    bool isInside(GridPosition cell) const;
    QTableWidgetItem *itemAt(GridPosition cell) const;
    void describeCell(const DisplayCell &cell);

    QTableWidget &table_;
    DisplayDelegate delegate_;
    std::vector<DisplayCell> layout_;
    bool redrawing = false;
    unsigned cellChanges_ = 0;
};
