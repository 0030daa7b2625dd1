#pragma once

#include <string>

class QComboBox;

/// Selects in `combo` the item that the one-based decimal number at the start of `value` names.
/// An empty value and a number without an item leave the combo as it was; a value without a number
/// does too and is written to the event log.
void selectItem(QComboBox &combo, const std::string &value);
