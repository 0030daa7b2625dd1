#include "settingsfile/settings_file.h"

#include "connection/connection_controls.h"
#include "device/command.h"
#include "device/custom_setting.h"
#include "device/ports.h"
#include "device/reply.h"
#include "device/reply_words.h"
#include "device/settings_text.h"
#include "layout/layout_grid.h"
#include "layout/layout_submission.h"
#include "log/event_log.h"
#include "log/notices.h"
#include "mouse/mouse_settings.h"
#include "readback/combo_setting.h"
#include "session/device_link.h"
#include "settingsfile/settings_file_handler.h"

#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QPointer>
#include <algorithm>
#include <exception>
#include <optional>
#include <stdexcept>
#include <utility>

namespace {
constexpr char createFailure[] = "The settings file could not be saved";
constexpr char lastCreateFailure[] = "The last settings file could not be saved";
constexpr char loadFailure[] = "The settings file could not be applied";

QString nameFilter()
{
    return QStringLiteral("Text files (*.txt)");
}

/// The type of member `at`, zero-based, of a group.
EntryType member(EntryType first, std::size_t at)
{
    return static_cast<EntryType>(static_cast<int>(first) + static_cast<int>(at));
}

int memberOf(EntryType type, EntryType first)
{
    return static_cast<int>(type) - static_cast<int>(first);
}

/// The key of `type`'s line.
std::string_view keyOf(EntryType type)
{
    const auto from = [type](const auto &keys, EntryType first) {
        return keys.at(static_cast<std::size_t>(memberOf(type, first)));
    };
    if (type >= EntryType::FirstDataLabel)
        return from(dataLabelKeys, EntryType::FirstDataLabel);
    if (type >= EntryType::FirstResolution && type < EntryType::Grid)
        return from(resolutionKeys, EntryType::FirstResolution);
    if (type >= EntryType::FirstCustomSetting && type < EntryType::FirstResolution)
        return from(customSettingKeys, EntryType::FirstCustomSetting);
    switch (type) {
    case EntryType::KmControl:
        return kmControlKey;
    case EntryType::UsbControl:
        return usbControlKey;
    case EntryType::MouseMode:
        return mouseModeKey;
    case EntryType::LimitPorts:
        return limitPortsKey;
    case EntryType::CursorRolling:
        return cursorRollingKey;
    case EntryType::Grid:
        return gridSettingsKey;
    default:
        return buzzerKey;
    }
}

/// What stands behind `command` in `value`. Throws std::invalid_argument when it is not there.
std::string argumentOf(const std::string &value, const std::string &command)
{
    const std::string argument = replyValue(value, command);
    if (argument == absentValue && value.find(command + "0") == std::string::npos)
        throw std::invalid_argument("no \"" + command + "\"");
    return argument;
}

/// Logs and shows what failed and why, if anything did.
void report(const std::string &failure, const QString &problem)
{
    if (!problem.isEmpty())
        reportFailure((failure + ": " + problem.toStdString()).c_str());
}

/// Clears `sendEnabled` and `handlersArmed` while it lives and sets both at its end.
class ApplyingEntry
{
public:
    ApplyingEntry(DeviceLink &link, ConnectionControls &controls) : link_(link), controls_(controls)
    {
        link_.setSendEnabled(false);
        controls_.setHandlersArmed(false);
    }
    ~ApplyingEntry()
    {
        link_.setSendEnabled(true);
        controls_.setHandlersArmed(true);
    }
    ApplyingEntry(const ApplyingEntry &) = delete;
    ApplyingEntry &operator=(const ApplyingEntry &) = delete;

private:
    DeviceLink &link_;
    ConnectionControls &controls_;
};
} // namespace

SettingsFile::Dialogs SettingsFile::Dialogs::real(QWidget &window)
{
    const auto chosenName = [](QFileDialog &dialog) {
        dialog.setNameFilter(nameFilter());
        return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
    };
    return {[&window, chosenName] {
                QFileDialog dialog(&window, QStringLiteral("Save Settings File"), QDir::homePath());
                dialog.setAcceptMode(QFileDialog::AcceptSave);
                // By the dialog itself, so that it asks before it replaces the file of that name.
                dialog.setDefaultSuffix(QStringLiteral("txt"));
                return chosenName(dialog);
            },
            [&window, chosenName] {
                QFileDialog dialog(&window, QStringLiteral("Select file"), QDir::homePath());
                dialog.setFileMode(QFileDialog::ExistingFile);
                return chosenName(dialog);
            }};
}

SettingsFile::SettingsFile(QObject &window, Widgets widgets, Parts parts,
                           std::function<std::string()> kmType, std::function<void()> plainRead,
                           Timing timing, Dialogs dialogs)
    : window_(window), widgets_(widgets), parts_(parts), kmType_(std::move(kmType)),
      plainRead_(std::move(plainRead)), timing_(timing), dialogs_(std::move(dialogs))
{
    connect(&parts_.link, &DeviceLink::ended, this, &SettingsFile::abandonLoad);
}

void SettingsFile::create()
{
    if (!isReadCompletely())
        return;
    guarded(createFailure, [this] {
        const QString path = dialogs_.saveName();
        if (path.isEmpty() || !isReadCompletely()) // a read-back may have begun under the dialog
            return;
        const std::string text = settingsText(shownValues()); // before a notice lets one begin
        report(lastCreateFailure, parts_.handler.finishOutput());
        // Deliberate: for this model the file is finished only when the next one is begun or the
        // program ends.
        const QString problem = parts_.handler.save(path, text, isZen());
        report(createFailure, problem);
        if (problem.isEmpty())
            showNoticeModal(QStringLiteral("File saved"), QMessageBox::Information);
    });
}

/// Tells the user when it is not.
bool SettingsFile::isReadCompletely() const
{
    const bool complete = !parts_.mouse.areCustomEntriesAwaited();
    if (!complete)
        showNoticeModal(QStringLiteral("The switch has not been read completely; nothing was "
                                       "saved. Press Refresh."),
                        QMessageBox::Warning);
    return complete;
}

SettingsValues SettingsFile::shownValues() const
{
    SettingsValues values;
    values.kmControl = kmControlCommand(widgets_.kmControl->currentIndex());
    values.usbControl = usbControlCommand(widgets_.usbControl->currentIndex());
    values.limitPorts = activePortsCommand(widgets_.activePorts->currentIndex());
    values.cursorRolling = cursorRollingCommand(widgets_.cursorRolling->currentIndex());
    for (int at = 0; at < channelCount; ++at) {
        const auto place = static_cast<std::size_t>(at);
        values.resolutions.at(place) = parts_.mouse.selectedResolutionCommand(at + 1);
        values.coordinates.at(place) = shownCoordinates(at + 1);
    }
    for (int at = 0; at < customSettings; ++at) {
        const auto place = static_cast<std::size_t>(at);
        values.customSettings.at(place) = parts_.mouse.knownSettingCommand(at);
        values.dataLabels.at(place) = parts_.mouse.dataLabel(at).toStdString();
    }
    values.gridSettings = parts_.layout.buildLayoutCommand();
    values.buzzer = buzzerCommand(!parts_.controls.isBeepOnEnabled());
    values.mouseMode = mouseModeCommand(widgets_.mouseMode->currentIndex());
    return values;
}

std::string SettingsFile::shownCoordinates(int channel) const
{
    const QString label = channelLabel(channel);
    for (const DisplayCell &cell : parts_.grid.layout()) {
        if (cell.label == label)
            return coordinatesText({cell.row, cell.column});
    }
    return {};
}

bool SettingsFile::isZen() const
{
    return kmType_() == "zen";
}

void SettingsFile::load()
{
    // The dialog lets the world go on: the switch that the user meant may be gone at its end.
    const QPointer<Connection> connection(&parts_.link.connection());
    guarded(loadFailure, [&] {
        parts_.controls.setHandlersArmed(false);
        parts_.mouse.trimCustomEntries();
        parts_.handler.forget();
        const QString path = dialogs_.openName();
        if (path.isEmpty())
            return;
        const QString problem = parts_.handler.read(path);
        if (!problem.isEmpty())
            reportFailure(problem.toStdString().c_str());
        else if (!connection || connection->hasEnded())
            sayIncomplete();
        else
            beginLoad();
    });
    if (!parts_.handler.isFileLoaded())
        plainRead_();
    delete secondPart_; // the second half of a load never comes from an earlier one
    secondPart_ =
        parts_.link.connection().later(timing_.secondPart, window_, "load_second_part_of_settings");
}

void SettingsFile::beginLoad()
{
    isLoading_ = true;
    parts_.controls.holdWhileLoading(true);
    applyFirstPart();
    parts_.controls.setHandlersArmed(true); // also where the file has none of these keys
    parts_.handler.markLoaded();
}

void SettingsFile::applyFirstPart()
{
    applyKey(EntryType::KmControl);
    for (std::size_t at = 0; at < customSettingKeys.size(); ++at)
        applyKey(member(EntryType::FirstCustomSetting, at));
    for (std::size_t at = 0; at < resolutionKeys.size(); ++at)
        applyKey(member(EntryType::FirstResolution, at));
}

void SettingsFile::loadSecondPart()
{
    if (!isLoading_)
        return;
    const bool applied = guarded(loadFailure, [this] { applySecondPart(); });
    if (!isLoading_) // the connection ended on the way
        return;
    endLoad();
    if (applied)
        showNoticeModal(QStringLiteral("Settings file applied"), QMessageBox::Information);
}

void SettingsFile::endLoad()
{
    isLoading_ = false;
    parts_.controls.holdWhileLoading(false);
}

void SettingsFile::abandonLoad()
{
    if (!isLoading_)
        return;
    endLoad();
    sayIncomplete();
}

/// Said when the event loop has its turn: what ended the connection may be about to begin another.
void SettingsFile::sayIncomplete()
{
    static constexpr char incomplete[] =
        "Settings file not applied completely: the connection ended";
    writeLog(incomplete);
    QMetaObject::invokeMethod(
        this, [] { showNoticeModal(QString::fromLatin1(incomplete), QMessageBox::Warning); },
        Qt::QueuedConnection);
}

void SettingsFile::applySecondPart()
{
    applyKey(EntryType::UsbControl);
    applyKey(EntryType::LimitPorts);
    applyKey(EntryType::CursorRolling);
    applyKey(EntryType::Grid);
    applyKey(EntryType::Buzzer);
    for (std::size_t at = 0; at < dataLabelKeys.size(); ++at)
        applyKey(member(EntryType::FirstDataLabel, at));
    // Deliberate: this model's mouse mode is written to the file and never applied from it.
    if (!isZen())
        applyKey(EntryType::MouseMode);
}

void SettingsFile::applyKey(EntryType type)
{
    if (!isLoading_) // the connection ended under an earlier key
        return;
    const std::string_view key = keyOf(type);
    const std::optional<std::string> value = settingsValue(parts_.handler.text(), key);
    const bool sendable = type < EntryType::FirstDataLabel;
    if (!value || (sendable && value->empty())) {
        writeLog("The settings file has no value for \"" + std::string(key) + "\"");
        return;
    }
    applyEntry(type, *value);
}

void SettingsFile::applyEntry(EntryType type, const std::string &value)
{
    {
        const ApplyingEntry guard(parts_.link, parts_.controls);
        try {
            show(type, value);
        } catch (const std::exception &error) {
            writeLog("The settings file's value for \"" + std::string(keyOf(type)) +
                     "\" cannot be read from \"" + value + "\": " + error.what());
        }
    }
    if (type < EntryType::FirstDataLabel)
        parts_.link.forwardCommand(value);
}

void SettingsFile::show(EntryType type, const std::string &value)
{
    if (type >= EntryType::FirstDataLabel && type <= EntryType::LastDataLabel) {
        parts_.mouse.setDataLabel(memberOf(type, EntryType::FirstDataLabel), value);
    } else if (type == EntryType::Buzzer) {
        const bool on = saysBuzzerOn(value);
        parts_.controls.setBeepButtonsEnabled(!on, on);
    } else if (type == EntryType::Grid) {
        showGrid();
    } else if (type >= EntryType::FirstResolution && type < EntryType::Grid) {
        const int channel = memberOf(type, EntryType::FirstResolution) + 1;
        const std::string key = "//CE " + std::to_string(channel) + " ";
        selectItemOrThrow(parts_.mouse.resolutionSelector(channel), argumentOf(value, key));
    } else if (type >= EntryType::FirstCustomSetting && type < EntryType::FirstResolution) {
        parts_.mouse.setCustomEntry(memberOf(type, EntryType::FirstCustomSetting), value,
                                    storedNameOffset);
    } else if (type == EntryType::CursorRolling) {
        widgets_.cursorRolling->setCurrentIndex(saysCursorRollingOn(value) ? 1 : 0);
    } else if (type == EntryType::LimitPorts) {
        showLimitPorts(value);
    } else if (type == EntryType::MouseMode) {
        showMouseMode(value);
    } else if (type == EntryType::UsbControl) {
        selectItemOrThrow(*widgets_.usbControl, argumentOf(value, "//u"));
    } else if (type == EntryType::KmControl) {
        selectItemOrThrow(*widgets_.kmControl, argumentOf(value, "//c"));
    }
}

void SettingsFile::showMouseMode(const std::string &value)
{
    widgets_.mouseMode->setCurrentIndex(saysRelativeMouse(value) ? 1 : 0);
    parts_.mouse.setReady(true);
    parts_.mouse.fillEditFields();
}

void SettingsFile::showLimitPorts(const std::string &value)
{
    const int activePorts = replyNumber(argumentOf(value, "//D"));
    if (!isPortLimit(activePorts))
        return;
    widgets_.activePorts->setCurrentIndex(activePorts - fewestActivePorts);
    // Deliberate: one more than the item's index, as when the switch reports its limit.
    parts_.grid.repaintActivePorts(activePorts - 1);
}

void SettingsFile::showGrid()
{
    DisplayLayout channels;
    for (std::size_t channel = channels.size(); channel > 0; --channel) {
        const std::string_view key = coordinatesKeys.at(channel - 1);
        const auto place =
            coordinatesFrom(settingsValue(parts_.handler.text(), key).value_or(std::string()));
        if (!place) {
            writeLog("The settings file has no place for \"" + std::string(key) + "\"");
            return;
        }
        channels.at(channel - 1) = *place;
    }
    parts_.grid.place(channels, widgets_.activePorts->currentIndex());
}
