#pragma once

#include <string>

class QComboBox;

/// Selects in `combo` the item that the one-based decimal number at the start of `value` names.
/// An empty value and a number without an item leave the combo as it was. Throws
/// std::invalid_argument or std::out_of_range, whose text is "stoi", for a value without a number.
void selectItemOrThrow(QComboBox &combo, const std::string &value);

/// The same for what the switch says: a value without a number is written to the event log by the
/// exception's text.
void selectItem(QComboBox &combo, const std::string &value);
