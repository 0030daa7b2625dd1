#include "readback/combo_setting.h"

#include "device/reply.h"
#include "log/event_log.h"

#include <QComboBox>
#include <exception>

void selectItem(QComboBox &combo, const std::string &value)
{
    if (value.empty())
        return;
    try {
        const int index = itemIndex(value);
        if (index >= 0 && index < combo.count())
            combo.setCurrentIndex(index);
    } catch (const std::exception &error) {
        writeLog(error.what());
    }
}
