#pragma once

#include <QHash>
#include <QStringList>

/// Names of the ports that the user may choose from: the device paths in the environment variable
/// PELORA_EXTRA_SERIAL_PORTS (separated by ":", on Windows by ";"; for ports that the system does
/// not list, such as pseudo-terminals) before the system's own, in the system's order.
QStringList serialPortNames();

/// What the system knows of its ports, by their names: description and manufacturer, as in
/// "USB Serial Port, FTDI". A port of which it knows neither is not among them. The words come from
/// the device; blanks and line breaks in them are single blanks here.
QHash<QString, QString> serialPortNotes();

/// Such a note; empty when both are.
QString serialPortNote(const QString &description, const QString &manufacturer);
