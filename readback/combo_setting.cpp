#include "readback/combo_setting.h"

#include "device/reply.h"
#include "log/event_log.h"

#include <QComboBox>
#include <exception>

void selectItemOrThrow(QComboBox &combo, const std::string &value)
{
    if (value.empty())
        return;
    const int index = itemIndex(value);
    if (index >= 0 && index < combo.count())
        combo.setCurrentIndex(index);
}

void selectItem(QComboBox &combo, const std::string &value)
{
    try {
        selectItemOrThrow(combo, value);
    } catch (const std::exception &error) {
        writeLog(error.what());
    }
}
