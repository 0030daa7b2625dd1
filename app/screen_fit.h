#pragma once

#include <QSize>

class QWidget;

/// What a screen has for windows.
struct ScreenRoom
{
    QSize available; ///< without task bars, in pixels of the system's scale
    double scale;    ///< the system's: physical pixels in one of these
};

/// The scale, at most 1, at which a window of `window` (without its frame) fits into `room` with
/// its frame. 1 where the screen says nothing of use. Where it is less than 1, the window's
/// physical size is no fraction of a pixel smaller than what is drawn in it: an edge that ends in
/// the middle of its last pixel would be cut. Example: 1305 x 693 with a frame of 2 x 32 into 1280
/// x 672 at scale 1 gives 1205 / 1305.
double scaleToFit(QSize window, const ScreenRoom &room, QSize frame);

/// The same for the primary screen and the frame that windows have; 1 where the user has set a
/// scale by QT_SCALE_FACTOR. (That variable could not do it: Qt paints no pixel smaller than a
/// physical one.)
double scaleOnPrimaryScreen(QSize window);

/// Makes what stands in `window`, as its form has made it, `factor` times as large (at most 1):
/// fonts, margins, sizes, and what style sheets say in pixels and points. No line gets thinner than
/// a pixel. The window's own size is left to its owner.
void shrinkForm(QWidget &window, double factor);
