#include "mouse/mouse_settings.h"

#include "connection/connection_controls.h"
#include "device/reply.h"
#include "log/event_log.h"
#include "log/notices.h"
#include "session/device_link.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <utility>

namespace {
constexpr int lastCustomItem = resolutionCount - 1;

/// Logs what is to become of a custom setting's name that will not come back as it was typed.
void logNameChanges(int setting, QString name, const std::string &command)
{
    const std::string subject = "The name of custom setting " + std::to_string(setting);
    if (name.trimmed().contains(QLatin1Char(' ')))
        writeLog(subject + " has blanks; the resolution lists leave them out");
    name.removeIf(isNoCharacterOfAName);
    if (command.find(name.toStdString()) == std::string::npos)
        writeLog(subject + " is too long for its command and was shortened");
}

QStringList itemsOf(const QComboBox &combo)
{
    QStringList items;
    for (int index = 0; index < combo.count(); ++index)
        items.append(combo.itemText(index));
    return items;
}
} // namespace

MouseSettings::MouseSettings(QObject &window, Widgets widgets, DeviceLink &link,
                             ConnectionControls &controls, Timing timing)
    : window_(window), widgets_(std::move(widgets)), link_(link), controls_(controls),
      timing_(timing)
{
    for (QLabel *label : std::as_const(widgets_.dataLabels))
        label->setTextFormat(Qt::PlainText); // the switch's words are never markup
}

void MouseSettings::resolutionChanged(int channel)
{
    if (controls_.areHandlersArmed())
        link_.forwardCommand(selectedResolutionCommand(channel));
}

void MouseSettings::submitCustomSetting()
{
    const MovementSetting values{widgets_.name->text(), widgets_.x->text(), widgets_.y->text()};
    const int setting = widgets_.setting->currentIndex();
    const QString problem =
        customSettingProblem(values, setting, itemsOf(*widgets_.resolutions.front()));
    if (!problem.isEmpty()) {
        showNoticeModal(problem, QMessageBox::Warning);
        return;
    }
    if (!ready_)
        return;
    ready_ = false;
    const std::string command = submittedCommand(setting + 1, values);
    link_.forwardCommand(command);
    logNameChanges(setting + 1, values.name, command);
    for (QComboBox *combo : std::as_const(widgets_.resolutions))
        combo->setItemText(customItem(setting), values.name);
    link_.connection().later(timing_.readAfterSubmit, window_, "refresh_UI");
}

void MouseSettings::fillEditFields()
{
    const QScopedValueRollback filling(fillingEditFields_, true);
    const DataLabelFields fields = dataLabelFields(dataLabel(widgets_.setting->currentIndex()));
    widgets_.x->setText(fields.x);
    if (fields.y)
        widgets_.y->setText(*fields.y);
    if (fields.name)
        widgets_.name->setText(*fields.name);
    else
        writeLog("basic_string::substr: the data of the custom setting is too short");
}

void MouseSettings::startOver()
{
    trimCustomEntries();
    ready_ = true;
}

void MouseSettings::trimCustomEntries()
{
    // A selector whose item is removed selects another one by itself: that is no user's change.
    const DisarmedHandlers disarmed(controls_);
    awaitedEntries_.set();
    if (widgets_.resolutions.front()->count() <= lastCustomItem)
        return;
    for (QComboBox *combo : std::as_const(widgets_.resolutions)) {
        for (int item = lastCustomItem; item >= presetResolutions; --item)
            combo->removeItem(item);
    }
}

void MouseSettings::setCustomEntry(int setting, const std::string &value, std::size_t skip)
{
    if (value != absentValue)
        awaitedEntries_.reset(static_cast<std::size_t>(setting));
    const QString name = QString::fromStdString(customEntryName(value, skip));
    const int item = customItem(setting);
    for (QComboBox *combo : std::as_const(widgets_.resolutions)) {
        while (combo->count() <= item)
            combo->addItem(QString());
        combo->setItemText(item, name);
    }
}

void MouseSettings::setDataLabel(int setting, const std::string &text)
{
    QString shown = QString::fromStdString(text);
    if (shown.endsWith(QLatin1Char('\r')))
        shown.chop(1); // the line's end, not the setting's
    widgets_.dataLabels.at(setting)->setText(shown);
}

void MouseSettings::setChannelResolutions(const std::string &value)
{
    const auto items = channelResolutions(value, itemsOf(resolutionSelector(1)));
    for (int channel = 1; channel <= static_cast<int>(items.size()); ++channel) {
        QComboBox &combo = resolutionSelector(channel);
        const std::optional<int> item = items.at(static_cast<std::size_t>(channel - 1));
        if (item && *item < combo.count())
            combo.setCurrentIndex(*item);
    }
}

QComboBox &MouseSettings::resolutionSelector(int channel) const
{
    return *widgets_.resolutions.at(channel - 1);
}

QString MouseSettings::dataLabel(int setting) const
{
    return setting >= 0 && setting < widgets_.dataLabels.size()
               ? widgets_.dataLabels.at(setting)->text()
               : QString();
}

std::string MouseSettings::selectedResolutionCommand(int channel) const
{
    return resolutionCommand(channel, resolutionSelector(channel).currentIndex());
}

std::string MouseSettings::knownSettingCommand(int setting) const
{
    const DataLabelFields fields = dataLabelFields(dataLabel(setting));
    const QString name = resolutionSelector(1).itemText(customItem(setting));
    if (fields.x.trimmed().isEmpty() || !fields.y || fields.y->trimmed().isEmpty() ||
        name.isEmpty())
        return {};
    return storedCommand(setting + 1, {name, fields.x, *fields.y});
}
