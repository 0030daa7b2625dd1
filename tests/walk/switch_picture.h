#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

class QWidget;

/// What one simulated switch, and the module in front of it, printed of itself: "KM control" is
/// "2", "Layout" is "01 02 03 04". Read here from the printed lines and with no code of the
/// utility, so that what the two agree on is so.
using SwitchPicture = QMap<QByteArray, QByteArray>;

/// One picture from each "Unit N:" of `text`, or a single one; in their order.
QList<SwitchPicture> picturesIn(const QByteArray &text);

/// What `window` shows otherwise than the switch is; empty when they agree. `isNameKnown`: also of
/// the module's name.
QString differenceToWindow(const SwitchPicture &picture, const QWidget &window,
                           bool isNameKnown = true);

/// The 23 lines of a settings file that describes the switch.
QByteArrayList describingLines(const SwitchPicture &picture);
/// Where the settings file `text` says something else than the switch is; empty when nowhere.
QString differenceToFile(const SwitchPicture &picture, const QByteArray &text);

/// `text` as the simulator prints it: bytes that are no printable ASCII as \xC3.
QByteArray asPrinted(const QByteArray &text);
